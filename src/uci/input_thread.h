// The thread that reads standard input and hands each line to the command loop through a
// one-slot mailbox: a string and an atomic flag that says a line is waiting. No lock is needed
// because each side touches the string only while the flag says it is its turn.
#pragma once

#include <atomic>
#include <string>
#include <thread>

class TInputThread {
public:
    TInputThread();
    ~TInputThread();
    // Takes the waiting line, if any, with the time it was read (milliseconds of the monotonic
    // clock), and frees the slot for the reader.
    bool takeLine(std::string& out, int64_t& readAt);

private:
    void run();

    std::thread reader;
    std::atomic<uint8_t> lineReady{0};
    std::atomic<uint8_t> stopRequested{0};
    std::string line;
    int64_t lineTime = 0;
};

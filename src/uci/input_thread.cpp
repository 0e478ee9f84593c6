#include "uci/input_thread.h"

#include <iostream>

#include "core/text.h"
#include "search/timeman.h"

TInputThread::TInputThread() { reader = std::thread(&TInputThread::run, this); }

TInputThread::~TInputThread() {
    stopRequested = 1;
    // A reader waiting for the slot to empty wakes and sees the stop.
    lineReady = 0;
    lineReady.notify_one();
    if (reader.joinable()) reader.join();
}

void TInputThread::run() {
    while (!stopRequested) {
        // Sleeps until the command loop has taken the last line: no processor time is spent
        // while a long command such as bench runs, and the next line of a burst ("position"
        // then "go") is in the slot by the time the loop looks again.
        lineReady.wait(1);
        if (stopRequested) break;
        std::string next;
        if (!readLine(std::cin, next)) next = "quit";  // end of input ends the program
        // Only an exact "quit" ends the reader; the flag is never cleared, so a stop requested
        // at shut-down is kept whatever line arrives last.
        if (next == "quit") stopRequested = 1;
        if (next.empty()) continue;
        line = std::move(next);
        lineTime = TimeManager::now();
        lineReady = 1;
    }
}

bool TInputThread::takeLine(std::string& out, int64_t& readAt) {
    if (!lineReady) return false;
    out = line;
    readAt = lineTime;
    lineReady = 0;
    lineReady.notify_one();
    return true;
}

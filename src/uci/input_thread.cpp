#include "uci/input_thread.h"

#include <chrono>
#include <iostream>

#include "core/text.h"
#include "search/timeman.h"

TInputThread::TInputThread() { reader = std::thread(&TInputThread::run, this); }

TInputThread::~TInputThread() {
    stopRequested = 1;
    if (reader.joinable()) reader.join();
}

void TInputThread::run() {
    while (!stopRequested) {
        if (lineReady) {
            // The command loop has not taken the last line yet. It looks every 10 ms, or not at
            // all while a long command such as bench runs: sleeping, not spinning, leaves the
            // processor to the search.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
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
    return true;
}

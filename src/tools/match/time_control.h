// How long engines may think: a clock with increment kept by the runner, or a fixed depth or
// node count per move. Also the go command each limit sends and the grace a clock allows.
#pragma once

#include <optional>
#include <string>

namespace match {

struct TimeControl {
    enum Kind { Clock, Depth, Nodes };
    Kind kind = Clock;
    long baseMs = 10000;
    long incrementMs = 100;
    int depth = 0;
    long nodes = 0;

    // "10+0.1" or "10": seconds of base time and of increment.
    static std::optional<TimeControl> parseClock(const std::string& text);
    static TimeControl fixedDepth(int depth);
    static TimeControl fixedNodes(long nodes);

    // The go command for a move, given both sides' remaining times and increments (indexed by
    // colour, 0 = White): they differ when a side plays with time odds.
    std::string goCommand(const long remainingMs[2], const long incrementMs[2]) const;
    // The PGN TimeControl tag: "10+0.1" for a clock, "-" otherwise.
    std::string pgnTag() const;
};

// Time a move may run past the clock before it is lost on time: 50 ms plus 1% of what was left.
constexpr long graceMs(long remainingMs) { return 50 + (remainingMs > 0 ? remainingMs / 100 : 0); }

}  // namespace match

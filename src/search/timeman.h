// Time management: turns the limits of a go command into a target (soft) and a hard deadline
// and answers, when the main search thread polls, whether time is up.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/types.h"
#include "search/limits.h"

class TimeManager {
public:
    void setLimits(const SearchLimits& limits, Color side);
    bool timeUp();
    static int64_t now();

    // Clock mode: no movetime, depth, nodes, mate or infinite limit.
    bool clockMode() const { return clock; }
    int64_t targetDeadline() const { return target; }
    int64_t hardDeadline() const { return hard; }

    SearchLimits limits;
    Color side = White;
    bool mateSearch = false;
    int rootMoveNumber = 0;  // 1-based number of the root move being searched; 0 between iterations
    // Set for a ponder search and cleared by ponderhit (from the command thread): until then the
    // search never ends on time and holds its move.
    std::atomic<bool> pondering{false};
    uint64_t polls = 0;

private:
    bool clock = false;
    int64_t target = 0;
    int64_t hard = 0;
};

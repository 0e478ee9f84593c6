// What a "go" command asks of a search.
#pragma once

#include <cstdint>

struct SearchLimits {
    int32_t wtime = 0, btime = 0;  // remaining clock times, milliseconds
    int32_t winc = 0, binc = 0;    // increments per move, milliseconds
    int32_t movestogo = 0;
    int32_t depth = 0;
    int32_t movetime = 0;
    int32_t mate = 0;
    int32_t infinite = 0;
    int32_t ponder = 0;
    int64_t nodes = 0;
    int64_t startTime = 0;  // milliseconds of the monotonic clock when "go" arrived
};

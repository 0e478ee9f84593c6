// The thirty positions of the benchmark, each searched to depth 15, with the moves a good search
// is expected to find. The evaluation symmetry test starts its random games from them too.
#pragma once

#include <array>

struct BenchPosition {
    const char* fen;  // often incomplete; the position command completes it
    int depth;
    const char* expected;  // SAN moves separated by blanks
};

constexpr int BENCH_POSITION_COUNT = 30;
extern const std::array<BenchPosition, BENCH_POSITION_COUNT> BENCH_POSITIONS;

// Time management: the deadlines of a go command, and when time is up.
#include "search/timeman.h"

#include <gtest/gtest.h>

namespace {

constexpr int64_t S = 1'000'000;  // the moment "go" arrived

SearchLimits at(SearchLimits limits, int64_t start) {
    limits.startTime = start;
    return limits;
}

}  // namespace

TEST(TimeManager, DeadlinesOfWorkedExamples) {
    constexpr int64_t ABSOLUTE = 0;  // one move to go: the deadlines do not count from the start
    // clang-format off
    const struct {
        const char* what;
        SearchLimits limits;
        Color side;
        int64_t base, target, hard;
    } cases[] = {
        {"60 s, no increment: 60000/51 and 5 x target", {.wtime = 60000}, White, S, 1176, 5870},
        {"black reads its own increment", {.wtime = 500, .btime = 10000, .binc = 100}, Black, S, 298, 1258},
        {"five moves to go: time / moves", {.wtime = 10000, .movestogo = 5}, White, S, 1666, 1990},
        {"short clock: time - 32 x moves is below the target", {.wtime = 1000}, White, S, -610, -610},
        {"pondering assumes 40 moves", {.wtime = 60000, .ponder = 1}, White, S, 1463, 7305},
        // A count below one is taken as none: -1 used to divide by zero.
        {"minus one move to go: as none", {.wtime = 60000, .movestogo = -1}, White, S, 1176, 5870},
        {"minus one, with an increment", {.wtime = 10000, .winc = 100, .movestogo = -1}, White, S, 298, 1258},
        {"increment above a short clock: half the clock", {.wtime = 150, .winc = 1000}, White, S, 65, 65},
        {"movetime wins over the clock", {.wtime = 60000, .movetime = 1000}, White, S, 990, 990},
        {"one move to go, 5 s", {.wtime = 5000, .movestogo = 1}, White, ABSOLUTE, 4890, 4890},
    };
    // clang-format on
    for (const auto& c : cases) {
        TimeManager tm;
        tm.setLimits(at(c.limits, S), c.side);
        EXPECT_EQ(tm.targetDeadline(), c.base + c.target) << c.what;
        EXPECT_EQ(tm.hardDeadline(), c.base + c.hard) << c.what;
        EXPECT_EQ(tm.polls, 0u) << c.what;
    }
}

// The poll compares the clock with the deadlines less the average time between polls; the target
// deadline counts only between root moves (rootMoveNumber 0).
TEST(TimeManager, TimeUpAtTheDeadlines) {
    const struct {
        const char* what;
        SearchLimits limits;
        int64_t elapsed;  // since "go"
        int earlierPolls, rootMoveNumber;
        bool up;
    } cases[] = {
        // 60 s: target 1176, hard 5870.
        {"past the hard deadline", {.wtime = 60000}, 10000, 0, 3, true},
        {"past the target, between iterations", {.wtime = 60000}, 2000, 0, 0, true},
        {"one slow poll pulls the target in", {.wtime = 60000}, 1000, 0, 0, true},
        {"one slow poll pulls the hard deadline in", {.wtime = 60000}, 5000, 0, 3, true},
        {"frequent polls: before the hard deadline", {.wtime = 60000}, 5000, 999, 3, false},
        {"depth never times out", {.depth = 5}, 3600000, 0, 0, false},
    };
    for (const auto& c : cases) {
        TimeManager tm;
        tm.setLimits(at(c.limits, TimeManager::now() - c.elapsed), White);
        tm.rootMoveNumber = 3;
        for (int i = 0; i < c.earlierPolls; i++) tm.timeUp();
        tm.rootMoveNumber = c.rootMoveNumber;
        EXPECT_EQ(tm.timeUp(), c.up) << c.what;
        EXPECT_EQ(tm.polls, uint64_t(c.earlierPolls) + 1) << c.what;
    }
}

// The search as a whole, driven through the main search thread: mates and draws.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "core/notation.h"
#include "search/threads.h"

namespace {

struct Outcome {
    std::string score;  // as the info line prints it
    int value;
    std::string move;
};

// One main search thread for all tests, as in the engine: its operating-system thread is given
// time to reach its idle wait before the first search is started.
TMainSearchThread& searchThread() {
    static TranspositionTable tt;
    static TMainSearchThread* thread = [] {
        tt.resize(1);
        auto* t = new TMainSearchThread(tt);
        t->testRun = true;
        t->launch();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return t;
    }();
    tt.clear();  // as after "ucinewgame"
    return *thread;
}

// Runs one search to its depth limit and reads the result as the info line would report it.
Outcome search(const std::string& position, int depth) {
    TMainSearchThread& thread = searchThread();
    thread.clear();
    SearchLimits limits;
    limits.depth = depth;
    limits.startTime = TimeManager::now();
    thread.setUp(position, limits, 1, 0);
    testing::internal::CaptureStdout();
    thread.start();
    thread.waitUntilIdle();
    testing::internal::GetCapturedStdout();
    const RootMove& best = thread.rootMove(0);
    const int value = best.score != NO_VALUE ? best.score : best.previousScore;
    return {uciScore(value), value, moveToUci(thread.bestMove)};
}

std::string fenPosition(const std::string& fen) { return "position fen " + fen; }

}  // namespace

// Forcing mates, each verified by an independent engine to be the shortest; the depth leaves
// room for the reductions of quiet moves. Helper threads share the table in the last row.
TEST(Search, FindsForcedMatesAtTheirExactDistance) {
    const struct {
        const char* fen;
        int depth, workers;
        const char* score;
        const char* move;  // when the solution is unique
    } cases[] = {
        {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 3, 0, "mate 1", "a1a8"},
        {"6rk/6pp/8/6N1/8/8/8/7K w - - 0 1", 3, 0, "mate 1", "g5f7"},
        {"3r2k1/5ppp/8/8/8/8/4RPPP/4R1K1 w - - 0 1", 5, 0, "mate 2", "e2e8"},
        {"r6k/6pp/7N/8/8/1Q6/8/6K1 w - - 0 1", 5, 0, "mate 2", "b3g8"},
        {"r4rk1/5ppp/8/3NR3/8/7Q/1q3PPP/6K1 w - - 0 1", 10, 0, "mate 3", "d5e7"},
        {"q2r2k1/1b4pp/8/6N1/8/8/4Q1PP/5RK1 w - - 0 1", 9, 0, "mate 4", ""},
        {"8/8/8/8/8/1k6/8/K6Q w - - 0 1", 3, 0, "mate 5", ""},  // exact by the tables
        {"k7/8/1K6/p7/P7/8/8/7R b - - 0 1", 3, 0, "mate -1", "a8b8"},
        {"r4rk1/4Nppp/8/4R3/8/7Q/1q3PPP/6K1 b - - 1 1", 10, 0, "mate -2", "g8h8"},
        {"r4rk1/5ppp/8/3NR3/8/7Q/1q3PPP/6K1 w - - 0 1", 10, 3, "mate 3", ""},
    };
    for (const auto& c : cases) {
        searchThread().setWorkerCount(c.workers);
        if (c.workers) std::this_thread::sleep_for(std::chrono::milliseconds(100));
        Outcome out = search(fenPosition(c.fen), c.depth);
        EXPECT_EQ(out.score, c.score) << c.fen;
        if (*c.move) {
            EXPECT_EQ(out.move, c.move) << c.fen;
        }
    }
    searchThread().setWorkerCount(0);
}

// A side far behind that can repeat the position, or whose every move passes the fifty-move
// limit, scores exactly 0; the same positions without the draw do not.
TEST(Search, RepetitionsAndTheFiftyMoveRuleScoreZero) {
    const std::string rooksUp = "position fen 6k1/5ppp/8/8/8/rr6/5PPP/6K1 w - - 0 1";
    const std::string queenRook = "position fen 4k3/8/8/8/8/8/3r4/Q5K1 w - - ";
    const struct {
        std::string position;
        int depth;
        bool draw;
    } cases[] = {
        {fenPosition("6k1/6p1/8/7Q/8/8/rr6/6K1 w - - 0 1"), 6, true},  // perpetual check
        {rooksUp, 4, false},
        {rooksUp + " moves g1h1 a3a4 h1g1 a4a3", 4, true},  // g1h1 repeats the game
        {queenRook + "99 80", 1, false},
        {queenRook + "100 80", 1, true},
    };
    for (const auto& c : cases) {
        Outcome out = search(c.position, c.depth);
        if (c.draw)
            EXPECT_EQ(out.score, "cp 0") << c.position;
        else
            EXPECT_GT(std::abs(out.value), 100) << c.position;
    }
    EXPECT_EQ(search(rooksUp + " moves g1h1 a3a4 h1g1 a4a3", 4).move, "g1h1");
}

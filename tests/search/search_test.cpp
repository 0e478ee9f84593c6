// The search as a whole, driven through the main search thread without output: forced mates
// with their exact distance, positions without a legal move, draws by repetition and by the
// fifty-move rule, and the endings that the endgame tables make exact.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "core/board.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "search/endgame_tables.h"
#include "search/threads.h"

namespace {

struct Outcome {
    std::string score;  // as the info line prints it
    int value;
    std::string move;
    int rootMoves;
    std::string output;  // what the search printed
};

// One main search thread for all tests, as in the engine: its operating-system thread is given
// time to reach its idle wait before the first search is started.
TMainSearchThread& searchThread(TranspositionTable*& table) {
    static TranspositionTable tt;
    static TMainSearchThread* thread = [] {
        tt.resize(1);
        auto* t = new TMainSearchThread(tt);
        t->testRun = true;
        t->launch();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return t;
    }();
    table = &tt;
    return *thread;
}

// Runs one search to its depth limit on a cleared table, as after "ucinewgame", and reads the
// result as the info line would report it.
Outcome search(const std::string& position, int depth) {
    TranspositionTable* tt;
    TMainSearchThread& thread = searchThread(tt);
    tt->clear();
    thread.clear();
    SearchLimits limits;
    limits.depth = depth;
    limits.startTime = TimeManager::now();
    thread.setUp(position, limits, 1, 0);
    testing::internal::CaptureStdout();
    thread.start();
    thread.waitUntilIdle();
    Outcome out;
    out.output = testing::internal::GetCapturedStdout();
    out.rootMoves = thread.rootMoveTotal();
    out.move = thread.bestMove ? moveToUci(thread.bestMove) : "";
    out.value = NO_VALUE;
    if (out.rootMoves > 0) {
        const RootMove& best = thread.rootMove(0);
        out.value = best.score != NO_VALUE ? best.score : best.previousScore;
    }
    out.score = uciScore(out.value);
    return out;
}

std::string fenPosition(const std::string& fen) { return "position fen " + fen; }

}  // namespace

TEST(Search, ScoreText) {
    const struct {
        int score;
        const char* text;
    } cases[] = {{32766, "mate 1"},   {32764, "mate 2"},     {-32765, "mate -1"},
                 {31744, "mate 512"}, {31743, "cp 31743"},   {-31744, "mate -512"},
                 {-35, "cp -35"},     {NO_VALUE, "cp -1000000"}};
    for (const auto& c : cases) EXPECT_EQ(uciScore(c.score), c.text) << c.score;
}

// Forcing mates, each verified by an independent engine to be the shortest; the depth leaves
// room for the reductions of quiet moves.
TEST(Search, FindsForcedMatesAtTheirExactDistance) {
    const struct {
        const char* what;
        const char* fen;
        int depth;
        const char* score;
        const char* move;  // when the solution is unique
    } cases[] = {
        {"back rank", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 3, "mate 1", "a1a8"},
        {"smothered", "6rk/6pp/8/6N1/8/8/8/7K w - - 0 1", 3, "mate 1", "g5f7"},
        {"rook sacrifice on the back rank", "3r2k1/5ppp/8/8/8/8/4RPPP/4R1K1 w - - 0 1", 5, "mate 2",
         "e2e8"},
        {"queen sacrifice, smothered", "r6k/6pp/7N/8/8/1Q6/8/6K1 w - - 0 1", 5, "mate 2", "b3g8"},
        {"Anastasia's mate", "r4rk1/5ppp/8/3NR3/8/7Q/1q3PPP/6K1 w - - 0 1", 10, "mate 3", "d5e7"},
        {"discovered check, then the back rank", "q2r2k1/1b4pp/8/6N1/8/8/4Q1PP/5RK1 w - - 0 1", 9,
         "mate 4", ""},
        {"queen against a lone king", "8/8/8/8/8/1k6/8/K6Q w - - 0 1", 3, "mate 5", ""},
        {"mated next move", "k7/8/1K6/p7/P7/8/8/7R b - - 0 1", 3, "mate -1", "a8b8"},
        {"mated in two", "r4rk1/4Nppp/8/4R3/8/7Q/1q3PPP/6K1 b - - 1 1", 10, "mate -2", "g8h8"},
    };
    for (const auto& c : cases) {
        Outcome out = search(fenPosition(c.fen), c.depth);
        EXPECT_EQ(out.score, c.score) << c.what;
        if (*c.move) {
            EXPECT_EQ(out.move, c.move) << c.what;
        }
    }
}

// Helper threads share the table; the main thread's answer must stay exact.
TEST(Search, FindsMateWithWorkerThreads) {
    TranspositionTable* tt;
    TMainSearchThread& thread = searchThread(tt);
    thread.setWorkerCount(3);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the workers reach their wait
    Outcome out = search(fenPosition("r4rk1/5ppp/8/3NR3/8/7Q/1q3PPP/6K1 w - - 0 1"), 10);
    thread.setWorkerCount(0);
    EXPECT_EQ(out.score, "mate 3");
}

// A side far behind in material that can repeat the position scores a draw, exactly 0.
TEST(Search, RepetitionsScoreZero) {
    const std::string rooksUp = "position fen 6k1/5ppp/8/8/8/rr6/5PPP/6K1 w - - 0 1";
    const struct {
        const char* what;
        std::string position;
        int depth;
        bool draw;
    } cases[] = {
        {"perpetual check", fenPosition("6k1/6p1/8/7Q/8/8/rr6/6K1 w - - 0 1"), 6, true},
        {"two rooks down", rooksUp, 4, false},
        {"two rooks down, but g1h1 repeats the game", rooksUp + " moves g1h1 a3a4 h1g1 a4a3", 4,
         true},
    };
    for (const auto& c : cases) {
        Outcome out = search(c.position, c.depth);
        if (c.draw) {
            EXPECT_EQ(out.score, "cp 0") << c.what;
        } else {
            EXPECT_LT(out.value, -300) << c.what;
        }
    }
    EXPECT_EQ(search(rooksUp + " moves g1h1 a3a4 h1g1 a4a3", 4).move, "g1h1");
}

// A queen against a rook with no capture at hand: at a half-move clock of 100 every move ends
// the game drawn (the clock passes 100); at 99 a move still leaves a position to search.
TEST(Search, FiftyMoveRuleScoresZero) {
    const struct {
        int clock, depth;
        bool draw;
    } cases[] = {{99, 1, false}, {100, 1, true}, {150, 3, true}};
    for (const auto& c : cases) {
        const std::string fen = "4k3/8/8/8/8/8/3r4/Q5K1 w - - " + std::to_string(c.clock) + " 80";
        Outcome out = search(fenPosition(fen), c.depth);
        if (c.draw) {
            EXPECT_EQ(out.score, "cp 0") << "clock " << c.clock << ", depth " << c.depth;
        } else {
            EXPECT_GT(out.value, 100) << "clock " << c.clock << ", depth " << c.depth;
        }
    }
}

// In the endings the tables cover, the search reports the tables' exact distance to mate and
// plays a move that keeps it.
TEST(Search, TableEndingsAreExact) {
    const char* fens[] = {
        "8/8/8/4k3/8/8/8/4K2Q w - - 0 1",   // queen
        "8/8/8/8/3K4/8/1k6/7q w - - 0 1",   // the lone king's side to move
        "3k4/8/3K4/3P4/8/8/8/8 w - - 0 1",  // a winning pawn
    };
    Board board;
    for (const char* fen : fens) {
        ASSERT_EQ(board.setFen(fen), 0) << fen;
        const int table = EndgameTables::instance().probe(board);
        ASSERT_NE(table, NO_TABLE_VALUE) << fen;
        ASSERT_NE(table, 0) << fen;
        // A win in n plies is 32767 - n, a loss in n plies n - 32766.
        const bool win = table > 0;
        const int plies = win ? 32767 - table : table + 32766;
        const std::string expected =
            win ? "mate " + std::to_string((plies + 1) / 2) : "mate -" + std::to_string(plies / 2);

        Outcome out = search(fenPosition(fen), 3);
        EXPECT_EQ(out.score, expected) << fen;
        Move m = parseMove(board, out.move);
        ASSERT_TRUE(m && isMoveInList(board, m)) << fen << " " << out.move;
        board.makeMove(m);
        const int after = EndgameTables::instance().probe(board);
        EXPECT_EQ(after, win ? (plies - 1) - 32766 : 32767 - (plies - 1))
            << fen << ": " << out.move << " does not keep the distance";
    }
}

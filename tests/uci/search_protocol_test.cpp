// The search as a GUI meets it: the info lines of each iteration, the limits of the go command,
// searches held until "ponderhit" or "stop", and commands answered while a search runs.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "search_session.h"

using namespace search_session;

namespace {

const std::string ITALIAN = "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4";
const std::string MIDDLEGAME = "r2q1rk1/pp2bppp/2n1bn2/3p4/3P4/2NBBN2/PP3PPP/R2Q1RK1 w - - 4 11";

// Every PV and the best and ponder moves are legal from the position.
void expectLegalLines(Referee& referee, const std::string& position, const SearchOutput& out) {
    for (const InfoLine& info : out.infos)
        referee.expectLegal(position, info.pv, "pv of depth " + std::to_string(info.depth));
    ASSERT_TRUE(out.best.has_value());
    std::vector<std::string> moves{out.best->move};
    if (!out.best->ponder.empty()) moves.push_back(out.best->ponder);
    referee.expectLegal(position, moves, "bestmove and ponder");
}

void setThreads(EngineProcess& engine, int threads) {
    EXPECT_EQ(engine.command("setoption name Threads value " + std::to_string(threads)), Lines{});
    std::this_thread::sleep_for(std::chrono::milliseconds(30));  // new workers reach their wait
}

void startInfinite(EngineProcess& engine, const std::string& fen) {
    engine.sendLine("position fen " + fen);
    engine.sendLine("go infinite");
    engine.readLinesUntil([](const std::string& l) { return l.starts_with("info depth "); });
}

}  // namespace

// One line per iteration, counting nodes and time on, the bestmove the first move of the last
// line, every line legal; with one thread and with several sharing the search.
TEST(SearchProtocol, DepthLimitedSearchReportsEveryIteration) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (int threads : {1, 8}) {
        setThreads(engine, threads);
        for (const std::string& fen : {ITALIAN, MIDDLEGAME}) {
            engine.sendLine("position fen " + fen);
            engine.sendLine("go depth 6");
            SearchOutput out = readSearch(engine, 10000);
            ASSERT_EQ(out.infos.size(), 6u) << fen;
            for (size_t i = 0; i < 6; i++) {
                const InfoLine& info = out.infos[i];
                EXPECT_EQ(info.depth, int(i + 1)) << fen;
                EXPECT_EQ(info.multipv, 1) << fen;
                EXPECT_LE(info.hashfull, 1000) << fen;
                EXPECT_GE(info.nodes, i ? out.infos[i - 1].nodes : 1) << fen;
                EXPECT_GE(info.time, i ? out.infos[i - 1].time : 0) << fen;
            }
            ASSERT_TRUE(out.best.has_value());
            if (threads == 1) {
                EXPECT_EQ(out.best->move, out.infos.back().pv.front());
            }
            expectLegalLines(referee, "fen " + fen, out);
            EXPECT_EQ(engine.command(Lines{}), Lines{}) << "nothing after the bestmove";
        }
    }
}

// MultiPV n gives lines 1..n of each iteration, no more than there are moves (20 at the start).
// The option is stored unchecked: zero or a negative count prints no lines, but still searches
// and finds a move.
TEST(SearchProtocol, MultiPvLinesOfEachIteration) {
    const struct {
        std::string value;
        size_t lines;
    } cases[] = {{"3", 3}, {"100", 20}, {"0", 0}, {"-100000000", 0}, {"1", 1}};
    EngineProcess engine;
    startReady(engine);
    for (const auto& c : cases) {
        EXPECT_EQ(engine.command("setoption name MultiPV value " + c.value), Lines{});
        engine.sendLine("position startpos");
        engine.sendLine("go depth 4");
        SearchOutput out = readSearch(engine, 10000);
        ASSERT_EQ(out.infos.size(), 4 * c.lines) << c.value;
        for (size_t i = 0; i < out.infos.size(); i++) {
            EXPECT_EQ(out.infos[i].depth, int(i / c.lines + 1)) << c.value;
            EXPECT_EQ(out.infos[i].multipv, int(i % c.lines + 1)) << c.value;
        }
        ASSERT_TRUE(out.best.has_value()) << c.value;
        EXPECT_EQ(engine.command(Lines{}), Lines{}) << c.value;
    }
}

// Each go line ends its search by itself, within a bound and not before its minimum (which the
// last info line's time shows too), with a legal move.
TEST(SearchProtocol, GoLimitsEndTheSearch) {
    const struct {
        std::string fen, go;
        int minMs, maxMs;
        std::string scoreAndMove = "";  // of the last info line, when given
    } cases[] = {
        // A bad number ends the reading: no limit but an empty clock.
        {MIDDLEGAME, "go depth x nodes 5", 0, 3000},
        {MIDDLEGAME, "go nodes 30000", 0, 5000},
        {MIDDLEGAME, "go wtime 300 btime 300", 0, 1500},
        {ITALIAN.substr(0, ITALIAN.find(" w ")) + " b KQkq - 4 4", "go wtime 1 btime 300 binc 10",
         0, 1500},
        {MIDDLEGAME, "go wtime 500 btime 500 movestogo 1", 0, 1500},
        {MIDDLEGAME, "go movetime 1000", 900, 1500},
        // A mate that the pruning lets through only at depth 10: the search goes on until it
        // has it, however deep.
        {"2rr3k/pp3pp1/1nnqbN1p/3pN3/2pP4/2P3Q1/PPB4P/R4RK1 w - - 0 1", "go mate 2", 0, 3000,
         "mate 2 g3g6"},
    };
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (const auto& c : cases) {
        engine.sendLine("position fen " + c.fen);
        const auto start = Clock::now();
        engine.sendLine(c.go);
        SearchOutput out = readSearch(engine, c.maxMs + 1000);
        const int64_t elapsed = msSince(start);
        EXPECT_GE(elapsed, c.minMs) << c.go;
        EXPECT_LT(elapsed, c.maxMs) << c.go;
        ASSERT_FALSE(out.infos.empty()) << c.go;
        const InfoLine& last = out.infos.back();
        EXPECT_GE(last.time, c.minMs) << c.go;
        if (!c.scoreAndMove.empty()) {
            EXPECT_EQ(last.score + " " + last.pv.front(), c.scoreAndMove) << c.go;
        }
        if (c.go == "go nodes 30000") {
            EXPECT_GE(last.nodes, 30000u) << "the budget is used";
        }
        expectLegalLines(referee, "fen " + c.fen, out);
    }
}

// While a search runs, "isready" is answered at once, with one thread or several, and a position
// set up meanwhile leaves the search alone; "stop" ends it with its move, and nothing follows.
TEST(SearchProtocol, CommandsDuringAnInfiniteSearch) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (int threads : {1, 3}) {
        setThreads(engine, threads);
        startInfinite(engine, MIDDLEGAME);
        for (const std::string& line : engine.collectFor(300))
            EXPECT_FALSE(isBestMoveLine(line)) << "an infinite search ended by itself";
        for (int i = 0; i < 3; i++) {
            auto start = Clock::now();
            engine.sendLine("isready");
            for (const std::string& line : engine.readLinesUntil("readyok", 1000))
                EXPECT_FALSE(isBestMoveLine(line));
            EXPECT_LT(msSince(start), 1000) << threads << " threads: readyok during the search";
        }
        engine.sendLine("position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
        engine.sendLine("e1g1");
        auto start = Clock::now();
        engine.sendLine("stop");
        SearchOutput out = readSearch(engine, 2000);
        EXPECT_LT(msSince(start), 1000) << threads << " threads: bestmove after stop";
        expectLegalLines(referee, "fen " + MIDDLEGAME, out);
        EXPECT_EQ(engine.collectFor(200), Lines{}) << "the search is over";
    }
}

// Ponder and infinite searches, even those that reached their depth, keep their move until
// released: "ponderhit" releases a ponder search, only "stop" an infinite one. A go during a
// search ends it first, and a new search starts afresh.
TEST(SearchProtocol, HeldSearchesWaitForTheirRelease) {
    const struct {
        std::string go;
        std::string ignored;  // a command that must not release the move
        std::string release;
    } cases[] = {
        {"go ponder wtime 1000 btime 1000", "isready", "ponderhit"},
        {"go ponder wtime 1000 btime 1000", "", "stop"},
        {"go ponder depth 2", "", "ponderhit"},
        {"go depth 2 infinite", "ponderhit", "stop"},
        {"go", "ponderhit", "stop"},
        {"go infinite", "isready", "go depth 3"},
    };
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    const std::string position = "startpos moves e2e4 e7e5 g1f3";
    engine.sendLine("position " + position);
    for (const auto& c : cases) {
        engine.sendLine(c.go);
        if (!c.ignored.empty()) engine.sendLine(c.ignored);
        for (const std::string& line : engine.collectFor(500))
            EXPECT_FALSE(isBestMoveLine(line)) << c.go << ": not held";
        auto start = Clock::now();
        engine.sendLine(c.release);
        SearchOutput out = readSearch(engine, 2000);
        EXPECT_LT(msSince(start), 500) << c.go << ", released by " << c.release;
        expectLegalLines(referee, position, out);
    }
    SearchOutput second = readSearch(engine, 3000);  // the "go depth 3" that released the last
    ASSERT_EQ(second.infos.size(), 3u);
    EXPECT_EQ(second.infos.front().depth, 1);
}

// Without a legal move there is nothing to search or to hold: the answer comes at once. Without
// a search, "stop" and "ponderhit" print nothing.
TEST(SearchProtocol, NoLegalMoveOrNoSearch) {
    const std::pair<std::string, std::string> cases[] = {
        {"6k1/R4ppp/8/8/8/8/5PPP/1r4K1 w - - 0 1", "go depth 3"},            // checkmated
        {"5k2/5P2/5K2/8/8/8/8/8 b - - 0 1", "go infinite"},                  // stalemated
        {"k7/8/1Q6/8/8/8/8/7K b - - 0 1", "go ponder wtime 500 btime 500"},  // stalemated
    };
    EngineProcess engine;
    startReady(engine);
    EXPECT_EQ(engine.command(Lines{"stop", "ponderhit", "stop"}), Lines{});
    for (const auto& [fen, go] : cases) {
        engine.sendLine("position fen " + fen);
        auto start = Clock::now();
        engine.sendLine(go);
        EXPECT_EQ(engine.readLine(1000), "bestmove (none) ponder (none)") << fen;
        EXPECT_LT(msSince(start), 300) << fen;
        EXPECT_EQ(engine.command(Lines{"stop", "ponderhit"}), Lines{}) << fen;
    }
}

// A go sent with the first lines, before the main search thread first waits for work, is still
// answered (it used to be lost for good).
TEST(SearchProtocol, GoRightAfterStartUpIsAnswered) {
    for (int run = 0; run < 8; run++) {
        EngineProcess engine;
        engine.sendLine("go depth 1");
        engine.expectBanner();
        ASSERT_TRUE(engine.readLine().has_value()) << "run " << run << ": no answer to go";
        engine.readLinesUntil(isBestMoveLine);
    }
}

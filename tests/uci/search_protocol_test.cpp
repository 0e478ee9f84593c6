// The search as a GUI meets it through the protocol: the info lines of each iteration, the
// limits of the go command, searches held until "ponderhit" or "stop", commands answered while a
// search runs, and the options that change the search.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "engine_process.h"
#include "search_session.h"

using namespace search_session;

namespace {

const std::string ITALIAN = "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4";
const std::string MIDDLEGAME = "r2q1rk1/pp2bppp/2n1bn2/3p4/3P4/2NBBN2/PP3PPP/R2Q1RK1 w - - 4 11";

// Checks that every PV and the best and ponder moves are legal from the position.
void expectLegalLines(Referee& referee, const std::string& position, const SearchOutput& out) {
    for (const InfoLine& info : out.infos)
        referee.expectLegal(position, info.pv, "pv of depth " + std::to_string(info.depth));
    ASSERT_TRUE(out.best.has_value());
    std::vector<std::string> moves{out.best->move};
    if (!out.best->ponder.empty()) moves.push_back(out.best->ponder);
    referee.expectLegal(position, moves, "bestmove and ponder");
}

}  // namespace

TEST(SearchProtocol, DepthLimitedSearchReportsEveryIteration) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (const std::string& fen : {ITALIAN, MIDDLEGAME}) {
        engine.sendLine("position fen " + fen);
        engine.sendLine("go depth 5");
        SearchOutput out = readSearch(engine, 10000);
        ASSERT_EQ(out.infos.size(), 5u) << fen;
        for (int i = 0; i < 5; i++) {
            const InfoLine& info = out.infos[i];
            EXPECT_EQ(info.depth, i + 1) << fen;
            EXPECT_EQ(info.multipv, 1) << fen;
            EXPECT_LE(info.hashfull, 1000) << fen;
            EXPECT_TRUE(info.score.starts_with("cp ")) << info.score;
            if (i > 0) {
                EXPECT_GE(info.nodes, out.infos[i - 1].nodes) << "nodes count on over the search";
                EXPECT_GE(info.time, out.infos[i - 1].time) << "time counts from the go command";
            }
        }
        ASSERT_TRUE(out.best.has_value());
        EXPECT_EQ(out.best->move, out.infos.back().pv.front()) << "the move of the last line";
        expectLegalLines(referee, "fen " + fen, out);
        EXPECT_EQ(engine.command(Lines{}), Lines{}) << "nothing after the bestmove";
    }
}

// Each go line ends its search by itself, within a bound, with a legal move.
TEST(SearchProtocol, GoLimitsEndTheSearch) {
    const struct {
        const char* what;
        std::string fen;
        const char* go;
        int withinMs;
        int lastDepth;          // 0: any
        const char* lastScore;  // empty: any
    } cases[] = {
        {"depth", MIDDLEGAME, "go depth 3", 3000, 3, ""},
        {"a bad number ends the reading: no limit but an empty clock", MIDDLEGAME,
         "go depth x nodes 5", 3000, 0, ""},
        {"nodes", MIDDLEGAME, "go nodes 30000", 5000, 0, ""},
        {"a short clock", MIDDLEGAME, "go wtime 300 btime 300", 1500, 0, ""},
        {"black's clock", ITALIAN.substr(0, ITALIAN.find(" w ")) + " b KQkq - 4 4",
         "go wtime 1 btime 300 winc 0 binc 10", 1500, 0, ""},
        {"one move to go", MIDDLEGAME, "go wtime 500 btime 500 movestogo 1", 1500, 0, ""},
        {"mate in one", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "go mate 1", 3000, 0, "mate 1"},
        {"mate in two", "3r2k1/5ppp/8/8/8/8/4RPPP/4R1K1 w - - 0 1", "go mate 2", 3000, 0, "mate 2"},
    };
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (const auto& c : cases) {
        engine.sendLine("position fen " + c.fen);
        const auto start = Clock::now();
        engine.sendLine(c.go);
        SearchOutput out = readSearch(engine, c.withinMs);
        EXPECT_LT(msSince(start), c.withinMs) << c.what;
        ASSERT_FALSE(out.infos.empty()) << c.what;
        if (c.lastDepth) {
            EXPECT_EQ(out.infos.back().depth, c.lastDepth) << c.what;
        }
        if (*c.lastScore) {
            EXPECT_EQ(out.infos.back().score, c.lastScore) << c.what;
        }
        if (std::string(c.go) == "go nodes 30000") {
            EXPECT_GE(out.infos.back().nodes, 30000u) << "the node budget is used";
        }
        expectLegalLines(referee, "fen " + c.fen, out);
    }
}

TEST(SearchProtocol, MovetimeEndsNearItsDeadline) {
    EngineProcess engine;
    startReady(engine);
    engine.sendLine("position fen " + MIDDLEGAME);
    const auto start = Clock::now();
    engine.sendLine("go movetime 1000");
    SearchOutput out = readSearch(engine, 3000);
    const int64_t elapsed = msSince(start);
    EXPECT_GE(elapsed, 900);
    EXPECT_LE(elapsed, 1500);
    ASSERT_FALSE(out.infos.empty());
    EXPECT_GE(out.infos.back().time, 900) << "the last line reports the time spent";
}

// "isready" is answered at once while a search runs, with one thread or several; "stop" ends
// the search with its move.
TEST(SearchProtocol, IsreadyAndStopDuringAnInfiniteSearch) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    for (int threads : {1, 3}) {
        EXPECT_EQ(engine.command("setoption name Threads value " + std::to_string(threads)),
                  Lines{});
        std::this_thread::sleep_for(std::chrono::milliseconds(30));  // new workers reach their wait
        engine.sendLine("position fen " + MIDDLEGAME);
        engine.sendLine("go infinite");
        engine.readLinesUntil([](const std::string& l) { return l.starts_with("info depth "); });
        for (const std::string& line : engine.collectFor(300))
            EXPECT_FALSE(isBestMoveLine(line)) << "an infinite search ended by itself";

        for (int i = 0; i < 3; i++) {
            auto start = Clock::now();
            engine.sendLine("isready");
            Lines lines = engine.readLinesUntil("readyok", 1000);
            EXPECT_LT(msSince(start), 150) << threads << " threads: readyok during the search";
            for (const std::string& line : lines) EXPECT_FALSE(isBestMoveLine(line));
        }

        auto start = Clock::now();
        engine.sendLine("stop");
        SearchOutput out = readSearch(engine, 2000);
        EXPECT_LT(msSince(start), 300) << threads << " threads: bestmove after stop";
        expectLegalLines(referee, "fen " + MIDDLEGAME, out);
        EXPECT_EQ(engine.collectFor(200), Lines{}) << "the search is over";
    }
}

// The search works on its own copy of the game: a position set up meanwhile changes nothing.
TEST(SearchProtocol, PositionCommandDuringASearchLeavesItAlone) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    engine.sendLine("position fen " + MIDDLEGAME);
    engine.sendLine("go infinite");
    engine.readLinesUntil([](const std::string& l) { return l.starts_with("info depth "); });
    engine.sendLine("position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
    engine.sendLine("e1g1");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    engine.sendLine("stop");
    SearchOutput out = readSearch(engine, 2000);
    expectLegalLines(referee, "fen " + MIDDLEGAME, out);
    // The console game did change.
    EXPECT_EQ(engine.command("print").size(), 37u);
}

// Ponder and infinite searches, even those that reached their depth, keep their move until
// released; "ponderhit" releases a ponder search, which then runs under its clock, and only
// "stop" releases an infinite one.
TEST(SearchProtocol, HeldSearchesWaitForTheirRelease) {
    const struct {
        const char* go;
        std::vector<std::string> ignored;  // commands that must not release the move
        const char* release;
    } cases[] = {
        {"go ponder wtime 1000 btime 1000", {}, "ponderhit"},
        {"go ponder wtime 1000 btime 1000", {}, "stop"},
        {"go ponder depth 2", {}, "ponderhit"},
        {"go ponder depth 2", {}, "stop"},
        {"go depth 2 infinite", {"ponderhit"}, "stop"},
        {"go", {"ponderhit"}, "stop"},
        {"go infinite", {"isready"}, "stop"},
    };
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    const std::string position = "startpos moves e2e4 e7e5 g1f3";
    engine.sendLine("position " + position);
    for (const auto& c : cases) {
        engine.sendLine(c.go);
        for (const std::string& line : engine.collectFor(500))
            EXPECT_FALSE(isBestMoveLine(line)) << c.go << ": not held";
        for (const std::string& command : c.ignored) {
            engine.sendLine(command);
            for (const std::string& line : engine.collectFor(300))
                EXPECT_FALSE(isBestMoveLine(line)) << c.go << ": released by " << command;
        }
        auto start = Clock::now();
        engine.sendLine(c.release);
        SearchOutput out = readSearch(engine, 2000);
        EXPECT_LT(msSince(start), 500) << c.go << ", released by " << c.release;
        expectLegalLines(referee, position, out);
    }
}

// A go command during a search ends that search, with its bestmove, before the new one starts.
TEST(SearchProtocol, NewGoEndsTheRunningSearchFirst) {
    EngineProcess engine;
    startReady(engine);
    engine.sendLine("position fen " + MIDDLEGAME);
    engine.sendLine("go infinite");
    engine.readLinesUntil([](const std::string& l) { return l.starts_with("info depth "); });
    engine.sendLine("go depth 3");
    readSearch(engine, 2000);
    SearchOutput second = readSearch(engine, 3000);
    ASSERT_EQ(second.infos.size(), 3u);
    EXPECT_EQ(second.infos.front().depth, 1) << "the second search starts afresh";
}

// Without a legal move there is nothing to search or to hold: the answer comes at once.
TEST(SearchProtocol, NoLegalMoveAnswersAtOnce) {
    const struct {
        const char* fen;
        const char* go;
    } cases[] = {
        {"6k1/R4ppp/8/8/8/8/5PPP/1r4K1 w - - 0 1", "go depth 3"},            // checkmated
        {"R6k/8/7K/8/8/8/8/8 b - - 0 1", "go movetime 500"},                 // checkmated
        {"5k2/5P2/5K2/8/8/8/8/8 b - - 0 1", "go infinite"},                  // stalemated
        {"k7/8/1Q6/8/8/8/8/7K b - - 0 1", "go ponder wtime 500 btime 500"},  // stalemated
    };
    EngineProcess engine;
    startReady(engine);
    for (const auto& c : cases) {
        engine.sendLine(std::string("position fen ") + c.fen);
        auto start = Clock::now();
        engine.sendLine(c.go);
        EXPECT_EQ(engine.readLine(1000), "bestmove (none) ponder (none)") << c.fen;
        EXPECT_LT(msSince(start), 300) << c.fen;
        EXPECT_EQ(engine.command(Lines{}), Lines{}) << c.fen;
    }
}

TEST(SearchProtocol, StopAndPonderhitWithoutASearchPrintNothing) {
    EngineProcess engine;
    startReady(engine);
    EXPECT_EQ(engine.command(Lines{"stop", "ponderhit", "stop"}), Lines{});
    engine.sendLine("position fen " + MIDDLEGAME);
    engine.sendLine("go depth 2");
    readSearch(engine, 2000);
    EXPECT_EQ(engine.command(Lines{"stop", "ponderhit"}), Lines{}) << "the search was over";
}

// With "Output Current Move Info" on, each root move is announced before it is searched, from
// the ninth iteration on: numbered from 1, one line per legal move.
TEST(SearchProtocol, CurrentMoveLinesFromDepthNine) {
    static const std::regex currmove(std::string("info currmove (") + MOVE +
                                     ") currmovenumber (\\d+)");
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    EXPECT_EQ(engine.command("setoption name Output Current Move Info value true"), Lines{});
    engine.sendLine("position fen " + MIDDLEGAME);
    engine.sendLine("go depth 10");
    std::map<int, std::vector<std::string>> announced;  // by the iteration they precede
    int iteration = 1;
    for (const std::string& line : engine.readLinesUntil(isBestMoveLine, 20000)) {
        std::smatch m;
        if (std::regex_match(line, m, currmove)) {
            EXPECT_EQ(std::stoi(m[2]), int(announced[iteration].size()) + 1) << line;
            announced[iteration].push_back(m[1]);
        } else if (auto info = parseInfo(line)) {
            EXPECT_EQ(info->depth, iteration);
            iteration++;
        } else {
            EXPECT_TRUE(parseBestMove(line).has_value()) << line;
        }
    }
    EXPECT_EQ(iteration, 11);
    for (int depth = 1; depth <= 8; depth++) EXPECT_EQ(announced.count(depth), 0u) << depth;
    ASSERT_EQ(announced.count(9), 1u);
    ASSERT_EQ(announced.count(10), 1u);
    for (int depth : {9, 10}) {
        const auto& moves = announced[depth];
        EXPECT_EQ(std::set<std::string>(moves.begin(), moves.end()).size(), moves.size());
        for (const std::string& move : moves)
            referee.expectLegal("fen " + MIDDLEGAME, {move}, "currmove");
    }
    EXPECT_EQ(announced[9].size(), announced[10].size()) << "every root move, each iteration";
    // Off again: plain iterations.
    EXPECT_EQ(engine.command("setoption name Output Current Move Info value false"), Lines{});
    engine.sendLine("go depth 9");
    EXPECT_EQ(readSearch(engine, 20000).infos.size(), 9u);
}

// Three lines per iteration, best first, each with its own first move.
TEST(SearchProtocol, MultiPvPrintsOneLinePerMovePerDepth) {
    const struct {
        std::string fen;
        size_t lines;  // per iteration
    } cases[] = {
        {MIDDLEGAME, 3}, {"7k/8/8/8/8/p7/P7/K6R b - - 0 1", 2},  // only Kg8 and Kg7
    };
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    EXPECT_EQ(engine.command("setoption name MultiPV value 3"), Lines{});
    for (const auto& c : cases) {
        engine.sendLine("position fen " + c.fen);
        engine.sendLine("go depth 4");
        SearchOutput out = readSearch(engine, 10000);
        ASSERT_EQ(out.infos.size(), 4 * c.lines) << c.fen;
        for (int depth = 1; depth <= 4; depth++) {
            std::set<std::string> firstMoves;
            for (size_t k = 1; k <= c.lines; k++) {
                const InfoLine& info = out.infos[(depth - 1) * c.lines + k - 1];
                EXPECT_EQ(info.depth, depth) << c.fen;
                EXPECT_EQ(info.multipv, int(k)) << c.fen;
                firstMoves.insert(info.pv.front());
                if (k > 1) {
                    EXPECT_LE(info.value(), out.infos[(depth - 1) * c.lines + k - 2].value())
                        << c.fen << ": best line first, depth " << depth;
                }
            }
            EXPECT_EQ(firstMoves.size(), c.lines) << c.fen << ": one line per move";
        }
        expectLegalLines(referee, "fen " + c.fen, out);
    }
    EXPECT_EQ(engine.command("setoption name MultiPV value 1"), Lines{});
    engine.sendLine("go depth 2");
    EXPECT_EQ(readSearch(engine, 3000).infos.size(), 2u);
}

// FAULT: the main search thread clears its "searching" flag when its operating-system thread
// first runs. A go that arrives before that (a script piping "go" with the first lines) is
// lost: no info line and no bestmove, ever. Sent before the banner, it is lost nearly always.
TEST(SearchProtocol, GoRightAfterStartUpIsAnswered) {
    for (int run = 0; run < 8; run++) {
        EngineProcess engine;
        engine.sendLine("go depth 1");
        engine.expectBanner();
        auto line = engine.readLine(2000);
        ASSERT_TRUE(line.has_value()) << "run " << run << ": no answer to go";
        engine.readLinesUntil(isBestMoveLine, 2000);
    }
}

// Searches shared by several threads still print only legal lines and moves. (What each
// Threads value does to the worker pool is checked with the options.)
TEST(SearchOptions, SharedSearchesPrintLegalLines) {
    EngineProcess engine;
    Referee referee;
    startReady(engine);
    engine.sendLine("position fen " + MIDDLEGAME);
    for (int threads : {2, 8}) {
        EXPECT_EQ(engine.command("setoption name Threads value " + std::to_string(threads)),
                  Lines{});
        std::this_thread::sleep_for(std::chrono::milliseconds(30));  // new workers reach their wait
        engine.sendLine("go depth 6");
        SearchOutput out = readSearch(engine, 10000);
        ASSERT_EQ(out.infos.size(), 6u) << threads << " threads";
        expectLegalLines(referee, "fen " + MIDDLEGAME, out);
    }
}

// EPD test suites: "loadepd" keeps the valid lines of a file, "runepd" searches each to depth 1,
// 2 or 3 and counts the positions where the engine plays the "bm" move. The positions are easy
// (mates in one, a hanging queen, a promotion) so that the counts are known.
#include <gtest/gtest.h>

#include <regex>

#include "engine_process.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<std::string>;

const std::string BACK_RANK_MATE = "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm Ra8#; id \"mate\";";
const std::string HANGING_QUEEN = "4k3/8/8/3q4/8/8/8/3RK3 w - - bm Rxd5; id \"queen\";";
// Two best moves; the engine plays the first.
const std::string TWO_BEST_MOVES = "3r2k1/8/8/8/8/8/8/3Q2K1 b - - bm Rxd1+ Kg7; id \"two\";";
const std::string PROMOTION = "8/4P1k1/8/8/8/8/8/4K3 w - - bm e8=Q; id \"promotion\";";
const std::string SCHOLARS_MATE =
    "r1bqkbnr/pppp1ppp/2n5/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - bm Qxf7#; id \"scholar\";";
// A legal move that the engine does not play, with the queen hanging.
const std::string WRONG_MOVE = "4k3/8/8/3q4/8/8/8/3RK3 w - - bm Kf2; id \"wrong\";";
// Mate in two by a queen sacrifice: a depth-1 search does not see the mate behind Bxd8.
const std::string MATE_IN_TWO =
    "r1b2k1r/ppp1bppp/8/1B1Q4/5q2/2P5/PPP2PPP/R3R1K1 w - - bm Qd8+; id \"sacrifice\";";

// Lines that no reading of a position accepts.
const Lines INVALID = {
    "",
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP w - - bm e4;",  // seven ranks
    "8/8/8/8/8/8/8/8 w - - bm e4;",                     // no kings
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNX w - - bm e4;",
    "this is not a position",
    "# a comment",
};

}  // namespace

// Each row: a command and the lines it prints; the rows run in order on one engine, so each
// load replaces what the rows before it loaded.
TEST(Epd, LoadAndRunReplies) {
    ScratchDirectory directory;
    directory.writeLines(
        "suite.epd",
        {BACK_RANK_MATE, INVALID[0], HANGING_QUEEN, INVALID[1], TWO_BEST_MOVES, INVALID[2],
         PROMOTION, INVALID[3], SCHOLARS_MATE, INVALID[4], WRONG_MOVE, INVALID[5], MATE_IN_TWO});
    directory.writeLines("small.epd", {HANGING_QUEEN, INVALID[1], WRONG_MOVE});
    directory.writeLines("invalid.epd", INVALID);
    directory.writeLines("unplayable.epd", {"4k3/8/8/8/8/8/8/3RK3 w - - bm Qh5; id \"no queen\";"});
    auto solved = [](int n, int of) {
        return Lines{"~solved " + std::to_string(n) + "/" + std::to_string(of) + " in [0-9]+ ms",
                     "Score: " + std::to_string(n)};
    };
    const Lines USAGE = {"usage: loadepd filename.epd"}, MISSING = {"file missing.epd not found"};
    EngineProcess engine(directory.path);
    engine.expectBanner();
    expectTranscript(
        engine,
        {
            {{"runepd"}, solved(0, 0)},  // nothing loaded yet: no search, 0 of 0
            {{"runepd -q"}, {"0"}},
            {{"loadepd", "loadepd \t "}, {USAGE[0], USAGE[0]}},
            {{"loadepd missing.epd"}, MISSING},
            {{"loadepd suite.epd"}, {"7 positions loaded"}},
            // Depth 1 misses only the sacrifice (and never plays Kf2); depth 2 and 3 find it.
            {{"runepd"}, solved(5, 7)},
            {{"runepd -q", "runepd -d2", "runepd -d3 -q", "runepd -q -d2"},
             {"5", solved(6, 7)[0], "Score: 6", "6", "6"}},
            // A failed load leaves the list. The table now holds the deeper searches, which a
            // depth-1 run may reuse to find the mate, so this run is to depth 2.
            {{"loadepd missing.epd", "runepd -d2 -q"}, {MISSING[0], "6"}},
            // A second load replaces the list, also with fewer lines.
            {{"loadepd small.epd"}, {"2 positions loaded"}},
            {{"runepd"}, solved(1, 2)},
            {{"loadepd invalid.epd"}, {"0 positions loaded"}},
            {{"runepd"}, solved(0, 0)},
            // A best move that is not a move of the position is loaded, and never solved.
            {{"loadepd unplayable.epd"}, {"1 positions loaded"}},
            {{"runepd"}, solved(0, 1)},
        },
        20000);
}

// The runs print nothing of their searches, not even for a position without a legal move, and
// the next search prints its output again.
TEST(Epd, SearchOutputReturnsAfterARun) {
    ScratchDirectory directory;
    directory.writeLines("two.epd", {HANGING_QUEEN, "7k/6Q1/6K1/8/8/8/8/8 b - - bm Kh7; id \"mated\";"});
    EngineProcess engine(directory.path);
    engine.expectBanner();
    ASSERT_EQ(engine.command("loadepd two.epd"), Lines{"2 positions loaded"});
    EXPECT_EQ(engine.command("runepd -d3 -q"), Lines{"1"});
    EXPECT_EQ(engine.collectFor(100), Lines{});

    engine.sendLine("position startpos");
    engine.sendLine("go depth 3");
    Lines search = engine.readLinesUntil(
        [](const std::string& line) { return line.starts_with("bestmove "); }, 10000);
    ASSERT_GE(search.size(), 2u);
    EXPECT_TRUE(search.front().starts_with("info depth 1 ")) << search.front();
    EXPECT_TRUE(search[search.size() - 2].starts_with("info depth 3 "))
        << search[search.size() - 2];
}

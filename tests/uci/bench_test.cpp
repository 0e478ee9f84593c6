// The benchmark as a person runs it: 30 fixed positions searched to depth 15, each announced by
// a header and followed by the search's own output, then a table of nodes, time, move, score and
// whether the move was expected, and the totals. One run, checked line by line.
#include <gtest/gtest.h>

#include <cstdint>
#include <regex>

#include "engine_process.h"
#include "tools/bench_positions.h"

namespace {

using Lines = std::vector<std::string>;

const std::string DASHES_78(78, '-');
const std::string TABLE_LINE = " -------------------------------------------------------------";
const std::string TABLE_HEADER = " #               nodes        time      move     score  solved";

// A field right-aligned in the width: blanks, then the text; longer text is not cut.
bool rightAligned(const std::string& field, size_t width) {
    size_t start = field.find_first_not_of(' ');
    if (start == std::string::npos) return false;
    return field.size() == std::max(width, field.size() - start);
}

std::string trimmed(const std::string& field) { return field.substr(field.find_first_not_of(' ')); }

// What one search of the bench printed, as far as the table repeats it.
struct SearchSeen {
    std::string score;  // "cp 57", "mate 3"
    uint64_t nodes = 0;
    std::string move;  // the bestmove in coordinates
};

}  // namespace

// With Hash set to 1 MB first. The "isready" sent right behind "bench" is answered only after
// the total line: the bench holds the command loop until it is done.
TEST(Bench, OneRunCheckedLineByLine) {
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("setoption name Hash value 1"), Lines{});
    engine.sendLine("bench");
    engine.sendLine("isready");
    const Lines out = engine.readLinesUntil("readyok", 240000);
    ASSERT_FALSE(out.empty());
    ASSERT_EQ(out.back(), "readyok");

    size_t at = 0;
    auto next = [&]() -> std::string { return at < out.size() ? out[at++] : "(end of output)"; };

    // Per position: empty line, dashes, header, dashes, the search's info lines and bestmove.
    std::vector<SearchSeen> searches;
    for (int i = 1; i <= 30; i++) {
        const BenchPosition& p = BENCH_POSITIONS[i - 1];
        ASSERT_EQ(next(), "") << "position " << i;
        ASSERT_EQ(next(), DASHES_78) << "position " << i;
        ASSERT_EQ(next(), "Pos. " + std::to_string(i) + "/30  " + p.fen + "  depth : 15");
        ASSERT_EQ(next(), DASHES_78) << "position " << i;
        std::string lastDepthLine;
        std::string line;
        while ((line = next()).starts_with("info ")) {
            if (line.starts_with("info depth ")) lastDepthLine = line;
        }
        ASSERT_TRUE(line.starts_with("bestmove ")) << "position " << i << ": " << line;
        ASSERT_TRUE(lastDepthLine.starts_with("info depth 15 "))
            << "position " << i << ": " << lastDepthLine;
        static const std::regex info(" score ((?:cp|mate) -?[0-9]+) nodes ([0-9]+) ");
        std::smatch m;
        ASSERT_TRUE(std::regex_search(lastDepthLine, m, info)) << lastDepthLine;
        searches.push_back({m[1], std::stoull(m[2]), line.substr(9, line.find(' ', 9) - 9)});
    }

    // The summary.
    EXPECT_EQ(next(), "");
    EXPECT_EQ(next(), "Benchmark results for Morvane 4.0.853");
    EXPECT_EQ(next(), "Threads: 1  Hash: 1");
    EXPECT_EQ(next(), "");
    EXPECT_EQ(next(), TABLE_LINE);
    EXPECT_EQ(next(), TABLE_HEADER);
    EXPECT_EQ(next(), TABLE_LINE);

    static const std::regex row(
        "^ #  ([ 0-9]{2})( *[0-9]+)        ( *[0-9]+) ms   ( *[^ ]+)  ( *(?:cp|mate) -?[0-9]+)"
        "    (Yes| No)$");
    uint64_t nodeSum = 0;
    int64_t msSum = 0;
    int solved = 0;
    for (int i = 1; i <= 30; i++) {
        const std::string line = next();
        std::smatch m;
        ASSERT_TRUE(std::regex_match(line, m, row)) << "row " << i << ": [" << line << "]";
        EXPECT_EQ(std::stoi(m[1]), i) << line;
        EXPECT_TRUE(rightAligned(m[2], 13)) << line;
        EXPECT_TRUE(rightAligned(m[3], 7)) << line;
        EXPECT_TRUE(rightAligned(m[4], 5)) << line;
        EXPECT_TRUE(rightAligned(m[5], 8)) << line;

        const SearchSeen& seen = searches[i - 1];
        const uint64_t nodes = std::stoull(m[2]);
        EXPECT_EQ(nodes, seen.nodes) << "row " << i << ": the nodes of the last iteration";
        EXPECT_EQ(trimmed(m[5]), seen.score) << "row " << i << ": the score of the last iteration";

        // The move in SAN lands on the square the bestmove goes to.
        std::string san = trimmed(m[4]);
        if (!san.starts_with("O-O")) {
            std::string target = san.substr(0, san.find_first_of("=+#"));
            ASSERT_GE(target.size(), 2u) << line;
            EXPECT_EQ(target.substr(target.size() - 2), seen.move.substr(2, 2))
                << "row " << i << ": " << san << " against bestmove " << seen.move;
        }
        // Solved when the SAN text occurs in the expected moves.
        const std::string_view expected = BENCH_POSITIONS[i - 1].expected;
        const bool yes = expected.find(san) != std::string_view::npos;
        EXPECT_EQ(m[6], yes ? "Yes" : " No") << "row " << i << ": " << san << " against " << expected;
        nodeSum += nodes;
        msSum += std::stoll(m[3]);
        solved += yes;
    }
    EXPECT_EQ(next(), TABLE_LINE);

    const std::string total = next();
    static const std::regex totalRow(
        "^ Total   ( *[0-9]+)     ( *[0-9]+) ms  ( *[0-9]+) nps  ( *[0-9]+)/30$");
    std::smatch m;
    ASSERT_TRUE(std::regex_match(total, m, totalRow)) << "[" << total << "]";
    EXPECT_TRUE(rightAligned(m[1], 13)) << total;
    EXPECT_TRUE(rightAligned(m[2], 7)) << total;
    EXPECT_TRUE(rightAligned(m[3], 11)) << total;
    EXPECT_TRUE(rightAligned(m[4], 3)) << total;
    const uint64_t totalNodes = std::stoull(m[1]);
    const int64_t elapsed = std::stoll(m[2]);
    EXPECT_EQ(totalNodes, nodeSum);
    EXPECT_GE(elapsed, msSum) << "the wall time covers every search";
    EXPECT_EQ(std::stoull(m[3]), totalNodes * 1000 / uint64_t(elapsed + 1));
    EXPECT_EQ(std::stoi(m[4]), solved);
    // Only the readyok after the total line: nothing was answered while the bench ran.
    EXPECT_EQ(at, out.size() - 1);
    EXPECT_EQ(engine.collectFor(100), Lines{});
}

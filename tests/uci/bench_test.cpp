// The benchmark as a person runs it: 30 fixed positions searched to depth 15, each announced by
// a header and followed by the search's own output, then a table of nodes, time, move, score and
// whether the move was expected, and the totals. One run, checked line by line.
#include <gtest/gtest.h>

#include <cstdint>
#include <regex>

#include "engine_process.h"

namespace {

using Lines = std::vector<std::string>;

struct BenchPosition {
    std::string fen;       // as written in the header, incomplete fields and all
    std::string expected;  // the expected moves in SAN
};

const BenchPosition POSITIONS[30] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq", "d4 e4 Nf3"},
    {"1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1", "Qd1+"},
    {"3r1k2/4npp1/1ppr3p/p6P/P2PPPP1/1NR5/5K2/2R5 w", "d5"},
    {"rnbqkb1r/p3pppp/1p6/2ppP3/3N4/2P5/PPP1QPPP/R1B1KB1R w KQkq", "e6"},
    {"2q1rr1k/3bbnnp/p2p1pp1/2pPp3/PpP1P1P1/1P2BNNP/2BQ1PRK/7R b", "f5"},
    {"r1b2rk1/2q1b1pp/p2ppn2/1p6/3QP3/1BN1B3/PPP3PP/R4RK1 w", "Nd5"},
    {"2r3k1/pppR1pp1/4p3/4P1P1/5P2/1P4K1/P1P5/8 w", "g6"},
    {"1nk1r1r1/pp2n1pp/4p3/q2pPp1N/b1pP1P2/B1P2R2/2P1B1PP/R2Q2K1 w", "Nf6"},
    {"4b3/p3kp2/6p1/3pP2p/2pP1P2/4K1P1/P3N2P/8 w", "f5"},
    {"2kr1bnr/pbpq4/2n1pp2/3p3p/3P1P1B/2N2N1Q/PPP3PP/2KR1B1R w", "f5"},
    {"3rr1k1/pp3pp1/1qn2np1/8/3p4/PP1R1P2/2P1NQPP/R1B3K1 b", "Ne5"},
    {"2r1nrk1/p2q1ppp/bp1p4/n1pPp3/P1P1P3/2PBB1N1/4QPPP/R4RK1 w", "f4"},
    {"r3r1k1/ppqb1ppp/8/4p1NQ/8/2P5/PP3PPP/R3R1K1 b", "Bf5"},
    {"r2q1rk1/4bppp/p2p4/2pP4/3pP3/3Q4/PP1B1PPP/R3R1K1 w", "b4"},
    {"rnb2r1k/pp2p2p/2pp2p1/q2P1p2/8/1Pb2NP1/PB2PPBP/R2Q1RK1 w", "Qd2 Qe1"},
    {"2r3k1/1p2q1pp/2b1pr2/p1pp4/6Q1/1P1PP1R1/P1PN2PP/5RK1 w", "Qxg7+"},
    {"r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 b", "h5"},
    {"r1bq1rk1/pp2ppbp/2np2p1/2n5/P3PP2/N1P2N2/1PB3PP/R1B1QRK1 b", "Nb3"},
    {"3rr3/2pq2pk/p2p1pnp/8/2QBPP2/1P6/P5PP/4RRK1 b", "Rxe4"},
    {"r4k2/pb2bp1r/1p1qp2p/3pNp2/3P1P2/2N3P1/PPP1Q2P/2KRR3 w", "g4"},
    {"3rn2k/ppb2rpp/2ppqp2/5N2/2P1P3/1P5Q/PB3PPP/3RR1K1 w", "Nh6"},
    {"2r2rk1/1bqnbpp1/1p1ppn1p/pP6/N1P1P3/P2B1N1P/1B2QPP1/R2R2K1 b", "Bxe4"},
    {"r1bqk2r/pp2bppp/2p5/3pP3/P2Q1P2/2N1B3/1PP3PP/R4RK1 b kq", "f6"},
    {"r2qnrnk/p2b2b1/1p1p2pp/2pPpp2/1PP1P3/PRNBB3/3QNPPP/5RK1 w", "f4"},
    {"4k3/5b1p/7r/8/1B6/R7/1P6/3K4 w", "Ra8+"},
    {"8/1B4k1/5pn1/6N1/1P3rb1/P1K4p/3R4/8 w", "Nxh3"},
    {"k2K4/1p4pN/P7/1p3P2/pP6/8/8/8 w", "f6 Kc7"},
    {"8/1p3p2/p7/8/2k5/4P1pP/2P1K1P1/8 w", "h4"},
    {"6k1/1p2p1bp/p5p1/4pb2/1q6/4Q3/1P2BPPP/2R3K1 w", "Qa3"},
    {"8/p5pp/3k1p2/3p4/1P3P2/P1K5/5P1P/8 b", "g5"},
};

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
        const BenchPosition& p = POSITIONS[i - 1];
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
        const bool yes = POSITIONS[i - 1].expected.find(san) != std::string::npos;
        EXPECT_EQ(m[6], yes ? "Yes" : " No")
            << "row " << i << ": " << san << " against " << POSITIONS[i - 1].expected;
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

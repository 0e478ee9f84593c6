// The perft and divide commands as printed on the console: node counts with "." grouping in
// fixed columns, moves in algebraic notation with check and mate marks. Timings vary, so only
// their shape is checked.
#include <gtest/gtest.h>

#include <iomanip>
#include <regex>
#include <sstream>

#include "engine_process.h"
#include "game_view.h"

namespace {

using Lines = std::vector<std::string>;

const std::regex SECONDS_AND_END(R"([0-9]+(\.[0-9]+)? sec)");
const std::regex PERFT_SUMMARY(R"( Perft 1 - [0-9]+ executed in [0-9]+(\.[0-9]+)? sec  \()"
                               R"([0-9]+(\.[0-9]+)?(e\+[0-9]+)? Mnps\))");
const std::regex DIVIDE_TOTAL(
    R"(Total Nodes of [0-9]+ moves : [0-9.]+, Time : [0-9]+(\.[0-9]+)? sec)");

// Checks a perft reply against the node counts of depths 1..N, as grouped text.
void expectPerftTable(const Lines& reply, const Lines& groupedCounts, const std::string& context) {
    ASSERT_EQ(reply.size(), groupedCounts.size() + 3) << context;
    EXPECT_EQ(reply[0], "perft        Nodes    Time") << context;
    for (size_t d = 1; d <= groupedCounts.size(); d++) {
        std::ostringstream fixedPart;
        fixedPart << "  " << d << std::setw(15) << groupedCounts[d - 1] << "    ";
        const std::string& row = reply[d];
        ASSERT_TRUE(row.starts_with(fixedPart.str())) << context << ": " << row;
        EXPECT_TRUE(std::regex_match(row.substr(fixedPart.str().size()), SECONDS_AND_END))
            << context << ": " << row;
    }
    EXPECT_EQ(reply[reply.size() - 2], "") << context;
    std::string summary = reply.back();
    EXPECT_TRUE(std::regex_match(summary, PERFT_SUMMARY)) << context << ": " << summary;
    EXPECT_TRUE(summary.starts_with(" Perft 1 - " + std::to_string(groupedCounts.size()) + " "))
        << summary;
}

// Checks a divide reply: the rows exactly, the total line up to its timing.
void expectDivideTable(const Lines& reply, const Lines& rows, const std::string& total) {
    Lines expected = {"move   divide #   ", "------------------"};
    expected.insert(expected.end(), rows.begin(), rows.end());
    expected.push_back("------------------");
    ASSERT_EQ(reply.size(), expected.size() + 1);
    EXPECT_EQ(Lines(reply.begin(), reply.end() - 1), expected);
    EXPECT_TRUE(reply.back().starts_with(total + ", Time : ")) << reply.back();
    EXPECT_TRUE(std::regex_match(reply.back(), DIVIDE_TOTAL)) << reply.back();
}

}  // namespace

TEST(PerftCommand, StartPositionToDepthFive) {
    EngineProcess engine;
    engine.expectBanner();
    expectPerftTable(engine.command("perft 5"), {"20", "400", "8.902", "197.281", "4.865.609"},
                     "perft 5");
    // Counting leaves the game as it was.
    EXPECT_EQ(printedGame(engine).moves, "");
}

// The count column is depth + 4 wide, so grouped counts line up.
TEST(PerftCommand, DivideFourFromStart) {
    EngineProcess engine;
    engine.expectBanner();
    expectDivideTable(engine.command("divide 4"),
                      {"a3        8.457", "b3        9.345", "c3        9.272", "d3       11.959",
                       "e3       13.134", "f3        8.457", "g3        9.345", "h3        8.457",
                       "a4        9.329", "b4        9.332", "c4        9.744", "d4       12.435",
                       "e4       13.160", "f4        8.929", "g4        9.328", "h4        9.329",
                       "Na3       8.885", "Nc3       9.755", "Nf3       9.748", "Nh3       8.881"},
                      "Total Nodes of 20 moves : 197.281");
}

// Move names in the divide list (the names themselves are the notation's own test) and the
// positions where few or no moves are counted.
TEST(PerftCommand, DivideNamesMoves) {
    struct Case {
        std::string setup;
        std::string command;
        Lines rows;
        std::string total;
    };
    const Case cases[] = {
        {"position fen 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1",
         "divide 2",
         {"Kf1         8", "Kh1         8", "Kf2         8", "Kg2         8", "Kh2         8",
          "Rb1         8", "Rc1         8", "Rd1         8", "Re1         8", "Rf1         8",
          "Ra2         8", "Ra3         8", "Ra4         8", "Ra5         8", "Ra6         8",
          "Ra7         8", "Ra8#        0"},
         "Total Nodes of 17 moves : 128"},
        // In check only the evasions are counted.
        {"position startpos moves e2e4 f7f6 d1h5",
         "divide 1",
         {"g6         0"},
         "Total Nodes of 1 moves : 0"},
        // Mated or stalemated: no move at all.
        {"position startpos moves f2f3 e7e5 g2g4 d8h4",
         "divide 3",
         {},
         "Total Nodes of 0 moves : 0"},
        {"position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "divide 2", {}, "Total Nodes of 0 moves : 0"},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.setup);
        ASSERT_EQ(engine.command(c.setup), Lines{});
        const GameView before = printedGame(engine);
        expectDivideTable(engine.command(c.command), c.rows, c.total);
        EXPECT_EQ(printedGame(engine), before);
    }
}

TEST(PerftCommand, ArgumentHandling) {
    struct Case {
        std::string line;
        Lines counts;  // empty: the usage line is expected
    };
    const Case cases[] = {
        {"perft", {}},
        {"perft 0", {}},
        {"perft abc", {}},
        {"perft  1", {}},  // two blanks: the argument word is empty
        {"perft 2x", {"20", "400"}},
        {"perft 1 extra", {"20"}},
        {"perft 1   ", {"20"}},
        {"divide", {}},
        {"divide 0", {}},
        {"divide four", {}},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        Lines reply = engine.command(c.line);
        bool isDivide = c.line.starts_with("divide");
        if (c.counts.empty())
            EXPECT_EQ(reply, Lines{isDivide ? "usage: divide <depth>" : "usage: perft <depth>"})
                << c.line;
        else
            expectPerftTable(reply, c.counts, c.line);
    }
}

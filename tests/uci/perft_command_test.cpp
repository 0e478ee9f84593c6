// The perft and divide tables as printed; the counts are the move generator's own test, and
// timings vary, so only their shape is checked.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "game_view.h"

namespace {

const std::string SECONDS = " [0-9]+(\\.[0-9]+)? sec";
std::string perftRow(const std::string& fixed) { return "~" + fixed + "  " + SECONDS; }
std::string perftSummary(int depth) {
    return "~ Perft 1 - " + std::to_string(depth) + " executed in" + SECONDS +
           "  \\([0-9]+(\\.[0-9]+)?(e\\+[0-9]+)? Mnps\\)";
}
// The divide table: a head, a row per move and the total.
Lines divide(const Lines& rows, const std::string& total) {
    Lines all = {"move   divide #   ", "------------------"};
    all.insert(all.end(), rows.begin(), rows.end());
    all.insert(all.end(),
               {"------------------", "~Total Nodes of " + total + ", Time :" + SECONDS});
    return all;
}

}  // namespace

TEST(PerftCommand, TablesAndArguments) {
    const std::string PERFT = "perft        Nodes    Time";
    EngineProcess engine;
    engine.expectBanner();
    expectTranscript(
        engine,
        {
            {{"perft 5"},
             {PERFT, perftRow("  1             20 "), perftRow("  2            400 "),
              perftRow("  3          8.902 "), perftRow("  4        197.281 "),
              perftRow("  5      4.865.609 "), "", perftSummary(5)}},
            {{"perft 2x"},
             {PERFT, perftRow("  1             20 "), perftRow("  2            400 "), "",
              perftSummary(2)}},
            {{"perft 1 extra"}, {PERFT, perftRow("  1             20 "), "", perftSummary(1)}},
            {{"perft", "perft 0", "perft abc", "perft  1"},  // two blanks: an empty argument
             Lines(4, "usage: perft <depth>")},
            {{"divide", "divide 0", "divide four"}, Lines(3, "usage: divide <depth>")},
            // The count column is depth + 4 wide.
            {{"position fen 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "divide 2"},
             divide({"Kf1         8", "Kh1         8", "Kf2         8", "Kg2         8",
                     "Kh2         8", "Rb1         8", "Rc1         8", "Rd1         8",
                     "Re1         8", "Rf1         8", "Ra2         8", "Ra3         8",
                     "Ra4         8", "Ra5         8", "Ra6         8", "Ra7         8",
                     "Ra8#        0"},
                    "17 moves : 128")},
            // In check only the evasions count; without a legal move, nothing.
            {{"position startpos moves e2e4 f7f6 d1h5", "divide 1"},
             divide({"g6         0"}, "1 moves : 0")},
            {{"position startpos moves f2f3 e7e5 g2g4 d8h4", "divide 3"},
             divide({}, "0 moves : 0")},
        },
        20000);
    EXPECT_EQ(printedGame(engine).moves, "f2f3 e7e5 g2g4 d8h4") << "counting leaves the game";
}

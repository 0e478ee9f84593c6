// The gauntlet's resume step: a PGN left by an interrupted run is cut back to the whole pairs of
// the first openings, so that the rerun's start opening (games kept / 2) is the right one.
#include <gtest/gtest.h>

#include "scratch_directory.h"
#include "tool_run.h"

namespace {

const std::string SCRIPT = std::string(MORVANE_DATA_DIR) + "/../src/tools/gauntlet/complete_pairs.py";

// The opening file lists an en-passant square for opening 0 that the engines' FEN leaves out.
const std::vector<std::string> OPENINGS = {
    "r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R w KQ d6",
    "4k3/8/8/8/8/8/4P3/4K3 w - -",
    "4k3/8/8/8/8/8/3P4/4K3 w - -",
};
const std::string FENS[3] = {
    "r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R w KQ - 0 1",
    "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1",
    "4k3/8/8/8/8/8/3P4/4K3 w - - 0 1",
};

std::string gameFrom(const std::string& fen, const std::string& white) {
    return "[Event \"Morvane gauntlet\"]\n[White \"" + white + "\"]\n[Result \"1/2-1/2\"]\n[FEN \"" +
           fen + "\"]\n\n1. Kf2 1/2-1/2\n\n";
}

std::string game(int opening, const std::string& white) { return gameFrom(FENS[opening], white); }

}  // namespace

TEST(GauntletResume, KeepsOnlyTheWholePairsOfTheFirstOpenings) {
    if (runTool("python3 --version").status != 0) GTEST_SKIP() << "python3 is not installed";
    const std::string A = game(0, "Morvane"), B = game(0, "X"), C = game(1, "X"), D = game(2, "Morvane"),
                      E = game(2, "X");
    struct Case {
        const char* what;
        std::string before, after;
    } cases[] = {
        {"all pairs whole", A + B + C + game(1, "Morvane"), A + B + C + game(1, "Morvane")},
        {"a lone game last", A + B + C, A + B},
        // Written out of order: opening 1 lost a game while opening 2 finished both.
        {"a lone game before a whole pair", A + C + D + B + E, A + B},
        {"nothing whole", C, ""},
    };
    for (const Case& c : cases) {
        ScratchDirectory dir;
        const std::string pgn = dir.write("games.pgn", c.before);
        const std::string epd = dir.writeLines("openings.epd", OPENINGS);
        ToolRun run = runTool("python3 " + SCRIPT + " " + pgn + " " + epd);
        EXPECT_EQ(run.status, 0) << c.what << ": " << run.output;
        EXPECT_EQ(dir.read("games.pgn"), c.after) << c.what;
    }
}

// A game without a FEN, or from a position the opening file lacks, is not a game of this run.
TEST(GauntletResume, LeavesAFileWithAForeignGameAsItIs) {
    if (runTool("python3 --version").status != 0) GTEST_SKIP() << "python3 is not installed";
    const std::string foreign = "[Event \"x\"]\n[Result \"1-0\"]\n\n1. e4 1-0\n\n";
    const std::string stray = gameFrom("4k3/8/8/8/8/8/5P2/4K3 w - - 0 1", "X");
    for (const std::string& odd : {foreign, stray}) {
        ScratchDirectory dir;
        const std::string before = game(0, "Morvane") + odd + game(1, "X");
        const std::string pgn = dir.write("games.pgn", before);
        const std::string epd = dir.writeLines("openings.epd", OPENINGS);
        ToolRun run = runTool("python3 " + SCRIPT + " " + pgn + " " + epd);
        EXPECT_NE(run.status, 0);
        EXPECT_NE(run.output.find("game 2 does not start from an opening of"), std::string::npos) << run.output;
        EXPECT_EQ(dir.read("games.pgn"), before);
    }
}

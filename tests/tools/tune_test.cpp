// morvane-tune: games read back from PGN as the match runner writes it, quiet positions taken
// from them and labelled by searches, and the diagrams of the piece-square tables written back
// unchanged.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/notation.h"
#include "eval/weights.h"
#include "scratch_directory.h"
#include "tools/tune/pgn_games.h"
#include "tools/tune/position_labels.h"
#include "tools/tune/psqt_source.h"
#include "tools/tune/quiet_positions.h"

TEST(Tune, ReadsGamesAndTheirQuietPositions) {
    const std::string pgn =
        "[Event \"?\"]\n[Result \"1-0\"]\n\n"
        "1. e4 {+0.30/12 0.10s} e5 2. Nf3 {a comment\nover two lines} Nc6 3. Bb5 a6\n"
        "4. Bxc6 dxc6 1-0\n\n"
        "[Event \"?\"]\n[Result \"*\"]\n\n1. d4 *\n\n"
        "[Event \"?\"]\n[FEN \"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1\"]\n[Result \"1/2-1/2\"]\n\n"
        "1. e4 Kd7 2. Ke9 Kc6 1/2-1/2\n";
    std::istringstream in(pgn);
    std::vector<PgnGame> games;
    int skipped = readPgnGames(in, [&](const PgnGame& g) { games.push_back(g); });
    EXPECT_EQ(skipped, 1);  // the unfinished game
    ASSERT_EQ(games.size(), 2u);
    EXPECT_EQ(games[0].whiteScore, 1);
    ASSERT_EQ(games[0].moves.size(), 8u);
    EXPECT_EQ(moveToUci(games[0].moves[6]), "b5c6");
    EXPECT_EQ(games[1].whiteScore, 0.5);
    EXPECT_EQ(games[1].moves.size(), 2u);  // up to the move that is not legal

    // From ply 6: after 3... a6 nothing wins material; after 4. Bxc6 Black takes back, and
    // after dxc6 Nxe5 wins a pawn.
    std::vector<std::string> quiet;
    forEachQuietPosition(games[0], 6, [&](const std::string& fen) { quiet.push_back(fen); });
    EXPECT_EQ(quiet, std::vector<std::string>{
                         "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -"});
}

// Today's tables written into a copy of their source give the same file, byte for byte.
TEST(Tune, DiagramsWrittenBackUnchanged) {
    namespace fs = std::filesystem;
    const fs::path source = fs::path(MORVANE_DATA_DIR) / ".." / "src" / "eval" / "psqt.cpp";
    const fs::path copy = fs::temp_directory_path() / ("psqt-" + std::to_string(getpid()) + ".cpp");
    fs::copy_file(source, copy, fs::copy_options::overwrite_existing);
    ResetWeights();
    RecomputeDerived();
    PieceSquareValues values{};
    for (int type = PAWN; type <= KING; type++)
        for (int sq = 0; sq < 64; sq++) {
            values.value[type - PAWN][sq][0] = evalTables.psq[makePiece(White, type)][sq].mg();
            values.value[type - PAWN][sq][1] = evalTables.psq[makePiece(White, type)][sq].eg();
        }
    EXPECT_EQ(writeDiagrams(copy.string(), values), "");
    auto text = [](const fs::path& p) {
        std::ifstream in(p);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    EXPECT_EQ(text(copy), text(source));
    values.value[KNIGHT - PAWN][makeSquare(3, 3)][0] = 123;  // d4, between c4 and e4
    writeDiagrams(copy.string(), values);
    char row[32];
    std::snprintf(row, sizeof row, " %3d, 123, %3d,",
                  values.value[KNIGHT - PAWN][makeSquare(2, 3)][0],
                  values.value[KNIGHT - PAWN][makeSquare(4, 3)][0]);
    EXPECT_NE(text(copy).find(row), std::string::npos) << row;
    fs::remove(copy);
}

// Labels are White's scores; a run started again keeps the whole lines a stopped run wrote and
// refuses a file that labels other positions, leaving it as it was.
TEST(Tune, LabelsGoOnWhereAStoppedRunEnded) {
    const std::vector<std::string> positions = {
        "4k3/8/8/8/8/8/8/3QK3 b - -;1",  // Black to move, White a queen up
        "3qk3/8/8/8/8/8/8/4K3 w - -;0",  // White to move, Black a queen up
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -;0.5",
    };
    auto searched = [](size_t i, int score) {
        return i == 0 ? score > 500 : i == 1 ? score < -500 : std::abs(score) < 100;
    };
    struct Case {
        const char* name;
        std::string before;  // the labelled file before the run ("" when there is none)
        bool accepted;
        size_t kept;  // whole lines of `before` left as they were
    };
    const std::string other = "8/8/8/8/8/8/8/K6k w - -;0.5;0\n";
    const Case cases[] = {
        {"fresh", "", true, 0},
        {"cut mid-line", positions[0] + ";777\n" + positions[1] + ";-3", true, 1},
        {"finished", positions[0] + ";777\n" + positions[1] + ";-9\n" + positions[2] + ";5\n", true,
         3},
        {"other positions", other, false, 0},
        {"one line too many",
         positions[0] + ";1\n" + positions[1] + ";-1\n" + positions[2] + ";0\n" + other, false, 0},
    };
    ResetWeights();
    RecomputeDerived();
    for (const Case& c : cases) {
        ScratchDirectory dir;
        const std::string in = dir.writeLines("positions.txt", positions);
        const std::string out = (dir.path / "labelled.txt").string();
        if (!c.before.empty()) dir.write("labelled.txt", c.before);
        std::string error = labelPositions(in, out, 4, 2, [](size_t) {});
        const std::string after = dir.read("labelled.txt");
        EXPECT_EQ(error.empty(), c.accepted) << c.name << ": " << error;
        if (!c.accepted) {
            EXPECT_EQ(after, c.before) << c.name;
            continue;
        }
        size_t keptBytes = 0;
        for (size_t k = 0; k < c.kept; k++) keptBytes = c.before.find('\n', keptBytes) + 1;
        EXPECT_EQ(after.substr(0, keptBytes), c.before.substr(0, keptBytes)) << c.name;
        std::istringstream text(after);
        size_t i = 0;
        for (std::string line; std::getline(text, line); i++) {
            ASSERT_LT(i, positions.size()) << c.name;
            const size_t scoreAt = line.rfind(';') + 1;
            ASSERT_EQ(line.substr(0, scoreAt), positions[i] + ';') << c.name << ": " << line;
            if (i >= c.kept) {
                EXPECT_TRUE(searched(i, std::stoi(line.substr(scoreAt)))) << c.name << ": " << line;
            }
        }
        EXPECT_EQ(i, positions.size()) << c.name;
    }
}

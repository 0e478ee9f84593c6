// The evaluation is colour- and left-right symmetric: the evaltest report over random games from
// the bench positions, and flips and flops of opening positions played on toward the end game.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "core/board.h"
#include "core/movegen.h"
#include "eval/evaluator.h"
#include "tools/evaltest.h"

namespace {

// The opening's placement and side to move, without castling rights so that a flop applies.
std::string withoutCastling(const std::string& epd) {
    std::istringstream in(epd);
    std::string placement, side;
    in >> placement >> side;
    return placement + " " + side + " - - 0 1";
}

}  // namespace

// The tool's own check over random games from the bench positions.
TEST(EvalTest, ReportsNoErrors) {
    Board board;
    Evaluator evaluator(board);
    std::vector<std::string> report = evalTest(board, evaluator);
    ASSERT_EQ(report.size(), 2u);
    EXPECT_GT(std::stoi(report[0].substr(10)), 2500) << report[0];
    EXPECT_EQ(report[1], "evaltest finished with 0 errors");
}

// Openings played on at random for up to 80 plies, checked every 8 plies: from full boards
// through piece endings to bare pawn endings.
TEST(EvalTest, FlipAndFlopKeepTheScore) {
    std::ifstream in(MORVANE_DATA_DIR "/openings.epd");
    ASSERT_TRUE(in.good());
    std::mt19937 random(20191005);
    Board board, mirror;
    Evaluator evaluator(board), mirrorEvaluator(mirror);
    MoveList list;
    int checked = 0, endgames = 0;
    std::string line;
    for (int opening = 0; opening < 600 && std::getline(in, line); opening++) {
        ASSERT_EQ(board.setFen(withoutCastling(line)), 0) << line;
        for (int ply = 0; ply <= 80; ply++) {
            if (ply % 8 == 0 && !board.inCheck()) {
                std::string fen = board.getFen();
                int score = evaluator.Evaluate();
                ASSERT_EQ(mirror.setFen(fen), 0);
                mirror.flip();
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score) << "flip of " << fen;
                ASSERT_TRUE(mirror.flop());
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score) << "flop of the flip of " << fen;
                mirror.flip();
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score) << "flop of " << fen;
                checked++;
                endgames += board.nonPawnCount[White] + board.nonPawnCount[Black] <= 2;
            }
            generateAll(board, list);
            if (list.count == 0 || board.stateIndex() > 200) break;
            // Captures first when there are any, so that the material comes off.
            Move move = list.moves[random() % list.count];
            if (moveCaptured(list.moves[0]) && random() % 2) move = list.moves[0];
            board.makeMove(move);
        }
    }
    EXPECT_GT(checked, 4000);
    EXPECT_GT(endgames, 300);
}

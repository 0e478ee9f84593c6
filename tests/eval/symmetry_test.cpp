// The evaluation is colour- and left-right symmetric.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "../core/test_positions.h"
#include "core/board.h"
#include "core/movegen.h"
#include "eval/evaluator.h"
#include "tools/evaltest.h"

// Openings (without castling rights, so that a flop applies) played on at random toward the
// end game: flip, flop and both keep the score.
TEST(EvalTest, FlipAndFlopKeepTheScore) {
    std::mt19937 random(20191005);
    Board board, mirror;
    Evaluator evaluator(board), mirrorEvaluator(mirror);
    MoveList list;
    int checked = 0, endgames = 0;
    for (size_t i = 0; i < 600; i++) {
        std::istringstream in(coretest::openingFens()[i]);
        std::string placement, side;
        in >> placement >> side;
        ASSERT_EQ(board.setFen(placement + " " + side + " - - 0 1"), 0) << placement;
        for (int ply = 0; ply <= 80; ply++) {
            if (ply % 8 == 0 && !board.inCheck()) {
                const int score = evaluator.Evaluate();
                ASSERT_EQ(mirror.setFen(board.getFen()), 0);
                mirror.flip();
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score) << "flip of " << board.getFen();
                ASSERT_TRUE(mirror.flop());
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score)
                    << "flip and flop of " << board.getFen();
                mirror.flip();
                EXPECT_EQ(mirrorEvaluator.Evaluate(), score) << "flop of " << board.getFen();
                checked++;
                endgames += board.nonPawnCount[White] + board.nonPawnCount[Black] <= 2;
            }
            generateAll(board, list);
            if (list.count == 0 || board.stateIndex() > 200) break;
            Move move = list.moves[random() % list.count];
            if (moveCaptured(list.moves[0]) && random() % 2) move = list.moves[0];
            board.makeMove(move);
        }
    }
    EXPECT_GT(checked, 4000);
    EXPECT_GT(endgames, 300);
}

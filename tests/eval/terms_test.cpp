// The evaluation terms make chess sense: of two positions that differ in one feature, the one
// with the better feature scores higher for White (both with White to move).
#include <gtest/gtest.h>

#include "core/board.h"
#include "eval/evaluator.h"

namespace {

struct Pair {
    const char* feature;
    const char* better;
    const char* worse;
};

// clang-format off
const Pair PAIRS[] = {
    {"passed pawn one rank further", "r5k1/8/3P4/8/8/8/8/R5K1 w - - 0 1",
     "r5k1/8/8/3P4/8/8/8/R5K1 w - - 0 1"},
    {"intact king shelter", "r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 0 1",
     "r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P1P1/2NP1N2/PPP2P1P/R1BQ1RK1 w - - 0 1"},
    {"rook on an open file", "4k3/pp3ppp/8/8/8/8/PP3PPP/3R2K1 w - - 0 1",
     "4k3/pp3ppp/8/8/8/8/PP3PPP/5RK1 w - - 0 1"},
    {"bishop not trapped on a7", "r3k3/5ppp/1p6/8/8/4B3/5PPP/4K3 w - - 0 1",
     "r3k3/B4ppp/1p6/8/8/8/5PPP/4K3 w - - 0 1"},
    {"rook on the seventh", "6k1/pR3ppp/8/8/8/8/5PPP/6K1 b - - 0 1",
     "6k1/p4ppp/8/8/8/8/1R3PPP/6K1 b - - 0 1"},
    {"lone king in the bishop's corner", "7k/8/5K2/8/8/8/8/2B1N3 w - - 0 1",
     "k7/8/2K5/8/8/8/8/2B1N3 w - - 0 1"},
    {"enemy king under attack", "r1b2rk1/pppp1ppp/2n5/4q3/8/8/PPP2PPP/R1B1KBNR w - - 0 1",
     "r1b2rk1/pppp1ppp/2n5/4q3/8/8/PPP2PPP/R1B1K1NR w - - 0 1"},
};
// clang-format on

// White's view of the position.
int whiteScore(const char* fen) {
    Board board;
    Evaluator evaluator(board);
    EXPECT_EQ(board.setFen(fen), 0) << fen;
    int score = evaluator.Evaluate();
    return board.sideToMove == White ? score : -score;
}

}  // namespace

TEST(EvaluationTerms, OneBetterFeatureScoresHigher) {
    for (const Pair& p : PAIRS) EXPECT_GT(whiteScore(p.better), whiteScore(p.worse)) << p.feature;
}

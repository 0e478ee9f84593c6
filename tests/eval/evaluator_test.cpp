// The evaluation driver: phase, scale, side-to-move bonus and the evaluation cache.
#include "eval/evaluator.h"

#include <gtest/gtest.h>

#include "core/board.h"

namespace {

constexpr int TEMPO = 31;  // the side-to-move bonus with the default weights, at any phase

}  // namespace

// The phase runs from 64 (full material, and above) down to 0 (13 points and below); endings are
// scaled toward a draw. A symmetric position is worth the side-to-move bonus alone. A cached
// answer adds the bonus unscaled: it equals the fresh one unless the ending is scaled, and then
// differs by exactly T - s * T / 128.
TEST(Evaluator, PhaseScaleBonusAndTheCachedAnswer) {
    const struct {
        const char* fen;
        int phase, scale, score;  // score: 0 when not symmetric
    } cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1", 64, 128, TEMPO},
        {"rnbqkbnr/8/8/8/8/8/8/QQQQKQQQ w - - 0 1", 64, 128, 0},
        {"4k3/pppp4/8/8/8/8/PPPP4/4K3 b - - 0 1", 0, 128, TEMPO},
        {"4k3/3b1ppp/8/8/8/8/3B1PPP/4K3 w - - 0 1", 0, 12, 0},  // bishops of opposite colours
        {"4k2r/8/8/8/8/8/8/1BN1K3 w - - 0 1", 0, 64, 0},        // no pawns, material close
        {"4k3/8/8/8/8/8/4P3/1N2K1n1 w - - 0 1", 0, 32, 0},      // defending king on the path
    };
    for (const auto& c : cases) {
        Board board;
        Evaluator evaluator(board);
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        int fresh = evaluator.Evaluate();
        EXPECT_EQ(evaluator.lastPhase(), c.phase) << c.fen;
        EXPECT_EQ(evaluator.lastScale(), c.scale) << c.fen;
        if (c.score) {
            EXPECT_EQ(fresh, c.score) << c.fen;
        }
        EXPECT_EQ(evaluator.Evaluate() - fresh, TEMPO - c.scale * TEMPO / 128) << c.fen;
        EXPECT_EQ(evaluator.evalCounters.hits, 1u);
    }
}

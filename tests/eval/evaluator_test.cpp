// The evaluation driver: phase, scale, side-to-move bonus, the evaluation cache and its memory.
#include "eval/evaluator.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <vector>

#include "core/board.h"

namespace {

constexpr int TEMPO = 31;  // the side-to-move bonus with the default weights, at any phase

long residentBytes() {
    std::ifstream statm("/proc/self/statm");
    long size = 0, resident = 0;
    statm >> size >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

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

// With a piece on each side one cache entry serves both sides to move and any en-passant square;
// with only pawns on one side the side to move is part of the key.
TEST(Evaluator, OneEntryServesBothSidesWhenBothHavePieces) {
    const std::string pieces = "r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R ";
    const std::string rookOnly = "4k3/pp3ppp/8/8/8/8/PP3PPP/3R2K1 ";
    const std::string ep = "rnbqkbnr/ppp1pppp/8/8/2Pp4/8/PP1PPPPP/RNBQKBNR b KQkq ";
    const struct {
        std::string first, second;
        bool shared;
    } cases[] = {{pieces + "w - - 0 1", pieces + "b - - 0 1", true},
                 {rookOnly + "w - - 0 1", rookOnly + "b - - 0 1", false},
                 {ep + "c3 0 1", ep + "- 0 1", true}};
    for (const auto& c : cases) {
        Board board, fresh;
        Evaluator evaluator(board), freshEvaluator(fresh);
        ASSERT_EQ(board.setFen(c.first), 0);
        evaluator.Evaluate();
        ASSERT_EQ(board.setFen(c.second), 0);
        ASSERT_EQ(fresh.setFen(c.second), 0);
        EXPECT_EQ(evaluator.Evaluate(), freshEvaluator.Evaluate()) << c.second;
        EXPECT_EQ(evaluator.evalCounters.hits, c.shared ? 1u : 0u) << c.second;
    }
}

// Many search threads each own an Evaluator; building one must not touch its 71 MB of caches.
TEST(Evaluator, ConstructionTakesNoCacheMemory) {
    long before = residentBytes();
    std::vector<std::unique_ptr<Evaluator>> evaluators;
    Board board;
    for (int i = 0; i < 16; i++) evaluators.push_back(std::make_unique<Evaluator>(board));
    EXPECT_LT(residentBytes() - before, 16L << 20);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(evaluators[3].get()) % 64, 0u);
}

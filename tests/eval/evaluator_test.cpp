// The evaluation driver: phase, side-to-move bonus, the three caches and their memory.
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

// The same FEN with the other side to move (no castling or en-passant fields involved).
std::string otherSide(std::string fen) {
    size_t at = fen.find(' ');
    fen[at + 1] = fen[at + 1] == 'w' ? 'b' : 'w';
    return fen;
}

}  // namespace

TEST(Evaluator, PhaseRunsFromFullMiddleGameToBareKings) {
    struct Case {
        const char* fen;
        int phase;
    };
    const Case cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 64},
        {"r1bqk2r/pppp1ppp/2n2n2/8/8/2N2N2/PPPP1PPP/R1BQK2R w KQkq - 0 1", 56},
        {"4k3/pppp4/8/8/8/8/PPPP4/R3K3 w - - 0 1", 0},  // 13 points: below the scale
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", 0},
        {"rnbqkbnr/8/8/8/8/8/8/QQQQKQQQ w - - 0 1", 64},  // above the scale
    };
    Board board;
    Evaluator evaluator(board);
    for (const Case& c : cases) {
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        evaluator.Evaluate();
        EXPECT_EQ(evaluator.lastPhase(), c.phase) << c.fen;
    }
}

// A position and its colour mirror score alike, so a symmetric position is worth exactly the
// side-to-move bonus to either side.
TEST(Evaluator, SymmetricPositionIsWorthTheBonus) {
    Board board;
    Evaluator evaluator(board);
    for (const char* fen : {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                            "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1",
                            "4k3/pppp4/8/8/8/8/PPPP4/4K3 b - - 0 1"}) {
        ASSERT_EQ(board.setFen(fen), 0);
        EXPECT_EQ(evaluator.Evaluate(), TEMPO) << fen;
    }
}

// A cached answer adds the bonus unscaled: it equals the fresh one unless the ending is scaled,
// and then differs by exactly T - s * T / 128.
TEST(Evaluator, CachedAnswerDiffersOnlyInScaledEndings) {
    struct Case {
        const char* fen;
        int scale;
    };
    const Case cases[] = {
        {"r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R w KQ - 0 1", 128},
        {"6k1/5ppp/8/3P4/8/8/5PPP/6K1 b - - 0 1", 128},
        {"4k3/3b1ppp/8/8/8/8/3B1PPP/4K3 w - - 0 1", 12},  // bishops of opposite colours
        {"4k3/2b2ppp/8/8/8/8/3B1PPP/4K3 w - - 0 1", 64},  // same colours, pawns even
        {"4k3/2b2ppp/8/8/8/8/3B2PP/4K3 b - - 0 1", 115},  // same colours, one pawn more
        {"4k3/3b1pp1/8/8/8/8/3B1PPP/4K3 w - - 0 1", 12},  // opposite colours, one pawn more
        {"4k2r/8/8/8/8/8/8/1BN1K3 w - - 0 1", 64},        // no pawns, material close
        {"4k3/8/8/8/8/8/4P3/1N2K1n1 w - - 0 1", 32},      // defending king on the path
        {"8/8/8/8/8/1k6/4P3/1N2K1n1 w - - 0 1", 64},      // pawn not yet advanced
        {"8/k3P3/8/8/8/8/8/1N2K1n1 w - - 0 1", 128},      // pawn out of reach
    };
    for (const Case& c : cases) {
        Board board;
        Evaluator evaluator(board);
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        int fresh = evaluator.Evaluate();
        EXPECT_EQ(evaluator.lastScale(), c.scale) << c.fen;
        int cached = evaluator.Evaluate();
        EXPECT_EQ(evaluator.evalCounters.hits, 1u);
        EXPECT_EQ(cached - fresh, TEMPO - c.scale * TEMPO / 128) << c.fen;
    }
}

// With a piece on each side one entry serves both sides to move and ignores the en-passant
// square; with only pawns on one side the side to move is part of the key.
TEST(Evaluator, OneEntryServesBothSidesWhenBothHavePieces) {
    const char* shared[] = {
        "r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R w - - 0 1",
        "4k3/pp3ppp/8/8/8/8/PP3PPP/3R2K1 w - - 0 1",  // a rook against pawns only: separate
    };
    for (int i = 0; i < 2; i++) {
        Board board;
        Evaluator evaluator(board);
        ASSERT_EQ(board.setFen(shared[i]), 0);
        int white = evaluator.Evaluate();
        ASSERT_EQ(board.setFen(otherSide(shared[i])), 0);
        int black = evaluator.Evaluate();
        EXPECT_EQ(evaluator.evalCounters.hits, i == 0 ? 1u : 0u) << shared[i];

        Board fresh;
        Evaluator freshEvaluator(fresh);
        ASSERT_EQ(fresh.setFen(otherSide(shared[i])), 0);
        EXPECT_EQ(black, freshEvaluator.Evaluate()) << shared[i];
        if (i == 0) {
            EXPECT_EQ(white + black, 2 * TEMPO);
        }
    }

    Board board;
    Evaluator evaluator(board);
    ASSERT_EQ(board.setFen("rnbqkbnr/ppp1pppp/8/8/2Pp4/8/PP1PPPPP/RNBQKBNR b KQkq c3 0 1"), 0);
    ASSERT_EQ(board.state().epSquare, 18u);
    int withEp = evaluator.Evaluate();
    ASSERT_EQ(board.setFen("rnbqkbnr/ppp1pppp/8/8/2Pp4/8/PP1PPPPP/RNBQKBNR b KQkq - 0 1"), 0);
    EXPECT_EQ(evaluator.Evaluate(), withEp);
    EXPECT_EQ(evaluator.evalCounters.hits, 1u);
}

// The last material and pawn entries are reused while their keys hold; other structures go to
// the caches.
TEST(Evaluator, MaterialAndPawnEntriesFollowTheirKeys) {
    Board board;
    Evaluator evaluator(board);
    const char* knightOnF3 = "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 0 1";
    const char* knightOnC3 = "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 1";
    const char* otherPawns = "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/5N2/PPP2PPP/RNBQKB1R w KQkq - 0 1";
    ASSERT_EQ(board.setFen(knightOnF3), 0);
    evaluator.Evaluate();
    ASSERT_EQ(board.setFen(knightOnC3), 0);
    evaluator.Evaluate();
    EXPECT_EQ(evaluator.pawnCounters.probes, 1u);
    EXPECT_EQ(evaluator.materialCounters.probes, 1u);

    // Back to a structure seen two positions ago: the caches answer, not the remembered entries.
    evaluator.clear();
    ASSERT_EQ(board.setFen(knightOnF3), 0);
    evaluator.Evaluate();
    ASSERT_EQ(board.setFen(otherPawns), 0);
    evaluator.Evaluate();
    ASSERT_EQ(board.setFen(knightOnC3), 0);
    evaluator.Evaluate();
    EXPECT_EQ(evaluator.pawnCounters.probes, 3u);
    EXPECT_EQ(evaluator.pawnCounters.hits, 1u);
    EXPECT_EQ(evaluator.materialCounters.hits, 1u);
}

TEST(Evaluator, ClearEmptiesEveryCache) {
    Board board;
    Evaluator evaluator(board);
    ASSERT_EQ(board.setFen("r1bq1rk1/ppp2ppp/5n2/2bp4/2NPP3/2P5/PP3PPP/RNBQK2R w KQ - 0 1"), 0);
    int first = evaluator.Evaluate();
    evaluator.clear();
    EXPECT_EQ(evaluator.evalCounters.probes, 0u);
    EXPECT_EQ(evaluator.Evaluate(), first);
    EXPECT_EQ(evaluator.evalCounters.hits, 0u);
    EXPECT_EQ(evaluator.pawnCounters.hits, 0u);
    EXPECT_EQ(evaluator.materialCounters.hits, 0u);
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

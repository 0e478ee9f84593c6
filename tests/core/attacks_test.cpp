// Attack tables: magic slider lookups against a slow ray walk.
#include <gtest/gtest.h>

#include "core/names.h"
#include "test_positions.h"

namespace {

constexpr int ROOK_STEPS[4][2] = {{0, 1}, {0, -1}, {1, 0}, {-1, 0}};
constexpr int BISHOP_STEPS[4][2] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

bool onBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// Each ray up to and including its first occupied square; with edges false, the rays without
// their edge squares (the occupancy that matters to a slider).
Bitboard rayWalk(int sq, Bitboard occ, const int (*steps)[2], bool edges = true) {
    Bitboard b = 0;
    for (int d = 0; d < 4; d++) {
        int df = steps[d][0], dr = steps[d][1];
        for (int f = fileOf(sq) + df, r = rankOf(sq) + dr;
             onBoard(f, r) && (edges || onBoard(f + df, r + dr)); f += df, r += dr) {
            b |= squareBB(makeSquare(f, r));
            if (occ & squareBB(makeSquare(f, r))) break;
        }
    }
    return b;
}

}  // namespace

// Every subset of every relevant mask, with random bits outside the mask, must give the ray-walk
// result: a wrong multiplier, shift or offset shows up as a collision.
TEST(Attacks, MagicLookupsMatchRayWalkForEveryMaskSubset) {
    auto board = coretest::newBoard();
    const AttackTables& at = board->attacks;
    std::mt19937_64 rng(7);
    for (int sq = 0; sq < 64; sq++) {
        for (bool rook : {true, false}) {
            const auto* steps = rook ? ROOK_STEPS : BISHOP_STEPS;
            Bitboard mask = rayWalk(sq, 0, steps, false), subset = 0;
            ASSERT_EQ(rook ? at.rookMask[sq] : at.bishopMask[sq], mask) << SQUARE_NAMES[sq];
            do {
                Bitboard occ = subset | (rng() & ~mask);
                Bitboard actual = rook ? at.rookAttacks(sq, occ) : at.bishopAttacks(sq, occ);
                ASSERT_EQ(actual, rayWalk(sq, occ, steps))
                    << SQUARE_NAMES[sq] << " occupancy " << occ;
                subset = (subset - mask) & mask;
            } while (subset);
        }
    }
}

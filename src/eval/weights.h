// The evaluation weights: 75 tunable (middle-game, end-game) pairs and the quantities derived
// from them. The evaluation never reads a weight directly; RecomputeDerived turns the table into
// flat lookup tables (mobility curves, per-file and per-rank tables, the king-attack curve,
// piece-square tables) so that no logarithm or multiplication by a weight happens in search.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/types.h"

constexpr int WEIGHT_COUNT = 75;

// A middle-game and an end-game value; every evaluation term is one. Both live in one 64-bit
// integer, the end-game value 32 bits up, so that adding two scores or multiplying one is a
// single instruction. While each value fits in 32 bits, the low half read as signed is the
// middle-game value, and what remains above it is the end-game value.
class Score {
  public:
    constexpr Score() = default;
    constexpr Score(int mg, int eg) : packed((int64_t(eg) << 32) + mg) {}
    constexpr int mg() const { return int32_t(uint32_t(uint64_t(packed))); }
    constexpr int eg() const { return int32_t((packed + (int64_t(1) << 31)) >> 32); }

    constexpr Score& operator+=(Score s) {
        packed += s.packed;
        return *this;
    }
    constexpr Score& operator-=(Score s) {
        packed -= s.packed;
        return *this;
    }
    constexpr Score operator+(Score s) const { return fromPacked(packed + s.packed); }
    constexpr Score operator-(Score s) const { return fromPacked(packed - s.packed); }
    constexpr Score operator-() const { return fromPacked(-packed); }
    constexpr Score operator*(int n) const { return fromPacked(packed * n); }
    constexpr bool operator==(const Score&) const = default;

  private:
    static constexpr Score fromPacked(int64_t p) {
        Score s;
        s.packed = p;
        return s;
    }
    int64_t packed = 0;
};

// Both halves times num / den, each division truncating toward zero.
constexpr Score scaleScore(Score s, int num, int den) {
    return {s.mg() * num / den, s.eg() * num / den};
}

struct WeightTable {
    Score pairs[WEIGHT_COUNT];
};

// The process-wide table. Changed only by ResetWeights and SetWeightCommand, never during a
// search.
extern WeightTable weights;

// The largest value setweight accepts for either half of the id; the smallest is -1.
int maxWeight(int id);
// Writes the defaults into every entry; the caller recomputes.
void ResetWeights();
// Rebuilds every derived quantity from the current table.
void RecomputeDerived();
// One "setweight" command line split at blanks (token 0 is "setweight"); returns the text to
// print, empty for nothing. A five-token "id" or "name" line lacks the end-game value and throws
// std::out_of_range from the token access, for the command loop to report.
std::string SetWeightCommand(const std::vector<std::string>& tokens);

// Incremented by every RecomputeDerived, so that an Evaluator can drop cached scores computed
// with older weights.
extern uint32_t weightsGeneration;

constexpr int KING_ATTACK_CURVE_SIZE = 51;

// The derived quantities, each named after the term that reads it. Tables by piece type are
// indexed PAWN..KING (1..6); per-file tables by file + 1 (index 0 is always zero); per-rank
// tables by the rank counted from the owner's side (0..7).
struct EvalTables {
    // Material.
    Score pieceValue[7];
    int pieceValueMg[7];
    int exchangeValue[14];    // by piece code; the bishop holds the knight's value
    int fullNonPawnMaterial;  // queen + 2 * (rook + bishop + knight)
    int attackingMaterial;    // 2 * rook + bishop + 1
    Score bishopPair;
    int rookPairEg;
    Score knightPerPawn;
    int rookPerMissingPawnEg;
    int oddBishopPawnEg;  // a pawn off the colour of same-coloured bishops
    Score tempo;

    // Mobility curves by the number of safe squares.
    Score kingMobility[9];
    Score knightMobility[9];
    Score bishopMobility[14];
    Score rookMobility[15];
    Score queenMobility[28];

    // Pawn structure.
    Score doubledIsolated[9];
    Score doubled[9];
    Score isolatedOpposed[9];
    Score isolated[9];
    Score backwardOpposed[9];
    Score backward[9];
    Score passedFile[9];
    Score passedRank[8];
    Score supported;
    Score phalanx;
    Score candidate;
    Score pawnIsland;
    Score pawnsOnBothWings;
    int protectedPasserEg[8];
    int connectedPassersEg[8];

    // King shelter and pawn storm.
    Score shelter[4];  // by how far the shield pawn has gone: 0 at home .. 3 missing
    int pawnlessFlankEg;
    int stormMg[8];  // by the storming pawn's rank counted from the defending side

    // Passed pawns beyond the pawn structure.
    int passerEnemyKingEg[8];
    int passerOwnKingEg[8];
    int passerFreePathEg[8];
    int passerSafeStopEg[8];
    int passerDefendedStopEg[8];
    int passerDefendedPathEg[8];
    int blockedPasserEg;
    Score rookBehindPasser;
    int enemyRookBehindPasserEg;

    // Pieces.
    Score knightOutpost;
    Score bishopOutpost;
    Score supportedOutpost;
    Score minorBehindPawn;
    Score kingProtector;
    Score bishopPawns;
    Score longDiagonalBishop;
    Score rookOpenFile;
    Score rookHalfOpenFile;
    Score rookOnQueenFile;
    Score connectedRooks;
    Score rookOnSeventh;
    Score queenOnSeventh;

    // Threats.
    Score threatBySafePawn;
    Score threatByPawnPush;
    Score threatByMinor[6];
    Score threatByRook[6];
    Score threatByKing;
    Score hanging;
    Score restricted;
    Score weakUnopposedPawn;

    // King attack.
    int kingAttackCurve[KING_ATTACK_CURVE_SIZE];
    int safeCheckMg;
    int kingZoneAttackMg;
    int noQueenMg;
    int kingPawnDistanceEg;

    // Fixed-square patterns.
    int blockedCentrePawnMg;
    int trappedRookMg;
    int trappedBishopMg;     // on a7 by a pawn on b6
    int trappedBishopFarMg;  // on a6 by a pawn on b5
    Score trappedKnight;

    // Piece-square tables by piece code (both colours), and the minor-piece outpost scale in
    // eighths by colour and square.
    Score psq[14][64];
    int outpostScale[2][64];
};

extern EvalTables evalTables;

// Exchange value of a piece code (0..13) for static exchange evaluation: the middle-game value,
// with bishops counted as knights.
inline int seeValue(int pieceCode) { return evalTables.exchangeValue[pieceCode]; }

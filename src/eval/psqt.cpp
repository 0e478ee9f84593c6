// The base piece-square tables, written as board diagrams from White's side (rank 8 on top),
// left-right symmetric so that the evaluation of a mirrored position is the same. Material is
// not included; these values only say where a piece stands well.
#include "eval/psqt.h"

namespace {

// clang-format off
using Diagram = int[64];

constexpr Diagram PAWN_MG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     10,  15,  15,  20,  20,  15,  15,  10,
      0,   5,  10,  15,  15,  10,   5,   0,
     -5,   0,   5,  15,  15,   5,   0,  -5,
     -5,  -3,   5,  15,  15,   5,  -3,  -5,
     -3,  -3,   2,   5,   5,   2,  -3,  -3,
      0,   0,  -3, -10, -10,  -3,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram PAWN_EG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     20,  20,  20,  20,  20,  20,  20,  20,
     10,  10,  10,  10,  10,  10,  10,  10,
      4,   4,   4,   4,   4,   4,   4,   4,
      0,   0,   0,   0,   0,   0,   0,   0,
     -3,  -3,  -3,  -3,  -3,  -3,  -3,  -3,
     -5,  -5,  -5,  -5,  -5,  -5,  -5,  -5,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram KNIGHT_MG = {
    -60, -25, -15, -10, -10, -15, -25, -60,
    -25, -10,   0,   5,   5,   0, -10, -25,
    -15,   5,  15,  20,  20,  15,   5, -15,
    -10,  10,  20,  25,  25,  20,  10, -10,
    -10,   5,  15,  20,  20,  15,   5, -10,
    -20,   0,  10,  12,  12,  10,   0, -20,
    -30, -15,  -5,   0,   0,  -5, -15, -30,
    -60, -30, -25, -20, -20, -25, -30, -60,
};
constexpr Diagram KNIGHT_EG = {
    -45, -30, -20, -15, -15, -20, -30, -45,
    -30, -15,  -5,   0,   0,  -5, -15, -30,
    -20,  -5,   5,  10,  10,   5,  -5, -20,
    -15,   0,  10,  15,  15,  10,   0, -15,
    -15,   0,  10,  15,  15,  10,   0, -15,
    -20,  -5,   5,  10,  10,   5,  -5, -20,
    -30, -15,  -5,   0,   0,  -5, -15, -30,
    -45, -30, -20, -15, -15, -20, -30, -45,
};
constexpr Diagram BISHOP_MG = {
    -20, -10, -10, -10, -10, -10, -10, -20,
    -10,   0,   0,   0,   0,   0,   0, -10,
     -5,   5,   5,   5,   5,   5,   5,  -5,
     -5,   5,  10,  10,  10,  10,   5,  -5,
     -5,  10,  10,  10,  10,  10,  10,  -5,
      0,  10,  10,  10,  10,  10,  10,   0,
     -5,  12,   5,   5,   5,   5,  12,  -5,
    -20, -10, -15, -10, -10, -15, -10, -20,
};
constexpr Diagram BISHOP_EG = {
    -15, -10,  -8,  -5,  -5,  -8, -10, -15,
    -10,  -5,   0,   0,   0,   0,  -5, -10,
     -8,   0,   5,   5,   5,   5,   0,  -8,
     -5,   0,   5,  10,  10,   5,   0,  -5,
     -5,   0,   5,  10,  10,   5,   0,  -5,
     -8,   0,   5,   5,   5,   5,   0,  -8,
    -10,  -5,   0,   0,   0,   0,  -5, -10,
    -15, -10,  -8,  -5,  -5,  -8, -10, -15,
};
constexpr Diagram ROOK_MG = {
      5,   5,   5,   5,   5,   5,   5,   5,
     15,  20,  20,  20,  20,  20,  20,  15,
      0,   0,   0,   5,   5,   0,   0,   0,
     -5,   0,   0,   0,   0,   0,   0,  -5,
     -5,   0,   0,   0,   0,   0,   0,  -5,
     -5,   0,   0,   0,   0,   0,   0,  -5,
    -10,  -5,   0,   0,   0,   0,  -5, -10,
     -5,  -3,   2,   8,   8,   2,  -3,  -5,
};
constexpr Diagram ROOK_EG = {
      5,   5,   5,   5,   5,   5,   5,   5,
     10,  10,  10,  10,  10,  10,  10,  10,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
     -5,  -3,  -2,  -2,  -2,  -2,  -3,  -5,
};
constexpr Diagram QUEEN_MG = {
    -15, -10,  -5,  -5,  -5,  -5, -10, -15,
    -10,  -5,   0,   0,   0,   0,  -5, -10,
     -8,   0,   3,   3,   3,   3,   0,  -8,
     -5,   0,   3,   5,   5,   3,   0,  -5,
     -5,   0,   3,   5,   5,   3,   0,  -5,
     -8,   2,   3,   3,   3,   3,   2,  -8,
    -10,  -2,   2,   2,   2,   2,  -2, -10,
    -15, -10,  -5,   0,   0,  -5, -10, -15,
};
constexpr Diagram QUEEN_EG = {
    -20, -12,  -8,  -5,  -5,  -8, -12, -20,
    -12,  -5,   0,   3,   3,   0,  -5, -12,
     -8,   0,   8,  10,  10,   8,   0,  -8,
     -5,   3,  10,  15,  15,  10,   3,  -5,
     -5,   3,  10,  15,  15,  10,   3,  -5,
     -8,   0,   8,  10,  10,   8,   0,  -8,
    -12,  -5,   0,   3,   3,   0,  -5, -12,
    -20, -12,  -8,  -5,  -5,  -8, -12, -20,
};
// A castled king on the first rank is safe in the middle game; in the end game the king
// belongs in the centre.
constexpr Diagram KING_MG = {
    -70, -70, -70, -80, -80, -70, -70, -70,
    -60, -60, -70, -80, -80, -70, -60, -60,
    -50, -55, -65, -70, -70, -65, -55, -50,
    -45, -50, -60, -65, -65, -60, -50, -45,
    -35, -40, -50, -55, -55, -50, -40, -35,
    -20, -25, -35, -40, -40, -35, -25, -20,
     10,   5, -15, -25, -25, -15,   5,  10,
     25,  35,  10,  -5,  -5,  10,  35,  25,
};
constexpr Diagram KING_EG = {
    -50, -35, -25, -20, -20, -25, -35, -50,
    -30, -15,  -5,   0,   0,  -5, -15, -30,
    -20,  -5,  10,  15,  15,  10,  -5, -20,
    -15,   5,  20,  25,  25,  20,   5, -15,
    -15,   5,  20,  25,  25,  20,   5, -15,
    -20,  -5,  10,  15,  15,  10,  -5, -20,
    -30, -15,  -5,   0,   0,  -5, -15, -30,
    -50, -35, -25, -20, -20, -25, -35, -50,
};
// How much a minor piece gains from an outpost on the square, in eighths of the outpost
// bonus: most in the centre of the fifth and sixth ranks, nothing where no outpost can be.
constexpr Diagram OUTPOST_SCALE = {
      0,   0,   0,   0,   0,   0,   0,   0,
      2,   3,   4,   4,   4,   4,   3,   2,
      3,   6,   8,   8,   8,   8,   6,   3,
      3,   5,   8,   8,   8,   8,   5,   3,
      2,   4,   5,   6,   6,   5,   4,   2,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
};
// clang-format on

struct BaseTable {
    int piece;
    const Diagram& mg;
    const Diagram& eg;
};
constexpr BaseTable BASE_TABLES[] = {
    {W_PAWN, PAWN_MG, PAWN_EG}, {W_KNIGHT, KNIGHT_MG, KNIGHT_EG}, {W_BISHOP, BISHOP_MG, BISHOP_EG},
    {W_ROOK, ROOK_MG, ROOK_EG}, {W_QUEEN, QUEEN_MG, QUEEN_EG},    {W_KING, KING_MG, KING_EG},
};

int diagramIndex(int sq) { return 8 * DIAGRAM_ROW[sq] - DIAGRAM_COLUMN[sq]; }

}  // namespace

// clang-format off
// Index tables of the diagram order, laid out by square a1..h8 (rank 1 on the first line).
const int DIAGRAM_ROW[64] = {
    8, 8, 8, 8, 8, 8, 8, 8,
    7, 7, 7, 7, 7, 7, 7, 7,
    6, 6, 6, 6, 6, 6, 6, 6,
    5, 5, 5, 5, 5, 5, 5, 5,
    4, 4, 4, 4, 4, 4, 4, 4,
    3, 3, 3, 3, 3, 3, 3, 3,
    2, 2, 2, 2, 2, 2, 2, 2,
    1, 1, 1, 1, 1, 1, 1, 1,
};
const int DIAGRAM_COLUMN[64] = {
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
    8, 7, 6, 5, 4, 3, 2, 1,
};
// clang-format on

void buildPieceSquareTables(EvalTables& t) {
    for (int piece = 0; piece < 14; piece++)
        for (int sq = 0; sq < 64; sq++) t.psq[piece][sq] = {0, 0};
    for (const BaseTable& base : BASE_TABLES)
        for (int sq = 0; sq < 64; sq++)
            t.psq[base.piece][sq] = {base.mg[diagramIndex(sq)], base.eg[diagramIndex(sq)]};

    for (int sq = 0; sq < 64; sq++) {
        t.outpostScale[White][sq] = OUTPOST_SCALE[diagramIndex(sq)];
        t.outpostScale[Black][sq ^ 56] = OUTPOST_SCALE[diagramIndex(sq)];
    }

    for (int type = PAWN; type <= KING; type++)
        for (int sq = 0; sq < 64; sq++)
            t.psq[makePiece(Black, type)][sq] = t.psq[makePiece(White, type)][sq ^ 56];
}

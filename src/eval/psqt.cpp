// The base piece-square tables, written as board diagrams from White's side (rank 8 on top),
// left-right symmetric so that the evaluation of a mirrored position is the same. Material is
// not included; these values only say where a piece stands well.
//
// The diagrams are fitted by morvane-tune to 832 801 quiet positions of 11 067 self-play games,
// each from an opening of data/openings.epd, labelled a quarter by the game's result and three
// quarters by a depth-8 search (results alone are too noisy at this number of games). Rebuilt by:
// (the tools are built under build/release/src/tools; the games in one line)
//   morvane-match --engine cmd=morvane name=a option.Hash=16 option.OwnBook=false
//                 --engine cmd=morvane name=b option.Hash=1 option.OwnBook=false
//                 --nodes 4000 --openings data/openings.epd --games 8000 --pgn games.pgn
//   morvane-tune extract positions.txt games.pgn
//   morvane-tune label positions.txt labelled.txt --depth 8 --jobs 2
//   morvane-tune fit labelled.txt src/eval/psqt.cpp --result-percent 25
#include "eval/psqt.h"

namespace {

// clang-format off
using Diagram = int[64];

constexpr Diagram PAWN_MG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     12,  11,  16,  15,  15,  16,  11,  12,
     13,  -9,  17,  44,  44,  17,  -9,  13,
     10,   0,  15,  18,  18,  15,   0,  10,
      4, -22,   8,  13,  13,   8, -22,   4,
     10,   2,   5,   3,   3,   5,   2,  10,
     -3, -12,  -8, -10, -10,  -8, -12,  -3,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram PAWN_EG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     25,  24,  39,  32,  32,  39,  24,  25,
     39,  24,  31,  21,  21,  31,  24,  39,
     18,   6,   7,   2,   2,   7,   6,  18,
     10,  -6,  -8,   3,   3,  -8,  -6,  10,
     -2, -11,  -3,  -1,  -1,  -3, -11,  -2,
     -3, -18,   0,  23,  23,   0, -18,  -3,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram KNIGHT_MG = {
    -65, -20,  -9,  -6,  -6,  -9, -20, -65,
    -10,  -3,  18,  27,  27,  18,  -3, -10,
    -19, -12,  27,  21,  21,  27, -12, -19,
     12,   8,  25,  24,  24,  25,   8,  12,
      5,  15,  24,  23,  23,  24,  15,   5,
     -7,  -3,   4,  18,  18,   4,  -3,  -7,
    -14,  -9,  -9,  -7,  -7,  -9,  -9, -14,
    -59, -21, -11,   1,   1, -11, -21, -59,
};
constexpr Diagram KNIGHT_EG = {
    -47, -18,  -1,  -3,  -3,  -1, -18, -47,
     -2,  19,   3,  31,  31,   3,  19,  -2,
      6,  20,  12,  12,  12,  12,  20,   6,
     22,  13,  23,  24,  24,  23,  13,  22,
     13,  12,  15,  15,  15,  15,  12,  13,
     -7,  -1, -13,   9,   9, -13,  -1,  -7,
    -18,   6,  -3,   0,   0,  -3,   6, -18,
    -41, -16, -10,   6,   6, -10, -16, -41,
};
constexpr Diagram BISHOP_MG = {
    -30, -12, -16, -15, -15, -16, -12, -30,
    -31, -10,   3,  10,  10,   3, -10, -31,
     -3,  -2,   9,  -1,  -1,   9,  -2,  -3,
    -10,  17,  11,  16,  16,  11,  17, -10,
     12,  23,  11,  32,  32,  11,  23,  12,
      6,  22,  10,   9,   9,  10,  22,   6,
     13,  -9,  32,  -7,  -7,  32,  -9,  13,
    -13,  16,  -1,  16,  16,  -1,  16, -13,
};
constexpr Diagram BISHOP_EG = {
    -23,   0,  -8,   5,   5,  -8,   0, -23,
    -10,  -8,  -1,   7,   7,  -1,  -8, -10,
      4,   2, -20,  -5,  -5, -20,   2,   4,
     -1,   1,  -5,  -7,  -7,  -5,   1,  -1,
    -11,   0,   3,  -3,  -3,   3,   0, -11,
     -3,  -3,  -9,  11,  11,  -9,  -3,  -3,
     -3,  -7,  -5,   8,   8,  -5,  -7,  -3,
    -17,  -3,  15,  -4,  -4,  15,  -3, -17,
};
constexpr Diagram ROOK_MG = {
     -8,   6,   6,  -5,  -5,   6,   6,  -8,
      1,   3,  10,  17,  17,  10,   3,   1,
     19,  24,  35,  27,  27,  35,  24,  19,
      8,  18,  33,  23,  23,  33,  18,   8,
     -5,  16,  12,   3,   3,  12,  16,  -5,
     -4,  17,   8,   2,   2,   8,  17,  -4,
     -1,   3,   7,   7,   7,   7,   3,  -1,
    -11,  -6,   7,   2,   2,   7,  -6, -11,
};
constexpr Diagram ROOK_EG = {
     16,  11,   9,  10,  10,   9,  11,  16,
      1,   1,  -2,  -6,  -6,  -2,   1,   1,
     22,  27,  31,  26,  26,  31,  27,  22,
     26,  30,  30,  27,  27,  30,  30,  26,
     18,  22,  20,  17,  17,  20,  22,  18,
      2,   6,  10,   4,   4,  10,   6,   2,
     -6,   1,   2,  -3,  -3,   2,   1,  -6,
      2, -11, -11, -17, -17, -11, -11,   2,
};
constexpr Diagram QUEEN_MG = {
    -13,  -1,   0,  -1,  -1,   0,  -1, -13,
    -26, -19,  -3,  -5,  -5,  -3, -19, -26,
      2, -10,   7,  -1,  -1,   7, -10,   2,
     -1,  -9,   1,   0,   0,   1,  -9,  -1,
      0,  11,  -6, -12, -12,  -6,  11,   0,
     -9,   7,   4, -11, -11,   4,   7,  -9,
     -5,  -3,   4,   1,   1,   4,  -3,  -5,
     -6,   3,  -1,   9,   9,  -1,   3,  -6,
};
constexpr Diagram QUEEN_EG = {
     -3,  11,  15,  20,  20,  15,  11,  -3,
      5,   3,  23,  21,  21,  23,   3,   5,
     14,  28,  40,  54,  54,  40,  28,  14,
     21,  36,  36,  56,  56,  36,  36,  21,
     15,  19,  25,  51,  51,  25,  19,  15,
      1,   4,   7,  17,  17,   7,   4,   1,
     -9, -10, -22, -12, -12, -22, -10,  -9,
    -17, -25, -28, -28, -28, -28, -25, -17,
};
// A castled king on the first rank is safe in the middle game; in the end game the king
// belongs in the centre.
constexpr Diagram KING_MG = {
    -69, -70, -70, -80, -80, -70, -70, -69,
    -60, -58, -68, -80, -80, -68, -58, -60,
    -49, -53, -63, -68, -68, -63, -53, -49,
    -47, -51, -58, -62, -62, -58, -51, -47,
    -43, -53, -46, -50, -50, -46, -53, -43,
    -34, -41, -67, -50, -50, -67, -41, -34,
     18, -15, -34, -51, -51, -34, -15,  18,
     77,  52,  52,   1,   1,  52,  52,  77,
};
constexpr Diagram KING_EG = {
    -46,   8,   5,   4,   4,   5,   8, -46,
     -7,  36,  36,  26,  26,  36,  36,  -7,
      5,  45,  51,  47,  47,  51,  45,   5,
     16,  26,  34,  32,  32,  34,  26,  16,
     -4,  -1,  11,  19,  19,  11,  -1,  -4,
    -19, -20,  -5,   4,   4,  -5, -20, -19,
    -16, -22, -11,  -5,  -5, -11, -22, -16,
    -28, -35, -19, -23, -23, -19, -35, -28,
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

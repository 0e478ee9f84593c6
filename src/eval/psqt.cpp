// The base piece-square tables, written as board diagrams from White's side (rank 8 on top),
// left-right symmetric so that the evaluation of a mirrored position is the same. Material is
// not included; these values only say where a piece stands well.
//
// The diagrams are fitted by morvane-tune to 1 021 189 quiet positions of 13 366 self-play games,
// each from an opening of data/openings.epd, labelled a quarter by the game's result and three
// quarters by a depth-8 search (results alone are too noisy at this number of games). Rebuilt by:
// (the tools are built under build/release/src/tools; each set of games in one line)
//   morvane-match --engine cmd=morvane name=a option.Hash=16 option.OwnBook=false
//                 --engine cmd=morvane name=b option.Hash=1 option.OwnBook=false
//                 --nodes 10000 --openings data/openings.epd --games 8000 --pgn games10k.pgn
//   morvane-match (the same engines) --nodes 20000 --openings data/openings.epd --games 5366
//                 --pgn games20k.pgn
//   morvane-tune extract positions.txt games10k.pgn games20k.pgn
//   morvane-tune label positions.txt labelled.txt --depth 8 --jobs 2
//   morvane-tune fit labelled.txt src/eval/psqt.cpp --result-percent 25
#include "eval/psqt.h"

namespace {

// clang-format off
using Diagram = int[64];

constexpr Diagram PAWN_MG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     17,   6,  18,  20,  20,  18,   6,  17,
     16,   2,   8,  46,  46,   8,   2,  16,
     14,  -1,  14,  19,  19,  14,  -1,  14,
      2, -22,   7,  18,  18,   7, -22,   2,
     10,   2,   7,   9,   9,   7,   2,  10,
     -5, -16, -10,  -9,  -9, -10, -16,  -5,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram PAWN_EG = {
      0,   0,   0,   0,   0,   0,   0,   0,
     23,  27,  52,  42,  42,  52,  27,  23,
     45,  31,  39,  23,  23,  39,  31,  45,
     29,   9,  10,  -2,  -2,  10,   9,  29,
     14,  -4,  -5,  -4,  -4,  -5,  -4,  14,
     -1, -15,  -2,  -2,  -2,  -2, -15,  -1,
     -1, -23,   2,  15,  15,   2, -23,  -1,
      0,   0,   0,   0,   0,   0,   0,   0,
};
constexpr Diagram KNIGHT_MG = {
    -63, -17,  -4,   3,   3,  -4, -17, -63,
     -3,   5,  30,  39,  39,  30,   5,  -3,
    -17, -12,  23,  16,  16,  23, -12, -17,
     18,   7,  30,  23,  23,  30,   7,  18,
      8,  19,  24,  20,  20,  24,  19,   8,
     -7,   4,   2,  12,  12,   2,   4,  -7,
     -8, -11,  -7,  -7,  -7,  -7, -11,  -8,
    -58, -21, -11,   3,   3, -11, -21, -58,
};
constexpr Diagram KNIGHT_EG = {
    -41,  -7,  12,  15,  15,  12,  -7, -41,
      4,  32,  14,  30,  30,  14,  32,   4,
     24,  27,  12,  12,  12,  12,  27,  24,
     32,  12,  14,  26,  26,  14,  12,  32,
     15,  20,  18,  19,  19,  18,  20,  15,
     -4,   0, -14,  10,  10, -14,   0,  -4,
    -17,  10,  -4,  -6,  -6,  -4,  10, -17,
    -34, -10,  -3,   0,   0,  -3, -10, -34,
};
constexpr Diagram BISHOP_MG = {
    -28, -14, -21, -15, -15, -21, -14, -28,
    -45,  -9,  -2,  10,  10,  -2,  -9, -45,
    -11,  -5,   1,   3,   3,   1,  -5, -11,
     -2,  25,  14,  19,  19,  14,  25,  -2,
     16,  24,  16,  25,  25,  16,  24,  16,
      6,  30,   8,   6,   6,   8,  30,   6,
     18, -11,  30,  -8,  -8,  30, -11,  18,
    -10,  32,   1,  22,  22,   1,  32, -10,
};
constexpr Diagram BISHOP_EG = {
    -21,  -1,  -2,  11,  11,  -2,  -1, -21,
     -7,  -9,   3,   6,   6,   3,  -9,  -7,
     10,  11, -36, -17, -17, -36,  11,  10,
      5,  -4,  -3, -14, -14,  -3,  -4,   5,
     -9,  -5,   2,  -3,  -3,   2,  -5,  -9,
      7,  -5, -18,  15,  15, -18,  -5,   7,
    -15,  -3,  -9,  10,  10,  -9,  -3, -15,
    -16,  -1,  20,  -4,  -4,  20,  -1, -16,
};
constexpr Diagram ROOK_MG = {
      2,  12,   8, -13, -13,   8,  12,   2,
      1,  14,  15,  19,  19,  15,  14,   1,
     26,  35,  44,  36,  36,  44,  35,  26,
     13,  22,  37,  20,  20,  37,  22,  13,
     -8,  14,   9,  -2,  -2,   9,  14,  -8,
     -9,  13,  15,   0,   0,  15,  13,  -9,
     -8,   1,   9,   7,   7,   9,   1,  -8,
    -12,  -5,   6,  -2,  -2,   6,  -5, -12,
};
constexpr Diagram ROOK_EG = {
     10,  11,   8,   7,   7,   8,  11,  10,
     -3,  -5,  -9, -14, -14,  -9,  -5,  -3,
     29,  31,  31,  30,  30,  31,  31,  29,
     40,  37,  36,  35,  35,  36,  37,  40,
     20,  29,  23,  21,  21,  23,  29,  20,
      5,  10,   4,   1,   1,   4,  10,   5,
    -10,  -4,  -5,  -7,  -7,  -5,  -4, -10,
      3, -11, -12, -18, -18, -12, -11,   3,
};
constexpr Diagram QUEEN_MG = {
    -20,   2,  -5,  -6,  -6,  -5,   2, -20,
    -34, -37, -14,  -6,  -6, -14, -37, -34,
     -1, -10,   9,  -8,  -8,   9, -10,  -1,
     -4, -13,   6, -13, -13,   6, -13,  -4,
     -3,  14, -11, -15, -15, -11,  14,  -3,
     -3,   9,   6, -14, -14,   6,   9,  -3,
      0,   1,   6,   3,   3,   6,   1,   0,
      1,   5,   1,  12,  12,   1,   5,   1,
};
constexpr Diagram QUEEN_EG = {
      1,  12,  18,  24,  24,  18,  12,   1,
     -1,   5,  19,  30,  30,  19,   5,  -1,
     15,  33,  48,  60,  60,  48,  33,  15,
     28,  50,  46,  63,  63,  46,  50,  28,
     21,  18,  37,  58,  58,  37,  18,  21,
     -2,   1,  11,  16,  16,  11,   1,  -2,
    -16, -16, -16, -19, -19, -16, -16, -16,
    -24, -32, -37, -35, -35, -37, -32, -24,
};
// A castled king on the first rank is safe in the middle game; in the end game the king
// belongs in the centre.
constexpr Diagram KING_MG = {
    -69, -70, -70, -80, -80, -70, -70, -69,
    -59, -57, -68, -79, -79, -68, -57, -59,
    -50, -54, -62, -65, -65, -62, -54, -50,
    -48, -53, -58, -61, -61, -58, -53, -48,
    -53, -59, -55, -56, -56, -55, -59, -53,
    -40, -62, -67, -60, -60, -67, -62, -40,
     22, -22, -37, -43, -43, -37, -22,  22,
     84,  60,  42,   3,   3,  42,  60,  84,
};
constexpr Diagram KING_EG = {
    -49,  27,  22,  26,  26,  22,  27, -49,
     11,  64,  59,  55,  55,  59,  64,  11,
     33,  67,  63,  55,  55,  63,  67,  33,
     31,  43,  42,  39,  39,  42,  43,  31,
     -3,   1,  15,  16,  16,  15,   1,  -3,
    -12, -20,  -7,   0,   0,  -7, -20, -12,
    -21, -23, -16, -13, -13, -16, -23, -21,
    -35, -37, -17, -28, -28, -17, -37, -35,
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

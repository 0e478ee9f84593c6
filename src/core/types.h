// The chess core's vocabulary: squares, colours, pieces, the packed Move word and the
// bitboard helpers every other file builds on.
#pragma once

#include <bit>
#include <cstdint>

using Bitboard = uint64_t;
using Move = uint32_t;

enum Color : int { White = 0, Black = 1, NoColor = 2 };
constexpr Color operator~(Color c) { return Color(c ^ 1); }

enum Piece : int {
    EMPTY = 0,
    W_PAWN, W_KNIGHT, W_BISHOP, W_ROOK, W_QUEEN, W_KING,
    B_PAWN, B_KNIGHT, B_BISHOP, B_ROOK, B_QUEEN, B_KING,
    PIECE_CODES  // 13; tables indexed by piece code carry one spare entry at 13
};

// Piece types are the white codes; a black code minus 6 gives its type.
enum PieceType : int { PAWN = 1, KNIGHT, BISHOP, ROOK, QUEEN, KING };

constexpr int NO_SQUARE = 64;

constexpr Piece makePiece(Color c, int type) { return Piece(type + 6 * c); }
constexpr int typeOf(int piece) { return piece > 6 ? piece - 6 : piece; }
constexpr Color colorOf(int piece) { return piece == 0 ? NoColor : piece <= 6 ? White : Black; }
// Colour of a code known to hold a piece.
constexpr Color pieceColor(int piece) { return piece > 6 ? Black : White; }

constexpr int fileOf(int sq) { return sq & 7; }
constexpr int rankOf(int sq) { return sq >> 3; }  // 0..7; the printed rank is one more
constexpr int makeSquare(int file, int rank) { return 8 * rank + file; }
constexpr int relativeRank(Color c, int sq) { return c == White ? rankOf(sq) : 7 - rankOf(sq); }
// King steps between two squares, from a table: the evaluation asks for many such distances.
struct DistanceTable {
    uint8_t steps[64][64];
};
inline constexpr DistanceTable DISTANCES = [] {
    DistanceTable t{};
    for (int a = 0; a < 64; a++)
        for (int b = 0; b < 64; b++) {
            int df = fileOf(a) - fileOf(b), dr = rankOf(a) - rankOf(b);
            df = df < 0 ? -df : df;
            dr = dr < 0 ? -dr : dr;
            t.steps[a][b] = uint8_t(df > dr ? df : dr);
        }
    return t;
}();
constexpr int distance(int a, int b) { return DISTANCES.steps[a][b]; }

// Move layout: piece 0-3, from 4-9, to 10-15, captured 16-19, promotion choice 20-21,
// en-passant flag 22; bits 23-31 carry an ordering key while the move sits in a list.
constexpr uint32_t MOVE_MASK = 0x7FFFFF;
constexpr uint32_t EP_FLAG = 1u << 22;

constexpr Move makeMove(int piece, int from, int to, int captured = 0, int promo = 0) {
    return Move(piece | from << 4 | to << 10 | captured << 16 | promo << 20);
}
constexpr int movePiece(Move m) { return m & 15; }
constexpr int moveFrom(Move m) { return (m >> 4) & 63; }
constexpr int moveTo(Move m) { return (m >> 10) & 63; }
constexpr int moveCaptured(Move m) { return (m >> 16) & 15; }
constexpr int movePromoChoice(Move m) { return (m >> 20) & 3; }  // 0 N, 1 B, 2 R, 3 Q
constexpr bool moveIsEnPassant(Move m) { return m & EP_FLAG; }
// The square of the piece a capture takes: its destination, or for en passant the square behind it.
constexpr int capturedSquare(Move m) {
    return !moveIsEnPassant(m) ? moveTo(m) : rankOf(moveTo(m)) == 5 ? moveTo(m) - 8 : moveTo(m) + 8;
}
constexpr bool moveIsPawn(Move m) { return typeOf(movePiece(m)) == PAWN; }
constexpr bool moveIsPromotion(Move m) {
    return moveIsPawn(m) && (rankOf(moveTo(m)) == 0 || rankOf(moveTo(m)) == 7);
}
constexpr bool moveIsCastling(Move m) {
    return typeOf(movePiece(m)) == KING && (moveFrom(m) - moveTo(m) == 2 || moveTo(m) - moveFrom(m) == 2);
}
// The piece a promotion places: knight, bishop, rook or queen of the pawn's colour.
constexpr int promotionPiece(Move m) {
    return makePiece(colorOf(movePiece(m)), KNIGHT + movePromoChoice(m));
}

constexpr Move CASTLE_WK = makeMove(W_KING, 4, 6);    // 6214
constexpr Move CASTLE_WQ = makeMove(W_KING, 4, 2);    // 2118
constexpr Move CASTLE_BK = makeMove(B_KING, 60, 62);  // 64460
constexpr Move CASTLE_BQ = makeMove(B_KING, 60, 58);  // 60364

// Castling-rights bits.
enum : uint32_t { WHITE_OO = 1, WHITE_OOO = 2, BLACK_OO = 4, BLACK_OOO = 8, ALL_CASTLING = 15 };

// Bitboard helpers.
constexpr Bitboard squareBB(int sq) { return sq < 64 ? Bitboard(1) << sq : 0; }
constexpr int popcount(Bitboard b) { return std::popcount(b); }
constexpr int lsb(Bitboard b) { return std::countr_zero(b); }
constexpr int msb(Bitboard b) { return 63 - std::countl_zero(b); }
inline int popLsb(Bitboard& b) {
    int sq = lsb(b);
    b &= b - 1;
    return sq;
}
constexpr bool moreThanOne(Bitboard b) { return b & (b - 1); }

// Starts loading a line that is about to be written. GCC counts a bare __builtin_prefetch as
// free of effects and deletes every call to a function that does nothing else; the empty
// volatile statement keeps those calls.
inline void prefetchForWrite(const void* address) {
    __builtin_prefetch(address, 1);
    asm volatile("");
}

constexpr Bitboard FILE_A = 0x0101010101010101ULL;
constexpr Bitboard FILE_H = FILE_A << 7;
constexpr Bitboard RANK_1 = 0xFFULL;
constexpr Bitboard RANK_2 = RANK_1 << 8;
constexpr Bitboard RANK_3 = RANK_1 << 16;
constexpr Bitboard RANK_6 = RANK_1 << 40;
constexpr Bitboard RANK_7 = RANK_1 << 48;
constexpr Bitboard RANK_8 = RANK_1 << 56;
constexpr Bitboard fileBB(int file) { return FILE_A << file; }
constexpr Bitboard rankBB(int rank) { return RANK_1 << (8 * rank); }
constexpr Bitboard LIGHT_SQUARES = 0x55AA55AA55AA55AAULL;

// Pawn-relative shifts: "up" is toward the opponent's side.
template <Color C>
constexpr Bitboard shiftUp(Bitboard b) { return C == White ? b << 8 : b >> 8; }
template <Color C>
constexpr Bitboard shiftUpLeft(Bitboard b) { return C == White ? (b & ~FILE_A) << 7 : (b & ~FILE_A) >> 9; }
template <Color C>
constexpr Bitboard shiftUpRight(Bitboard b) { return C == White ? (b & ~FILE_H) << 9 : (b & ~FILE_H) >> 7; }
template <Color C>
constexpr int upDelta() { return C == White ? 8 : -8; }

// Per-piece constant tables indexed by piece code 0..13.
constexpr int NON_PAWN_FLAG[14] = {0, 0, 1, 1, 1, 1, 0, 0, 1, 1, 1, 1, 0, 0};
constexpr int PHASE_WEIGHT[14] = {0, 1, 3, 3, 5, 9, 320, 1, 3, 3, 5, 9, 320, 0};

// Set operations on pawns and squares seen from one side, shared by the evaluation terms.
#pragma once

#include "core/types.h"

// Squares the pawns of the set attack.
template <Color C>
constexpr Bitboard pawnAttacksOf(Bitboard pawns) {
    return shiftUpLeft<C>(pawns) | shiftUpRight<C>(pawns);
}

// The set and every square in front of it, toward the opponent's side.
template <Color C>
constexpr Bitboard frontFill(Bitboard b) {
    if constexpr (C == White) {
        b |= b << 8;
        b |= b << 16;
        b |= b << 32;
    } else {
        b |= b >> 8;
        b |= b >> 16;
        b |= b >> 32;
    }
    return b;
}

// Every square the pawns of the set attack now or after advancing.
template <Color C>
constexpr Bitboard pawnAttackSpan(Bitboard pawns) {
    return frontFill<C>(pawnAttacksOf<C>(pawns));
}

// A rank counted from the side's own back rank (0..7), as a bitboard.
template <Color C>
constexpr Bitboard relativeRankBB(int rank) {
    return rankBB(C == White ? rank : 7 - rank);
}

// A square given from White's side, seen from the side's own side (a2 for Black is a7).
template <Color C>
constexpr int relativeSquare(int sq) {
    return C == White ? sq : sq ^ 56;
}

// Bit per file that holds a piece of the set.
constexpr uint32_t occupiedFiles(Bitboard b) {
    b |= b >> 32;
    b |= b >> 16;
    b |= b >> 8;
    return uint32_t(b & 0xFF);
}

constexpr Bitboard CENTRE_SQUARES = (FILE_A << 3 | FILE_A << 4) & (RANK_1 << 24 | RANK_1 << 32);
constexpr Bitboard QUEEN_SIDE_FILES = FILE_A | FILE_A << 1 | FILE_A << 2 | FILE_A << 3;
constexpr Bitboard KING_SIDE_FILES = QUEEN_SIDE_FILES << 4;

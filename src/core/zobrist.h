// Zobrist keys of a Board: piece-square, pawn-and-king, side, castling and en-passant keys,
// laid out from the published PolyGlot numbers so that our keys are the standard book keys.
#pragma once

#include <cstdint>

#include "core/types.h"

extern const uint64_t POLYGLOT_RANDOM64[781];

// The 781 numbers in our order: piece code p (1..12) on square s at 64 * (p - 1) + s, then the
// side key (768), the four castling keys (769..772) and the en-passant file keys (773..780).
uint64_t zobristValue(int index);

struct ZobristKeys {
    uint64_t pieceKey[64][13];     // zero for the empty code
    uint64_t pawnKingKey[64][13];  // the piece key for pawns and kings, zero otherwise
    uint64_t sideKey;              // present exactly when White is to move
    uint64_t castleKey[4];         // by rights bit 1, 2, 4, 8
    uint64_t castleSetKey[16];     // XOR of castleKey over a whole rights set
    uint64_t epKey[65];            // by file for squares on ranks 3 and 6, zero elsewhere

    ZobristKeys();
};

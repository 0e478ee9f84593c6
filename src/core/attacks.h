// Attack tables: magic-bitboard slider lookups and the fixed geometry of the board.
// Every Board carries its own copy so that search threads never share these cache lines;
// only the magic multipliers, shifts and offsets are program-wide constants.
#pragma once

#include "core/types.h"

struct Magic {
    uint64_t multiplier;
    int shift;
    int offset;
};
extern const Magic ROOK_MAGICS[64];
extern const Magic BISHOP_MAGICS[64];

constexpr int ROOK_TABLE_SIZE = 89600;
constexpr int BISHOP_TABLE_SIZE = 4800;

// Opposite directions differ in the lowest bit.
enum Direction { NORTH, SOUTH, EAST, WEST, NORTH_EAST, SOUTH_WEST, NORTH_WEST, SOUTH_EAST };

struct AttackTables {
    Bitboard pawnAttacks[2][64];
    Bitboard knightAttacks[64];
    Bitboard kingAttacks[64];
    Bitboard bishopMask[64];
    Bitboard rookMask[64];
    Bitboard rookTable[ROOK_TABLE_SIZE];
    Bitboard bishopTable[BISHOP_TABLE_SIZE];
    Bitboard rays[8][65];         // from a square to the edge, excluding the square itself
    Bitboard neighbours[64];      // left and right on the same rank
    Bitboard lineBeyond[64][64];  // ray from the first square through the second to the edge
    Bitboard between[64][64];     // strictly between two squares on a common line
    Bitboard queenLines[64];      // every square on a rank, file or diagonal through the square
    Bitboard rookLines[64];       // every square on the rank or file through the square
    Bitboard bishopLines[64];     // every square on a diagonal through the square
    Bitboard fullLine[64][64];    // the whole line through two squares, edge to edge

    // Masks for the evaluation.
    Bitboard forwardFile[2][64];       // squares in front of a square on its file
    Bitboard passedMask[2][64];        // front span of the square's and the adjacent files
    Bitboard attackSpan[2][64];        // front span of the adjacent files only
    Bitboard adjacentFiles[64];        // the files beside the square's file, whole board
    // The king's square and neighbours, moved in from the edge files and off the back rank so
    // that every zone spans three files and three ranks.
    Bitboard kingZone[2][64];
    Bitboard kingFlank[64];            // the files of the king's wing: a-d, c-f or e-h

    AttackTables();

    Bitboard rookAttacks(int sq, Bitboard occ) const {
        const Magic& m = ROOK_MAGICS[sq];
        return rookTable[m.offset + (((occ & rookMask[sq]) * m.multiplier) >> m.shift)];
    }
    Bitboard bishopAttacks(int sq, Bitboard occ) const {
        const Magic& m = BISHOP_MAGICS[sq];
        return bishopTable[m.offset + (((occ & bishopMask[sq]) * m.multiplier) >> m.shift)];
    }
    Bitboard queenAttacks(int sq, Bitboard occ) const {
        return rookAttacks(sq, occ) | bishopAttacks(sq, occ);
    }
    // The pieces of `rooks` (rooks and queens) that attack `sq`; the magic lookup is made only
    // when one of them stands on a line through the square at all. Likewise for bishops.
    Bitboard rookAttackers(int sq, Bitboard occ, Bitboard rooks) const {
        return (rookLines[sq] & rooks) ? rookAttacks(sq, occ) & rooks : 0;
    }
    Bitboard bishopAttackers(int sq, Bitboard occ, Bitboard bishops) const {
        return (bishopLines[sq] & bishops) ? bishopAttacks(sq, occ) & bishops : 0;
    }
    // Whether a slider of the given type on `from` sees `target`: both lie on a line it moves
    // along and nothing in `occ` stands between them. Cheaper than a magic lookup, whose tables
    // are too big to stay in the first-level cache.
    bool sliderSees(int type, int from, int target, Bitboard occ) const {
        const Bitboard* lines = type == ROOK     ? rookLines
                                : type == BISHOP ? bishopLines
                                                 : queenLines;
        return (lines[target] & squareBB(from)) && !(between[from][target] & occ);
    }
    // Attacks of a piece of the given type (pawns excluded) from a square.
    Bitboard pieceAttacks(int type, int sq, Bitboard occ) const {
        switch (type) {
            case KNIGHT: return knightAttacks[sq];
            case BISHOP: return bishopAttacks(sq, occ);
            case ROOK: return rookAttacks(sq, occ);
            case QUEEN: return queenAttacks(sq, occ);
            case KING: return kingAttacks[sq];
            default: return 0;
        }
    }
};

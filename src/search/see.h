// Static exchange evaluation: the material balance of the capture sequence on a move's
// destination when both sides always recapture with their least valuable piece.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/board.h"
#include "eval/weights.h"

int see(const Board& board, Move m);

// A bound above see() that costs one lookup: when an enemy pawn guards the destination, it takes
// the arriving piece first, and the mover can at best win that pawn back, so the exchange gives
// at most the victim minus the mover plus a pawn. Unguarded destinations get no bound.
inline int exchangeCeiling(const Board& b, Move m) {
    const Color us = b.sideToMove;
    if (!(b.attacks.pawnAttacks[us][moveTo(m)] & b.pieces(~us, PAWN))) return INT32_MAX;
    return seeValue(moveCaptured(m)) - seeValue(movePiece(m)) +
           std::max(0, seeValue(makePiece(~us, PAWN)));
}

// The exchange values a node worked out while ordering its moves, kept for its pruning tests.
// Holds the first SIZE moves only; a move not held is worked out again.
struct ExchangeMemo {
    static constexpr int SIZE = 16;
    Move moves[SIZE];
    int values[SIZE];
    int count = 0;

    void remember(Move m, int value) {
        if (count < SIZE) moves[count] = m & MOVE_MASK, values[count++] = value;
    }
    // Whether the move is held; its value goes to `value`.
    bool recall(Move m, int& value) const {
        for (int i = 0; i < count; i++)
            if (moves[i] == (m & MOVE_MASK)) return value = values[i], true;
        return false;
    }
};

// Static exchange evaluation: the material balance of the capture sequence on a move's
// destination when both sides always recapture with their least valuable piece.
#pragma once

#include "core/board.h"

int see(const Board& board, Move m);

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

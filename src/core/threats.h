// Move properties the search asks about: whether a move gives check and whether it creates a
// threat against a more valuable piece.
#pragma once

#include "core/board.h"

bool givesCheck(const Board& board, Move m);

// What it takes to check the enemy king in a position, worked out once for all of its moves.
struct CheckInfo {
    Bitboard checkSquares[7];  // by piece type: the squares from which that piece gives check
    Bitboard discoverers;      // own pieces that alone stand between an own slider and the king
    int kingSquare;            // the enemy king's square
};
CheckInfo checkInfoOf(const Board& board);
// The same answer as givesCheck(board, m) for a legal move of the position the info was made
// for, which must itself be legal (the side not to move is not in check).
bool givesCheck(const Board& board, Move m, const CheckInfo& info);
// The moved piece attacks, from its new square, an enemy piece of a more valuable kind
// (knights and bishops count as equal; kings are left to the check test).
bool createsThreat(const Board& board, Move m);

// Move properties the search asks about: whether a move gives check and whether it creates a
// threat against a more valuable piece.
#pragma once

#include "core/board.h"

bool givesCheck(const Board& board, Move m);

// What it takes to check the enemy king in a position, worked out once for all of its moves.
struct CheckInfo {
    Bitboard squares[7];   // by piece type: the squares from which that piece would give check
    Bitboard discoverers;  // own pieces that alone stand between an own slider and the king
    int kingSquare;        // the enemy king's square
};
void computeCheckInfo(const Board& board, CheckInfo& info);
// The same answer as givesCheck(board, m), faster for the position the info was made for.
bool givesCheck(const Board& board, Move m, const CheckInfo& info);
// The moved piece attacks, from its new square, an enemy piece of a more valuable kind
// (knights and bishops count as equal; kings are left to the check test).
bool createsThreat(const Board& board, Move m);

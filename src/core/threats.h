// Move properties the search asks about: whether a move gives check and whether it creates a
// threat against a more valuable piece.
#pragma once

#include "core/board.h"

bool givesCheck(const Board& board, Move m);
// The moved piece attacks, from its new square, an enemy piece of a more valuable kind
// (knights and bishops count as equal; kings are left to the check test).
bool createsThreat(const Board& board, Move m);

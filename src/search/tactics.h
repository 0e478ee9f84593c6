// Tests on quiet moves that decide how much effort the search gives them.
#pragma once

#include "core/board.h"

// Quiet moves that deserve a full look: the piece escapes an attack by a pawn or (a piece worth
// at least a minor) by a minor piece, a pawn runs into a free passed-pawn span, or the move
// creates a threat; the escapes and threats only when they do not lose material.
bool isActiveMove(const Board& board, Move m);
// Whether a move answers the threat found by the null-move search: the threatened piece steps
// away, the target is defended against a capture by a piece worth no more, the move blocks the
// threat's path, or a pawn push is stopped or covered.
bool answersThreat(const Board& board, Move m, Move threat);

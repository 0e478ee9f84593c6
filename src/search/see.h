// Static exchange evaluation: the material balance of the capture sequence on a move's
// destination when both sides always recapture with their least valuable piece.
#pragma once

#include "core/board.h"

int see(const Board& board, Move m);

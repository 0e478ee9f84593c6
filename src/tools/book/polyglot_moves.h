// Moves between PolyGlot's 16-bit words and the engine's move encoding.
#pragma once

#include <cstdint>

#include "core/board.h"

// The legal move of the position that a PolyGlot word names, or 0. The king taking its own
// rook from its home square is castling.
Move fromPolyglotMove(Board& board, uint16_t word);
// The PolyGlot word of a move; castling becomes the king taking its own rook.
uint16_t toPolyglotMove(Move m);

// Legal move generation: captures with promotions, quiet moves and check evasions, written as
// templates on the side to move; a legality test for one move and a validator for move values
// of unknown origin (hash moves, killers).
#pragma once

#include "core/board.h"

// All legal moves: the evasions when in check, else the captures followed by the quiet moves.
// The list is emptied first and its reduced key set.
void generateAll(Board& board, MoveList& list);
// The same into the Board's list for a search ply.
MoveList& generateAll(Board& board, int ply);

// These append to the list. Captures include en-passant captures and every promotion;
// quiet moves include castling. Neither may be called while in check.
// Captures may be limited to the pieces on `victims`; promotions come all the same.
void generateCaptures(const Board& board, MoveList& list, Bitboard victims = ~Bitboard(0));
void generateQuiets(const Board& board, MoveList& list);
void generateEvasions(const Board& board, MoveList& list);

// Whether a pseudo-legal non-king move leaves the own king (on kingSq) safe.
bool isLegal(const Board& board, int kingSq, Move m);

// The move if it is legal in the current position, else 0.
Move validateMove(const Board& board, Move m);

// Moves as text: the coordinate form of the UCI protocol (e2e4, e7e8q) and standard algebraic
// notation (Nf3, exd5, O-O, e8=Q+).
#pragma once

#include <string>
#include <string_view>

#include "core/board.h"

// Coordinate text of a move; "0000" for no move.
std::string moveToUci(Move m);
// Parses coordinate text against the current position; 0 when the text is malformed. The move is
// not checked for legality: use isMoveInList for that.
Move parseMove(const Board& board, std::string_view text);
// Whether the move (bits 0..22) is one of the legal moves of the position.
bool isMoveInList(Board& board, Move m);

// Standard algebraic notation with disambiguation and a check or mate suffix.
std::string moveToSan(Board& board, Move m);
// The legal move that SAN text names, or 0; check marks, annotations and "x" are optional,
// castling may be written with letters or digits.
Move sanToMove(Board& board, std::string_view san);
// The coordinate text of a SAN move; empty when no legal move matches.
std::string sanToCoordinate(Board& board, std::string_view san);

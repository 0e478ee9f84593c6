// EPD test suites: loading a file of test positions and searching each to a small fixed depth to
// count how often the engine finds the position's best move.
#pragma once

#include <string>

class Board;

// Sets the board from the position of an EPD line and returns its first "bm" move (bits 0..22),
// or 0 when the line names none that is legal here. The board is unchanged when the position is
// not valid.
unsigned setEpdPosition(Board& board, const std::string& line);
// 0 when the line holds a well-formed position and a "bm" operation.
int checkEpd(const std::string& line);

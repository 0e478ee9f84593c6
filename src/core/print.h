// The board diagram and position summary printed by the "print" command.
#pragma once

#include <string>
#include <vector>

class Board;

// Appends the diagram, the FEN, the endgame id, the played moves and the counters.
void appendBoardPrint(const Board& board, std::vector<std::string>& lines);

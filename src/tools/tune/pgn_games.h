// Games read from PGN files, as the match runner writes them: the tags, then the moves in
// standard algebraic notation with comments in braces.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <vector>

#include "core/board.h"

struct PgnGame {
    std::string startFen;  // empty for the standard start position
    double whiteScore;     // 1, 0.5 or 0
    std::vector<Move> moves;
};

// Calls `take` for every finished game of the stream, in order; a game whose result is unknown
// ("*") is skipped, and one with a move that is not legal keeps the moves before it. Returns
// the number of games skipped.
int readPgnGames(std::istream& in, const std::function<void(const PgnGame&)>& take);

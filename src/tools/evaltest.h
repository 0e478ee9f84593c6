// The evaluation symmetry test: a colour-mirrored or left-right mirrored position must get the
// same score from the side to move's point of view.
#pragma once

#include <string>
#include <vector>

class Board;
class Evaluator;

// Plays short random games from the benchmark positions (C library rand(), never seeded here),
// then evaluates each resulting position, its flip and, when castling rights allow, the flop of
// the flip. Returns the report lines: "Generated N positions", one line per failure and
// "evaltest finished with N errors". Leaves the Board on the last tested position.
std::vector<std::string> evalTest(Board& board, Evaluator& evaluator);

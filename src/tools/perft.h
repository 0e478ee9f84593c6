// Move-generator verification: leaf counts of the legal move tree, with timing.
#pragma once

#include <cstdint>
#include <string>

class Board;

// Leaf nodes at the given depth below the current position (0 for depth < 1).
uint64_t perft(Board& board, int depth);
// The "perft <depth>" and "divide <depth>" commands.
void perftCommand(Board& board, std::string line);
void divideCommand(Board& board, std::string line);

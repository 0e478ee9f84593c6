// The end of a game by the rules of chess, decided with the project's own board and move
// generator: checkmate, stalemate, the fifty-move rule, threefold repetition and positions in
// which neither side can ever mate.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/board.h"
#include "tools/match/verdict.h"

namespace match {

// The verdict for the board's position, or nothing while the game goes on. `history` holds the
// key of every position of the game so far, the current one included; keys carry the side to
// move, castling rights and en-passant square, so equal keys are repetitions.
std::optional<Verdict> ruleVerdict(Board& board, const std::vector<uint64_t>& history);

// Bare kings, a lone minor piece, or bishops only, all on squares of one colour.
bool insufficientMaterial(const Board& board);

}  // namespace match

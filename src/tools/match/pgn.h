// A finished game as PGN: the seven standard tags plus FEN/SetUp, TimeControl and Termination,
// the moves in SAN with the engines' scores, depths and times, and the reason as a comment.
#pragma once

#include <string>

#include "tools/match/game.h"

namespace match {

std::string formatPgn(const GameRecord& game, const std::string& event);

}  // namespace match

// The positions of finished games that a tuner can learn from: quiet ones, where the static
// evaluation stands for the position, labelled with the game's result.
#pragma once

#include <functional>
#include <string>

#include "tools/tune/pgn_games.h"

// Calls `take` with the FEN (without move counters) of every quiet position of the game after
// its first `skipPlies` plies. A position is quiet when the side to move is not in check and
// has no promotion and no capture that wins material by exchange.
void forEachQuietPosition(const PgnGame& game, int skipPlies,
                          const std::function<void(const std::string& fen)>& take);

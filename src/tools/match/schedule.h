// Which games a match plays: the engine pairs (everyone against everyone, or the first engine
// against each other one), and for each pair its games, every opening played twice with the
// colours reversed, openings taken in file order from a start offset.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace match {

struct ScheduledGame {
    int round;         // 1, 2, ... in playing order
    int pair;          // index into the pairings
    int opening;       // 0, 1, ... within the pairing; its two games share it, colours reversed
    int white, black;  // engine indices
    std::string fen;   // empty for the standard starting position
};

using Pairing = std::pair<int, int>;

std::vector<Pairing> pairings(int engineCount, bool gauntlet);

// Every pair plays gamesPerPair games; the pairs take turns, two games (one opening) at a time,
// so that a match stopped early has played them evenly. Openings wrap around at the end. With
// an odd gamesPerPair the last opening of each pair is played once, with the first engine White.
std::vector<ScheduledGame> schedule(const std::vector<Pairing>& pairs, int gamesPerPair,
                                    const std::vector<std::string>& openings, int start);

}  // namespace match

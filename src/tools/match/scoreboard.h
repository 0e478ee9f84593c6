// The results of a match as they come in: wins, draws and losses of each engine pair, its
// opening pairs (the pentanomial counts the statistics use), the faults of each engine, and the
// summary printed at the end.
//
// Two games form an opening pair when they are of the same engine pair and the same opening,
// colours reversed; in a round robin or a gauntlet every engine pair has its own. A game counts
// in W/D/L at once but in the pentanomial only when its partner has finished too, so a game
// whose partner is still running, was abandoned when the match stopped, or was never scheduled
// (the last opening of an odd number of games) is left out of the Elo, LOS and SPRT.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/match/schedule.h"
#include "tools/match/stats.h"
#include "tools/match/verdict.h"

namespace match {

struct FaultCounts {
    int illegalMoves = 0, crashes = 0, stalls = 0, timeForfeits = 0;
};

class Scoreboard {
  public:
    Scoreboard(std::vector<std::string> names, std::vector<Pairing> pairs);

    // Counts a finished game; a game without a result (aborted) is left out.
    void add(const ScheduledGame& game, const Verdict& verdict);
    // The opening pairs complete so far, from the point of view of the pair's first engine.
    const Pentanomial& openingPairs(int pair) const { return pentanomials[pair]; }
    const FaultCounts& faults(int engine) const { return faultCounts[engine]; }

    // "Morvane vs Glaurung: 6 games, +3 -1 =2, pairs [0, 0, 1, 2, 0], score ..." for the pair,
    // the running score after each game.
    std::string pairLine(int pair) const;
    // Every pair, each engine's faults, and the SPRT state when one runs.
    std::string summary(const std::optional<SprtSettings>& sprtSettings) const;

  private:
    std::vector<std::string> names;
    std::vector<Pairing> pairs;
    std::vector<Tally> tallies;
    std::vector<Pentanomial> pentanomials;
    // For each engine pair, the finished games whose partner has not finished: opening -> the
    // first engine's points in it, in half points.
    std::vector<std::map<int, int>> unpaired;
    std::vector<FaultCounts> faultCounts;
};

}  // namespace match

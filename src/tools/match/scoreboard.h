// The results of a match as they come in: wins, draws and losses of each engine pair, the
// faults of each engine, and the summary printed at the end.
#pragma once

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
    // From the point of view of the pair's first engine.
    const Tally& pairTally(int pair) const { return tallies[pair]; }
    const FaultCounts& faults(int engine) const { return faultCounts[engine]; }

    // "Morvane vs Glaurung: +3 -1 =2 ..." for the pair, the running score after each game.
    std::string pairLine(int pair) const;
    // Every pair, each engine's faults, and the SPRT state when one runs.
    std::string summary(const std::optional<SprtSettings>& sprtSettings) const;

  private:
    std::vector<std::string> names;
    std::vector<Pairing> pairs;
    std::vector<Tally> tallies;
    std::vector<FaultCounts> faultCounts;
};

}  // namespace match

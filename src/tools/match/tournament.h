// Runs the scheduled games on several threads at once, each thread keeping its own engine
// processes between games; records every result, writes the PGN, reports progress, and stops
// early when the SPRT decides or a stop is requested.
#pragma once

#include <atomic>
#include <fstream>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "tools/match/match_options.h"
#include "tools/match/schedule.h"
#include "tools/match/scoreboard.h"

namespace match {

class Tournament {
  public:
    // The engines' names must be set and distinct.
    Tournament(const MatchOptions& options, const std::vector<std::string>& openings,
               std::ostream& log);

    // Plays until every game is done or `stop` is set (by a signal, or here by the SPRT).
    // Games still running when it stops are abandoned and not counted.
    void run(std::atomic<bool>& stop);
    const Scoreboard& scoreboard() const { return board; }

  private:
    void worker(std::atomic<bool>& stop);
    void record(const ScheduledGame& scheduled, GameRecord& game, std::atomic<bool>& stop);

    const MatchOptions& options;
    std::vector<Pairing> pairs;
    std::vector<ScheduledGame> games;
    Scoreboard board;
    std::ostream& log;
    std::ofstream pgn;
    std::mutex lock;  // guards everything below and the board, the log and the PGN file
    size_t nextGame = 0;
    int finished = 0;
};

}  // namespace match

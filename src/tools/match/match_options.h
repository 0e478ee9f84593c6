// The runner's command line: the engines, the time control, the games and openings, the
// adjudication rules, the SPRT and the output.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/match/game.h"
#include "tools/match/stats.h"
#include "tools/match/uci_engine.h"

namespace match {

struct MatchOptions {
    std::vector<EngineConfig> engines;
    GameSettings game;
    int games = 2;  // per pair of engines
    std::string openings;
    int start = 0;  // index of the first opening used, 0 for the file's first line
    int concurrency = 1;
    bool gauntlet = false;  // the first engine against each other one; else a round robin
    std::string pgn;
    std::string event = "Morvane match";
    std::optional<SprtSettings> sprt;
    bool help = false;
};

// Reads the arguments (without the program name). Returns an error message, empty when the
// command line is sound.
std::string parseOptions(const std::vector<std::string>& args, MatchOptions& options);

extern const char* const USAGE;

}  // namespace match

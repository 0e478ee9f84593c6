// morvane-match: plays games between UCI engines and reports the result with Elo and SPRT.
#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <set>

#include "tools/match/match_options.h"
#include "tools/match/openings.h"
#include "tools/match/tournament.h"

namespace {

std::atomic<bool> stopRequested{false};

void onInterrupt(int) { stopRequested = true; }

// Starts each engine once, so that a wrong command fails before any game; fills in missing
// names from "id name" and makes equal names distinct.
bool probeEngines(match::MatchOptions& options) {
    std::set<std::string> taken;
    for (match::EngineConfig& config : options.engines) {
        match::UciEngine engine(config);
        if (engine.prepareGame(options.game.handshakeTimeoutMs) != match::EngineStatus::Ok) {
            std::cerr << "morvane-match: engine '" << config.command
                      << "' does not start or answer\n";
            return false;
        }
        engine.quit();
        std::string name = !config.name.empty()       ? config.name
                           : !engine.idName().empty() ? engine.idName()
                                                      : config.command;
        config.name = name;
        for (int n = 2; taken.count(config.name); n++)
            config.name = name + " (" + std::to_string(n) + ")";
        taken.insert(config.name);
    }
    return true;
}

// An engine searching a fixed depth or node count plays the same game from the same opening and
// colours, so a match longer than two games an opening adds games but no information.
void warnOfRepeatedGames(const match::MatchOptions& options, size_t openingCount) {
    const match::TimeControl& limit = options.game.timeControl;
    long distinctGames = 2 * long(std::max<size_t>(openingCount, 1));
    if (limit.kind == match::TimeControl::Clock || options.games <= distinctGames) return;
    std::cerr << "morvane-match: warning: at a fixed "
              << (limit.kind == match::TimeControl::Depth ? "depth" : "node count")
              << " the games past the first " << distinctGames
              << " replay openings already played and repeat earlier games\n";
}

}  // namespace

int main(int argc, char** argv) {
    match::MatchOptions options;
    std::string error = match::parseOptions({argv + 1, argv + argc}, options);
    if (!error.empty()) {
        std::cerr << "morvane-match: " << error << "\n" << match::USAGE;
        return 2;
    }
    if (options.help) {
        std::cout << match::USAGE;
        return 0;
    }
    std::vector<std::string> openings;
    if (!options.openings.empty() && !match::readOpenings(options.openings, openings, error)) {
        std::cerr << "morvane-match: " << error << "\n";
        return 2;
    }
    warnOfRepeatedGames(options, openings.size());
    if (!probeEngines(options)) return 2;

    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    match::Tournament tournament(options, openings, std::cout);
    tournament.run(stopRequested);
    std::cout << tournament.scoreboard().summary(options.sprt);
    return 0;
}

// morvane-match: plays games between UCI engines and reports the result with Elo and SPRT.
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
    if (!probeEngines(options)) return 2;

    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    match::Tournament tournament(options, openings, std::cout);
    tournament.run(stopRequested);
    std::cout << tournament.scoreboard().summary(options.sprt);
    return 0;
}

#include "tools/match/tournament.h"

#include <memory>
#include <thread>

#include "tools/match/pgn.h"

namespace match {

namespace {

std::vector<std::string> namesOf(const std::vector<EngineConfig>& engines) {
    std::vector<std::string> names;
    for (const EngineConfig& engine : engines) names.push_back(engine.name);
    return names;
}

}  // namespace

Tournament::Tournament(const MatchOptions& options, const std::vector<std::string>& openings,
                       std::ostream& log)
    : options(options),
      pairs(pairings(int(options.engines.size()), options.gauntlet)),
      games(schedule(pairs, options.games, openings, options.start)),
      board(namesOf(options.engines), pairs),
      log(log) {
    if (!options.pgn.empty()) pgn.open(options.pgn, std::ios::app);
}

void Tournament::run(std::atomic<bool>& stop) {
    std::vector<std::thread> threads;
    for (int i = 0; i < options.concurrency; i++) threads.emplace_back([&] { worker(stop); });
    for (std::thread& thread : threads) thread.join();
}

void Tournament::worker(std::atomic<bool>& stop) {
    std::vector<std::unique_ptr<UciEngine>> engines;
    for (const EngineConfig& config : options.engines)
        engines.push_back(std::make_unique<UciEngine>(config));
    for (;;) {
        ScheduledGame scheduled;
        {
            std::lock_guard<std::mutex> guard(lock);
            if (stop || nextGame >= games.size()) break;
            scheduled = games[nextGame++];
        }
        GameRecord game = playGame(*engines[scheduled.white], *engines[scheduled.black],
                                   scheduled.fen, options.game, stop);
        game.round = scheduled.round;
        record(scheduled, game, stop);
    }
    for (auto& engine : engines) engine->quit();
}

void Tournament::record(const ScheduledGame& scheduled, GameRecord& game, std::atomic<bool>& stop) {
    std::lock_guard<std::mutex> guard(lock);
    // Once the match has stopped, games still finishing would change a decided result.
    if (stop || game.verdict.result == Result::None) return;
    board.add(scheduled, game.verdict);
    finished++;
    if (pgn.is_open()) pgn << formatPgn(game, options.event) << std::flush;
    log << "Game " << game.round << " (" << finished << " of " << games.size() << ") " << game.white
        << " vs " << game.black << ": " << resultText(game.verdict.result) << " {"
        << game.verdict.reason << "}\n";
    if (pairs.size() == 1) log << "  " << board.pairLine(0) << "\n";
    if (options.sprt &&
        sprt(board.openingPairs(0), *options.sprt).decision != SprtDecision::Continue) {
        log << "SPRT decided after " << finished << " games\n";
        stop = true;
    }
    log << std::flush;
}

}  // namespace match

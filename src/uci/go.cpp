// Starting, stopping and releasing searches: "go", "stop", "ponderhit" and "reset".
#include <chrono>
#include <sstream>
#include <thread>

#include "search/timeman.h"
#include "uci/engine.h"

namespace {

// Reads the go parameters word by word; an unreadable number ends the reading with the fields
// read so far. Unknown words, searchmoves and its moves among them, are skipped.
SearchLimits parseGo(const std::string& line, int64_t receivedAt) {
    SearchLimits limits;
    limits.startTime = receivedAt;
    if (line == "go") limits.infinite = 1;
    std::istringstream in(line);
    const std::pair<const char*, int32_t SearchLimits::*> numbers[] = {
        {"wtime", &SearchLimits::wtime}, {"btime", &SearchLimits::btime},         {"winc", &SearchLimits::winc},
        {"binc", &SearchLimits::binc},   {"movestogo", &SearchLimits::movestogo}, {"depth", &SearchLimits::depth},
        {"movetime", &SearchLimits::movetime}, {"mate", &SearchLimits::mate},
    };
    for (std::string word; in >> word;) {
        bool ok = true;
        bool matched = false;
        for (const auto& [name, field] : numbers) {
            if (word != name) continue;
            ok = bool(in >> limits.*field);
            matched = true;
            break;
        }
        if (!matched && word == "nodes") ok = bool(in >> limits.nodes);
        if (!matched && word == "infinite") limits.infinite = 1;
        if (!matched && word == "ponder") limits.ponder = 1;
        if (!ok) break;
    }
    return limits;
}

}  // namespace

void Engine::stopSearch() {
    if (!mainThread->isSearching()) return;
    mainThread->stop();
    mainThread->waitUntilIdle();
}

bool Engine::go(std::string& line) {
    SearchLimits limits = parseGo(line, lineReadAt);
    stopSearch();
    mainThread->setUp(board->positionCommandString(), limits, multiPv, outputFlags);
    mainThread->start();
    return true;
}

void Engine::searchAndWait(const SearchLimits& limits, int lines) {
    stopSearch();
    mainThread->setUp(board->positionCommandString(), limits, lines, outputFlags);
    mainThread->start();
    mainThread->waitUntilIdle();
}

bool Engine::stop(std::string&) {
    mainThread->stop();
    return true;
}

bool Engine::ponderhit(std::string&) {
    mainThread->ponderHit();
    return true;
}

bool Engine::reset(std::string&) {
    stopSearch();
    tt->clear();
    mainThread->clear();
    return true;
}

#include "tools/match/uci_engine.h"

#include <sstream>

#include "tools/match/parse_number.h"

namespace match {

namespace {

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

std::string firstWord(const std::string& line) {
    std::vector<std::string> all = words(line);
    return all.empty() ? "" : all[0];
}

EngineStatus statusOf(ReadStatus status) {
    return status == ReadStatus::Timeout ? EngineStatus::Stalled : EngineStatus::Crashed;
}

}  // namespace

void readInfoLine(const std::string& line, std::optional<int>& score, int& depth) {
    std::vector<std::string> tokens = words(line);
    if (tokens.empty() || tokens[0] != "info") return;
    for (size_t i = 1; i + 1 < tokens.size(); i++) {
        if (tokens[i] == "string") return;  // free text follows
        if (tokens[i] == "depth") {
            if (auto value = parseNumber<int>(tokens[i + 1])) depth = *value;
        } else if (tokens[i] == "score" && i + 2 < tokens.size()) {
            auto value = parseNumber<int>(tokens[i + 2]);
            if (!value) continue;
            if (tokens[i + 1] == "cp") score = *value;
            if (tokens[i + 1] == "mate")
                score = *value > 0 ? MATE_SCORE - *value : -MATE_SCORE - *value;
        }
    }
}

EngineStatus UciEngine::waitFor(std::string_view word, Clock::time_point deadline,
                                std::string& line) {
    for (;;) {
        ReadStatus status = process.readLine(line, deadline);
        if (status != ReadStatus::Line) return statusOf(status);
        if (firstWord(line) == word) return EngineStatus::Ok;
        if (word == "uciok" && line.rfind("id name ", 0) == 0) reportedName = line.substr(8);
    }
}

EngineStatus UciEngine::start(int timeoutMs) {
    if (!process.start(words(settings.command), settings.directory)) return EngineStatus::Crashed;
    auto deadline = [&] { return Clock::now() + std::chrono::milliseconds(timeoutMs); };
    std::string line;
    if (!process.writeLine("uci")) return EngineStatus::Crashed;
    if (EngineStatus status = waitFor("uciok", deadline(), line); status != EngineStatus::Ok)
        return status;
    for (const auto& [name, value] : settings.options)
        if (!process.writeLine("setoption name " + name + " value " + value))
            return EngineStatus::Crashed;
    return EngineStatus::Ok;
}

EngineStatus UciEngine::prepareGame(int timeoutMs) {
    if (!process.running()) {
        process.stop(0);
        if (EngineStatus status = start(timeoutMs); status != EngineStatus::Ok) return status;
    }
    std::string line;
    if (!process.writeLine("ucinewgame") || !process.writeLine("isready"))
        return EngineStatus::Crashed;
    return waitFor("readyok", Clock::now() + std::chrono::milliseconds(timeoutMs), line);
}

SearchReply UciEngine::search(const std::string& position, const std::string& go, int timeoutMs) {
    SearchReply reply;
    if (!process.writeLine(position) || !process.writeLine(go)) {
        reply.status = EngineStatus::Crashed;
        return reply;
    }
    auto started = Clock::now();
    auto deadline = started + std::chrono::milliseconds(timeoutMs);
    std::string line;
    for (;;) {
        ReadStatus status = process.readLine(line, deadline);
        if (status != ReadStatus::Line) {
            reply.status = statusOf(status);
            break;
        }
        std::vector<std::string> tokens = words(line);
        if (tokens.empty()) continue;
        if (tokens[0] == "info") readInfoLine(line, reply.score, reply.depth);
        if (tokens[0] == "bestmove") {
            reply.bestMove = tokens.size() > 1 ? tokens[1] : "";
            break;
        }
    }
    reply.elapsedMs =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started).count();
    return reply;
}

}  // namespace match

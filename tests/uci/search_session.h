// What the end-to-end search tests share: starting an engine that is ready to search, reading
// the info and bestmove lines field by field, and a referee engine that says whether a list of
// moves is legal.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "engine_process.h"

namespace search_session {

using Lines = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

inline int64_t msSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Reads the banner and waits for "readyok". The short pause afterwards gives the main search
// thread time to reach its idle wait: a "go" that arrives before it does is lost (see
// GoRightAfterStartUpIsAnswered).
inline void startReady(EngineProcess& engine) {
    engine.expectBanner();
    EXPECT_EQ(engine.command(Lines{}), Lines{});
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

constexpr const char* MOVE = "[a-h][1-8][a-h][1-8][nbrq]?";

// One "info depth" line, its fields in the one order the engine prints them.
struct InfoLine {
    int depth = 0, seldepth = 0;
    std::string score;  // "cp 25", "mate -3"
    uint64_t nodes = 0, nps = 0;
    int64_t time = 0;
    int multipv = 0;
    std::vector<std::string> pv;
    int hashfull = 0;

    // The score in centipawns, mates far beyond any other score.
    int value() const {
        int n = std::stoi(score.substr(score.find(' ') + 1));
        if (score.starts_with("cp ")) return n;
        return n > 0 ? 100000 - n : -100000 - n;
    }
};

inline std::optional<InfoLine> parseInfo(const std::string& line) {
    static const std::regex pattern(
        std::string("info depth (\\d+) seldepth (\\d+) score ((?:cp|mate) -?\\d+)"
                    " nodes (\\d+) nps (\\d+) time (\\d+) multipv (\\d+) pv (") +
        MOVE + "(?: " + MOVE + ")*) hashfull (\\d+) tbhits 0");
    std::smatch m;
    if (!std::regex_match(line, m, pattern)) return std::nullopt;
    InfoLine info;
    info.depth = std::stoi(m[1]);
    info.seldepth = std::stoi(m[2]);
    info.score = m[3];
    info.nodes = std::stoull(m[4]);
    info.nps = std::stoull(m[5]);
    info.time = std::stoll(m[6]);
    info.multipv = std::stoi(m[7]);
    std::istringstream moves(m[8]);
    for (std::string move; moves >> move;) info.pv.push_back(move);
    info.hashfull = std::stoi(m[9]);
    return info;
}

struct BestMove {
    std::string move, ponder;  // ponder empty when none was given
};

inline std::optional<BestMove> parseBestMove(const std::string& line) {
    static const std::regex pattern(std::string("bestmove (") + MOVE + ")(?: ponder (" + MOVE +
                                    "))?");
    std::smatch m;
    if (!std::regex_match(line, m, pattern)) return std::nullopt;
    return BestMove{m[1], m[2]};
}

inline bool isBestMoveLine(const std::string& line) { return line.starts_with("bestmove "); }

// The lines of one search: every info line parsed, then the bestmove. Anything else is a
// failure.
struct SearchOutput {
    std::vector<InfoLine> infos;
    std::optional<BestMove> best;
    int invalidHashMoves = 0;  // a torn table entry shared between threads may be reported
};

inline SearchOutput readSearch(EngineProcess& engine, int timeoutMs) {
    SearchOutput out;
    for (const std::string& line : engine.readLinesUntil(isBestMoveLine, timeoutMs)) {
        if (auto info = parseInfo(line)) {
            out.infos.push_back(*info);
        } else if (auto best = parseBestMove(line)) {
            out.best = best;
        } else if (line == "INVALID HASH MOVE!!!") {
            out.invalidHashMoves++;
        } else {
            ADD_FAILURE() << "unexpected line: " << line;
        }
    }
    return out;
}

inline std::string join(const std::vector<std::string>& moves) {
    std::string text;
    for (const std::string& m : moves) text += (text.empty() ? "" : " ") + m;
    return text;
}

// A third engine that only sets up positions: a move list is legal when the position command
// prints nothing.
class Referee {
  public:
    Referee() { startReady(engine); }

    // `position` is "startpos" or "fen ...", possibly with moves already.
    void expectLegal(const std::string& position, const std::vector<std::string>& moves,
                     const std::string& context) {
        std::string line = "position " + position;
        if (!moves.empty())
            line += (position.find(" moves") == std::string::npos ? " moves " : " ") + join(moves);
        EXPECT_EQ(engine.command(line), Lines{}) << context << ": " << line;
    }

    EngineProcess engine;
};

}  // namespace search_session

// What the search tests share: an engine ready to search, the info and bestmove lines read
// field by field, and a referee engine that says whether a list of moves is legal.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <regex>
#include <sstream>
#include <thread>

#include "engine_process.h"

namespace search_session {

using Clock = std::chrono::steady_clock;

inline int64_t msSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Banner and "readyok", then a pause for the main search thread to reach its idle wait.
inline void startReady(EngineProcess& engine) {
    engine.expectBanner();
    EXPECT_EQ(engine.command(Lines{}), Lines{});
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

constexpr const char* MOVE = "[a-h][1-8][a-h][1-8][nbrq]?";

// One "info depth" line, its fields in the one order the engine prints them.
struct InfoLine {
    int depth = 0, seldepth = 0, multipv = 0, hashfull = 0;
    std::string score;  // "cp 25", "mate -3"
    uint64_t nodes = 0, nps = 0;
    int64_t time = 0;
    std::vector<std::string> pv;
};

inline std::optional<InfoLine> parseInfo(const std::string& line) {
    static const std::regex pattern(
        std::string("info depth (\\d+) seldepth (\\d+) score ((?:cp|mate) -?\\d+) nodes (\\d+) "
                    "nps (\\d+) time (\\d+) multipv (\\d+) pv (") +
        MOVE + "(?: " + MOVE + ")*) hashfull (\\d+) tbhits 0");
    std::smatch m;
    if (!std::regex_match(line, m, pattern)) return std::nullopt;
    // clang-format off
    InfoLine info{std::stoi(m[1]), std::stoi(m[2]), std::stoi(m[7]), std::stoi(m[9]), m[3],
                  std::stoull(m[4]), std::stoull(m[5]), std::stoll(m[6]), {}};
    // clang-format on
    std::istringstream moves(m[8]);
    for (std::string move; moves >> move;) info.pv.push_back(move);
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

// The lines of one search: every info line parsed, then the bestmove; anything else fails.
struct SearchOutput {
    std::vector<InfoLine> infos;
    std::optional<BestMove> best;
};

inline SearchOutput readSearch(EngineProcess& engine, int timeoutMs) {
    SearchOutput out;
    for (const std::string& line : engine.readLinesUntil(isBestMoveLine, timeoutMs)) {
        if (auto info = parseInfo(line))
            out.infos.push_back(*info);
        else if (auto best = parseBestMove(line))
            out.best = best;
        else if (line != "INVALID HASH MOVE!!!")  // a torn entry shared between threads
            ADD_FAILURE() << "unexpected line: " << line;
    }
    return out;
}

// A second engine that only sets up positions: a move list is legal when "position" prints
// nothing.
class Referee {
  public:
    Referee() { startReady(engine); }
    // `position` is "startpos" or "fen ...", possibly with moves already.
    void expectLegal(const std::string& position, const std::vector<std::string>& moves,
                     const std::string& context) {
        std::string line = "position " + position;
        for (size_t i = 0; i < moves.size(); i++)
            line +=
                (i || position.find(" moves") != std::string::npos ? " " : " moves ") + moves[i];
        EXPECT_EQ(engine.command(line), Lines{}) << context << ": " << line;
    }
    EngineProcess engine;
};

}  // namespace search_session

// One game between two engines: the runner keeps the clocks, checks every move with the core,
// ends the game by the rules or by adjudication, and scores an engine's fault as its loss.
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "core/types.h"
#include "tools/match/score_adjudication.h"
#include "tools/match/time_control.h"
#include "tools/match/uci_engine.h"
#include "tools/match/verdict.h"

namespace match {

struct GameSettings {
    TimeControl timeControl;
    ResignRule resign;
    DrawRule draw;
    int handshakeTimeoutMs = 5000;  // for uciok and readyok
    int stallMarginMs = 2000;       // past the remaining time and grace, a silent engine stalls
    int moveTimeoutMs = 60000;      // per move at a fixed depth or node count
};

struct PlayedMove {
    Move move;
    std::optional<int> score;  // as the mover reported it
    int depth;
    long elapsedMs;
};

struct GameRecord {
    int round = 0;
    std::string white, black;
    std::string startFen;     // empty for the standard starting position
    std::string timeControl;  // both sides' clock; empty when they differ (time odds)
    std::string date;         // YYYY.MM.DD
    std::vector<PlayedMove> moves;
    Verdict verdict;
    std::string whiteTimeControl, blackTimeControl;  // each side's, only when they differ
};

// Plays a game from the position (empty for the standard start). The engines are started when
// they do not run. Checking `stop` between moves, the game is abandoned as Aborted.
GameRecord playGame(UciEngine& white, UciEngine& black, const std::string& startFen,
                    const GameSettings& settings, const std::atomic<bool>& stop);

}  // namespace match

// The runner's side of a UCI conversation with one engine: the hand-shake with its options, a
// new game, and a search that returns the best move with the last score the engine reported.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/match/engine_process.h"
#include "tools/match/time_control.h"

namespace match {

struct EngineConfig {
    std::string name;       // as shown in the PGN and the summary
    std::string command;    // program and arguments, separated by blanks
    std::string directory;  // working directory; empty for the runner's
    std::vector<std::pair<std::string, std::string>> options;  // setoption name/value pairs
    std::optional<TimeControl> clock;  // a clock of its own (time odds); none: the match's
};

enum class EngineStatus { Ok, Stalled, Crashed };

// Mate scores are mapped far beyond any centipawn threshold, nearer mates further out.
constexpr int MATE_SCORE = 100000;

struct SearchReply {
    EngineStatus status = EngineStatus::Ok;
    std::string bestMove;      // as the engine wrote it
    std::optional<int> score;  // centipawns for the side to move, from the last info line
    int depth = 0;
    long elapsedMs = 0;  // from sending go to reading bestmove
};

class UciEngine {
  public:
    explicit UciEngine(EngineConfig config) : settings(std::move(config)) {}

    // Starts the process unless it runs already (uci/uciok, then the options), then sends
    // ucinewgame and isready/readyok. Each answer must come within timeoutMs.
    EngineStatus prepareGame(int timeoutMs);
    // Sends the position and go lines and waits up to timeoutMs for the best move.
    SearchReply search(const std::string& position, const std::string& go, int timeoutMs);
    // Asks the engine to quit, and kills it when it does not.
    void quit() { process.stop(1000); }
    // Kills the engine at once; the next prepareGame starts a new one.
    void kill() { process.stop(0); }

    const EngineConfig& config() const { return settings; }
    const std::string& idName() const { return reportedName; }  // from "id name"

  private:
    EngineStatus start(int timeoutMs);
    // Reads lines until one whose first word is `word`; that line is left in `line`.
    EngineStatus waitFor(std::string_view word, Clock::time_point deadline, std::string& line);

    EngineConfig settings;
    EngineProcess process;
    std::string reportedName;
};

// The score and depth of an info line, when it carries them; the score is kept in `score` and
// the depth in `depth` only when present, so that later lines refine earlier ones.
void readInfoLine(const std::string& line, std::optional<int>& score, int& depth);

}  // namespace match

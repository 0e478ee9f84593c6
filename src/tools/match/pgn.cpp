#include "tools/match/pgn.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "core/board.h"
#include "core/notation.h"

namespace match {

namespace {

constexpr size_t LINE_LENGTH = 80;

std::string tag(const std::string& name, const std::string& value) {
    std::string escaped;
    for (char c : value) {
        if (c == '"' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return "[" + name + " \"" + escaped + "\"]\n";
}

// "{+0.35/12 0.41s}", "{-M3/9 0.02s}" (mated in three moves), or "{0.41s}" without a score.
std::string moveComment(const PlayedMove& played) {
    char text[64];
    std::string score;
    if (played.score) {
        int value = *played.score;
        if (std::abs(value) > MATE_SCORE / 2) {
            int moves = MATE_SCORE - std::abs(value);
            score = std::string(value > 0 ? "+M" : "-M") + std::to_string(moves);
        } else {
            std::snprintf(text, sizeof text, "%+.2f", value / 100.0);
            score = text;
        }
        score += '/';
        score += std::to_string(played.depth);
        score += ' ';
    }
    std::snprintf(text, sizeof text, "%.2fs", played.elapsedMs / 1000.0);
    return "{" + score + text + "}";
}

// Appends the words, breaking lines before LINE_LENGTH.
class Wrapper {
  public:
    void add(const std::string& word) {
        if (!line.empty() && line.size() + 1 + word.size() > LINE_LENGTH) {
            text += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    std::string finish() { return text + line + "\n"; }

  private:
    std::string text, line;
};

}  // namespace

std::string formatPgn(const GameRecord& game, const std::string& event) {
    std::string pgn = tag("Event", event) + tag("Site", "?") + tag("Date", game.date) +
                      tag("Round", std::to_string(game.round)) + tag("White", game.white) +
                      tag("Black", game.black) + tag("Result", resultText(game.verdict.result));
    auto board = std::make_unique<Board>();
    if (!game.startFen.empty()) {
        board->setFen(game.startFen);
        pgn += tag("FEN", game.startFen) + tag("SetUp", "1");
    }
    pgn += game.timeControl.empty() ? tag("WhiteTimeControl", game.whiteTimeControl) +
                                          tag("BlackTimeControl", game.blackTimeControl)
                                    : tag("TimeControl", game.timeControl);
    pgn += tag("PlyCount", std::to_string(game.moves.size())) +
           tag("Termination", terminationText(game.verdict.termination)) + "\n";

    Wrapper body;
    for (size_t i = 0; i < game.moves.size(); i++) {
        int moveNumber = int(board->ply / 2 + 1);
        if (board->sideToMove == White)
            body.add(std::to_string(moveNumber) + ".");
        else if (i == 0)
            body.add(std::to_string(moveNumber) + "...");
        Move m = game.moves[i].move;
        body.add(moveToSan(*board, m));
        body.add(moveComment(game.moves[i]));
        board->makeMove(m);
    }
    if (!game.verdict.reason.empty()) body.add("{" + game.verdict.reason + "}");
    body.add(resultText(game.verdict.result));
    return pgn + body.finish() + "\n";
}

}  // namespace match

#include "tools/tune/pgn_games.h"

#include <cctype>
#include <memory>
#include <sstream>

#include "core/notation.h"
#include "core/text.h"

namespace {

struct RawGame {
    std::string fen, result, movetext;
};

// The value of a tag line such as [Result "1-0"], or empty when the line is another tag.
std::string tagValue(const std::string& line, const std::string& name) {
    std::string prefix = "[" + name + " \"";
    if (line.rfind(prefix, 0) != 0) return "";
    size_t end = line.rfind('"');
    return end > prefix.size() ? line.substr(prefix.size(), end - prefix.size()) : "";
}

bool isMoveNumber(const std::string& token) { return std::isdigit((unsigned char)token[0]); }

// Replays the movetext; the words that are not moves (numbers, results, annotations) are passed
// over, comments in braces skipped.
void replay(const RawGame& raw, PgnGame& game) {
    auto board = std::make_unique<Board>();
    if (!raw.fen.empty() && board->setFen(raw.fen) != 0) return;
    std::string text = raw.movetext;
    for (size_t open; (open = text.find('{')) != std::string::npos;) {
        size_t close = text.find('}', open);
        text.erase(open, close == std::string::npos ? std::string::npos : close - open + 1);
    }
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (isMoveNumber(word) || word[0] == '$' || word == "*") continue;
        Move m = sanToMove(*board, word);
        if (!m) return;
        board->makeMove(m);
        game.moves.push_back(m);
    }
}

bool finish(const RawGame& raw, const std::function<void(const PgnGame&)>& take) {
    PgnGame game{raw.fen, 0, {}};
    if (raw.result == "1-0")
        game.whiteScore = 1;
    else if (raw.result == "0-1")
        game.whiteScore = 0;
    else if (raw.result == "1/2-1/2")
        game.whiteScore = 0.5;
    else
        return false;
    replay(raw, game);
    take(game);
    return true;
}

}  // namespace

int readPgnGames(std::istream& in, const std::function<void(const PgnGame&)>& take) {
    int skipped = 0;
    RawGame raw;
    bool inMoves = false, any = false;
    for (std::string line; readLine(in, line);) {
        if (line.empty()) continue;
        if (line[0] == '[') {
            if (inMoves) {
                skipped += !finish(raw, take);
                raw = RawGame();
                inMoves = false;
            }
            any = true;
            if (std::string fen = tagValue(line, "FEN"); !fen.empty()) raw.fen = fen;
            if (std::string result = tagValue(line, "Result"); !result.empty()) raw.result = result;
            continue;
        }
        inMoves = true;
        raw.movetext += line + " ";
    }
    if (any) skipped += !finish(raw, take);
    return skipped;
}

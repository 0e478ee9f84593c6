#include "tools/epd.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/board.h"
#include "core/console.h"
#include "core/notation.h"
#include "core/text.h"
#include "uci/engine.h"

namespace {

// The four position fields of an EPD line, as a FEN with zeroed counters.
std::string epdFen(const std::string& line) {
    std::istringstream in(line);
    std::string fields[4];
    for (std::string& f : fields)
        if (!(in >> f)) return "";
    return fields[0] + " " + fields[1] + " " + fields[2] + " " + fields[3] + " 0 1";
}

// The first move of the "bm" operation, in SAN.
std::string bestMoveText(const std::string& line) {
    size_t at = line.find(" bm ");
    if (at == std::string::npos) return "";
    std::istringstream in(line.substr(at + 4));
    std::string move;
    in >> move;
    if (!move.empty() && move.back() == ';') move.pop_back();
    return move;
}

}  // namespace

int checkEpd(const std::string& line) {
    std::string fen = epdFen(line);
    if (fen.empty() || Board::checkFen(fen) != 0) return 1;
    return bestMoveText(line).empty() ? 1 : 0;
}

unsigned setEpdPosition(Board& board, const std::string& line) {
    if (checkEpd(line) != 0 || board.setFen(epdFen(line)) != 0) return 0;
    return sanToMove(board, bestMoveText(line));
}

bool Engine::loadepd(std::string& line) {
    std::vector<std::string> tokens = splitTokens(line, ' ');
    if (tokens.size() < 2) {
        consolePrint("usage: loadepd filename.epd");
        return true;
    }
    const std::string& name = tokens[1];
    if (!fileExists(name)) {
        consolePrint("file " + name + " not found");
        return true;
    }
    std::ifstream in;
    for (int attempt = 0; attempt < 6 && !in.is_open(); attempt++) {
        if (attempt) std::this_thread::sleep_for(std::chrono::seconds(1));
        in.open(name);
    }
    if (!in.is_open()) {
        consolePrint("file " + name + " exists but could not be opened");
        return true;
    }
    testPositions.clear();
    for (std::string text; readLine(in, text);)
        if (checkEpd(text) == 0) testPositions.push_back(text);
    consolePrint(std::to_string(testPositions.size()) + " positions loaded");
    return true;
}

bool Engine::runepd(std::string& line) {
    const int depth = line.find("-d3") != std::string::npos ? 3 : line.find("-d2") != std::string::npos ? 2 : 1;
    const bool quiet = line.find("-q") != std::string::npos;
    SearchLimits limits;
    limits.depth = depth;
    limits.startTime = TimeManager::now();
    mainThread->testRun = true;
    int solved = 0;
    for (const std::string& text : testPositions) {
        Move best = setEpdPosition(*board, text);
        searchAndWait(limits, 1);
        if (best && (mainThread->bestMove & MOVE_MASK) == best) solved++;
    }
    mainThread->testRun = false;
    const int64_t elapsed = TimeManager::now() - limits.startTime;
    if (quiet)
        consolePrint(std::to_string(solved));
    else
        consolePrint("solved " + std::to_string(solved) + "/" + std::to_string(testPositions.size()) + " in " +
                     std::to_string(elapsed) + " ms\nScore: " + std::to_string(solved));
    return true;
}

#include "uci/engine.h"

#include <algorithm>

#include "core/console.h"
#include "core/notation.h"
#include "core/print.h"
#include "core/text.h"
#include "eval/evaluator.h"
#include "eval/weights.h"
#include "search/endgame_tables.h"
#include "tools/evaltest.h"
#include "tools/perft.h"

const char* const ENGINE_NAME = "Morvane";
const char* const ENGINE_VERSION = "2019.10.5";
const char* const DEFAULT_BOOK_FILE = "medium.mbk";

std::string identification() {
    constexpr int MAJOR = 4, MINOR = 0, BUILD = 853;
    std::string platform = sizeof(void*) == 8 ? " x64" : " x32";
    return std::string(ENGINE_NAME) + " " + std::to_string(MAJOR) + "." + std::to_string(MINOR) + "." +
           std::to_string(BUILD) + platform;
}

namespace {
const std::string GAME_TOO_LONG =
    "Game too long: the engine keeps at most " + std::to_string(MAX_GAME_PLIES) + " plies";
}

Engine::Engine()
    : board(std::make_unique<Board>()),
      evaluator(std::make_unique<Evaluator>(*board)),
      tt(std::make_unique<TranspositionTable>()) {
    tt->resize(hashMb);
    if (fileExists(DEFAULT_BOOK_FILE)) bookFile = DEFAULT_BOOK_FILE;
    ResetWeights();
    RecomputeDerived();
    mainThread = std::make_unique<TMainSearchThread>(*tt);
    mainThread->launch();
    // Built now rather than at the first probe, which may come in a game under a short clock.
    EndgameTables::instance();
}

// The search threads go first: they use the table.
Engine::~Engine() { mainThread.reset(); }

bool Engine::quit(std::string&) { return false; }

bool Engine::isready(std::string&) {
    consolePrint("readyok");
    return true;
}

bool Engine::position(std::string& line) {
    static const char* const MESSAGES[] = {"", "Invalid position string", "Invalid FEN", "Illegal move"};
    int code = board->setPosition(line);
    if (code >= 1 && code <= 3) consolePrint(MESSAGES[code]);
    if (code == 4) consolePrint(GAME_TOO_LONG);
    return true;
}

bool Engine::eval(std::string&) {
    consolePrint("Detailed evaluation information not available!");
    return true;
}

bool Engine::print(std::string&) {
    std::vector<std::string> lines;
    appendBoardPrint(*board, lines);
    for (const std::string& text : lines) consolePrint(text);
    return true;
}

bool Engine::perft(std::string& line) {
    perftCommand(*board, line);
    return true;
}

bool Engine::divide(std::string& line) {
    divideCommand(*board, line);
    return true;
}

bool Engine::weights(std::string&) { return true; }

bool Engine::setweight(std::string& line) {
    std::string result = SetWeightCommand(splitTokens(line, ' '));
    if (!result.empty()) consolePrint(result);
    return true;
}

bool Engine::evaltest(std::string&) {
    for (const std::string& text : evalTest(*board, *evaluator)) consolePrint(text);
    return true;
}
bool Engine::setparam(std::string&) { return true; }

bool Engine::runwdlfen(std::string&) {
    consolePrint("0");
    return true;
}

bool Engine::flip(std::string&) {
    board->flip();
    return true;
}

bool Engine::flop(std::string&) {
    if (!board->flop()) consolePrint("flop: not possible while castling rights are held");
    return true;
}

// The argument is everything after "tbtest "; a bare "tbtest" has none and fails here, which the
// command loop reports.
bool Engine::tbtest(std::string& line) {
    std::string argument = line.substr(7);
    std::transform(argument.begin(), argument.end(), argument.begin(), ::toupper);
    if (argument.size() < 4)
        consolePrint("Usage: tbtest EndGameId [KRKP, KRKB ...]");
    else
        consolePrint("Gaviota TableBase Support not compiled");
    return true;
}

bool Engine::tryMove(const std::string& word) {
    Move m = parseMove(*board, word);
    if (!m) {
        consolePrint("Unknown command : " + word);
    } else if (!isMoveInList(*board, m)) {
        consolePrint("Illegal move: " + word);
    } else if (board->stateIndex() >= MAX_GAME_PLIES) {
        consolePrint(GAME_TOO_LONG);
    } else {
        board->makeMove(m);
    }
    return true;
}

// morvane-drawcheck: checks the evaluation's draw recogniser against a reference engine. For
// every ending the recogniser knows, it sets up random legal positions, keeps those it calls a
// draw, and has the reference engine search each one; a position the reference scores as a
// clear win for either side is a false draw, and is printed.
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "core/board.h"
#include "eval/endgame.h"
#include "eval/evaluator.h"
#include "tools/match/uci_engine.h"

namespace {

const char* const USAGE =
    "usage: morvane-drawcheck [--engine CMD] [--depth N] [--positions N] [--win CP] [--seed N]\n"
    "                         [--ending NAME]\n"
    "  For each ending the draw recogniser knows, N random positions it calls drawn are\n"
    "  searched by the reference engine (default: stockfish, depth 20); a score of at least\n"
    "  CP centipawns (default 300) for either side counts as a false draw. --ending checks\n"
    "  one ending only (KRKP, KQKQ, ...).";

struct Settings {
    std::string engine = "stockfish";
    int depth = 20;
    int positions = 100;
    int winCp = 300;
    unsigned seed = 1;
    std::string ending;  // empty for all
};

constexpr EndGameId RECOGNISED[] = {KNKN, KBKN, KBKB, KNNK, KRKP, KRKN, KRKB,
                                    KRKR, KBKP, KNKP, KBPK, KQKP, KQKQ};

// A random position with the men of an ending's name ("KRKP": White's men, then Black's), the
// colours swapped half of the time. Empty when the placement is illegal.
std::string randomFen(std::string_view name, std::mt19937& random) {
    char squares[64] = {};
    bool swap = random() % 2;
    Color side = White;
    for (size_t i = 0; i < name.size(); i++) {
        if (name[i] == 'K' && i > 0) side = Black;
        Color colour = swap ? ~side : side;
        int sq = random() % 64;
        if (squares[sq]) return "";
        if (name[i] == 'P' && (sq < 8 || sq >= 56)) return "";
        squares[sq] = colour == White ? name[i] : char(name[i] - 'A' + 'a');
    }
    std::string fen;
    for (int rank = 7; rank >= 0; rank--) {
        int empty = 0;
        for (int file = 0; file < 8; file++) {
            char c = squares[rank * 8 + file];
            if (!c) {
                empty++;
                continue;
            }
            if (empty) fen += char('0' + empty);
            empty = 0;
            fen += c;
        }
        if (empty) fen += char('0' + empty);
        if (rank) fen += '/';
    }
    return fen + (random() % 2 ? " w" : " b") + " - - 0 1";
}

// Legal for the check: the side not to move is not in check and the kings do not touch.
bool legal(const Board& board) {
    Color mover = board.sideToMove;
    return distance(board.kingSquare[White], board.kingSquare[Black]) > 1 &&
           !board.isAttacked(board.kingSquare[~mover], mover);
}

bool parse(int argc, char** argv, Settings& s) {
    for (int i = 1; i < argc; i++) {
        std::string flag = argv[i];
        if (i + 1 >= argc) return false;
        std::string value = argv[++i];
        if (flag == "--engine") s.engine = value;
        else if (flag == "--depth") s.depth = std::atoi(value.c_str());
        else if (flag == "--positions") s.positions = std::atoi(value.c_str());
        else if (flag == "--win") s.winCp = std::atoi(value.c_str());
        else if (flag == "--seed") s.seed = unsigned(std::atoi(value.c_str()));
        else if (flag == "--ending") s.ending = value;
        else return false;
    }
    bool known = s.ending.empty();
    for (EndGameId id : RECOGNISED) known |= s.ending == ENDGAME_NAMES[id];
    return known && s.depth > 0 && s.positions > 0 && s.winCp > 0;
}

}  // namespace

int main(int argc, char** argv) {
    Settings settings;
    if (!parse(argc, argv, settings)) {
        std::cerr << USAGE << "\n";
        return 2;
    }
    match::UciEngine reference({"reference", settings.engine, "", {}});
    if (reference.prepareGame(10000) != match::EngineStatus::Ok) {
        std::cerr << "morvane-drawcheck: engine '" << settings.engine << "' does not answer\n";
        return 1;
    }
    std::mt19937 random(settings.seed);
    auto board = std::make_unique<Board>();
    auto evaluator = std::make_unique<Evaluator>(*board);
    int falseDraws = 0;
    const std::string go = "go depth " + std::to_string(settings.depth);
    for (EndGameId id : RECOGNISED) {
        if (!settings.ending.empty() && settings.ending != ENDGAME_NAMES[id]) continue;
        int drawn = 0, tried = 0, wrong = 0;
        while (drawn < settings.positions && tried < 1000000) {
            tried++;
            std::string fen = randomFen(ENDGAME_NAMES[id], random);
            if (fen.empty() || board->setFen(fen) != 0 || !legal(*board)) continue;
            if (!evaluator->recognizedDraw()) continue;
            drawn++;
            reference.prepareGame(10000);
            match::SearchReply reply = reference.search("position fen " + fen, go, 120000);
            if (reply.status != match::EngineStatus::Ok) {
                std::cerr << "morvane-drawcheck: the reference engine failed on " << fen << "\n";
                return 1;
            }
            if (reply.score && std::abs(*reply.score) >= settings.winCp) {
                wrong++;
                std::cout << "  false draw " << ENDGAME_NAMES[id] << ": " << fen << "  score "
                          << *reply.score << "\n";
            }
        }
        std::cout << ENDGAME_NAMES[id] << ": " << drawn << " recognised draws checked, " << wrong
                  << " false" << std::endl;
        falseDraws += wrong;
    }
    reference.quit();
    std::cout << "false draws: " << falseDraws << "\n";
    return falseDraws ? 1 : 0;
}

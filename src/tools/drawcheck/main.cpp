// morvane-drawcheck: checks the evaluation's draw recogniser and the blocked-pawn endgame table
// against a reference engine. For every ending the recogniser knows, it sets up random legal
// positions, keeps those it calls a draw, and has the reference engine search each one; a
// position the reference scores as a clear win for either side is a false draw, and is printed.
// For KPKP it keeps the positions the table holds, and the reference must also see the table's
// wins and losses as clear ones.
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "core/board.h"
#include "core/endgame_id.h"
#include "eval/evaluator.h"
#include "search/endgame_tables.h"
#include "tools/match/uci_engine.h"

namespace {

const char* const USAGE =
    "usage: morvane-drawcheck [--engine CMD] [--depth N] [--positions N] [--win CP] [--seed N]\n"
    "                         [--ending NAME]\n"
    "  For each ending the draw recogniser knows, N random positions it calls drawn are\n"
    "  searched by the reference engine (default: stockfish, depth 20); a score of at least\n"
    "  CP centipawns (default 300) for either side counts as a false draw. --ending checks\n"
    "  one ending only (KRKP, KQKQ, ...). KPKP checks the table of blocked pawns: its draws,\n"
    "  wins and losses must all be the reference's.";

struct Settings {
    std::string engine = "stockfish";
    int depth = 20;
    int positions = 100;
    int winCp = 300;
    unsigned seed = 1;
    std::string ending;  // empty for all
};

constexpr EndGameId CHECKED[] = {KNKN, KBKN, KBKB, KNNK, KRKP, KRKN, KRKB,
                                 KRKR, KBKP, KNKP, KBPK, KQKP, KQKQ, KPKP};

constexpr int NOT_CHECKED = 2;

// What the engine knows of a position for the side to move: 1 a win, -1 a loss, 0 a draw;
// NOT_CHECKED when neither the recogniser nor the table speaks.
int knownOutcome(EndGameId id, Board& board, Evaluator& evaluator) {
    if (id != KPKP) return evaluator.recognizedDraw() ? 0 : NOT_CHECKED;
    int value = EndgameTables::instance().probe(board);
    return value == NO_TABLE_VALUE ? NOT_CHECKED : (value > 0) - (value < 0);
}

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
    for (EndGameId id : CHECKED) known |= s.ending == ENDGAME_NAMES[id];
    return known && s.depth > 0 && s.positions > 0 && s.winCp > 0;
}

}  // namespace

int main(int argc, char** argv) {
    Settings settings;
    if (!parse(argc, argv, settings)) {
        std::cerr << USAGE << "\n";
        return 2;
    }
    match::UciEngine reference({"reference", settings.engine, "", {}, {}});
    if (reference.prepareGame(10000) != match::EngineStatus::Ok) {
        std::cerr << "morvane-drawcheck: engine '" << settings.engine << "' does not answer\n";
        return 1;
    }
    std::mt19937 random(settings.seed);
    auto board = std::make_unique<Board>();
    auto evaluator = std::make_unique<Evaluator>(*board);
    int falseOutcomes = 0;
    const std::string go = "go depth " + std::to_string(settings.depth);
    for (EndGameId id : CHECKED) {
        if (!settings.ending.empty() && settings.ending != ENDGAME_NAMES[id]) continue;
        int known = 0, tried = 0, wrong = 0;
        while (known < settings.positions && tried < 1000000) {
            tried++;
            std::string fen = randomFen(ENDGAME_NAMES[id], random);
            if (fen.empty() || board->setFen(fen) != 0 || !legal(*board)) continue;
            int outcome = knownOutcome(id, *board, *evaluator);
            if (outcome == NOT_CHECKED) continue;
            known++;
            reference.prepareGame(10000);
            match::SearchReply reply = reference.search("position fen " + fen, go, 120000);
            if (reply.status != match::EngineStatus::Ok) {
                std::cerr << "morvane-drawcheck: the reference engine failed on " << fen << "\n";
                return 1;
            }
            int score = reply.score.value_or(0);
            int seen = score >= settings.winCp ? 1 : score <= -settings.winCp ? -1 : 0;
            if (seen != outcome) {
                wrong++;
                std::cout << "  false " << (outcome ? "win or loss " : "draw ")
                          << ENDGAME_NAMES[id] << ": " << fen << "  score " << score << "\n";
            }
        }
        std::cout << ENDGAME_NAMES[id] << ": " << known << " known outcomes checked, " << wrong
                  << " false" << std::endl;
        falseOutcomes += wrong;
    }
    reference.quit();
    std::cout << "false outcomes: " << falseOutcomes << "\n";
    return falseOutcomes ? 1 : 0;
}

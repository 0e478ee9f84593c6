// The root of the search: ordering the root moves once, one iteration over them per depth, and
// the info lines that report each iteration.
#include <algorithm>
#include <cmath>

#include "core/console.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "core/threats.h"
#include "eval/evaluator.h"
#include "search/search_params.h"
#include "search/see.h"
#include "search/tactics.h"
#include "search/threads.h"

std::string uciScore(int score) {
    if (score != NO_VALUE && score >= 31744) return "mate " + std::to_string((32768 - score) / 2);
    if (score != NO_VALUE && score < -31743) return "mate -" + std::to_string((score + 32768) / 2);
    return "cp " + std::to_string(score);
}

// Orders the root moves by the evaluation after each move; moves that lose material by SEE last.
void TSearchThread::prepareRootMoves() {
    MoveList list;
    generateAll(board, list);
    board.state().staticEval = board.inCheck() ? NO_VALUE : evaluate();
    for (Move& m : list) {
        int key = 0;
        if (see(board, m) >= 0) {
            board.makeMove(m);
            int x = -evaluate();
            board.unmakeMove(m);
            key = x >= 0 ? 256 + std::min(int(std::sqrt(double(x))), 255) : 256 - std::min(int(std::sqrt(double(-x))), 256);
        }
        m = withKey(m, key);
    }
    std::stable_sort(list.begin(), list.end(), [](Move a, Move b) { return keyOf(a) > keyOf(b); });
    rootMoveCount = int(list.count);
    for (int i = 0; i < rootMoveCount; i++) {
        RootMove& rm = rootMoves[i];
        rm.move = list.moves[i] & MOVE_MASK;
        rm.score = rm.previousScore = NO_VALUE;
        rm.pv[0] = rm.move;
        rm.pv[1] = 0;
    }
}

void TSearchThread::rootSearch(int depth) {
    const SearchParams& P = SEARCH_PARAMS;
    for (int i = 0; i < rootMoveCount; i++) {
        rootMoves[i].previousScore = rootMoves[i].score;
        rootMoves[i].score = NO_VALUE;
    }
    bestScore = NO_VALUE;

    // A root position already searched this deep (or an opening-book entry) needs no search.
    if (multiPv == 1) {
        ProbeResult entry = tt.probe(board.key(), 0);
        Move known = entry.bound == BOUND_EXACT && entry.depth >= depth ? validateMove(board, entry.move) : 0;
        for (int i = 0; known && i < rootMoveCount; i++) {
            if (rootMoves[i].move != known) continue;
            std::rotate(rootMoves, rootMoves + i, rootMoves + i + 1);
            rootMoves[0].score = bestScore = entry.score;
            rootMoves[0].pv[0] = bestMove = bestPv[0] = known;
            rootMoves[0].pv[1] = bestPv[1] = 0;
            return;
        }
    }

    const bool inCheck = board.inCheck();
    int quietsSearched = 0;
    Move childPv[MAX_PLY + 1];
    for (int i = 0; i < rootMoveCount; i++) {
        RootMove& rm = rootMoves[i];
        if (stopFlag) {
            rm.score = NO_VALUE;
            continue;
        }
        // MultiPV is stored as typed; below one it searches with the window of one line, as
        // the record before the list's first does not exist.
        const int alpha = rootMoves[std::clamp(multiPv, 1, rootMoveCount) - 1].score;
        const Move m = rm.move;
        if (index == 0 && (outputFlags & 4) && depth >= 9)
            consolePrint("info currmove " + moveToUci(m) + " currmovenumber " + std::to_string(i + 1));

        int reduced = depth;
        const bool quiet = !moveCaptured(m) && !moveIsPromotion(m) && !moveIsCastling(m);
        if (i > 0 && depth >= 3 && !isMateScore(alpha) && !inCheck && quiet &&
            ordering->historyOf(m) <= depth * depth && quietsSearched >= 5 && !givesCheck(board, m)) {
            const bool active = isActiveMove(board, m);
            const int d = std::min(depth, 63), n = std::min(i, 63);
            int r = (active ? P.reductionA[d][n] : P.reductionB[d][n]) * P.pvReductionSixteenths / 16;
            if (r >= 10) reduced = std::max(1, depth - r / 10);
        }
        if (quiet) quietsSearched++;

        timeManager.rootMoveNumber = i + 1;
        board.makeMove(m);
        childPv[0] = 0;
        int score;
        if (i == 0 || depth < 3) {
            score = -alphaBeta(1, depth - 1, 0, -MATE, -alpha, 1, childPv);
        } else {
            score = reduced < depth ? -alphaBeta(1, reduced - 1, 0, -alpha - 1, -alpha, 1, childPv) : alpha + 1;
            if (score > alpha) {
                score = -alphaBeta(1, depth - 1, 0, -alpha - 1, -alpha, 1, childPv);
                if (score > alpha) score = -alphaBeta(1, depth - 1, 0, -MATE, -alpha, 0, childPv);
            }
        }
        board.unmakeMove(m);

        if (stopFlag || score <= alpha) {
            rm.score = NO_VALUE;
            continue;
        }
        if (score > bestScore) {
            bestScore = score;
            bestMove = m;
            copyPv(bestPv, m, childPv);
        }
        rm.score = score;
        copyPv(rm.pv, m, childPv);
        // Move the record up past every record with a lower score, keeping the order of equals.
        int at = i;
        while (at > 0 && rootMoves[at - 1].score < score) at--;
        std::rotate(rootMoves + at, rootMoves + i, rootMoves + i + 1);
    }
    timeManager.rootMoveNumber = 0;
}

void TMainSearchThread::printIteration(int depth) {
    if (testRun) return;
    const int64_t elapsed = TimeManager::now() - limits.startTime;
    const uint64_t nodeCount = totalNodes();
    const float seconds = std::max(float(elapsed) / 1000.0f, 0.001f);
    const uint64_t nps = uint64_t(float(nodeCount) / seconds);
    const int lines = std::min(multiPv, rootMoveCount);
    for (int k = 1; k <= lines; k++) {
        const RootMove& rm = rootMoves[k - 1];
        int score = rm.score != NO_VALUE ? rm.score : rm.previousScore;
        std::string pv;
        for (int i = 0; rm.pv[i] && i < MAX_PLY; i++) {
            if (i) pv += ' ';
            pv += moveToUci(rm.pv[i]);
        }
        consolePrint("info depth " + std::to_string(depth) + " seldepth " + std::to_string(selDepth) + " score " +
                     uciScore(score) + " nodes " + std::to_string(nodeCount) + " nps " + std::to_string(nps) +
                     " time " + std::to_string(elapsed) + " multipv " + std::to_string(k) + " pv " + pv +
                     " hashfull " + std::to_string(tt.hashfull()) + " tbhits 0");
    }
}

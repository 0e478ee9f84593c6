// "bench": searches the fixed bench positions to depth 15 with the current settings and prints a
// table of nodes, time, move, score and whether the move is one of the expected ones.
#include <iomanip>
#include <sstream>
#include <vector>

#include "core/console.h"
#include "core/notation.h"
#include "search/timeman.h"
#include "tools/bench_positions.h"
#include "uci/engine.h"

namespace {

struct BenchResult {
    uint64_t nodes;
    int64_t ms;
    std::string san;
    int score;
    bool solved;
};

const std::string DASH_LINE(78, '-');
const std::string TABLE_LINE = " -------------------------------------------------------------";

}  // namespace

bool Engine::bench(std::string&) {
    const int64_t benchStart = TimeManager::now();
    const int count = BENCH_POSITION_COUNT;
    std::vector<BenchResult> results;
    for (int i = 0; i < count; i++) {
        const BenchPosition& p = BENCH_POSITIONS[i];
        consolePrint("");
        consolePrint(DASH_LINE);
        consolePrint("Pos. " + std::to_string(i + 1) + "/" + std::to_string(count) + "  " + p.fen +
                     "  depth : " + std::to_string(p.depth));
        consolePrint(DASH_LINE);
        board->setPosition(std::string("position fen ") + p.fen);
        SearchLimits limits;
        limits.depth = p.depth;
        limits.startTime = TimeManager::now();
        searchAndWait(limits, multiPv);
        BenchResult r;
        r.ms = TimeManager::now() - limits.startTime;
        r.nodes = mainThread->totalNodes();
        r.san = moveToSan(*board, mainThread->bestMove);
        r.score = mainThread->bestScore;
        // A plain substring test: a move contained in a longer expected move counts too.
        r.solved = std::string(p.expected).find(r.san) != std::string::npos;
        results.push_back(r);
    }

    consolePrint("\nBenchmark results for " + std::string(ENGINE_NAME) + " 4.0.853");
    consolePrint("Threads: " + std::to_string(threads) + "  Hash: " + std::to_string(hashMb));
    consolePrint("");
    consolePrint(TABLE_LINE);
    consolePrint(" #               nodes        time      move     score  solved");
    consolePrint(TABLE_LINE);
    uint64_t totalNodes = 0;
    int solved = 0;
    for (int i = 0; i < count; i++) {
        const BenchResult& r = results[i];
        std::ostringstream row;
        row << " #  " << std::setw(2) << i + 1 << std::setw(13) << r.nodes << "   " << "     " << std::setw(7) << r.ms
            << " ms   " << std::setw(5) << r.san << "  " << std::setw(8) << uciScore(r.score) << "    "
            << (r.solved ? "Yes" : " No");
        consolePrint(row.str());
        totalNodes += r.nodes;
        solved += r.solved;
    }
    consolePrint(TABLE_LINE);
    const int64_t elapsed = TimeManager::now() - benchStart;
    std::ostringstream total;
    total << " Total   " << std::setw(13) << totalNodes << "     " << std::setw(7) << elapsed << " ms  " << std::setw(11)
          << totalNodes * 1000 / uint64_t(elapsed + 1) << " nps  " << std::setw(3) << solved << "/" << count;
    consolePrint(total.str());
    return true;
}

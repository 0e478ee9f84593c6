#include "tools/perft.h"

#include <chrono>
#include <iomanip>
#include <sstream>
#include <vector>

#include "core/board.h"
#include "core/console.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "core/text.h"

namespace {

int64_t nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// The depth argument, or 0 when it is missing or unreadable. The lists are indexed by the
// remaining depth, so it cannot exceed the number of per-ply lists.
int depthArgument(std::string& line) {
    std::vector<std::string> tokens = splitTokens(line, ' ');
    int depth = tokens.size() > 1 ? toIntOr(tokens[1], 0) : 0;
    return depth > 0 && depth < MAX_PLY ? depth : 0;
}

std::string seconds(int64_t ms) {
    std::ostringstream out;
    out << ms / 1000.0;
    return out.str();
}

}  // namespace

uint64_t perft(Board& board, int depth) {
    if (depth < 1) return 0;
    MoveList& list = generateAll(board, depth);
    if (depth == 1) {
        uint64_t count = list.count;
        list.count = 0;
        return count;
    }
    uint64_t nodes = 0;
    for (uint32_t i = 0; i < list.count; i++) {
        Move m = list.moves[i];
        board.makeMove(m);
        nodes += perft(board, depth - 1);
        board.unmakeMove(m);
    }
    return nodes;
}

void perftCommand(Board& board, std::string line) {
    int depth = depthArgument(line);
    if (!depth) {
        consolePrint("usage: perft <depth>");
        return;
    }
    consolePrint("perft        Nodes    Time");
    int64_t totalMs = 0;
    uint64_t totalNodes = 0;
    for (int d = 1; d <= depth; d++) {
        int64_t start = nowMs();
        uint64_t nodes = perft(board, d);
        int64_t ms = nowMs() - start;
        totalMs += ms;
        totalNodes += nodes;
        std::ostringstream row;
        row << "  " << d << std::setw(15) << groupDigits(nodes) << "    " << seconds(ms) << " sec";
        consolePrint(row.str());
    }
    std::ostringstream summary;
    float speed = float(totalNodes) / 1e6f / ((float(totalMs) + 1) / 1000);
    summary << "\n Perft 1 - " << depth << " executed in " << seconds(totalMs) << " sec  (" << speed << " Mnps)";
    consolePrint(summary.str());
}

void divideCommand(Board& board, std::string line) {
    int depth = depthArgument(line);
    if (!depth) {
        consolePrint("usage: divide <depth>");
        return;
    }
    int64_t start = nowMs();
    MoveList roots;
    generateAll(board, roots);
    std::vector<std::pair<Move, uint64_t>> counts;
    for (Move m : roots) {
        board.makeMove(m);
        counts.emplace_back(m, perft(board, depth - 1));
        board.unmakeMove(m);
    }
    int64_t ms = nowMs() - start;
    consolePrint("move   divide #   ");
    consolePrint("------------------");
    uint64_t total = 0;
    for (auto [m, nodes] : counts) {
        std::ostringstream row;
        row << std::left << std::setw(7) << moveToSan(board, m) << std::right << std::setw(depth + 4)
            << groupDigits(nodes);
        consolePrint(row.str());
        total += nodes;
    }
    consolePrint("------------------");
    consolePrint("Total Nodes of " + std::to_string(counts.size()) + " moves : " + groupDigits(total) +
                 ", Time : " + seconds(ms) + " sec");
}

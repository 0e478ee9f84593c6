#include "search/quiet_search.h"

#include <algorithm>

QuietSearch::QuietSearch(int hashMb) : thread(tt) {
    tt.resize(hashMb);
    thread.launch();
    thread.testRun = true;
}

std::vector<ScoredMove> QuietSearch::search(const std::string& positionCommand, int depth,
                                            int lines, bool forget) {
    // Everything a search learns is forgotten, so its answer depends on the position alone.
    if (forget) {
        tt.clear();
        thread.clear();
    }
    SearchLimits limits;
    limits.depth = depth;
    limits.startTime = TimeManager::now();
    thread.setUp(positionCommand, limits, lines, 0);
    thread.start();
    thread.waitUntilIdle();
    std::vector<ScoredMove> out;
    for (int i = 0; i < std::min(lines, thread.rootMoveTotal()); i++) {
        const RootMove& rm = thread.rootMove(i);
        int score = rm.score != NO_VALUE ? rm.score : rm.previousScore;
        if (score != NO_VALUE) out.push_back({rm.move, score});
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const ScoredMove& a, const ScoredMove& b) { return a.score > b.score; });
    return out;
}

#include "tools/book/book_convert.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>

#include "tools/book/polyglot_moves.h"

std::vector<int> percentShares(const std::vector<uint32_t>& weights) {
    const size_t n = weights.size();
    uint64_t total = std::accumulate(weights.begin(), weights.end(), uint64_t(0));
    std::vector<double> exact(n);
    std::vector<int> shares(n);
    int sum = 0;
    for (size_t i = 0; i < n; i++) {
        exact[i] = total ? 100.0 * weights[i] / double(total) : 100.0 / double(n);
        sum += shares[i] = std::max(1, int(std::lround(exact[i])));
    }
    // Rounding leaves the sum off 100: move the share furthest from its exact value, one point
    // at a time, never below 1.
    while (sum != 100) {
        const int step = sum < 100 ? 1 : -1;
        size_t pick = n;
        for (size_t i = 0; i < n; i++)
            if ((step > 0 || shares[i] > 1) &&
                (pick == n || step * (exact[i] - shares[i]) > step * (exact[pick] - shares[pick])))
                pick = i;
        shares[pick] += step;
        sum += step;
    }
    return shares;
}

std::vector<BookEntry> importPolyglot(const std::vector<PolyglotEntry>& entries,
                                      ImportCounts& counts) {
    std::map<uint64_t, std::vector<const PolyglotEntry*>> byKey;
    for (const PolyglotEntry& e : entries) byKey[e.key].push_back(&e);
    counts = ImportCounts();
    counts.read = entries.size();
    size_t placed = 0;

    std::vector<BookEntry> records;
    std::set<uint64_t> visited;
    auto board = std::make_unique<Board>();
    std::deque<std::string> queue = {board->getFen()};
    while (!queue.empty()) {
        board->setFen(queue.front());
        queue.pop_front();
        auto found = byKey.find(board->key());
        if (found == byKey.end() || !visited.insert(board->key()).second) continue;
        placed += found->second.size();

        std::vector<std::pair<Move, uint32_t>> kept;
        for (const PolyglotEntry* e : found->second) {
            if (Move m = fromPolyglotMove(*board, e->move))
                kept.push_back({m, e->weight});
            else
                counts.illegal++;
        }
        std::stable_sort(kept.begin(), kept.end(),
                         [](const auto& a, const auto& b) { return a.second > b.second; });
        if (kept.size() > 100) counts.surplus += kept.size() - 100, kept.resize(100);
        if (kept.empty()) continue;

        std::vector<uint32_t> weights;
        for (const auto& [move, weight] : kept) weights.push_back(weight);
        std::vector<int> shares = percentShares(weights);
        counts.positions++;
        const size_t first = records.size();
        for (size_t i = 0; i < kept.size(); i++) {
            records.push_back({board->key(), kept[i].first, uint8_t(shares[i]), {}});
            board->makeMove(kept[i].first);
            queue.push_back(board->getFen());
            board->unmakeMove(kept[i].first);
        }
        // Rounding can reorder close weights; the records go heaviest share first.
        std::stable_sort(
            records.begin() + long(first), records.end(),
            [](const BookEntry& a, const BookEntry& b) { return a.weight > b.weight; });
    }
    counts.records = records.size();
    counts.unreached = counts.read - placed;
    return records;
}

std::vector<PolyglotEntry> exportPolyglot(const std::vector<BookEntry>& records) {
    std::vector<PolyglotEntry> entries;
    for (const BookEntry& r : records)
        entries.push_back({r.key, toPolyglotMove(r.move), r.weight, 0});
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return a.key != b.key ? a.key < b.key : a.weight > b.weight;
    });
    return entries;
}

#include "search/tt.h"

#include <atomic>
#include <cmath>

using namespace table_words;

int TranspositionTable::resize(int64_t megabytes) {
    int64_t mb = megabytes < 2 ? 1 : megabytes > 8192 ? 8192 : megabytes;
    mb = int64_t(1) << int(std::floor(std::log2(float(mb))));
    uint64_t count = uint64_t(mb) * (1 << 20) / sizeof(TTCluster);
    if (count == clusterCount) return int(mb);
    memory.reset();
    memory = std::make_unique<ZeroedBuffer>(count * sizeof(TTCluster));
    clusters = static_cast<TTCluster*>(memory->data());
    clusterCount = count;
    mask = count - 1;
    clear();
    return int(mb);
}

void TranspositionTable::clear() {
    memory->clear();
    freshMark = FRESH_MARK;
    touchedMark = TOUCHED_MARK;
    filledCount = 0;
}

void TranspositionTable::store(uint64_t key, int ply, int depth, Bound bound, int score,
                               Move move) {
    TTCluster& cluster = clusters[key & mask];
    score = scoreToTable(score, ply);
    for (int i = 0; i < 4; i++) {
        TTEntry& e = cluster.entries[slot(key, i)];
        if (load(e.key) == key) {
            save(e.moveDepth, packMoveDepth(move, depth));
            save(e.data, packData(bound, score, touchedMark));
            return;
        }
    }
    for (int i = 0; i < 4; i++) {
        TTEntry& e = cluster.entries[slot(key, i)];
        uint32_t mark = markOf(load(e.data));
        if (mark != touchedMark && mark != freshMark) {
            save(e.key, key);
            save(e.moveDepth, packMoveDepth(move, depth));
            save(e.data, packData(bound, score, freshMark));
            countFilled();
            return;
        }
    }
    // Replace the least valuable entry: shallow, untouched and inexact entries go first.
    int victim = 0, lowest = 1 << 30;
    for (int i = 0; i < 4; i++) {
        const TTEntry& e = cluster.entries[i];
        uint32_t data = load(e.data);
        int value = int(depthOf(load(e.moveDepth))) + (markOf(data) == touchedMark ? 16 : 0) +
                    ((data & 7) == BOUND_EXACT ? 32 : 0);
        if (value < lowest) lowest = value, victim = i;
    }
    TTEntry& e = cluster.entries[victim];
    save(e.key, key);
    save(e.moveDepth, packMoveDepth(move, depth));
    save(e.data, packData(bound, score, freshMark));
}

void TranspositionTable::storeBookMove(uint64_t key, Move move) {
    TTCluster& cluster = clusters[key & mask];
    for (int pass = 0; pass < 2; pass++) {
        for (int i = 0; i < 4; i++) {
            TTEntry& e = cluster.entries[slot(key, i)];
            bool sameKey = load(e.key) == key;
            uint32_t mark = markOf(load(e.data));
            bool free = mark != touchedMark && mark != freshMark;
            if (pass == 0 ? !sameKey : !free) continue;
            save(e.key, key);
            save(e.moveDepth, packMoveDepth(move, 99));
            save(e.data, packData(BOUND_EXACT, 0, touchedMark));
            if (pass == 1) countFilled();
            return;
        }
    }
}

int TranspositionTable::hashfull() const { return int(filled() * 1000 / (4 * clusterCount)); }

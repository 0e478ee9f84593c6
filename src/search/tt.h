// The transposition table: search results shared by all search threads without locks.
// Entries are 16 bytes, four to a 64-byte cluster (one cache line). Every word is read and
// written as a relaxed atomic, so a torn entry is possible but no access is undefined; the
// search validates every move it takes from the table.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/types.h"
#include "eval/zeroed_buffer.h"

enum Bound : uint32_t { BOUND_NONE = 0, BOUND_EXACT = 1, BOUND_UPPER = 2, BOUND_LOWER = 3 };

struct TTEntry {
    uint64_t key;
    uint32_t moveDepth;  // move in bits 0-22, depth in bits 25-31
    uint32_t data;       // bound in bits 0-2, score + 65536 in bits 12-28, mark in bits 29-31
};

struct alignas(64) TTCluster {
    TTEntry entries[4];
};
static_assert(sizeof(TTCluster) == 64);

// The table's words, read and written as relaxed atomics, and how entries pack into them.
namespace table_words {

template <typename T>
T load(const T& word) {
    return std::atomic_ref<T>(const_cast<T&>(word)).load(std::memory_order_relaxed);
}
template <typename T>
void save(T& word, T value) {
    std::atomic_ref<T>(word).store(value, std::memory_order_relaxed);
}

inline uint32_t markOf(uint32_t data) { return data >> 29; }
inline uint32_t depthOf(uint32_t moveDepth) { return moveDepth >> 25; }

inline uint32_t packMoveDepth(Move move, int depth) {
    return (move & MOVE_MASK) | uint32_t(depth & 127) << 25;
}
inline uint32_t packData(Bound bound, int score, uint32_t mark) {
    return uint32_t(bound) | uint32_t(score + 65536) << 12 | mark << 29;
}

// The entry visited at step i of a cluster; keys of one cluster start at different entries.
inline int slot(uint64_t key, int i) { return i ^ int((key >> 32) & 3); }

}  // namespace table_words

struct ProbeResult {
    Bound bound = BOUND_NONE;
    int score = 0;
    int depth = 0;
    Move move = 0;
};

class TranspositionTable {
  public:
    TranspositionTable() = default;
    TranspositionTable(const TranspositionTable&) = delete;
    TranspositionTable& operator=(const TranspositionTable&) = delete;

    // Clamps to 1..8192 MB and rounds down to a power of two; returns the size in effect.
    // The contents are kept when the size does not change.
    int resize(int64_t megabytes);
    void clear();
    ProbeResult probe(uint64_t key, int ply);
    void store(uint64_t key, int ply, int depth, Bound bound, int score, Move move);
    // An opening-book move, as an exact entry of depth 99 and score 0; dropped when the
    // cluster holds no free entry.
    void storeBookMove(uint64_t key, Move move);
    // Fetched for writing: a hit may rewrite the entry's mark, and a miss is followed by a store.
    void prefetch(uint64_t key) const { prefetchForWrite(&clusters[key & mask]); }
    // Entries filled per mille.
    int hashfull() const;
    uint64_t filled() const { return filledCount.load(std::memory_order_relaxed); }
    int sizeMb() const { return int(clusterCount * sizeof(TTCluster) >> 20); }

    static constexpr uint32_t FRESH_MARK = 1;    // newly placed entry
    static constexpr uint32_t TOUCHED_MARK = 2;  // hit by a probe or overwritten with its own key

  private:
    // Pages come zeroed from the system on first touch; clear() writes the zeros again.
    std::unique_ptr<ZeroedBuffer> memory;
    TTCluster* clusters = nullptr;
    uint64_t clusterCount = 0;
    uint64_t mask = 0;
    uint32_t freshMark = FRESH_MARK;
    uint32_t touchedMark = TOUCHED_MARK;
    // Counted without a read-modify-write: a lost increment under a race only blurs hashfull.
    // On a line of its own, so that counting does not evict the fields every probe reads from
    // the other threads' caches.
    alignas(64) std::atomic<uint64_t> filledCount{0};
    void countFilled() { filledCount.store(filled() + 1, std::memory_order_relaxed); }
};

// Mate scores are stored relative to the root, otherwise a faster mate could not be told from a
// slower one found through another path.
constexpr int MATE_SCORE_BOUND = 32511;
constexpr int scoreToTable(int score, int ply) {
    return score >= MATE_SCORE_BOUND    ? score + ply
           : score <= -MATE_SCORE_BOUND ? score - ply
                                        : score;
}
constexpr int scoreFromTable(int score, int ply) {
    return score >= MATE_SCORE_BOUND    ? score - ply
           : score <= -MATE_SCORE_BOUND ? score + ply
                                        : score;
}

// Inline: every node of the search probes, most of them once.
inline ProbeResult TranspositionTable::probe(uint64_t key, int ply) {
    using namespace table_words;
    TTCluster& cluster = clusters[key & mask];
    for (int i = 0; i < 4; i++) {
        TTEntry& e = cluster.entries[slot(key, i)];
        if (load(e.key) != key) continue;
        uint32_t moveDepth = load(e.moveDepth), data = load(e.data);
        // Writing only a changed mark keeps the line clean in the other threads' caches.
        if (markOf(data) != touchedMark) save(e.data, (data & ~(7u << 29)) | touchedMark << 29);
        ProbeResult r;
        r.bound = Bound(data & 7);
        r.score = scoreFromTable(int((data >> 12) & 0x1FFFF) - 65536, ply);
        r.depth = int(depthOf(moveDepth));
        r.move = moveDepth & MOVE_MASK;
        return r;
    }
    return {};
}

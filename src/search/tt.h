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

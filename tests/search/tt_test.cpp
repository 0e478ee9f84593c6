// The transposition table: what a probe gives back after a store, the order in which a cluster's
// entries are visited, which entry a full cluster gives up, mate scores kept relative to the
// root, the fill figure, resizing and the opening-book entries.
#include "search/tt.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/types.h"

namespace {

// A key of the given cluster whose visit starts at entry `start`; n tells keys apart.
uint64_t keyIn(uint64_t cluster, int start, uint64_t n) {
    return n << 40 | uint64_t(start) << 32 | cluster;
}

constexpr Move E2E4 = makeMove(W_PAWN, 12, 28);
constexpr Move G8F6 = makeMove(B_KNIGHT, 62, 45);

bool holds(TranspositionTable& tt, uint64_t key) { return tt.probe(key, 0).bound != BOUND_NONE; }

void expectEntry(const ProbeResult& r, Bound bound, int depth, int score, Move move) {
    EXPECT_EQ(r.bound, bound);
    EXPECT_EQ(r.depth, depth);
    EXPECT_EQ(r.score, score);
    EXPECT_EQ(r.move, move);
}

}  // namespace

// A store under a known key overwrites every field and takes no new entry; the ordering key a
// move carries in a list (bits 23-31) is not stored; another key of the cluster is a clean miss.
TEST(TranspositionTable, ProbeReturnsWhatWasStored) {
    TranspositionTable tt;
    tt.resize(1);
    const uint64_t key = 0x123456789ABCDEFULL;
    tt.store(key, 0, 127, BOUND_UPPER, -777, E2E4 | 0x1FFu << 23);
    expectEntry(tt.probe(key, 0), BOUND_UPPER, 127, -777, E2E4);
    tt.store(key, 0, 3, BOUND_EXACT, 12, G8F6);
    expectEntry(tt.probe(key, 0), BOUND_EXACT, 3, 12, G8F6);
    EXPECT_EQ(tt.filled(), 1u);
    expectEntry(tt.probe(key ^ 1ULL << 50, 0), BOUND_NONE, 0, 0, 0);
}

// Mate scores are kept relative to the root and read back relative to the probing node.
TEST(TranspositionTable, MateScoresAreAdjustedByPly) {
    const struct {
        int score, storePly, probePly, expected;
    } cases[] = {
        {32760, 5, 3, 32762},   {32760, 5, 0, 32765},  {-32760, 5, 3, -32762},
        {32511, 2, 0, 32513},   {-32511, 2, 0, -32513},  // the smallest adjusted score
        {32510, 5, 3, 32510},   {-32510, 5, 3, -32510},  // below the bound: unchanged
        {32766, 1, 1, 32766},
    };
    for (const auto& c : cases) {
        TranspositionTable tt;
        tt.resize(1);
        tt.store(42, c.storePly, 4, BOUND_EXACT, c.score, 0);
        EXPECT_EQ(tt.probe(42, c.probePly).score, c.expected)
            << c.score << " stored at ply " << c.storePly << ", read at ply " << c.probePly;
    }
}

// Inside a cluster the visit starts at the entry given by bits 32-33 of the key. Four keys that
// start at the same entry fill it in the order start, start^1, start^2, start^3; with all four
// alike, a fifth key replaces the one in the physically first entry, the key stored at step
// `start`.
TEST(TranspositionTable, EntriesAreVisitedInXorOrder) {
    for (int start = 0; start < 4; start++) {
        TranspositionTable tt;
        tt.resize(1);
        std::vector<uint64_t> keys;
        for (int n = 1; n <= 4; n++) {
            keys.push_back(keyIn(77, start, n));
            tt.store(keys.back(), 0, 6, BOUND_LOWER, 10, E2E4);
        }
        tt.store(keyIn(77, start, 99), 0, 6, BOUND_LOWER, 10, E2E4);
        EXPECT_EQ(tt.filled(), 4u) << "a replacement is not a new entry";
        for (int i = 0; i < 4; i++)
            EXPECT_EQ(holds(tt, keys[i]), i != start) << "start " << start << ", key " << i;
        EXPECT_TRUE(holds(tt, keyIn(77, start, 99)));
    }
}

// A full cluster gives up the entry of lowest value: depth, + 16 when touched (hit by a probe or
// stored again under its own key) since it was placed, + 32 when exact; ties go to the entry
// physically first in the cluster.
TEST(TranspositionTable, FullClusterReplacesTheLeastValuableEntry) {
    // How each entry was used after it was placed: not at all, hit by a probe, stored again.
    enum Use { NEW, HIT, AGAIN };
    struct Entry {
        int depth;
        Bound bound;
        Use use;
    };
    constexpr Bound L = BOUND_LOWER, U = BOUND_UPPER, X = BOUND_EXACT;
    // clang-format off
    const struct {
        const char* what;
        Entry entries[4];
        int victim;
    } cases[] = {
        {"shallowest", {{8, L, NEW}, {3, L, NEW}, {9, U, NEW}, {4, L, NEW}}, 1},
        {"all equal: the first", {{3, L, NEW}, {3, L, NEW}, {3, L, NEW}, {3, L, NEW}}, 0},
        {"probed is kept", {{3, L, HIT}, {3, L, NEW}, {3, L, NEW}, {3, L, NEW}}, 1},
        {"stored again is kept", {{3, L, AGAIN}, {3, L, NEW}, {3, L, NEW}, {3, L, NEW}}, 1},
        {"touched +16: tie, first", {{16, L, NEW}, {0, L, HIT}, {20, L, NEW}, {20, L, NEW}}, 0},
        {"touched +16: deeper loses", {{17, L, NEW}, {0, L, HIT}, {20, L, NEW}, {20, L, NEW}}, 1},
        {"exact +32: tie, first", {{32, U, NEW}, {0, X, NEW}, {40, L, NEW}, {40, L, NEW}}, 0},
        {"exact +32: deeper loses", {{33, U, NEW}, {0, X, NEW}, {40, L, NEW}, {40, L, NEW}}, 1},
        {"both bonuses add up", {{49, L, NEW}, {0, X, HIT}, {50, L, NEW}, {49, L, NEW}}, 1},
        {"the last entry", {{10, X, NEW}, {10, L, HIT}, {20, L, NEW}, {9, L, NEW}}, 3},
    };
    // clang-format on
    for (const auto& c : cases) {
        TranspositionTable tt;
        tt.resize(1);
        // Keys starting at entry 0 are placed in physical order.
        uint64_t keys[4];
        for (int i = 0; i < 4; i++) {
            keys[i] = keyIn(5, 0, i + 1);
            tt.store(keys[i], 0, c.entries[i].depth, c.entries[i].bound, 0, E2E4);
        }
        for (int i = 0; i < 4; i++) {
            if (c.entries[i].use == HIT) tt.probe(keys[i], 0);
            if (c.entries[i].use == AGAIN)
                tt.store(keys[i], 0, c.entries[i].depth, c.entries[i].bound, 0, E2E4);
        }
        tt.store(keyIn(5, 2, 50), 0, 1, BOUND_UPPER, 0, G8F6);
        for (int i = 0; i < 4; i++)
            EXPECT_EQ(holds(tt, keys[i]), i != c.victim) << c.what << ", entry " << i;
        EXPECT_TRUE(holds(tt, keyIn(5, 2, 50))) << c.what;
    }
}

// Per mille of the 65536 entries of 1 MB, placed entries only; clear empties the table.
TEST(TranspositionTable, HashfullCountsPlacedEntriesPerMille) {
    TranspositionTable tt;
    tt.resize(1);
    const struct {
        int entries, hashfull;
    } steps[] = {{65, 0}, {66, 1}, {655, 9}, {656, 10}, {6554, 100}};
    int placed = 0;
    for (const auto& s : steps) {
        for (; placed < s.entries; placed++) tt.store(keyIn(placed, 0, 1), 0, 1, BOUND_LOWER, 0, 0);
        EXPECT_EQ(tt.hashfull(), s.hashfull) << s.entries;
    }
    for (int n = 1; n <= 8; n++) tt.store(keyIn(0, 0, n), 0, 1, BOUND_LOWER, 0, 0);
    EXPECT_EQ(tt.filled(), 6554u + 3) << "replacements are not counted again";
    tt.clear();
    EXPECT_EQ(tt.hashfull(), 0);
    EXPECT_FALSE(holds(tt, keyIn(1, 0, 1)));
}

// The request is raised to at least 1 MB and rounded down to a power of two; the contents
// survive only a resize to the same size.
TEST(TranspositionTable, ResizeClampsRoundsDownAndKeepsContentsOnlyAtTheSameSize) {
    // Sizes past 64 MB are left out: clearing them takes seconds.
    const std::pair<int64_t, int> sizes[] = {{-5, 1}, {0, 1}, {3, 2}, {7, 4}, {100, 64}};
    for (const auto& [requested, inEffect] : sizes) {
        TranspositionTable tt;
        EXPECT_EQ(tt.resize(requested), inEffect) << requested;
        EXPECT_EQ(tt.sizeMb(), inEffect) << requested;
    }
    TranspositionTable tt;
    tt.resize(2);
    tt.store(1234, 0, 7, BOUND_EXACT, 55, E2E4);
    EXPECT_EQ(tt.resize(3), 2);
    EXPECT_TRUE(holds(tt, 1234));
    EXPECT_EQ(tt.resize(1), 1);
    EXPECT_FALSE(holds(tt, 1234));
    EXPECT_EQ(tt.filled(), 0u);
}

// A book move is an exact entry of depth 99 and score 0. It overwrites an entry of its own key,
// takes a free entry otherwise, outlives any ordinary entry, and is dropped when the cluster is
// full.
TEST(TranspositionTable, BookMovesTakeOwnOrFreeEntriesOnly) {
    const uint64_t key = keyIn(300, 1, 1);
    TranspositionTable tt;
    tt.resize(1);
    tt.store(key, 0, 5, BOUND_LOWER, 80, G8F6);
    tt.storeBookMove(key, E2E4);
    expectEntry(tt.probe(key, 0), BOUND_EXACT, 99, 0, E2E4);
    for (int n = 2; n <= 4; n++) tt.store(keyIn(300, 1, n), 0, 5, BOUND_LOWER, 0, 0);
    tt.store(keyIn(300, 1, 9), 0, 60, BOUND_EXACT, 0, 0);
    EXPECT_TRUE(holds(tt, key));

    tt.clear();
    for (int n = 2; n <= 5; n++) tt.store(keyIn(300, 1, n), 0, 0, BOUND_UPPER, 0, 0);
    tt.storeBookMove(key, E2E4);
    EXPECT_FALSE(holds(tt, key)) << "a full cluster drops the book move";
    EXPECT_EQ(tt.filled(), 4u);
}

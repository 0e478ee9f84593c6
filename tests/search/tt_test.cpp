// The transposition table: stores, probes, replacement, mate scores, fill, size and book moves.
#include "search/tt.h"

#include <gtest/gtest.h>

#include <sstream>

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
    EXPECT_TRUE(r.bound == bound && r.depth == depth && r.score == score && r.move == move)
        << r.bound << " " << r.depth << " " << r.score << " " << r.move;
}

class TranspositionTableTest : public ::testing::Test {
  protected:
    TranspositionTableTest() { tt.resize(1); }
    TranspositionTable tt;
};

}  // namespace

// Mate scores (beyond 32510) are kept relative to the root and read back relative to the
// probing node: {score, ply stored, ply read, score read}.
TEST_F(TranspositionTableTest, MateScoresAreAdjustedByPly) {
    const int cases[][4] = {{32760, 5, 3, 32762},   {-32760, 5, 3, -32762}, {32511, 2, 0, 32513},
                            {-32511, 2, 0, -32513}, {32510, 5, 3, 32510},   {-32510, 5, 3, -32510}};
    for (const auto& c : cases) {
        tt.store(42, c[1], 4, BOUND_EXACT, c[0], 0);
        EXPECT_EQ(tt.probe(42, c[2]).score, c[3]) << c[0] << " stored at " << c[1];
    }
}

// The visit of a cluster starts at the entry given by bits 32-33 of the key and goes on in xor
// order. A full cluster gives up the entry of lowest value: depth, + 16 when touched (hit by a
// probe or stored again) since it was placed, + 32 when exact; ties go to the entry physically
// first. Each entry is written depth, bound (Lower, Upper, eXact) and its use after placing:
// "+" probed, "*" stored again. When all are alike, the physically first entry goes: the key
// stored at step `start`.
TEST_F(TranspositionTableTest, FullClusterReplacesTheLeastValuableEntry) {
    const struct {
        int start;            // where the visits of all five keys start
        const char* entries;  // in the order stored
        int victim;           // the key that goes
    } cases[] = {
        {0, "8L 3L 9U 4L", 1},     {0, "3L+ 3L 3L 3L", 1},   {0, "3L* 3L 3L 3L", 1},
        {0, "16L 0L+ 20L 20L", 0}, {0, "33U 0X 40L 40L", 1}, {0, "49L 0X+ 50L 49L", 1},
        {1, "3L 3L 3L 3L", 1},     {2, "3L 3L 3L 3L", 2},    {3, "3L 3L 3L 3L", 3},
    };
    for (const auto& c : cases) {
        tt.clear();
        std::istringstream in(c.entries);
        std::string entry;
        uint64_t keys[4];
        for (int i = 0; i < 4 && in >> entry; i++) {
            size_t end;
            const int depth = std::stoi(entry, &end);
            const Bound bound = entry[end] == 'L'   ? BOUND_LOWER
                                : entry[end] == 'U' ? BOUND_UPPER
                                                    : BOUND_EXACT;
            keys[i] = keyIn(5, c.start, i + 1);
            tt.store(keys[i], 0, depth, bound, 0, E2E4);
            if (entry.back() == '+') tt.probe(keys[i], 0);
            if (entry.back() == '*') tt.store(keys[i], 0, depth, bound, 0, E2E4);
        }
        tt.store(keyIn(5, (c.start + 2) % 4, 50), 0, 1, BOUND_UPPER, 0, G8F6);
        EXPECT_EQ(tt.filled(), 4u) << "a replacement is not a new entry";
        for (int i = 0; i < 4; i++) EXPECT_EQ(holds(tt, keys[i]), i != c.victim) << c.entries;
    }
}

// A book move is an exact entry of depth 99 and score 0. It overwrites an entry of its own key,
// takes a free entry otherwise, outlives any ordinary entry, and is dropped when the cluster is
// full.
TEST_F(TranspositionTableTest, BookMovesTakeOwnOrFreeEntriesOnly) {
    const uint64_t key = keyIn(300, 1, 1);
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
}

// The move-ordering tables of a search thread: killers, history with its halving, and the
// sorting of keyed move lists.
#include "search/moveorder.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

constexpr Move NF3 = makeMove(W_KNIGHT, 6, 21);
constexpr Move BC4 = makeMove(W_BISHOP, 5, 26);
constexpr Move RD1 = makeMove(W_ROOK, 0, 3);
constexpr Move EXD5 = makeMove(W_PAWN, 28, 35, B_PAWN);
constexpr Move A7A8Q = makeMove(W_PAWN, 48, 56, EMPTY, 3);
constexpr Move B2B1N = makeMove(B_PAWN, 9, 1, EMPTY, 0);

std::unique_ptr<OrderingTables> freshTables() {
    auto t = std::make_unique<OrderingTables>();
    t->clear();
    return t;
}

}  // namespace

// Only quiet moves become killers 1 and 2; every move fills the third slot.
TEST(OrderingTables, KillerSlots) {
    const struct {
        const char* what;
        std::vector<Move> stored;
        Move killer1, killer2, last;
    } cases[] = {
        {"three quiet moves: the oldest drops", {NF3, BC4, RD1}, RD1, BC4, RD1},
        {"the same move again does not fill both slots", {NF3, BC4, BC4}, BC4, NF3, BC4},
        {"a capture only fills the third slot", {NF3, EXD5}, NF3, 0, EXD5},
        {"a promotion only fills the third slot", {NF3, A7A8Q}, NF3, 0, A7A8Q},
        {"a black knight promotion only fills the third slot", {B2B1N}, 0, 0, B2B1N},
        {"the ordering key is dropped", {NF3 | 200u << 23}, NF3, 0, NF3},
    };
    for (const auto& c : cases) {
        auto t = freshTables();
        for (Move m : c.stored) t->storeKiller(10, m);
        EXPECT_EQ(t->killers[10][0], c.killer1) << c.what;
        EXPECT_EQ(t->killers[10][1], c.killer2) << c.what;
        EXPECT_EQ(t->killers[10][2], c.last) << c.what;
        EXPECT_EQ(t->killers[11][0], 0u) << c.what << ": other plies untouched";
    }
}

// Positive bonuses are capped at 1024, negative ones are not; an entry reaching +-2048 halves
// the whole table of pieces 1-12 (toward zero), the new value included, but not the spare row
// of code 0.
TEST(OrderingTables, HistoryBonusesAndHalving) {
    const struct {
        const char* what;
        int before, bonus, after;
        int otherBefore, otherAfter;
    } cases[] = {
        {"positive bonus capped", 0, 5000, 1024, 301, 301},
        {"negative bonus not capped", 0, -1500, -1500, 301, 301},
        {"just below the bound", 1023, 1024, 2047, 301, 301},
        {"reaching 2048 halves", 1024, 1024, 1024, 301, 150},
        {"passing 2048 halves", 1500, 600, 1050, -301, -150},
        {"reaching -2048 halves", -1000, -1048, -1024, 301, 150},
        {"far below -2048 halves once", 0, -5001, -2500, -3, -1},
        {"just above the lower bound", -1000, -1047, -2047, 301, 301},
    };
    for (const auto& c : cases) {
        auto t = freshTables();
        t->history[W_KNIGHT][21] = c.before;  // NF3
        t->history[B_QUEEN][40] = c.otherBefore;
        t->history[EMPTY][9] = 1000;
        t->updateHistory(NF3, c.bonus);
        EXPECT_EQ(t->historyOf(NF3), c.after) << c.what;
        EXPECT_EQ(t->history[B_QUEEN][40], c.otherAfter) << c.what;
        EXPECT_EQ(t->history[EMPTY][9], 1000) << c.what;
    }
}

// Lists sort by key, best first; equal keys fall to the move bits. Removal compares the move
// bits only and keeps the order.
TEST(MoveList, SortAndRemove) {
    MoveList list;
    list.count = 0;
    for (auto [move, key] : {std::pair{NF3, 256}, {EXD5, 384}, {BC4, 256}, {RD1, 0}, {A7A8Q, 511}})
        list.add(withKey(move, key));
    sortMoves(list);
    const Move sorted[] = {A7A8Q, EXD5, std::max(NF3, BC4), std::min(NF3, BC4), RD1};
    ASSERT_EQ(list.count, 5u);
    for (int i = 0; i < 5; i++) EXPECT_EQ(list.moves[i] & MOVE_MASK, sorted[i]) << i;
    EXPECT_EQ(keyOf(list.moves[0]), 511);

    list.add(withKey(NF3, 3));
    EXPECT_EQ(removeMove(list, NF3 | 77u << 23), 2);
    ASSERT_EQ(list.count, 4u);
    for (uint32_t i = 0; i < list.count; i++) EXPECT_NE(list.moves[i] & MOVE_MASK, NF3);
    EXPECT_EQ(list.moves[0] & MOVE_MASK, A7A8Q);
}

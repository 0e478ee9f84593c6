// The move-ordering tables of a search thread: history with its halving, and the sorting of
// keyed move lists.
#include "search/moveorder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr Move NF3 = makeMove(W_KNIGHT, 6, 21);
constexpr Move BC4 = makeMove(W_BISHOP, 5, 26);
constexpr Move RD1 = makeMove(W_ROOK, 0, 3);
constexpr Move EXD5 = makeMove(W_PAWN, 28, 35, B_PAWN);
constexpr Move B2B1N = makeMove(B_PAWN, 9, 1, EMPTY, 0);

}  // namespace

// Positive bonuses are capped at 1024, negative ones are not; an entry reaching +-2048 halves
// the whole table of pieces 1-12 (toward zero), the new value included, but not the spare row
// of code 0. Each row: value before, bonus, value after, another entry before and after.
TEST(OrderingTables, HistoryBonusesAndHalving) {
    const int cases[][5] = {{0, 5000, 1024, 301, 301},      {0, -1500, -1500, 301, 301},
                            {1023, 1024, 2047, 301, 301},   {1024, 1024, 1024, 301, 150},
                            {1500, 600, 1050, -301, -150},  {-1000, -1048, -1024, 301, 150},
                            {0, -5001, -2500, -3, -1},      {-1000, -1047, -2047, 301, 301}};
    for (const auto& c : cases) {
        auto t = std::make_unique<OrderingTables>();
        t->clear();
        t->history[W_KNIGHT][21] = c[0];  // NF3
        t->history[B_QUEEN][40] = c[3];
        t->history[EMPTY][9] = 1000;
        t->updateHistory(NF3, c[1]);
        EXPECT_EQ(t->historyOf(NF3), c[2]) << c[0] << " + " << c[1];
        EXPECT_EQ(t->history[B_QUEEN][40], c[4]) << c[0] << " + " << c[1];
        EXPECT_EQ(t->history[EMPTY][9], 1000);
    }
}

// Lists sort by key, best first; equal keys fall to the move bits. Removal compares the move
// bits only and keeps the order.
TEST(MoveList, SortAndRemove) {
    MoveList list;
    list.count = 0;
    for (auto [move, key] : {std::pair{NF3, 256}, {EXD5, 384}, {BC4, 256}, {RD1, 0}, {B2B1N, 511}})
        list.add(withKey(move, key));
    sortMoves(list);
    const Move sorted[] = {B2B1N, EXD5, std::max(NF3, BC4), std::min(NF3, BC4), RD1};
    ASSERT_EQ(list.count, 5u);
    for (int i = 0; i < 5; i++) EXPECT_EQ(list.moves[i] & MOVE_MASK, sorted[i]) << i;
    EXPECT_EQ(keyOf(list.moves[0]), 511);
    list.add(withKey(NF3, 3));
    EXPECT_EQ(removeMove(list, NF3 | 77u << 23), 2);
    ASSERT_EQ(list.count, 4u);
    for (uint32_t i = 0; i < list.count; i++) EXPECT_NE(list.moves[i] & MOVE_MASK, NF3);
    EXPECT_EQ(list.moves[0] & MOVE_MASK, B2B1N);
}

// The history table keeps its bonuses in the range the ordering keys can hold.
#include "search/moveorder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr Move NF3 = makeMove(W_KNIGHT, 6, 21);

}  // namespace

// Positive bonuses are capped at 1024, negative ones are not; an entry reaching +-2048 halves
// the whole table of pieces 1-12 (toward zero), the new value included, but not the spare row
// of code 0. Each row: value before, bonus, value after, another entry before and after.
TEST(OrderingTables, HistoryBonusesAndHalving) {
    const int cases[][5] = {{0, 5000, 1024, 301, 301},     {0, -1500, -1500, 301, 301},
                            {1023, 1024, 2047, 301, 301},  {1024, 1024, 1024, 301, 150},
                            {1500, 600, 1050, -301, -150}, {-1000, -1048, -1024, 301, 150},
                            {0, -5001, -2500, -3, -1},     {-1000, -1047, -2047, 301, 301}};
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

// The sort of a stage's move list: best key first, ties by the move bits, at every list length
// (short lists and long ones are sorted by different methods).
#include "search/moveorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <vector>

TEST(SortMoves, OrdersLikeADescendingSortAtEveryLength) {
    std::mt19937 rng(20261126);
    // Keys spread over the whole range, or crowded on a few values as history keys are.
    for (int keyRange : {512, 3}) {
        for (uint32_t n : {0u, 1u, 2u, 7u, 8u, 9u, 15u, 16u, 17u, 31u, 40u, 218u, 256u}) {
            std::set<Move> distinct;
            while (distinct.size() < n) {
                Move move = 1 + rng() % MOVE_MASK;  // never 0: no list holds the empty move
                distinct.insert(withKey(move, 256 + int(rng() % keyRange) - keyRange / 2));
            }
            std::vector<Move> moves(distinct.begin(), distinct.end());
            std::shuffle(moves.begin(), moves.end(), rng);
            MoveList list{};
            for (Move m : moves) list.add(m);

            sortMoves(list);

            std::sort(moves.begin(), moves.end(), std::greater<Move>());
            ASSERT_EQ(list.count, n);
            EXPECT_TRUE(std::equal(moves.begin(), moves.end(), list.moves))
                << n << " moves, keys over " << keyRange << " values";
        }
    }
}

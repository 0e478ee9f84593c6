// The constants the search derives from its tunable parameters: futility margins and the two
// late-move-reduction tables (tenths of a ply).
#include "search/search_params.h"

#include <gtest/gtest.h>

TEST(SearchParams, FutilityMarginsGrowBySixtyPerPly) {
    const int expected[7] = {-1, 45, 105, 165, 225, 285, 345};
    for (int d = 0; d < 7; d++) EXPECT_EQ(SEARCH_PARAMS.futilityMargins[d], expected[d]) << d;
}

// A[d][m] = ln(2.4 d) (100 / 95) ln(2.5 m) + 20 and B[d][m] = ln(d) (100 / 86) ln(0.2 m) + 46,
// truncated; zero when depth or moves is below 3. B falls below its offset for fewer than five
// moves.
TEST(SearchParams, ReductionTables) {
    const struct {
        int depth, moves, a, b;
    } cases[] = {
        {3, 3, 24, 45},  {3, 4, 24, 45},   {5, 10, 28, 47},  {8, 20, 32, 49},
        {10, 5, 28, 46}, {12, 30, 35, 51}, {16, 16, 34, 49}, {20, 40, 38, 53},
        {63, 3, 30, 43}, {3, 63, 30, 49},  {63, 63, 46, 58}, {0, 0, 0, 0},
        {2, 40, 0, 0},   {40, 2, 0, 0},    {1, 10, 0, 0},    {10, 1, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SEARCH_PARAMS.reductionA[c.depth][c.moves], c.a) << c.depth << ", " << c.moves;
        EXPECT_EQ(SEARCH_PARAMS.reductionB[c.depth][c.moves], c.b) << c.depth << ", " << c.moves;
    }
    // More depth or more moves never reduce less.
    for (int d = 3; d < 64; d++) {
        for (int m = 3; m < 64; m++) {
            if (d + 1 < 64) {
                EXPECT_GE(SEARCH_PARAMS.reductionA[d + 1][m], SEARCH_PARAMS.reductionA[d][m]);
            }
            if (m + 1 < 64) {
                EXPECT_GE(SEARCH_PARAMS.reductionA[d][m + 1], SEARCH_PARAMS.reductionA[d][m]);
                EXPECT_GE(SEARCH_PARAMS.reductionB[d][m + 1], SEARCH_PARAMS.reductionB[d][m]);
            }
        }
    }
}

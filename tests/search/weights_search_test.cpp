// Every weight setweight accepts gives a search that completes: no division by a weight sum
// that can reach zero, no table index taken from a weight. Under the sanitizers it also catches
// overflow and out-of-range reads.
#include <gtest/gtest.h>

#include <random>

#include "core/text.h"
#include "eval/weights.h"
#include "search/quiet_search.h"

namespace {

void setWeight(int id, int mg, int eg) {
    std::string line = "setweight id " + std::to_string(id) + " values " + std::to_string(mg) +
                       " " + std::to_string(eg);
    ASSERT_EQ(SetWeightCommand(splitTokens(line, ' ')), "") << line;
}

}  // namespace

// First the piece values that bring the full non-pawn material to zero, then random tables with
// each weight at -1, 0, its largest value or anywhere between.
TEST(WeightsInSearch, AcceptedTablesSearchToTheEnd) {
    const char* positions[] = {
        "position fen r1b1k2r/ppppqppp/2n2n2/8/1bB1P3/2N2Q2/PPPP1PPP/R1B1K1NR w KQkq - 0 1",
        "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5",
        "position fen 8/5pk1/6p1/3P4/1r6/6P1/5PK1/3R4 w - - 0 1",
    };
    QuietSearch search(1);
    std::mt19937 random(20261122);
    for (int round = 0; round < 12; round++) {
        for (int id = 2; id < WEIGHT_COUNT; id++) {
            const int max = maxWeight(id), choice[] = {-1, 0, max, int(random() % (max + 2)) - 1};
            setWeight(id, choice[random() % 4], choice[random() % 4]);
        }
        if (round == 0)
            for (auto [id, value] : {std::pair{5, 2}, {4, -1}, {3, -1}, {2, 1}}) setWeight(id, value, value);
        for (const char* position : positions)
            EXPECT_FALSE(search.search(position, 4).empty()) << "round " << round << ": " << position;
    }
    ResetWeights();
    RecomputeDerived();
}

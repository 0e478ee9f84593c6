// Every weight setweight accepts gives a search that completes: no division by a weight sum
// that can reach zero, no table index taken from a weight. Run under the sanitizers, it also
// catches overflow and out-of-range reads.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/text.h"
#include "eval/weights.h"
#include "search/quiet_search.h"

namespace {

const std::vector<std::string> POSITIONS = {
    "position fen r1b1k2r/ppppqppp/2n2n2/8/1bB1P3/2N2Q2/PPPP1PPP/R1B1K1NR w KQkq - 0 1",
    "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5",
    "position fen 8/5pk1/6p1/3P4/1r6/6P1/5PK1/3R4 w - - 0 1",
    "position fen 6k1/5ppp/8/8/8/8/1N3PPP/6K1 b - - 0 1",
};

void setWeight(int id, int mg, int eg) {
    std::string line =
        "setweight id " + std::to_string(id) + " values " + std::to_string(mg) + " " +
        std::to_string(eg);
    ASSERT_EQ(SetWeightCommand(splitTokens(line, ' ')), "") << line;
}

class WeightsInSearch : public ::testing::Test {
  protected:
    void TearDown() override {
        ResetWeights();
        RecomputeDerived();
    }
    // Every position searched to a small depth must give a move.
    void searchAll() {
        for (const std::string& position : POSITIONS)
            EXPECT_FALSE(search.search(position, 4).empty()) << position;
    }
    QuietSearch search{1};
};

}  // namespace

// Piece values that make the full non-pawn material zero once divided the king-attack units by it.
TEST_F(WeightsInSearch, PieceValuesSummingToZero) {
    setWeight(5, 2, 2);
    setWeight(4, -1, -1);
    setWeight(3, -1, -1);
    setWeight(2, 1, 1);
    searchAll();
}

// Random tables of accepted values, each weight at -1, 0, its largest value or anywhere between.
TEST_F(WeightsInSearch, RandomAcceptedTables) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 12; round++) {
        for (int id = 2; id < WEIGHT_COUNT; id++) {
            auto pick = [&] {
                int max = maxWeight(id);
                switch (random() % 4) {
                    case 0: return -1;
                    case 1: return 0;
                    case 2: return max;
                    default: return int(random() % (max + 2)) - 1;
                }
            };
            int mg = pick(), eg = pick();
            setWeight(id, mg, eg);
        }
        searchAll();
    }
}

// The weight table: setweight's messages and limits, and a change seen by the next evaluation.
#include "eval/weights.h"

#include <gtest/gtest.h>

#include "core/board.h"
#include "core/text.h"
#include "eval/evaluator.h"

namespace {

// The line as the command loop hands it over: split at blanks.
std::string run(std::string line) { return SetWeightCommand(splitTokens(line, ' ')); }

const std::string USAGE =
    "Usage: setweight name <name> values <mg eg> [-q]\n"
    "       setweight id <id> values <mg eg> [-q]\n"
    "       setweight default";

class Weights : public ::testing::Test {
  protected:
    void TearDown() override {
        ResetWeights();
        RecomputeDerived();
    }
};

}  // namespace

TEST_F(Weights, CommandMessages) {
    struct Case {
        std::string line, reply;
        int id;  // entry to check afterwards, -1 for none
        Score expected;
    };
    // clang-format off
    const Case cases[] = {
        {"setweight id 0 values 50 50", "", 0, {101, 113}},
        {"setweight id 1 values 50 50", "", 1, {32000, 32000}},
        {"setweight id 2 values 555 406", "", 2, {555, 406}},
        {"setweight id 2 values 556 406", "Incorrect weight pair (556, 406) ---> valid range -1 .. 255)", 2, {407, 406}},
        {"setweight id 70 values 25 -1", "", 70, {25, -1}},
        {"setweight id 70 values 26 -1", "Incorrect weight pair (26, -1) ---> valid range -1 .. 15)", 70, {11, -1}},
        {"setweight id 20 values -2 5", "Incorrect weight pair (-2, 5) ---> valid range -1 .. 63)", 20, {9, 38}},
        {"setweight id 20 values -1 5", "", 20, {-1, 5}},
        {"setweight id 6 values abc 7", "", 6, {-1, 7}},
        {"setweight id 5 value 1300 1200 -q", "", 5, {1300, 1200}},
        {"setweight id 75 values 1 1", "Incorrect weight id: (75)", -1, {}},
        {"setweight id -3 values 1 1", "Incorrect weight id: (-3)", -1, {}},
        {"setweight id x values 1 1", "Incorrect weight id: (x)", -1, {}},
        {"setweight name anything values 1 1", "Incorrect weight id: (anything)", -1, {}},
        {"setweight", USAGE, -1, {}},
        {"setweight id 5 values", USAGE, -1, {}},
        {"setweight ids 5 values 1 2", USAGE, -1, {}},
    };
    // clang-format on
    for (const Case& c : cases) {
        ResetWeights();
        RecomputeDerived();
        EXPECT_EQ(run(c.line), c.reply) << c.line;
        if (c.id >= 0) {
            EXPECT_EQ(weights.pairs[c.id], c.expected) << c.line;
        }
    }
}

// The evaluation cache holds scores of the old weights; the next evaluation must not use them,
// and "setweight default" restores every entry.
TEST_F(Weights, ChangeSeenByTheNextEvaluation) {
    Board board;
    Evaluator evaluator(board);
    ASSERT_EQ(board.setFen("4k3/8/8/8/8/8/8/3NK3 w - - 0 1"), 0);
    int before = evaluator.Evaluate();
    EXPECT_EQ(evaluator.Evaluate(), before);
    run("setweight id 2 values 407 500");
    run("setweight id 74 values 3 4");
    EXPECT_EQ(evaluator.Evaluate(), before + 94);
    EXPECT_EQ(run("setweight default"), "weights are resetted to defaults");
    EXPECT_EQ(evaluator.Evaluate(), before);
    EXPECT_EQ(weights.pairs[74], (Score{11, 44}));
}

// Both values share one integer: each must come back whole whatever the signs, through sums,
// differences, negation, multiples and scaling, including sums whose low half wraps.
TEST(ScoreHalves, SurviveEveryOperation) {
    const int values[] = {0, 1, -1, 37, -37, 1 << 20, -(1 << 20), 1000000000, -1000000000};
    for (int mg : values)
        for (int eg : values) {
            SCOPED_TRACE(std::to_string(mg) + " " + std::to_string(eg));
            const Score s(mg, eg);
            EXPECT_EQ(s.mg(), mg);
            EXPECT_EQ(s.eg(), eg);
            EXPECT_EQ((s + Score(-3, 5)).mg(), mg - 3);
            EXPECT_EQ((s + Score(-3, 5)).eg(), eg + 5);
            EXPECT_EQ((s - Score(-3, 5)).mg(), mg + 3);
            EXPECT_EQ((s - Score(-3, 5)).eg(), eg - 5);
            EXPECT_EQ((-s).mg(), -mg);
            EXPECT_EQ((-s).eg(), -eg);
            const Score small(mg % 100000, eg % 100000);
            EXPECT_EQ((small * -7).mg(), mg % 100000 * -7);
            EXPECT_EQ((small * -7).eg(), eg % 100000 * -7);
            EXPECT_EQ(scaleScore(small, 3, 8).mg(), mg % 100000 * 3 / 8);
            EXPECT_EQ(scaleScore(small, 3, 8).eg(), eg % 100000 * 3 / 8);
        }
}

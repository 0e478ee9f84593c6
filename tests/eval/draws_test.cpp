// The draw recogniser: an ending scores exactly 0 when, and only when, its pattern holds.
#include <gtest/gtest.h>

#include "core/board.h"
#include "core/notation.h"
#include "eval/evaluator.h"

namespace {

struct DrawCase {
    const char* fen;
    EndGameId id;
    bool drawn;
    const char* why;
};

// clang-format off
const DrawCase DRAW_CASES[] = {
    {"4k3/8/3n4/8/8/8/8/1N2K3 w - - 0 1",    KNKN, true,  "knight each"},
    {"4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1",     KBKB, true,  "bishop each"},
    {"8/8/3k4/8/8/8/8/1NN1K3 w - - 0 1",     KNNK, true,  "two knights, king in the centre"},
    {"3k4/8/8/8/8/8/8/1NN1K3 w - - 0 1",     KNNK, false, "two knights, king on the edge"},
    {"8/7K/8/8/8/8/1pk5/7R w - - 0 1",       KRKP, true,  "pawn on the seventh with its king, rook's king far"},
    {"8/8/8/8/K7/8/1pk5/7R w - - 0 1",       KRKP, false, "rook's king close to the pawn"},
    {"8/2P5/1K6/6r1/8/8/8/2k5 w - - 0 1",    KRKP, false, "rook off the pawn's path: it runs"},
    {"6r1/8/3P4/3K3k/8/8/8/8 b - - 0 1",     KRKP, false, "pawn's king behind it, the rook gets in front"},
    {"8/8/8/8/Rk6/2p4K/8/8 b - - 0 1",       KRKP, false, "the rook hangs"},
    {"8/8/3k4/3n4/8/8/8/R3K3 w - - 0 1",     KRKN, true,  "knight next to its king in the centre"},
    {"7k/8/8/4b3/8/8/8/R5K1 w - - 0 1",      KRKB, false, "king in the bishop's corner"},
    {"6bk/8/8/8/8/8/8/R5K1 w - - 0 1",       KRKB, true,  "king in the other corner, bishop beside it"},
    {"8/1b3K2/8/3R4/8/8/1k6/8 w - - 0 1",    KRKB, false, "bishop away from its king: Rb5+ skewers"},
    {"8/8/8/8/8/2Knk1R1/8/8 b - - 0 1",      KRKN, false, "side to move in check"},
    {"8/8/3k4/8/3r4/8/4R3/4K3 w - - 0 1",    KRKR, true,  "rooks apart, no check"},
    {"k7/4r3/8/8/8/8/4R3/4K3 w - - 0 1",     KRKR, false, "undefended rook attacked by the side to move"},
    {"7K/8/8/8/7k/5R2/7r/8 b - - 0 1",       KRKR, false, "Kg4 uncovers a check and attacks the rook"},
    {"4k3/8/8/8/2p2B2/8/8/4K3 w - - 0 1",    KBKP, false, "bishop on the path, left to the search"},
    {"B7/8/8/8/8/1k6/2pK4/8 b - - 0 1",      KBKP, false, "king beside the path, shouldered off"},
    {"8/8/8/8/2p5/2K5/8/B3k3 w - - 0 1",     KBKP, true,  "king in front of the pawn"},
    {"N7/8/8/8/8/1k6/2pK4/8 b - - 0 1",      KNKP, false, "king beside the path, shouldered off"},
    {"7K/8/8/8/8/8/2p1B3/4k3 b - - 0 1",     KBKP, false, "bishop cannot reach the promotion square"},
    {"1k6/8/P7/8/8/8/8/2B1K3 w - - 0 1",     KBPK, true,  "rook pawn, wrong bishop, king in the corner"},
    {"1k6/8/P7/8/8/8/4B3/4K3 w - - 0 1",     KBPK, false, "rook pawn with the right bishop"},
    {"7K/8/8/8/8/8/1kp5/4Q3 b - - 0 1",      KQKP, true,  "bishop pawn on the seventh, queen's king far"},
    {"7K/8/8/8/8/8/1kp5/4Q3 w - - 0 1",      KQKP, false, "the same with the queen to move"},
    {"Q7/8/8/3K4/8/8/6k1/7q b - - 0 1",      KQKQ, false, "king on the edge: checks skewer the queen"},
    {"8/8/8/2k5/8/8/5q2/K4Q2 w - - 0 1",     KQKQ, false, "undefended queen attacked by the side to move"},
};
// clang-format on

}  // namespace

TEST(DrawRecogniser, PatternsScoreZeroOnlyWhenTheyHold) {
    Board board;
    Evaluator evaluator(board);
    for (const DrawCase& c : DRAW_CASES) {
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        ASSERT_EQ(board.state().endgameId, c.id) << c.fen;
        EXPECT_EQ(evaluator.recognizedDraw(), c.drawn) << c.why << ": " << c.fen;
        if (c.drawn)
            EXPECT_EQ(evaluator.Evaluate(), 0) << c.why;
        else
            EXPECT_NE(evaluator.Evaluate(), 0) << c.why;
    }
}

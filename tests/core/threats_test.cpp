// The check tests: the plain one and the one that uses the position's check info.
#include "core/threats.h"

#include <gtest/gtest.h>

#include "test_positions.h"

// Both check tests, the plain one and the one with the position's check info, agree with
// making the move, for every move of the published positions and of positions from random games.
TEST(Threats, GivesCheckAgreesWithTheMove) {
    std::vector<std::string> fens = coretest::randomGamePositions();
    // Random play gives few discovered checks: pieces and a king that uncover a slider, a pawn
    // that does by pushing or taking, blockers that stay on the line, and en passant captures
    // that open a diagonal or take two pawns off a rank.
    for (const char* fen :
         {"4k3/8/8/8/4N3/8/8/4R1K1 w - - 0 1", "7k/8/8/2p5/3P4/8/1B6/K7 w - - 0 1",
          "4k3/8/8/8/8/8/4K3/4R3 w - - 0 1", "4k3/8/8/8/4P3/8/8/K3R3 w - - 0 1",
          "1k6/8/8/8/8/8/8/K1n1r3 b - - 0 1", "k7/1q6/8/3B4/8/8/6N1/7K b - - 0 1",
          "6k1/8/8/3pP3/8/8/B7/4K3 w - d6 0 1", "8/8/8/k2pP2R/8/8/8/4K3 w - d6 0 1"})
        fens.push_back(fen);
    Board board;
    MoveList list;
    for (const std::string& fen : fens) {
        ASSERT_EQ(board.setFen(fen), 0);
        generateAll(board, list);
        const CheckInfo info = checkInfoOf(board);
        for (Move m : list) {
            bool predicted = givesCheck(board, m), fast = givesCheck(board, m, info);
            board.makeMove(m);
            EXPECT_EQ(predicted, board.inCheck()) << board.getFen() << " after " << moveToUci(m);
            EXPECT_EQ(fast, board.inCheck()) << board.getFen() << " after " << moveToUci(m);
            board.unmakeMove(m);
        }
    }
}

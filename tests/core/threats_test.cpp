// The check tests: the plain one and the one that uses the position's check info.
#include "core/threats.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/movegen.h"
#include "core/notation.h"

// Both check tests, the plain one and the one with the position's check info, agree with
// making the move, for every move of each position and of each position one move further.
TEST(Threats, GivesCheckAgreesWithTheMove) {
    std::ifstream in(std::string(MORVANE_DATA_DIR) + "/perft.epd");
    Board board;
    MoveList first, second;
    auto checkAll = [&](MoveList& list) {
        const CheckInfo info = checkInfoOf(board);
        for (Move m : list) {
            bool predicted = givesCheck(board, m), fast = givesCheck(board, m, info);
            board.makeMove(m);
            EXPECT_EQ(predicted, board.inCheck()) << board.getFen() << " after " << moveToUci(m);
            EXPECT_EQ(fast, board.inCheck()) << board.getFen() << " after " << moveToUci(m);
            board.unmakeMove(m);
        }
    };
    std::vector<std::string> fens;
    for (std::string line; std::getline(in, line);)
        fens.push_back(line.substr(0, line.find(" perft1 ")));
    // The published positions hold hardly any discovered check: pieces and a king that
    // uncover a slider, a pawn that does by pushing or taking, blockers that stay on the line,
    // and en passant captures that open a diagonal or take two pawns off a rank.
    for (const char* fen :
         {"4k3/8/8/8/4N3/8/8/4R1K1 w - - 0 1", "7k/8/8/2p5/3P4/8/1B6/K7 w - - 0 1",
          "4k3/8/8/8/8/8/4K3/4R3 w - - 0 1", "4k3/8/8/8/4P3/8/8/K3R3 w - - 0 1",
          "1k6/8/8/8/8/8/8/K1n1r3 b - - 0 1", "k7/1q6/8/3B4/8/8/6N1/7K b - - 0 1",
          "6k1/8/8/3pP3/8/8/B7/4K3 w - d6 0 1", "8/8/8/k2pP2R/8/8/8/4K3 w - d6 0 1"})
        fens.push_back(fen);
    for (const std::string& fen : fens) {
        ASSERT_EQ(board.setFen(fen), 0);
        generateAll(board, first);
        checkAll(first);
        for (Move m : first) {
            board.makeMove(m);
            generateAll(board, second);
            checkAll(second);
            board.unmakeMove(m);
        }
    }
}

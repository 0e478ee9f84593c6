// Make and unmake against positions set up from scratch, and the fields they update.
#include <gtest/gtest.h>

#include "test_positions.h"

namespace {

using coretest::BoardSnapshot;
using coretest::positionFields;

// Makes the move (0: a null move) and compares with a board set up from the resulting FEN, then
// unmakes it and compares with the position before, then makes it again.
void checkedMake(Board& board, Board& scratch, Move m) {
    BoardSnapshot before(board);
    m ? board.makeMove(m) : board.makeNullMove();
    const std::string fen = board.getFen();
    ASSERT_EQ(scratch.setFen(fen), 0) << fen;
    EXPECT_EQ(positionFields(board), positionFields(scratch)) << moveToUci(m) << " giving " << fen;
    m ? board.unmakeMove(m) : board.unmakeNullMove();
    before.expectRestored(board);
    m ? board.makeMove(m) : board.makeNullMove();
}

}  // namespace

// Random games with null moves from many openings; at the end the whole game is taken back
// and must leave exactly what a fresh set-up of the opening gives.
TEST(MakeMove, RandomGamesMatchFreshSetupAndUnmakeRestores) {
    auto board = coretest::newBoard(), scratch = coretest::newBoard(), fresh = coretest::newBoard();
    std::mt19937_64 rng(2024);
    int captures = 0, promotions = 0, castles = 0, enPassants = 0, nullMoves = 0;
    for (const std::string& opening : coretest::someOpenings(4)) {
        const std::string fen = opening + " 0 1";
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        std::vector<Move> game;
        for (int ply = 0; ply < 60; ply++) {
            bool nullAllowed = !board->inCheck() && !(game.size() && game.back() == 0);
            Move m = nullAllowed && rng() % 8 == 0 ? 0 : coretest::randomMove(*board, rng);
            if (m == 0 && !nullAllowed) break;  // mate or stalemate
            captures += moveCaptured(m) != 0, promotions += moveIsPromotion(m);
            castles += moveIsCastling(m), enPassants += moveIsEnPassant(m), nullMoves += m == 0;
            checkedMake(*board, *scratch, m);
            if (HasFailure()) return;
            game.push_back(m);
        }
        for (auto it = game.rbegin(); it != game.rend(); ++it)
            *it ? board->unmakeMove(*it) : board->unmakeNullMove();
        ASSERT_EQ(fresh->setFen(fen), 0);
        BoardSnapshot(*fresh).expectRestored(*board);
        if (HasFailure()) return;
    }
    EXPECT_TRUE(captures > 1000 && promotions > 50 && castles > 300 && enPassants > 50 &&
                nullMoves > 1000);
}

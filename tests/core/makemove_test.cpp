// Make and unmake against positions set up from scratch, and the fields they update.
#include <gtest/gtest.h>

#include "test_positions.h"

namespace {

using coretest::BoardSnapshot;
using coretest::positionFields;

// Makes coordinate moves; "null" makes a null move.
void play(Board& board, const std::string& moves) {
    std::istringstream in(moves);
    for (std::string text; in >> text;) {
        if (text == "null") {
            board.makeNullMove();
            continue;
        }
        Move m = parseMove(board, text);
        ASSERT_TRUE(m && isMoveInList(board, m)) << text << " in " << board.getFen();
        board.makeMove(m);
    }
}

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

// Every move and reply of the perft positions, rich in castling, en passant, pins and endings.
TEST(MakeMove, TwoPliesOfEveryPerftPosition) {
    auto board = coretest::newBoard(), scratch = coretest::newBoard();
    for (const std::string& fen : coretest::perftFens()) {
        ASSERT_EQ(board->setFen(fen + " 0 1"), 0) << fen;
        for (Move m : coretest::legalMoves(*board)) {
            checkedMake(*board, *scratch, m);
            for (Move reply : coretest::legalMoves(*board)) {
                checkedMake(*board, *scratch, reply);
                board->unmakeMove(reply);
            }
            board->unmakeMove(m);
            if (HasFailure()) return;
        }
    }
}

// The FEN after some moves shows the placement, rights, en-passant square and counters (which a
// comparison with a fresh set-up from the board's own FEN cannot prove).
TEST(MakeMove, RightsEnPassantAndCounters) {
    const char* EP = "4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1";
    const struct {
        const char* start;
        const char* moves;
        const char* after;
    } cases[] = {
        // Castling moves the rook and drops both rights; a rook taken on its corner drops one.
        {"r3k2r/6b1/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1", "r3k2r/6b1/8/8/8/8/8/2KR3R b kq - 1 1"},
        {"r3k2r/6b1/8/8/8/8/8/R3K2R b KQkq - 0 1", "g7a1", "r3k2r/8/8/8/8/8/8/b3K2R w Kkq - 0 2"},
        // No pawn beside e4: no en-passant square; a pawn beside it keeps the square for one
        // ply; the capture removes the pawn behind the target.
        {"4k3/8/8/3p4/8/8/4P3/4K3 w - - 0 1", "e2e4", "4k3/8/8/3p4/4P3/8/8/4K3 b - - 0 1"},
        {EP, "e2e4", "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1"},
        {EP, "e2e4 e8d8", "3k4/8/8/8/3pP3/8/8/4K3 w - - 1 2"},
        {EP, "e2e4 d4e3", "4k3/8/8/8/8/4p3/8/4K3 w - - 0 2"},
        // Promotions, with and without capture, reset the fifty-move counter.
        {"1n2k3/P7/8/8/8/8/8/4K3 w - - 5 9", "a7a8q", "Qn2k3/8/8/8/8/8/8/4K3 b - - 0 9"},
        {"4k3/8/8/8/8/8/6p1/4K2R b K - 3 1", "g2h1r", "4k3/8/8/8/8/8/8/4K2r w - - 0 2"},
    };
    auto board = coretest::newBoard();
    for (const auto& c : cases) {
        ASSERT_EQ(board->setFen(c.start), 0) << c.start;
        play(*board, c.moves);
        EXPECT_EQ(board->getFen(), c.after) << c.start << " + " << c.moves;
    }
}

// Set when the position occurred before with the same side to move, looking back past null
// moves but not past the last pawn move or capture, and never at the two latest plies.
TEST(MakeMove, RepetitionFlag) {
    const std::pair<const char*, std::vector<uint32_t>> cases[] = {
        {"g1f3 g8f6 f3g1 f6g8 e2e4 e7e5", {0, 0, 0, 1, 0, 0}},
        {"g1f3 null f3g1 null", {0, 0, 0, 1}},
        {"e2e4 null null", {0, 0, 0}},
        {"b1c3 b8c6 c3b1 c6b8 e2e4 b8c6 g1f3 c6b8 f3g1", {0, 0, 0, 1, 0, 0, 0, 0, 1}},
    };
    auto board = coretest::newBoard();
    for (const auto& [moves, expected] : cases) {
        board->setStartPosition();
        std::istringstream in(moves);
        std::vector<uint32_t> flags;
        for (std::string text; in >> text; flags.push_back(board->state().repetition))
            play(*board, text);
        EXPECT_EQ(flags, expected) << moves;
    }
}

// Static exchange evaluation on classic exchanges, in the search's piece values.
#include "search/see.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "../core/test_positions.h"
#include "core/board.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "eval/weights.h"

TEST(See, ClassicExchanges) {
    const int P = seeValue(W_PAWN), N = seeValue(W_KNIGHT), B = seeValue(W_BISHOP);
    const int R = seeValue(W_ROOK), Q = seeValue(W_QUEEN);
    // clang-format off
    const struct {
        const char* fen;
        const char* move;
        int see;
    } cases[] = {
        {"4k3/8/2p5/3n4/4P3/8/8/4K3 w - - 0 1", "e4d5", N - P},  // defended knight
        {"4k3/8/8/4p3/3N4/2P5/8/4K3 b - - 0 1", "e5d4", N - P},  // the same for Black
        {"4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1", "d1d5", P},  // undefended pawn
        {"4k3/8/2p5/3p4/8/8/8/3RK3 w - - 0 1", "d1d5", P - R},  // pawn defends pawn
        {"3rk3/8/8/3p4/8/8/3R4/3QK3 w - - 0 1", "d2d5", P},  // queen behind rook
        {"3rk3/3r4/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5", P - R},  // doubled rooks each
        {"4k3/8/5n2/3p4/8/1B6/8/4K3 w - - 0 1", "b3d5", P - B},  // knight defends
        {"4k3/8/5n2/3p4/8/1B6/Q7/4K3 w - - 0 1", "b3d5", std::min(P, P - B + N)},  // battery
        {"4k3/5p2/8/7Q/2B5/8/8/4K3 w - - 0 1", "h5f7", P},  // king may not retake
        {"4k3/5p2/8/7Q/8/8/8/4K3 w - - 0 1", "h5f7", P - Q},  // king retakes
        {"4k3/2p5/8/3pP3/8/8/8/4K3 w - d6 0 2", "e5d6", 0},  // en passant, retaken
        {"4k3/2p5/8/3pP3/8/8/8/3RK3 w - d6 0 2", "e5d6", P},  // rook behind d5 joins
        {"4k3/8/3p4/8/8/5N2/8/4K3 w - - 0 1", "f3e5", -N},  // quiet move, pawn takes
        {"4k3/8/3p4/8/3P4/5N2/8/4K3 w - - 0 1", "f3e5", P - N},  // own pawn guards
    };
    // clang-format on
    Board board;
    for (const auto& c : cases) {
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        Move m = parseMove(board, c.move);
        ASSERT_TRUE(m && isMoveInList(board, m)) << c.fen;
        EXPECT_EQ(see(board, m), c.see) << c.fen;
    }
}

// The pruning tests skip the exchange when a bound settles them: no exchange after a quiet move
// loses more than the moving piece, and none onto a square an enemy pawn guards gains more than
// the victim minus the mover plus a pawn. Checked on every move of the perft positions and of
// their children, counting the moves where each bound is reached.
TEST(See, BoundsHoldOnEveryMove) {
    auto board = coretest::newBoard();
    int quiets = 0, guarded = 0, floorReached = 0, ceilingReached = 0;
    auto checkMoves = [&] {
        for (Move m : generateAll(*board, 1)) {
            const int value = see(*board, m);
            const std::string where = board->getFen() + " " + moveToUci(m);
            if (!moveCaptured(m) && !moveIsPromotion(m)) {
                EXPECT_GE(value, -seeValue(movePiece(m))) << where;
                quiets++;
                floorReached += value == -seeValue(movePiece(m));
            }
            if (const int ceiling = exchangeCeiling(*board, m); ceiling != INT32_MAX) {
                EXPECT_LE(value, ceiling) << where;
                guarded++;
                ceilingReached += value == ceiling;
            }
        }
    };
    for (const std::string& fen : coretest::perftFens()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        checkMoves();
        for (Move m : generateAll(*board, 0)) {
            board->makeMove(m);
            checkMoves();
            board->unmakeMove(m);
        }
    }
    EXPECT_GT(quiets, 10000);
    EXPECT_GT(guarded, 300);
    // Bounds that are never reached would test nothing.
    EXPECT_GT(floorReached, 1000);
    EXPECT_GT(ceilingReached, 30);
}

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

// The quiet-move pruning skips the exchange when losing the moving piece stays within its
// threshold, which holds only if no exchange after a quiet move loses more than that piece.
// Checked on every quiet move of the perft positions and of their children.
TEST(See, QuietMoveLosesAtMostItsPiece) {
    auto board = coretest::newBoard();
    int checked = 0;
    auto checkQuiets = [&] {
        for (Move m : generateAll(*board, 1))
            if (!moveCaptured(m) && !moveIsPromotion(m)) {
                EXPECT_GE(see(*board, m), -seeValue(movePiece(m)))
                    << board->getFen() << " " << moveToUci(m);
                checked++;
            }
    };
    for (const std::string& fen : coretest::perftFens()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        checkQuiets();
        for (Move m : generateAll(*board, 0)) {
            board->makeMove(m);
            checkQuiets();
            board->unmakeMove(m);
        }
    }
    EXPECT_GT(checked, 10000);
}

// Static exchange evaluation on classic exchanges: defended and undefended targets, batteries
// that recapture through the piece in front, a king that may not recapture on a guarded square,
// en passant and quiet moves onto attacked squares. Results are written in the search's piece
// values, whatever the evaluation makes them.
#include "search/see.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/board.h"
#include "core/notation.h"
#include "eval/weights.h"

TEST(See, ClassicExchanges) {
    const int P = seeValue(W_PAWN), N = seeValue(W_KNIGHT), B = seeValue(W_BISHOP);
    const int R = seeValue(W_ROOK), Q = seeValue(W_QUEEN);
    const struct {
        const char* what;
        const char* fen;
        const char* move;
        int see;
    } cases[] = {
        {"pawn takes a knight defended by a pawn", "4k3/8/2p5/3n4/4P3/8/8/4K3 w - - 0 1", "e4d5",
         N - P},
        {"black pawn takes a knight defended by a pawn", "4k3/8/8/4p3/3N4/2P5/8/4K3 b - - 0 1",
         "e5d4", N - P},
        {"rook takes an undefended pawn", "4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1", "d1d5", P},
        {"rook takes a pawn defended by a pawn", "4k3/8/2p5/3p4/8/8/8/3RK3 w - - 0 1", "d1d5",
         P - R},
        {"the queen behind the rook recaptures", "3rk3/8/8/3p4/8/8/3R4/3QK3 w - - 0 1", "d2d5", P},
        {"doubled rooks against doubled rooks", "3rk3/3r4/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5",
         P - R},
        {"bishop takes a pawn defended by a knight", "4k3/8/5n2/3p4/8/1B6/8/4K3 w - - 0 1", "b3d5",
         P - B},
        {"the queen behind the bishop recaptures", "4k3/8/5n2/3p4/8/1B6/Q7/4K3 w - - 0 1", "b3d5",
         std::min(P, P - B + N)},
        {"the king may not recapture on a guarded square", "4k3/5p2/8/7Q/2B5/8/8/4K3 w - - 0 1",
         "h5f7", P},
        {"the king recaptures on an unguarded square", "4k3/5p2/8/7Q/8/8/8/4K3 w - - 0 1", "h5f7",
         P - Q},
        {"en passant, recaptured", "4k3/2p5/8/3pP3/8/8/8/4K3 w - d6 0 2", "e5d6", 0},
        // The pawn taken en passant leaves d5: the rook behind it joins in.
        {"en passant opens the file for a rook", "4k3/2p5/8/3pP3/8/8/8/3RK3 w - d6 0 2", "e5d6", P},
        {"a knight steps where a pawn takes it", "4k3/8/3p4/8/8/5N2/8/4K3 w - - 0 1", "f3e5", -N},
        {"a knight steps onto a square its pawn guards", "4k3/8/3p4/8/3P4/5N2/8/4K3 w - - 0 1",
         "f3e5", P - N},
    };
    Board board;
    for (const auto& c : cases) {
        ASSERT_EQ(board.setFen(c.fen), 0) << c.what;
        Move m = parseMove(board, c.move);
        ASSERT_TRUE(m && isMoveInList(board, m)) << c.what;
        EXPECT_EQ(see(board, m), c.see) << c.what;
    }
}

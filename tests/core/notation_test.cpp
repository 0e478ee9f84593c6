// Move notation; coordinate moves are also read through the console tests.
#include <gtest/gtest.h>

#include "test_positions.h"

namespace {

constexpr const char* START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* PROMOTION = "1n2k3/P7/8/8/8/8/p7/4K3 w - - 0 1";
constexpr const char* EN_PASSANT = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
constexpr const char* KNIGHTS = "4k3/8/2N5/8/8/8/2N1N3/K7 w - - 0 1";

}  // namespace

// SAN read into a coordinate move (empty: no single move); where the SAN is the standard form,
// the move is also written that way, leaving the position as it was.
TEST(Notation, San) {
    const struct {
        const char* fen;
        const char* san;
        const char* move;
        bool standard;
    } cases[] = {
        // Disambiguation by file, by rank, by both; none when the other piece is pinned.
        {KNIGHTS, "Nc2d4", "c2d4", true},
        {KNIGHTS, "N6d4", "c6d4", true},
        {KNIGHTS, "Ncd4", "", false},
        {"4k3/8/8/3b4/8/5N2/8/1N5K w - - 0 1", "Nd2", "b1d2", true},
        // Captures, promotions, castling, check and mate; stalemate is no mate.
        {EN_PASSANT, "exd6", "e5d6", true},
        {"3rk3/8/8/8/8/8/8/3RK2R w - - 0 1", "Rxd8+", "d1d8", true},
        {PROMOTION, "axb8=N", "a7b8n", true},
        {PROMOTION, "a8", "a7a8q", false},
        {PROMOTION, "a8=K", "", false},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O-O", "e8c8", true},
        {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "O-O+", "e1g1", true},
        {"6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "Ra8#", "a1a8", true},
        {"7k/8/6K1/8/8/8/8/5Q2 w - - 0 1", "Qf7", "f1f7", true},
        // Looser forms that the reader accepts, and text that names no move.
        {START, "Ng1-f3", "g1f3", false},
        {START, "O-O", "", false},
    };
    auto board = coretest::newBoard();
    for (const auto& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        EXPECT_EQ(sanToCoordinate(*board, c.san), c.move) << '"' << c.san << "\" in " << c.fen;
        if (!c.standard) continue;
        const uint64_t key = board->key();
        EXPECT_EQ(moveToSan(*board, parseMove(*board, c.move)), c.san) << c.fen;
        EXPECT_EQ(board->key(), key) << "the position must stay as it was";
    }
}

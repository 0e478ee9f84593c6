// FEN reading and writing; the position command around it is tested through the console.
#include <gtest/gtest.h>

#include <stdexcept>

#include "test_positions.h"

namespace {

constexpr const char* GAME = "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5";

}  // namespace

// Broken shapes: placement alone or missing; wrong rank count, kings, characters, rank lengths;
// a bad side to move or en-passant square; the side not to move in check; material no game
// reaches. A refused FEN leaves the previous game, moves included, as it was.
TEST(Fen, BrokenInputIsRefusedAndTheGameStays) {
    // clang-format off
    const char* broken[] = {
        "", "w KQkq - 0 1", "4k3/8/8/8/8/8/8/4K3",
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP w KQkq - 0 1", "8/8/8/8/8/8/8/8 w - - 0 1",
        "4k3/8/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/3KK3 w - - 0 1",
        "4k3/8/8/8/8/8/8/4K2x w - - 0 1", "4k3/8/8/ppppppppp/8/8/8/4K3 w - - 0 1",
        "4k3/8/8/8/8/8/8/4K3 W - - 0 1", "4k3/8/8/8/3pP3/8/8/4K3 b - e4 0 1",
        "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1", "8/8/8/8/8/8/3kK3/8 w - - 0 1",
        "4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1", "P3k3/8/8/8/8/8/8/4K3 w - - 0 1"};
    // clang-format on
    auto board = coretest::newBoard();
    ASSERT_EQ(board->setPosition(GAME), 0);
    const std::string game = board->positionCommandString();
    const uint64_t key = board->key();
    for (const char* fen : broken) {
        EXPECT_EQ(board->setFen(fen), -1) << '"' << fen << '"';
        EXPECT_EQ(board->positionCommandString(), game) << fen;
        EXPECT_EQ(board->key(), key) << fen;
    }
    // A placement that passes the shape check but ends before h1 runs off the end of the text.
    for (const char* fen : {"4k3/8/8/8/8/8/8/4K w - - 0 1", "4k3//8/8/8/8/8/4K3 w - - 0 1"}) {
        EXPECT_THROW(board->setFen(fen), std::out_of_range) << fen;
        EXPECT_EQ(board->positionCommandString(), game) << fen;
    }
}

// Each FEN as read, written back: missing fields, castling letters in any order with other
// characters ignored, en passant kept only when a pawn can take, and the half-move clock clamped
// to the ply that the full-move number gives, and to 0.
TEST(Fen, FieldsAsReadAndWrittenBack) {
    const std::pair<const char*, const char*> cases[] = {
        {"r3k2r/8/8/8/8/8/8/R3K2R b", "r3k2r/8/8/8/8/8/8/R3K2R b - - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 w qkQK - 0 1", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 w Qxk - 0 1", "4k3/8/8/8/8/8/8/4K3 w Qk - 0 1"},
        {"4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1", "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1"},
        {"4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1", "4k3/8/8/8/4P3/8/8/4K3 b - - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 b - - 99 60", "4k3/8/8/8/8/8/8/4K3 b - - 99 60"},
        {"4k3/8/8/8/8/8/8/4K3 b - - 10 1", "4k3/8/8/8/8/8/8/4K3 b - - 1 1"},
        {"4k3/8/8/8/8/8/8/4K3 w - - -5 -3", "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
        {"4k3/8/8/8/8/8/8/4K3 w - - x y", "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
    };
    auto board = coretest::newBoard();
    for (const auto& [fen, written] : cases) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        EXPECT_EQ(board->getFen(), written) << fen;
    }
}

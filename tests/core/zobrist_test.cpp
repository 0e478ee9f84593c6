// Zobrist keys: the standard book keys of known positions.
#include <gtest/gtest.h>

#include "test_positions.h"

// The published keys of the book format fix the side-key convention and the rule that an
// en-passant square counts only when a pawn stands ready to take.
TEST(Zobrist, StandardBookKeys) {
    struct Case {
        const char* moves;
        const char* fen;
        uint64_t key;
    } cases[] = {
        {"", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 0x463b96181691fc9c},
        {"e2e4", "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", 0x823c9b50fd114196},
        {"e2e4 d7d5 e4e5 f7f5", "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
         0x22a48b5a8e47ff78},
        {"e2e4 d7d5 e4e5 f7f5 e1e2", "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3",
         0x652a607ca3f242c1},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7",
         "rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4", 0x00fdd303c946bdd9},
        {"a2a4 b7b5 h2h4 b5b4 c2c4",
         "rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3", 0x3c8123ea7b067637},
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3",
         "rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4", 0x5c3f9b829b279560},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setPosition(std::string("position startpos moves ") + c.moves), 0)
            << c.moves;
        EXPECT_EQ(board->key(), c.key) << c.moves;
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        EXPECT_EQ(board->key(), c.key) << c.fen;
    }
}

// Move notation: the coordinate form of the UCI protocol and standard algebraic notation.
#include <gtest/gtest.h>

#include <set>

#include "test_positions.h"

namespace {

constexpr const char* START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* PROMOTION = "4k3/P7/8/8/8/8/p7/4K3 w - - 0 1";
constexpr const char* EN_PASSANT = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
constexpr const char* CASTLING = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* KNIGHTS = "4k3/8/2N5/8/8/8/2N1N3/K7 w - - 0 1";

int square(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }
Move move(int piece, const char* from, const char* to, int captured = 0, int promo = 0) {
    return makeMove(piece, square(from), square(to), captured, promo);
}

}  // namespace

// The parsed value, and whether the membership test finds it among the legal moves.
TEST(Notation, ParseMove) {
    struct Case {
        const char* fen;
        const char* text;
        Move expected;
        bool legal;
    } cases[] = {
        {START, "e2e4  \r\n", move(W_PAWN, "e2", "e4"), true},
        // Any pawn move other than a push onto an empty square reads as en passant.
        {START, "e2e5", move(W_PAWN, "e2", "e5", B_PAWN) | EP_FLAG, false},
        // A promotion letter on a move that does not promote makes it illegal.
        {START, "e2e4q", move(W_PAWN, "e2", "e4", 0, 3), false},
        {START, "e2e4n", move(W_PAWN, "e2", "e4", 0, 3), false},
        {START, "i2i4", 0, false},
        {START, " e2e4", 0, false},
        {START, "e2e4q5", 0, false},
        // A pawn reaching the last rank becomes a queen unless a letter says otherwise.
        {PROMOTION, "a7a8", move(W_PAWN, "a7", "a8", 0, 3), true},
        {PROMOTION, "a7a8n", move(W_PAWN, "a7", "a8", 0, 0), true},
        {PROMOTION, "a7a8x", move(W_PAWN, "a7", "a8", 0, 3), true},
        {EN_PASSANT, "e5d6", move(W_PAWN, "e5", "d6", B_PAWN) | EP_FLAG, true},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - - 0 1", "e5d6", move(W_PAWN, "e5", "d6", B_PAWN) | EP_FLAG,
         false},
        {CASTLING, "e1g1", CASTLE_WK, true},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        Move m = parseMove(*board, c.text);
        EXPECT_EQ(m, c.expected) << '"' << c.text << "\" in " << c.fen;
        EXPECT_EQ(isMoveInList(*board, m | 0xFF800000u), c.legal)
            << '"' << c.text << "\" in " << c.fen;
    }
}

// SAN written for a move, and read back to the same move.
TEST(Notation, MoveToSan) {
    struct Case {
        const char* fen;
        const char* move;
        const char* san;
    } cases[] = {
        {EN_PASSANT, "e5d6", "exd6"},
        // Disambiguation by file, by rank, by both; none when the other piece is pinned.
        {"4k3/8/8/R7/8/8/8/R3K3 w - - 0 1", "a1a3", "R1a3"},
        {KNIGHTS, "c2d4", "Nc2d4"},
        {KNIGHTS, "c6d4", "N6d4"},
        {KNIGHTS, "e2d4", "Ned4"},
        {"4k3/8/8/3b4/8/5N2/8/1N5K w - - 0 1", "b1d2", "Nd2"},
        // Captures, promotions, castling, check and mate; stalemate is no mate.
        {"3rk3/8/8/8/8/8/8/3RK2R w - - 0 1", "d1d8", "Rxd8+"},
        {"1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8n", "axb8=N"},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8c8", "O-O-O"},
        {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+"},
        {"6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "Ra8#"},
        {"7k/8/6K1/8/8/8/8/5Q2 w - - 0 1", "f1f7", "Qf7"},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        Move m = parseMove(*board, c.move);
        ASSERT_TRUE(isMoveInList(*board, m)) << c.move << " in " << c.fen;
        const uint64_t key = board->key();
        EXPECT_EQ(moveToSan(*board, m), c.san) << c.move << " in " << c.fen;
        EXPECT_EQ(board->key(), key) << "the position must stay as it was";
    }
}

// Looser SAN that the reader accepts, castling forms, and text that names no single move.
TEST(Notation, SanToCoordinate) {
    struct Case {
        const char* fen;
        const char* san;
        const char* move;  // empty: no move
    } cases[] = {
        {START, "Nf3+", "g1f3"},       {START, "e4!?", "e2e4"},    {START, "Ng1-f3", "g1f3"},
        {START, "e5", ""},             {START, "O-O", ""},         {START, "Zz9", ""},
        {KNIGHTS, "Ncd4", ""},         {KNIGHTS, "N2d4", ""},      {CASTLING, "0-0", "e1g1"},
        {CASTLING, "0-0-0", "e1c1"},   {PROMOTION, "a8R", "a7a8r"}, {PROMOTION, "a8", "a7a8q"},
        {PROMOTION, "a8=K", ""},
        {"4k3/8/8/8/8/8/8/1N1K1N2 w - - 0 1", "Nfxd2", "f1d2"},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        EXPECT_EQ(sanToCoordinate(*board, c.san), c.move) << '"' << c.san << "\" in " << c.fen;
    }
}

// Every legal move of many positions gets its own SAN, which reads back to the same move.
TEST(Notation, SanRoundTrip) {
    auto board = coretest::newBoard();
    std::mt19937_64 rng(11);
    std::vector<std::string> fens = coretest::perftFens();
    for (const std::string& opening : coretest::someOpenings(20)) {
        ASSERT_EQ(board->setFen(opening), 0);
        for (int ply = 0; ply < 60; ply++) {
            Move m = coretest::randomMove(*board, rng);
            if (!m) break;
            board->makeMove(m);
            if (ply % 6 == 5) fens.push_back(board->getFen());
        }
    }
    int checks = 0, mates = 0;
    for (const std::string& fen : fens) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        std::set<std::string> written;
        const std::vector<Move> legal = coretest::legalMoves(*board);
        for (Move m : legal) {
            std::string san = moveToSan(*board, m);
            EXPECT_EQ(sanToMove(*board, san), m) << san << " in " << fen;
            written.insert(san);
            checks += san.back() == '+', mates += san.back() == '#';
        }
        EXPECT_EQ(written.size(), legal.size()) << fen;
    }
    EXPECT_GT(checks, 100);
    EXPECT_GT(mates, 0);
}

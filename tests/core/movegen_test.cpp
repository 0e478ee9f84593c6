// The split of the move generator by kind of move, and move validation.
#include <gtest/gtest.h>

#include <set>

#include "test_positions.h"

namespace {

// The corner cases, then positions from random games.
const std::vector<std::string>& positions() {
    static const std::vector<std::string> fens = [] {
        std::vector<std::string> fens;
        for (const auto& corner : coretest::CORNER_CASES) fens.push_back(corner.fen);
        const std::vector<std::string>& games = coretest::randomGamePositions();
        fens.insert(fens.end(), games.begin(), games.end());
        return fens;
    }();
    return fens;
}

}  // namespace

// Out of check the captures generator gives the captures and promotions and the quiet generator
// the rest; together they are the list that perft counts.
TEST(MoveGen, CapturesAndQuietsSplitTheLegalMoves) {
    auto board = coretest::newBoard();
    for (const std::string& fen : positions()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        if (board->inCheck()) continue;
        MoveList captures, quiets;
        captures.count = quiets.count = 0;
        generateCaptures(*board, captures);
        generateQuiets(*board, quiets);
        for (Move m : captures)
            EXPECT_TRUE(moveCaptured(m) || moveIsPromotion(m)) << moveToUci(m) << " in " << fen;
        for (Move m : quiets)
            EXPECT_FALSE(moveCaptured(m) || moveIsPromotion(m)) << moveToUci(m) << " in " << fen;
    }
}

// Captures limited to some victims are the full captures of those victims, and every promotion
// whatever it takes. Tried with each piece kind left out, and with no victim at all.
TEST(MoveGen, CapturesOfChosenVictims) {
    auto board = coretest::newBoard();
    int dropped = 0;
    for (const std::string& fen : positions()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        if (board->inCheck()) continue;
        const Color them = ~board->sideToMove;
        MoveList all;
        all.count = 0;
        generateCaptures(*board, all);
        for (int leftOut = PAWN; leftOut <= KING; leftOut++) {
            // KING stands for "no victim at all".
            Bitboard victims = 0;
            for (int type = PAWN; type <= QUEEN; type++)
                if (type != leftOut && leftOut != KING) victims |= board->pieces(them, type);
            std::multiset<Move> expected, got;
            for (Move m : all)
                if (moveIsPromotion(m) || (squareBB(capturedSquare(m)) & victims))
                    expected.insert(m);
            MoveList some;
            some.count = 0;
            generateCaptures(*board, some, victims);
            for (Move m : some) got.insert(m);
            EXPECT_EQ(got, expected) << fen << " without victim kind " << leftOut;
            dropped += int(all.count - some.count);
        }
    }
    EXPECT_GT(dropped, 1000);
}

// Legal moves (with any ordering key) validate to themselves; moves of other positions, random
// values and one-bit corruptions (often moves into check) validate to 0 unless legal here.
TEST(MoveGen, ValidateMoveAcceptsExactlyTheLegalMoves) {
    auto board = coretest::newBoard();
    std::mt19937_64 rng(5);
    std::vector<Move> pool;
    int accepted = 0, rejected = 0;
    for (const std::string& fen : positions()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        const std::vector<Move> legal = coretest::legalMoves(*board);
        const std::set<Move> legalSet(legal.begin(), legal.end());
        auto check = [&](Move candidate) {
            Move expected = legalSet.count(candidate & MOVE_MASK) ? candidate & MOVE_MASK : 0;
            EXPECT_EQ(validateMove(*board, candidate) & MOVE_MASK, expected)
                << std::hex << candidate << " " << moveToUci(candidate & MOVE_MASK) << " in "
                << fen;
            expected ? accepted++ : rejected++;
        };
        for (Move m : legal) {
            check(m | Move(rng() % 512) << 23);
            for (int bit = 0; bit < 23; bit++) check(m ^ (1u << bit));
        }
        for (int i = 0; i < 100 && !pool.empty(); i++) check(pool[rng() % pool.size()]);
        for (int i = 0; i < 100; i++) check(Move(rng()) & MOVE_MASK);
        pool.insert(pool.end(), legal.begin(), legal.end());
        if (HasFailure()) return;
    }
    EXPECT_GT(accepted, 10000);
    EXPECT_GT(rejected, 100000);
}

// Drawing book moves: one move planted per position, every move of a position drawn in some
// games, a zero share never. Seeded like "ucinewgame", one clock second after another, so the
// test is deterministic and still fails for a book that always plays the same move.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "book/book.h"
#include "core/board.h"
#include "core/notation.h"
#include "search/tt.h"

namespace {

Move startMove(const char* text) {
    Board board;
    board.setStartPosition();
    return parseMove(board, text);
}

}  // namespace

TEST(BookDraw, EveryShareIsDrawnOverSuccessiveSeeds) {
    const BookEntry book[] = {
        {STARTPOS_KEY, startMove("e2e4"), 25, {}}, {STARTPOS_KEY, startMove("d2d4"), 25, {}},
        {STARTPOS_KEY, startMove("g1f3"), 25, {}}, {STARTPOS_KEY, startMove("b2b3"), 0, {}},
        {STARTPOS_KEY, startMove("c2c4"), 25, {}},
    };
    TranspositionTable tt;
    tt.resize(1);
    std::map<Move, int> drawn;
    constexpr unsigned FIRST_SECOND = 1795000000;  // a clock reading in seconds
    for (unsigned second = FIRST_SECOND; second < FIRST_SECOND + 24; second++) {
        tt.clear();
        std::srand(second);
        drawBookMoves(book, std::size(book), tt);
        ProbeResult planted = tt.probe(STARTPOS_KEY, 0);
        ASSERT_EQ(planted.bound, BOUND_EXACT);
        EXPECT_EQ(planted.depth, 99);
        drawn[planted.move]++;
    }
    EXPECT_EQ(drawn.count(book[3].move), 0u) << "a move with no share was drawn";
    for (const BookEntry& e : book)
        if (e.weight) {
            EXPECT_GE(drawn[e.move], 2) << moveToUci(e.move);
        }
}

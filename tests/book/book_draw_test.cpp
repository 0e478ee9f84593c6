// Drawing book moves, seeded like "ucinewgame" one clock second after another: every share is
// drawn in some games, a zero share never. Deterministic, and still fails for a book that always
// plays the same move.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "book/book.h"
#include "core/board.h"
#include "core/notation.h"

TEST(BookDraw, EveryShareIsDrawnOverSuccessiveSeeds) {
    Board board;
    board.setStartPosition();
    std::vector<BookEntry> book;
    for (auto [move, share] : {std::pair{"e2e4", 25}, {"d2d4", 25}, {"b2b3", 0}, {"g1f3", 25}, {"c2c4", 25}})
        book.push_back({STARTPOS_KEY, parseMove(board, move), uint8_t(share), {}});
    TranspositionTable tt;
    tt.resize(1);
    std::map<Move, int> drawn;
    for (unsigned second = 1795000000; second < 1795000024; second++) {
        tt.clear();
        std::srand(second);
        drawBookMoves(book.data(), book.size(), tt);
        ProbeResult planted = tt.probe(STARTPOS_KEY, 0);
        ASSERT_EQ(planted.bound, BOUND_EXACT);
        drawn[planted.move]++;
    }
    for (const BookEntry& e : book)
        EXPECT_EQ(drawn[e.move] >= 2, e.weight > 0) << moveToUci(e.move) << " drawn " << drawn[e.move];
}

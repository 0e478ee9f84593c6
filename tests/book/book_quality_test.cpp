// Book quality on a sample: no book move may lose more than 0.4 pawns against the best move of a
// depth-12 search of the same position by the engine itself. The generator chose the moves with
// that same search, so this also proves that the search's answer depends on the position alone
// (here the positions are searched in another order, in another process). The start position's
// six moves are fixed, not chosen.
#include <gtest/gtest.h>

#include "book/book_check.h"
#include "book/internal_book.h"
#include "core/notation.h"
#include "eval/weights.h"

TEST(BookQuality, SampledMovesLoseAtMostFortyCentipawns) {
    ResetWeights();
    RecomputeDerived();
    std::vector<BookPosition> walk = walkBook(INTERNAL_BOOK, INTERNAL_BOOK_SIZE);
    ASSERT_EQ(walk.size(), 24278u);
    QuietSearch search;
    // Positions spread over the whole walk: near the start, where most games pass, and deep.
    for (size_t i : {size_t(1), size_t(7), size_t(60), size_t(900), size_t(9000), size_t(24000)}) {
        std::vector<int> losses = bookMoveLosses(search, walk[i], 12);
        for (size_t r = 0; r < losses.size(); r++)
            EXPECT_LE(losses[r], 40) << "position startpos moves " << walk[i].game << " + "
                                     << moveToUci(walk[i].records[r]->move);
    }
}

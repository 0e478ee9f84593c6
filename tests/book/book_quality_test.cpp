// No sampled book move loses more than 0.4 pawns to a depth-12 search of its position; as the
// generator chose the moves with that search, this also proves the search depends on the
// position alone.
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

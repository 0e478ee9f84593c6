// The internal book: its records keep the invariants the drawing relies on, and every move is
// legal in the position it belongs to, reached by walking the book from the start position.
#include "book/internal_book.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <set>

#include "book/book.h"
#include "core/board.h"
#include "core/notation.h"
#include "search/tt.h"

namespace {

// The records of each position, by key.
std::map<uint64_t, std::vector<const BookEntry*>> positionsOf(const BookEntry* entries,
                                                              size_t count) {
    std::map<uint64_t, std::vector<const BookEntry*>> positions;
    for (size_t i = 0; i < count; i++) positions[entries[i].key].push_back(&entries[i]);
    return positions;
}

}  // namespace

// Grouped by position, sorted by key as signed 64-bit numbers, weights adding up to 100.
TEST(InternalBook, RecordInvariants) {
    int64_t previous = INT64_MIN;
    std::set<uint64_t> finished;
    int sum = 0;
    for (size_t i = 0; i < INTERNAL_BOOK_SIZE; i++) {
        const BookEntry& e = INTERNAL_BOOK[i];
        bool newPosition = i == 0 || e.key != INTERNAL_BOOK[i - 1].key;
        if (newPosition) {
            if (i > 0) {
                EXPECT_EQ(sum, 100) << std::hex << INTERNAL_BOOK[i - 1].key;
            }
            EXPECT_TRUE(finished.insert(e.key).second) << "position split into two runs";
            EXPECT_GT(int64_t(e.key), previous);
            previous = int64_t(e.key);
            sum = 0;
        }
        EXPECT_GT(e.weight, 0);
        EXPECT_EQ(e.move & ~0x7FFFFFu, 0u);
        sum += e.weight;
    }
    EXPECT_EQ(sum, 100);
}

// Every record is reached from the start position by book moves, and its move is legal there.
TEST(InternalBook, EveryMoveLegalOnTheWalkFromTheStart) {
    auto positions = positionsOf(INTERNAL_BOOK, INTERNAL_BOOK_SIZE);
    Board board;
    std::deque<std::string> games = {""};
    std::set<uint64_t> visited;
    size_t checked = 0;
    while (!games.empty()) {
        std::string game = games.front();
        games.pop_front();
        ASSERT_EQ(board.setPosition("position startpos moves " + game), 0);
        auto found = positions.find(board.key());
        if (found == positions.end() || !visited.insert(board.key()).second) continue;
        for (const BookEntry* e : found->second) {
            ASSERT_TRUE(isMoveInList(board, e->move)) << game << " + " << moveToUci(e->move);
            checked++;
            games.push_back(game.empty() ? moveToUci(e->move) : game + " " + moveToUci(e->move));
        }
    }
    EXPECT_EQ(visited.size(), positions.size());
    EXPECT_EQ(checked, INTERNAL_BOOK_SIZE);
}

// With a 1 MB table some positions fall on full clusters; the count then stays below the size.
TEST(InternalBook, DrawingPlantsOneMovePerPosition) {
    TranspositionTable tt;
    tt.resize(128);
    drawBookMoves(INTERNAL_BOOK, INTERNAL_BOOK_SIZE, tt);
    EXPECT_EQ(tt.filled(), 24278u);
    EXPECT_EQ(tt.probe(STARTPOS_KEY, 0).depth, 99);
    tt.resize(1);
    drawBookMoves(INTERNAL_BOOK, INTERNAL_BOOK_SIZE, tt);
    EXPECT_LT(tt.filled(), 24278u);
    EXPECT_GT(tt.filled(), 20000u);
}

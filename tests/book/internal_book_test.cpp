// The internal book's records: the invariants the drawing relies on, and legal moves all along.
#include "book/internal_book.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <set>

#include "core/board.h"
#include "core/notation.h"

// Grouped by position in one run each, sorted by key as signed 64-bit numbers, positive weights
// adding up to 100, moves without an ordering key.
TEST(InternalBook, RecordInvariants) {
    std::map<uint64_t, int> weightSums;
    for (size_t i = 0; i < INTERNAL_BOOK_SIZE; i++) {
        const BookEntry& e = INTERNAL_BOOK[i];
        if (i > 0 && e.key != INTERNAL_BOOK[i - 1].key) {
            EXPECT_GT(int64_t(e.key), int64_t(INTERNAL_BOOK[i - 1].key)) << i;
            EXPECT_EQ(weightSums.count(e.key), 0u) << "position split into two runs";
        }
        EXPECT_GT(e.weight, 0);
        EXPECT_EQ(e.move & ~0x7FFFFFu, 0u);
        weightSums[e.key] += e.weight;
    }
    for (auto [key, sum] : weightSums) EXPECT_EQ(sum, 100) << std::hex << key;
}

// Every record is reached from the start position by book moves, and its move is legal there.
TEST(InternalBook, EveryMoveLegalOnTheWalkFromTheStart) {
    std::map<uint64_t, std::vector<const BookEntry*>> positions;
    for (size_t i = 0; i < INTERNAL_BOOK_SIZE; i++)
        positions[INTERNAL_BOOK[i].key].push_back(&INTERNAL_BOOK[i]);
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

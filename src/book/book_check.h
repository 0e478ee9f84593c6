// Checks of the book's quality: every book move against the best move of a deeper search of its
// position by the engine itself.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "book/book.h"
#include "search/quiet_search.h"

// A book position and a game that reaches it from the start by book moves.
struct BookPosition {
    uint64_t key;
    std::string game;  // coordinate moves separated by blanks
    std::vector<const BookEntry*> records;
};

// Every position of a book in the order a walk from the start position meets it.
std::vector<BookPosition> walkBook(const BookEntry* entries, size_t count);

// Principal lines of the search that judges book moves.
constexpr int LOSS_LINES = 3;

// How much each book move of the position loses against the best move of one multi-line search
// at the given depth: the best line's score minus the move's line score, in the order of the
// position's records. A move outside the best LOSS_LINES lines is charged the last line's loss,
// the least it can lose.
std::vector<int> bookMoveLosses(QuietSearch& search, const BookPosition& position, int depth);

// The opening book. It is never consulted during a search: at every new game one move per book
// position is drawn at random, weighted by its share, and planted in the transposition table as
// an exact entry, where the search finds it like any other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "search/tt.h"

// One record, 16 bytes little-endian, the same in a book file and in the internal book.
struct BookEntry {
    uint64_t key;     // position key
    uint32_t move;    // a Move; only bits 0..22 are kept
    uint8_t weight;   // share in percent; the shares of one position add up to 100
    uint8_t padding[3];
};
static_assert(sizeof(BookEntry) == 16);

constexpr uint64_t STARTPOS_KEY = 0x463B96181691FC9CULL;

// Book file statuses.
enum BookStatus { BOOK_OK = 0, BOOK_NOT_FOUND = 6, BOOK_INVALID = 7 };

// Draws one move per position over records grouped by key: a position's first move is taken
// with probability weight/100, and so on down its list.
void drawBookMoves(const BookEntry* entries, size_t count, TranspositionTable& tt);
// Reads a book file and draws over it; a file without the start position is not a book.
BookStatus loadBookFile(const std::string& name, TranspositionTable& tt);

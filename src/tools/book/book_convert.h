// Conversions between PolyGlot books and the engine's book records.
#pragma once

#include <cstdint>
#include <vector>

#include "book/book_file.h"

// Percentages in proportion to the weights, adding up to exactly 100, none below 1; equal
// shares when every weight is 0. At most 100 weights.
std::vector<int> percentShares(const std::vector<uint32_t>& weights);

struct ImportCounts {
    size_t read = 0;       // PolyGlot entries in the file
    size_t positions = 0;  // positions written
    size_t records = 0;    // records written
    size_t unreached = 0;  // entries of positions no book line from the start position reaches
    size_t illegal = 0;    // entries whose move is not legal in their position
    size_t surplus = 0;    // entries beyond the 100 heaviest of a position
};

// Walks the book from the start position through every move that is legal in its position,
// and writes one record per kept move, the weights turned into percentages. The records come in
// the order of the walk, grouped by position.
std::vector<BookEntry> importPolyglot(const std::vector<PolyglotEntry>& entries,
                                      ImportCounts& counts);

// The PolyGlot entries of the records, sorted by key as PolyGlot wants, the heaviest move of a
// position first; the percentages become the weights.
std::vector<PolyglotEntry> exportPolyglot(const std::vector<BookEntry>& records);

// Reads a book in either format, telling them apart by their content.
#pragma once

#include <string>
#include <vector>

#include "book/book_file.h"

enum class BookFormat { Morvane, Polyglot };

struct LoadedBook {
    BookFormat format;
    std::vector<BookEntry> records;       // the engine's records, for a Morvane book
    std::vector<PolyglotEntry> polyglot;  // the entries, for a PolyGlot book
};

// Reads the file into `book`; returns an error text when it is missing or empty, is not a whole
// number of 16-byte entries, is neither format, or is a PolyGlot book not sorted by key.
std::string readAnyBook(const std::string& path, LoadedBook& book);

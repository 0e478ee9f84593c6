#include "tools/book/book_reader.h"

#include <algorithm>
#include <optional>

namespace {

// Every record has zero padding, a share of 1..100 and a move word of the engine's layout.
bool looksLikeRecords(const std::string& bytes, const std::vector<BookEntry>& records) {
    for (size_t i = 0; i < records.size(); i++) {
        const BookEntry& r = records[i];
        const char* padding = bytes.data() + i * RECORD_SIZE + 13;
        int piece = movePiece(r.move);
        if (padding[0] || padding[1] || padding[2] || r.weight < 1 || r.weight > 100 ||
            (r.move & ~MOVE_MASK) || piece < W_PAWN || piece > B_KING ||
            moveFrom(r.move) == moveTo(r.move))
            return false;
    }
    return true;
}

// Every move word has a promotion code 0..4 and different squares.
bool looksLikePolyglot(const std::vector<PolyglotEntry>& entries) {
    return std::all_of(entries.begin(), entries.end(), [](const PolyglotEntry& e) {
        return (e.move >> 15) == 0 && ((e.move >> 12) & 7) <= 4 &&
               (e.move & 63) != ((e.move >> 6) & 63);
    });
}

}  // namespace

std::string readAnyBook(const std::string& path, LoadedBook& book) {
    std::optional<std::string> bytes = readFileBytes(path);
    if (!bytes) return path + ": cannot be read";
    if (bytes->empty()) return path + ": empty file";
    if (bytes->size() % RECORD_SIZE)
        return path + ": truncated (" + std::to_string(bytes->size()) +
               " bytes is not a whole number of 16-byte entries)";
    book.records = decodeRecords(*bytes);
    if (looksLikeRecords(*bytes, book.records)) {
        book.format = BookFormat::Morvane;
        return "";
    }
    book.records.clear();
    book.polyglot = decodePolyglot(*bytes);
    if (!looksLikePolyglot(book.polyglot))
        return path + ": neither a Morvane book nor a PolyGlot book";
    if (!std::is_sorted(book.polyglot.begin(), book.polyglot.end(),
                        [](const auto& a, const auto& b) { return a.key < b.key; }))
        return path + ": a PolyGlot book must be sorted by key, and this one is not";
    book.format = BookFormat::Polyglot;
    return "";
}

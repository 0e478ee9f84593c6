#include "book/book.h"

#include <cstdlib>
#include <vector>

#include "book/book_file.h"
#include "core/text.h"

void drawBookMoves(const BookEntry* entries, size_t count, TranspositionTable& tt) {
    int target = 0, sum = 0;
    bool decided = false;
    for (size_t i = 0; i < count; i++) {
        const BookEntry& e = entries[i];
        if (i == 0 || e.key != entries[i - 1].key) {
            target = std::rand() % 100 + 1;
            sum = 0;
            decided = false;
        }
        if (decided) continue;
        sum += e.weight;
        if (sum >= target) {
            tt.storeBookMove(e.key, e.move & 0x7FFFFF);
            decided = true;
        }
    }
}

BookStatus loadBookFile(const std::string& name, TranspositionTable& tt) {
    if (!fileExists(name)) return BOOK_NOT_FOUND;
    std::optional<std::string> bytes = readFileBytes(name);
    if (!bytes) return BOOK_NOT_FOUND;
    std::vector<BookEntry> entries = decodeRecords(*bytes);
    bool hasStart = false;
    for (const BookEntry& e : entries) hasStart |= e.key == STARTPOS_KEY;
    if (!hasStart) return BOOK_INVALID;
    drawBookMoves(entries.data(), entries.size(), tt);
    return BOOK_OK;
}

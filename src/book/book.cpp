#include "book/book.h"

#include <cstdlib>
#include <fstream>
#include <vector>

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
    std::ifstream in(name, std::ios::binary);
    if (!in) return BOOK_NOT_FOUND;
    std::vector<BookEntry> entries;
    bool hasStart = false;
    unsigned char bytes[16];
    while (in.read(reinterpret_cast<char*>(bytes), sizeof(bytes))) {
        BookEntry e{};
        for (int i = 7; i >= 0; i--) e.key = e.key << 8 | bytes[i];
        e.move = uint32_t(bytes[8]) | uint32_t(bytes[9]) << 8 | uint32_t(bytes[10]) << 16 | uint32_t(bytes[11]) << 24;
        e.weight = bytes[12];
        hasStart |= e.key == STARTPOS_KEY;
        entries.push_back(e);
    }
    if (!hasStart) return BOOK_INVALID;
    drawBookMoves(entries.data(), entries.size(), tt);
    return BOOK_OK;
}

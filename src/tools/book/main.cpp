// morvane-book: converts PolyGlot books to the engine's book files and back, and shows what a
// book of either format holds. See the README's Tools section.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "book/book_check.h"
#include "core/notation.h"
#include "tools/book/book_convert.h"
#include "tools/book/book_reader.h"
#include "tools/book/polyglot_moves.h"

namespace {

const char* const USAGE =
    "usage: morvane-book import BOOK.bin OUT.mbk   convert a PolyGlot book\n"
    "       morvane-book export BOOK.mbk OUT.bin   convert a Morvane book to PolyGlot\n"
    "       morvane-book stats BOOK                positions, moves and depths of a book\n"
    "       morvane-book probe BOOK \"FEN\"          the book's moves for a position";

int fail(const std::string& message) {
    std::cerr << "morvane-book: " << message << "\n";
    return 1;
}

std::string percent(size_t part, size_t whole) {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f%%", whole ? 100.0 * double(part) / double(whole) : 0.0);
    return text;
}

int importBook(const std::string& in, const std::string& out) {
    LoadedBook book;
    if (std::string error = readAnyBook(in, book); !error.empty()) return fail(error);
    if (book.format != BookFormat::Polyglot) return fail(in + ": already a Morvane book");
    ImportCounts counts;
    std::vector<BookEntry> records = importPolyglot(book.polyglot, counts);
    if (records.empty()) return fail(in + ": no entry could be placed from the start position");
    // Sorted as the internal book is; a position's records keep their order, heaviest first.
    std::stable_sort(records.begin(), records.end(), [](const BookEntry& a, const BookEntry& b) {
        return int64_t(a.key) < int64_t(b.key);
    });
    if (!writeFileBytes(out, encodeRecords(records))) return fail("cannot write " + out);
    std::cout << "read " << counts.read << " PolyGlot entries from " << in << "\n"
              << "wrote " << counts.positions << " positions, " << counts.records << " records to "
              << out << "\n"
              << "dropped " << counts.illegal + counts.unreached + counts.surplus
              << " entries: " << counts.illegal << " not legal in their position, "
              << counts.unreached << " of positions no book line from the start position reaches, "
              << counts.surplus << " beyond the 100 heaviest moves of a position\n";
    return 0;
}

int exportBook(const std::string& in, const std::string& out) {
    LoadedBook book;
    if (std::string error = readAnyBook(in, book); !error.empty()) return fail(error);
    if (book.format != BookFormat::Morvane) return fail(in + ": already a PolyGlot book");
    std::vector<PolyglotEntry> entries = exportPolyglot(book.records);
    if (!writeFileBytes(out, encodePolyglot(entries))) return fail("cannot write " + out);
    std::cout << "wrote " << entries.size() << " PolyGlot entries to " << out << "\n";
    return 0;
}

int stats(const std::string& path) {
    LoadedBook book;
    if (std::string error = readAnyBook(path, book); !error.empty()) return fail(error);
    std::map<uint64_t, int> movesOf;
    size_t entries = 0;
    if (book.format == BookFormat::Morvane) {
        for (const BookEntry& r : book.records) movesOf[r.key]++;
        entries = book.records.size();
    } else {
        for (const PolyglotEntry& e : book.polyglot) movesOf[e.key]++;
        entries = book.polyglot.size();
        ImportCounts ignored;
        book.records = importPolyglot(book.polyglot, ignored);
    }
    std::cout << (book.format == BookFormat::Morvane ? "Morvane" : "PolyGlot")
              << " book: " << movesOf.size() << " positions, " << entries << " entries\n";

    std::map<int, int> positionsByMoves;
    int most = 0;
    for (const auto& [key, moves] : movesOf)
        positionsByMoves[std::min(moves, 10)]++, most = std::max(most, moves);
    std::printf("moves per position: %.2f on average, %d at most\n",
                double(entries) / double(movesOf.size()), most);
    for (const auto& [moves, positions] : positionsByMoves)
        std::cout << "  " << (moves == 10 ? "10 or more" : std::to_string(moves))
                  << (moves == 1 ? " move: " : " moves: ") << positions << " positions\n";

    std::vector<BookPosition> walk = walkBook(book.records.data(), book.records.size());
    std::map<int, int> byPly;
    for (const BookPosition& p : walk)
        byPly[p.game.empty() ? 0 : int(std::count(p.game.begin(), p.game.end(), ' ')) + 1]++;
    std::cout << "positions by depth from the start position, following book moves:\n";
    for (const auto& [ply, positions] : byPly)
        std::cout << "  ply " << ply << ": " << positions << " (" << percent(positions, walk.size())
                  << ")\n";
    std::cout << "not reached from the start position: " << movesOf.size() - walk.size()
              << " positions\n";
    return 0;
}

int probe(const std::string& path, const std::string& fen) {
    LoadedBook book;
    if (std::string error = readAnyBook(path, book); !error.empty()) return fail(error);
    auto board = std::make_unique<Board>();
    if (board->setFen(fen) != 0) return fail("bad FEN: " + fen);
    const uint64_t key = board->key();
    std::vector<std::pair<std::string, uint32_t>> moves;
    if (book.format == BookFormat::Morvane) {
        for (const BookEntry& r : book.records)
            if (r.key == key) moves.push_back({moveToUci(r.move), r.weight});
    } else {
        for (const PolyglotEntry& e : book.polyglot) {
            if (e.key != key) continue;
            Move m = fromPolyglotMove(*board, e.move);
            char word[32];
            std::snprintf(word, sizeof word, "(illegal move 0x%04X)", e.move);
            moves.push_back({m ? moveToUci(m) : word, e.weight});
        }
    }
    if (moves.empty()) {
        std::cout << "no book moves for this position\n";
        return 0;
    }
    uint64_t total = 0;
    for (const auto& [move, weight] : moves) total += weight;
    for (const auto& [move, weight] : moves)
        std::cout << move << "  weight " << weight << "  " << percent(weight, total) << "\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> a(argv + 1, argv + argc);
    if (a.size() == 3 && a[0] == "import") return importBook(a[1], a[2]);
    if (a.size() == 3 && a[0] == "export") return exportBook(a[1], a[2]);
    if (a.size() == 2 && a[0] == "stats") return stats(a[1]);
    if (a.size() == 3 && a[0] == "probe") return probe(a[1], a[2]);
    std::cerr << USAGE << "\n";
    return 2;
}

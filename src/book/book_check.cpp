#include "book/book_check.h"

#include <deque>
#include <map>
#include <set>

#include "core/board.h"
#include "core/movegen.h"
#include "core/notation.h"

std::vector<BookPosition> walkBook(const BookEntry* entries, size_t count) {
    std::map<uint64_t, std::vector<const BookEntry*>> byKey;
    for (size_t i = 0; i < count; i++) byKey[entries[i].key].push_back(&entries[i]);
    std::vector<BookPosition> walk;
    std::set<uint64_t> visited;
    std::deque<std::string> games = {""};
    Board board;
    while (!games.empty()) {
        std::string game = games.front();
        games.pop_front();
        if (board.setPosition("position startpos moves " + game) != 0) continue;
        auto found = byKey.find(board.key());
        if (found == byKey.end() || !visited.insert(board.key()).second) continue;
        walk.push_back({board.key(), game, found->second});
        for (const BookEntry* e : found->second)
            games.push_back(game.empty() ? moveToUci(e->move) : game + " " + moveToUci(e->move));
    }
    return walk;
}

std::vector<int> bookMoveLosses(QuietSearch& search, const BookPosition& position, int depth) {
    std::vector<ScoredMove> lines =
        search.search("position startpos moves " + position.game, depth, LOSS_LINES);
    std::vector<int> losses;
    for (const BookEntry* e : position.records) {
        // A move outside the lines searched loses at least as much as the last line.
        int score = lines.empty() ? 0 : lines.back().score;
        for (const ScoredMove& line : lines)
            if (line.move == (e->move & MOVE_MASK)) score = line.score;
        losses.push_back(lines.empty() ? 0 : lines.front().score - score);
    }
    return losses;
}

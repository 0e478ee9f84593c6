#include "book/book_check.h"

#include <deque>
#include <map>
#include <set>

#include "core/board.h"
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
    const std::string start = "position startpos moves " + position.game;
    std::vector<ScoredMove> best = search.search(start, depth);
    std::vector<int> losses;
    Board board;
    for (const BookEntry* e : position.records) {
        const std::string after = start + " " + moveToUci(e->move);
        std::vector<ScoredMove> reply = search.search(after, depth - 1);
        board.setPosition(after);
        // No reply at all: the book move mates or stalemates.
        int score = !reply.empty() ? -reply[0].score : board.inCheck() ? MATE - 1 : 0;
        losses.push_back(best.empty() ? 0 : best[0].score - score);
    }
    return losses;
}

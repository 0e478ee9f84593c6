#include "search/moveorder.h"

#include <algorithm>
#include <cstring>
#include <utility>

void OrderingTables::clear() { std::memset(static_cast<void*>(this), 0, sizeof(*this)); }

void OrderingTables::storeKiller(int ply, Move m) {
    m &= MOVE_MASK;
    Move* k = killers[ply];
    k[2] = m;
    if (moveCaptured(m) || moveIsPromotion(m) || m == k[0]) return;
    k[1] = k[0];
    k[0] = m;
}

void OrderingTables::updateHistory(Move m, int bonus) {
    int32_t& entry = history[movePiece(m)][moveTo(m)];
    entry += std::min(1024, bonus);
    if (entry >= 2048 || entry <= -2048) {
        for (int piece = 1; piece <= 12; piece++)
            for (int sq = 0; sq < 64; sq++) history[piece][sq] /= 2;
    }
}

// Every move of a list differs from the others, so each value's place in the sorted list is the
// number of values above it. Counting them is branch-free and vectorises; it beats an insertion
// sort, whose mispredicted exits dominate on the long lists of quiet moves. Short lists keep
// the insertion sort.
void sortMoves(MoveList& list) {
    const uint32_t n = list.count;
    if (n < 8) {
        for (uint32_t i = 1; i < n; i++) {
            const Move m = list.moves[i];
            uint32_t j = i;
            for (; j > 0 && list.moves[j - 1] < m; j--) list.moves[j] = list.moves[j - 1];
            list.moves[j] = m;
        }
        return;
    }
    // Padded with zeros to whole vectors; no move is 0, so the padding never counts. A full
    // list already ends on a whole vector.
    static_assert(MAX_MOVES % 16 == 0);
    alignas(64) Move unsorted[MAX_MOVES];
    const uint32_t padded = (n + 15) & ~15u;
    std::memcpy(unsorted, list.moves, n * sizeof(Move));
    std::fill(unsorted + n, unsorted + padded, Move(0));
    for (uint32_t i = 0; i < n; i++) {
        const Move m = unsorted[i];
        uint32_t above = 0;
        for (uint32_t j = 0; j < padded; j++) above += unsorted[j] > m;
        list.moves[above] = m;
    }
}

int removeMove(MoveList& list, Move m) {
    m &= MOVE_MASK;
    uint32_t kept = 0;
    for (uint32_t i = 0; i < list.count; i++)
        if ((list.moves[i] & MOVE_MASK) != m) list.moves[kept++] = list.moves[i];
    int removed = int(list.count - kept);
    list.count = kept;
    return removed;
}

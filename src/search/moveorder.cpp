#include "search/moveorder.h"

#include <algorithm>
#include <cstring>
#include <functional>

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

void sortMoves(MoveList& list) { std::sort(list.begin(), list.end(), std::greater<Move>()); }

int removeMove(MoveList& list, Move m) {
    m &= MOVE_MASK;
    uint32_t kept = 0;
    for (uint32_t i = 0; i < list.count; i++)
        if ((list.moves[i] & MOVE_MASK) != m) list.moves[kept++] = list.moves[i];
    int removed = int(list.count - kept);
    list.count = kept;
    return removed;
}

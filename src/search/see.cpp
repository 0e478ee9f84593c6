#include "search/see.h"

#include <algorithm>

#include "eval/weights.h"

namespace {

// The least valuable attacker of a side among the attackers; 0 when there is none.
int leastValuable(const Board& b, Bitboard attackers, Color side, int& square) {
    for (int type = PAWN; type <= KING; type++) {
        Bitboard set = attackers & b.pieces(side, type);
        if (set) {
            square = lsb(set);
            return makePiece(side, type);
        }
    }
    return EMPTY;
}

}  // namespace

int see(const Board& b, Move m) {
    const int from = moveFrom(m), to = moveTo(m);
    const AttackTables& at = b.attacks;
    Bitboard occ = b.occupiedBB & ~squareBB(from);
    if (moveIsEnPassant(m)) occ &= ~squareBB(capturedSquare(m));
    int onSquare = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    int gain[40];
    gain[0] = seeValue(moveCaptured(m));
    if (moveIsPromotion(m)) gain[0] += seeValue(onSquare) - seeValue(movePiece(m));
    Bitboard attackers = b.attackersTo(to, occ);
    Color side = ~b.sideToMove;
    if (!(attackers & b.colorBB[side])) return gain[0];  // nothing takes back
    const Bitboard rookLike = b.rookMovers(), bishopLike = b.bishopMovers();
    int depth = 0;
    for (;;) {
        int sq;
        int attacker = leastValuable(b, attackers & b.colorBB[side], side, sq);
        if (!attacker) break;
        // A king may only take last: it cannot capture into a square the other side still covers.
        if (typeOf(attacker) == KING && (attackers & b.colorBB[~side] & ~squareBB(to))) break;
        depth++;
        gain[depth] = seeValue(onSquare) - gain[depth - 1];
        onSquare = attacker;
        occ &= ~squareBB(sq);
        // Sliders behind the piece that just captured join in, along the line it came from;
        // the lookup is skipped when no slider of the line's kind stands beyond it.
        const Bitboard beyond = at.lineBeyond[to][sq] & occ;
        if (at.rookLines[to] & squareBB(sq)) {
            if (beyond & rookLike) attackers |= at.rookAttacks(to, occ) & rookLike;
        } else if (beyond & bishopLike) {
            attackers |= at.bishopAttacks(to, occ) & bishopLike;
        }
        attackers &= occ;
        side = ~side;
        if (depth == 39) break;
    }
    while (depth > 0) {
        gain[depth - 1] = -std::max(-gain[depth - 1], gain[depth]);
        depth--;
    }
    return gain[0];
}

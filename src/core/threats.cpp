#include "core/threats.h"

namespace {

// Kind order for threats: knight and bishop share a rank.
constexpr int THREAT_RANK[7] = {0, 1, 2, 2, 3, 4, 5};

Bitboard attacksFrom(const Board& b, int piece, int sq, Bitboard occ) {
    if (typeOf(piece) == PAWN) return b.attacks.pawnAttacks[pieceColor(piece)][sq];
    return b.attacks.pieceAttacks(typeOf(piece), sq, occ);
}

}  // namespace

bool givesCheck(const Board& b, Move m) {
    const Color us = b.sideToMove;
    const int ksq = b.kingSquare[~us];
    if (ksq == NO_SQUARE) return false;
    const int from = moveFrom(m), to = moveTo(m);
    const int placed = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    Bitboard occ = b.occupiedBB & ~squareBB(from);
    if (moveIsEnPassant(m)) occ &= ~squareBB(rankOf(to) == 5 ? to - 8 : to + 8);
    occ |= squareBB(to);
    if (attacksFrom(b, placed, to, occ) & squareBB(ksq)) return true;
    if (moveIsCastling(m)) {
        int rookTo = to > from ? from + 1 : from - 1;
        return b.attacks.rookAttacks(rookTo, occ) & squareBB(ksq);
    }
    // Discovered checks by sliders that the move uncovers: only possible when the piece leaves
    // a line through the king (or an en-passant capture empties one).
    if (!moveIsEnPassant(m) && !(b.attacks.queenLines[ksq] & squareBB(from))) return false;
    Bitboard queens = b.pieces(us, QUEEN);
    Bitboard rooks = (b.pieces(us, ROOK) | queens) & ~squareBB(from);
    Bitboard bishops = (b.pieces(us, BISHOP) | queens) & ~squareBB(from);
    return (b.attacks.rookAttacks(ksq, occ) & rooks) || (b.attacks.bishopAttacks(ksq, occ) & bishops);
}

bool createsThreat(const Board& b, Move m) {
    const int to = moveTo(m);
    const int placed = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    Bitboard occ = (b.occupiedBB & ~squareBB(moveFrom(m))) | squareBB(to);
    Bitboard targets = attacksFrom(b, placed, to, occ) & b.colorBB[~b.sideToMove];
    while (targets) {
        int victim = b.squares[popLsb(targets)];
        if (typeOf(victim) != KING && THREAT_RANK[typeOf(victim)] > THREAT_RANK[typeOf(placed)]) return true;
    }
    return false;
}

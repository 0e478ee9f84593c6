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
    const AttackTables& at = b.attacks;
    const int from = moveFrom(m), to = moveTo(m);
    const int placed = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    Bitboard occ = b.occupiedBB & ~squareBB(from);
    if (moveIsEnPassant(m)) occ &= ~squareBB(capturedSquare(m));
    occ |= squareBB(to);
    const int type = typeOf(placed);
    if (type == BISHOP || type == ROOK || type == QUEEN) {
        if (at.sliderSees(type, to, ksq, occ)) return true;
    } else if (attacksFrom(b, placed, to, occ) & squareBB(ksq)) {
        return true;
    }
    if (moveIsCastling(m)) return at.sliderSees(ROOK, to > from ? from + 1 : from - 1, ksq, occ);
    // Discovered checks by sliders that the move uncovers: only possible when the piece leaves
    // a line through the king (or an en-passant capture empties one).
    if (!moveIsEnPassant(m) && !(at.queenLines[ksq] & squareBB(from))) return false;
    Bitboard queens = b.pieces(us, QUEEN);
    Bitboard rooks = (b.pieces(us, ROOK) | queens) & ~squareBB(from);
    Bitboard bishops = (b.pieces(us, BISHOP) | queens) & ~squareBB(from);
    // Sliders on a line through the king that the new occupancy leaves open.
    for (Bitboard s = (rooks & at.rookLines[ksq]) | (bishops & at.bishopLines[ksq]); s;)
        if (!(at.between[popLsb(s)][ksq] & occ)) return true;
    return false;
}

CheckInfo checkInfoOf(const Board& b) {
    const Color us = b.sideToMove;
    CheckInfo info{};
    const int ksq = info.kingSquare = b.kingSquare[~us];
    if (ksq == NO_SQUARE) return info;
    const AttackTables& at = b.attacks;
    info.checkSquares[PAWN] = at.pawnAttacks[~us][ksq];
    info.checkSquares[KNIGHT] = at.knightAttacks[ksq];
    info.checkSquares[BISHOP] = at.bishopAttacks(ksq, b.occupiedBB);
    info.checkSquares[ROOK] = at.rookAttacks(ksq, b.occupiedBB);
    info.checkSquares[QUEEN] = info.checkSquares[BISHOP] | info.checkSquares[ROOK];
    info.discoverers = b.lineBlockers(ksq, us, us);
    return info;
}

bool createsThreat(const Board& b, Move m) {
    const int to = moveTo(m);
    const int placed = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    Bitboard occ = (b.occupiedBB & ~squareBB(moveFrom(m))) | squareBB(to);
    Bitboard targets = attacksFrom(b, placed, to, occ) & b.colorBB[~b.sideToMove];
    while (targets) {
        int victim = b.squares[popLsb(targets)];
        if (typeOf(victim) != KING && THREAT_RANK[typeOf(victim)] > THREAT_RANK[typeOf(placed)])
            return true;
    }
    return false;
}

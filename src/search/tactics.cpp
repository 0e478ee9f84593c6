#include "search/tactics.h"

#include "core/threats.h"
#include "eval/weights.h"
#include "search/see.h"

bool isActiveMove(const Board& b, Move m) {
    const int piece = movePiece(m), from = moveFrom(m), to = moveTo(m);
    const Color us = b.sideToMove;
    const AttackTables& at = b.attacks;
    if (typeOf(piece) == PAWN && !(at.passedMask[us][to] & b.pieces(~us, PAWN))) return true;
    bool attackedByPawn = at.pawnAttacks[us][from] & b.pieces(~us, PAWN);
    bool attackedByMinor = seeValue(piece) >= seeValue(W_KNIGHT) &&
                           ((at.knightAttacks[from] & b.pieces(~us, KNIGHT)) ||
                            at.bishopAttackers(from, b.occupiedBB, b.pieces(~us, BISHOP)));
    if (!attackedByPawn && !attackedByMinor && !createsThreat(b, m)) return false;
    return see(b, m) >= 0;
}

bool answersThreat(const Board& b, Move m, Move threat) {
    const int tFrom = moveFrom(threat), tTo = moveTo(threat);
    const int from = moveFrom(m), to = moveTo(m);
    if (from == tTo) return true;  // the attacked piece steps away
    Bitboard occ = (b.occupiedBB & ~squareBB(from)) | squareBB(to);
    const int placed = moveIsPromotion(m) ? promotionPiece(m) : movePiece(m);
    Bitboard defends = typeOf(placed) == PAWN ? b.attacks.pawnAttacks[b.sideToMove][to]
                                              : b.attacks.pieceAttacks(typeOf(placed), to, occ);
    if (moveCaptured(threat) && seeValue(moveCaptured(threat)) <= seeValue(movePiece(threat)) &&
        (defends & squareBB(tTo)))
        return true;
    if (b.attacks.between[tFrom][tTo] & squareBB(to)) return true;
    bool pawnPush = typeOf(movePiece(threat)) == PAWN && !moveCaptured(threat) && !moveIsPromotion(threat);
    return pawnPush && (to == tTo || (defends & squareBB(tTo)));
}


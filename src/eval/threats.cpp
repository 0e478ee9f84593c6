// Threats: enemy pieces attacked by pawns, by less valuable pieces or not defended at all,
// squares the enemy can no longer use freely, and weak pawns a rook or queen can go after.
#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

template <Color Us>
void Evaluator::threats() {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const Bitboard theirs = board.colorBB[Them];
    const Bitboard theirPieces = theirs & ~board.pieces(Them, PAWN) & ~board.pieces(Them, KING);
    const Bitboard stronglyProtected =
        attackedBy[Them][PAWN] | (attackedBy2[Them] & ~attackedBy2[Us]);
    const Bitboard defended = theirPieces & stronglyProtected;
    const Bitboard weak =
        theirs & ~board.pieces(Them, KING) & ~stronglyProtected & attackedBy[Us][0];

    Score score;
    for (Bitboard b = (defended | weak) & (attackedBy[Us][KNIGHT] | attackedBy[Us][BISHOP]); b;)
        score += t.threatByMinor[typeOf(board.squares[popLsb(b)])];
    for (Bitboard b = weak & attackedBy[Us][ROOK]; b;)
        score += t.threatByRook[typeOf(board.squares[popLsb(b)])];
    if (weak & attackedBy[Us][KING]) score += t.threatByKing;
    // Hanging: attacked and not defended, or a piece attacked twice. The derived weight is a
    // penalty, charged to the side whose pieces hang.
    Bitboard hanging = weak & (~attackedBy[Them][0] | (theirPieces & attackedBy2[Us]));
    add(Them, t.hanging * popcount(hanging));

    Bitboard restricted = attackedBy[Them][0] & ~stronglyProtected & attackedBy[Us][0];
    score += t.restricted * popcount(restricted);

    // Pawns that are safe where they stand, or after a push, and attack a piece.
    Bitboard safe = ~attackedBy[Them][0] | attackedBy[Us][0];
    Bitboard ourPawns = board.pieces(Us, PAWN);
    score += t.threatBySafePawn * popcount(pawnAttacksOf<Us>(ourPawns & safe) & theirPieces);
    Bitboard pushes = shiftUp<Us>(ourPawns) & board.emptyBB;
    pushes |= shiftUp<Us>(pushes & relativeRankBB<Us>(2)) & board.emptyBB;
    pushes &= ~attackedBy[Them][PAWN] & safe;
    score += t.threatByPawnPush * popcount(pawnAttacksOf<Us>(pushes) & theirPieces);

    if (board.pieces(Us, ROOK) | board.pieces(Us, QUEEN))
        score +=
            t.weakUnopposedPawn * popcount(pawnEntry->weakUnopposed & board.pieces(Them, PAWN));
    add(Us, score);
}

template void Evaluator::threats<White>();
template void Evaluator::threats<Black>();

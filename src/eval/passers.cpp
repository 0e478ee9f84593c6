// Passed pawns beyond their structural value: the kings' distances to the square in front, how
// safe and how well defended the path to promotion is, rooks behind the pawn, blockades, and the
// rule of the square when the defender has only pawns left.
#include <algorithm>

#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

template <Color Us>
void Evaluator::passedPawns() {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const AttackTables& at = board.attacks;
    const Bitboard occupied = board.occupiedBB;
    const int ksq = board.kingSquare[Us], theirKsq = board.kingSquare[Them];
    const Bitboard ourHeavy = board.pieces(Us, ROOK) | board.pieces(Us, QUEEN);
    const Bitboard theirHeavy = board.pieces(Them, ROOK) | board.pieces(Them, QUEEN);

    Score score;
    int endgameOnly = 0;  // the terms that have no middle-game value
    for (Bitboard b = pawnEntry->passed & board.pieces(Us, PAWN); b;) {
        int sq = popLsb(b);
        int r = relativeRank(Us, sq);
        int stop = sq + upDelta<Us>();
        Bitboard path = at.forwardFile[Us][sq];
        // The first piece behind the pawn on its file; a rook or queen there sees the whole path.
        Bitboard behind = at.rookAttacks(sq, occupied) & at.forwardFile[Them][sq];

        if (behind & board.pieces(Us, ROOK)) score += t.rookBehindPasser;
        if (behind & board.pieces(Them, ROOK)) endgameOnly += t.enemyRookBehindPasserEg;

        if (r >= 3) {
            endgameOnly += t.passerEnemyKingEg[r] * std::min(distance(theirKsq, stop), 5);
            endgameOnly += t.passerOwnKingEg[r] * std::min(distance(ksq, stop), 5);
            if (board.squares[stop] == EMPTY) {
                Bitboard unsafe = path & (attackedBy[Them][0] | board.colorBB[Them]);
                Bitboard defended = path & attackedBy[Us][0];
                if (behind & theirHeavy) unsafe = path;
                if (behind & ourHeavy) defended = path;
                endgameOnly += !unsafe                      ? t.passerFreePathEg[r]
                               : !(unsafe & squareBB(stop)) ? t.passerSafeStopEg[r]
                                                            : 0;
                endgameOnly += defended == path              ? t.passerDefendedPathEg[r]
                               : (defended & squareBB(stop)) ? t.passerDefendedStopEg[r]
                                                             : 0;
            } else if (board.colorBB[Them] & squareBB(stop)) {
                endgameOnly += t.blockedPasserEg * (r - 2) / 4;
            }
        }

        // Against king and pawns alone, a pawn whose promotion square the enemy king cannot
        // reach in time promotes. Who moves decides the race, which the cache key of such
        // positions includes.
        if (board.nonPawnCount[Them] == 0 && !(path & occupied)) {
            int promotion = makeSquare(fileOf(sq), Us == White ? 7 : 0);
            int pawnMoves = std::max(7 - r - (r == 1), 1);
            int kingMoves = distance(theirKsq, promotion) - (board.sideToMove == Them);
            if (kingMoves > pawnMoves)
                endgameOnly += t.pieceValue[QUEEN].eg() - t.pieceValue[PAWN].eg() - 16 * pawnMoves;
        }
    }
    add(Us, score + Score(0, endgameOnly));
}

template void Evaluator::passedPawns<White>();
template void Evaluator::passedPawns<Black>();

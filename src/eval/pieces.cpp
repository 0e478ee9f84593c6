// Piece terms: piece-square values, mobility over safe squares, outposts, bishops and their
// pawns, rooks on open files and the seventh rank. The same pass fills the attack maps and
// counts the attacks on the enemy king's zone that the later terms read.
#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Share of each piece type in an attack on the king, counted once per attacking piece.
constexpr int KING_ATTACK_WEIGHT[7] = {0, 0, 4, 3, 3, 3, 0};

}  // namespace

template <Color Us>
void Evaluator::pieces() {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const AttackTables& at = board.attacks;
    const Bitboard occupied = board.occupiedBB;
    const Bitboard ourPawns = board.pieces(Us, PAWN), theirPawns = board.pieces(Them, PAWN);
    const Bitboard allPawns = ourPawns | theirPawns;
    const Bitboard queens = board.pieces(White, QUEEN) | board.pieces(Black, QUEEN);
    const int ksq = board.kingSquare[Us], theirKsq = board.kingSquare[Them];

    // Pawns that cannot move or that still stand at home take no part in the mobility count,
    // nor do the own king and queen, nor squares enemy pawns attack.
    Bitboard blocked = ourPawns & shiftUp<Them>(occupied);
    Bitboard lowPawns = ourPawns & (relativeRankBB<Us>(1) | relativeRankBB<Us>(2));
    mobilityArea[Us] = ~(blocked | lowPawns | board.pieces(Us, KING) | board.pieces(Us, QUEEN) |
                         attackedBy[Them][PAWN]);
    pinned[Us] = board.pinnedPieces(Us);
    kingAttackersCount[Us] = popcount(attackedBy[Us][PAWN] & kingZone[Them]);
    kingAttackersWeight[Us] = 0;
    kingAdjacentAttacks[Us] = 0;

    const Bitboard outposts =
        (relativeRankBB<Us>(3) | relativeRankBB<Us>(4) | relativeRankBB<Us>(5)) &
        ~pawnAttackSpan<Them>(theirPawns);
    const bool seventhMatters =
        relativeRank(Us, theirKsq) == 7 || (theirPawns & relativeRankBB<Us>(6));

    Score score;
    for (Bitboard b = board.colorBB[Us]; b;) {
        int sq = popLsb(b);
        score += t.psq[board.squares[sq]][sq];
    }

    auto record = [&](int type, int sq, Bitboard attacks) {
        if (pinned[Us] & squareBB(sq)) attacks &= at.fullLine[ksq][sq];
        attackedBy2[Us] |= attackedBy[Us][0] & attacks;
        attackedBy[Us][type] |= attacks;
        attackedBy[Us][0] |= attacks;
        if (attacks & kingZone[Them]) {
            kingAttackersCount[Us]++;
            kingAttackersWeight[Us] += KING_ATTACK_WEIGHT[type];
            kingAdjacentAttacks[Us] += popcount(attacks & attackedBy[Them][KING]);
        }
        return popcount(attacks & mobilityArea[Us]);
    };

    auto minorPiece = [&](int sq, Score outpost) {
        if (outposts & squareBB(sq)) {
            score += scaleScore(outpost, t.outpostScale[Us][sq], 8);
            if (attackedBy[Us][PAWN] & squareBB(sq)) score += t.supportedOutpost;
        }
        score -= t.kingProtector * distance(sq, ksq);
    };

    for (Bitboard b = board.pieces(Us, KNIGHT); b;) {
        int sq = popLsb(b);
        score += t.knightMobility[record(KNIGHT, sq, at.knightAttacks[sq])];
        minorPiece(sq, t.knightOutpost);
    }

    for (Bitboard b = board.pieces(Us, BISHOP); b;) {
        int sq = popLsb(b);
        // Seen through the own queen: a battery counts as mobility.
        score += t.bishopMobility[record(BISHOP, sq,
                                         at.bishopAttacks(sq, occupied ^ board.pieces(Us, QUEEN)))];
        minorPiece(sq, t.bishopOutpost);
        Bitboard sameColour = (LIGHT_SQUARES & squareBB(sq)) ? LIGHT_SQUARES : ~LIGHT_SQUARES;
        score -= t.bishopPawns * popcount(ourPawns & sameColour);
        if (moreThanOne(at.bishopAttacks(sq, allPawns) & CENTRE_SQUARES))
            score += t.longDiagonalBishop;
    }

    for (Bitboard b = board.pieces(Us, ROOK); b;) {
        int sq = popLsb(b);
        Bitboard heavy = board.pieces(Us, ROOK) | board.pieces(Us, QUEEN);
        score += t.rookMobility[record(ROOK, sq, at.rookAttacks(sq, occupied ^ heavy))];
        Bitboard file = fileBB(fileOf(sq));
        if (!(ourPawns & file)) score += (theirPawns & file) ? t.rookHalfOpenFile : t.rookOpenFile;
        if (queens & file) score += t.rookOnQueenFile;
        if (relativeRank(Us, sq) == 6 && seventhMatters) score += t.rookOnSeventh;
        if (at.rookAttacks(sq, occupied) & board.pieces(Us, ROOK)) score += t.connectedRooks;
    }

    for (Bitboard b = board.pieces(Us, QUEEN); b;) {
        int sq = popLsb(b);
        score += t.queenMobility[record(QUEEN, sq, at.queenAttacks(sq, occupied))];
        if (relativeRank(Us, sq) == 6 && seventhMatters) score += t.queenOnSeventh;
    }

    // A minor piece sheltered behind a pawn is hard for the enemy to chase or block; the
    // derived weight is a penalty, charged to the enemy for each such piece of ours.
    const Bitboard minors = board.pieces(Us, KNIGHT) | board.pieces(Us, BISHOP);
    add(Them, t.minorBehindPawn * popcount(minors & shiftUp<Them>(allPawns)));
    add(Us, score);
}

template void Evaluator::pieces<White>();
template void Evaluator::pieces<Black>();

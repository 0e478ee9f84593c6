// Piece terms: piece-square values, mobility over safe squares, outposts, bishops and their
// pawns, rooks on open files and the seventh rank. The same pass fills the attack maps and
// counts the attacks on the enemy king's zone that the later terms read.
#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Share of each piece type in an attack on the king, counted once per attacking piece.
constexpr int KING_ATTACK_WEIGHT[7] = {0, 0, 4, 3, 3, 3, 0};

// Whether a piece on `sq` sees one of the pieces on its lines with nothing in between.
bool connectedTo(const AttackTables& at, int sq, Bitboard onLines, Bitboard occupied) {
    for (Bitboard b = onLines; b;)
        if (!(at.between[sq][popLsb(b)] & occupied)) return true;
    return false;
}

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
    const Bitboard ourRooks = board.pieces(Us, ROOK), ourQueens = board.pieces(Us, QUEEN);
    const int ksq = board.kingSquare[Us], theirKsq = board.kingSquare[Them];

    // Pawns that cannot move or that still stand at home take no part in the mobility count,
    // nor do the own king and queen, nor squares enemy pawns attack.
    Bitboard blocked = ourPawns & shiftUp<Them>(occupied);
    Bitboard lowPawns = ourPawns & (relativeRankBB<Us>(1) | relativeRankBB<Us>(2));
    const Bitboard mobility =
        ~(blocked | lowPawns | board.pieces(Us, KING) | ourQueens | attackedBy[Them][PAWN]);
    const Bitboard pinnedHere = board.pinnedPieces(Us);
    const Bitboard theirZone = kingZone[Them], besideTheirKing = attackedBy[Them][KING];
    mobilityArea[Us] = mobility;
    pinned[Us] = pinnedHere;

    const Bitboard outposts =
        (relativeRankBB<Us>(3) | relativeRankBB<Us>(4) | relativeRankBB<Us>(5)) &
        ~pawnAttackSpan<Them>(theirPawns);
    const bool seventhMatters =
        relativeRank(Us, theirKsq) == 7 || (theirPawns & relativeRankBB<Us>(6));

    // The attack maps are gathered in locals and stored once at the end: written through `this`
    // after every piece, they would be reloaded after every store the compiler cannot rule out
    // as touching the board.
    Bitboard all = attackedBy[Us][0], twice = attackedBy2[Us];
    Bitboard byType[7] = {};
    int attackers = popcount(attackedBy[Us][PAWN] & theirZone), attackWeight = 0, adjacent = 0;
    Score score;

    auto record = [&](int type, int sq, Bitboard attacks) {
        if (pinnedHere & squareBB(sq)) attacks &= at.fullLine[ksq][sq];
        twice |= all & attacks;
        byType[type] |= attacks;
        all |= attacks;
        if (attacks & theirZone) {
            attackers++;
            attackWeight += KING_ATTACK_WEIGHT[type];
            adjacent += popcount(attacks & besideTheirKing);
        }
        return popcount(attacks & mobility);
    };

    auto minorPiece = [&](int sq, Score outpost) {
        if (outposts & squareBB(sq)) {
            score += scaleScore(outpost, t.outpostScale[Us][sq], 8);
            if (attackedBy[Us][PAWN] & squareBB(sq)) score += t.supportedOutpost;
        }
        score -= t.kingProtector * distance(sq, ksq);
    };

    // Piece-square values of pawns and the king come with the pawn entry.
    for (Bitboard b = board.pieces(Us, KNIGHT); b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, KNIGHT)][sq];
        score += t.knightMobility[record(KNIGHT, sq, at.knightAttacks[sq])];
        minorPiece(sq, t.knightOutpost);
    }

    for (Bitboard b = board.pieces(Us, BISHOP); b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, BISHOP)][sq];
        // Seen through the own queen: a battery counts as mobility.
        score += t.bishopMobility[record(BISHOP, sq, at.bishopAttacks(sq, occupied ^ ourQueens))];
        minorPiece(sq, t.bishopOutpost);
        Bitboard sameColour = (LIGHT_SQUARES & squareBB(sq)) ? LIGHT_SQUARES : ~LIGHT_SQUARES;
        score -= t.bishopPawns * popcount(ourPawns & sameColour);
        // Only a bishop on a long diagonal can see two centre squares.
        if (moreThanOne(at.bishopLines[sq] & CENTRE_SQUARES) &&
            moreThanOne(at.bishopAttacks(sq, allPawns) & CENTRE_SQUARES))
            score += t.longDiagonalBishop;
    }

    for (Bitboard b = ourRooks; b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, ROOK)][sq];
        score +=
            t.rookMobility[record(ROOK, sq, at.rookAttacks(sq, occupied ^ (ourRooks | ourQueens)))];
        Bitboard file = fileBB(fileOf(sq));
        if (!(ourPawns & file)) score += (theirPawns & file) ? t.rookHalfOpenFile : t.rookOpenFile;
        if (queens & file) score += t.rookOnQueenFile;
        if (relativeRank(Us, sq) == 6 && seventhMatters) score += t.rookOnSeventh;
        if (connectedTo(at, sq, ourRooks & at.rookLines[sq], occupied)) score += t.connectedRooks;
    }

    for (Bitboard b = ourQueens; b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, QUEEN)][sq];
        score += t.queenMobility[record(QUEEN, sq, at.queenAttacks(sq, occupied))];
        if (relativeRank(Us, sq) == 6 && seventhMatters) score += t.queenOnSeventh;
    }

    for (int type = KNIGHT; type <= QUEEN; type++) attackedBy[Us][type] = byType[type];
    attackedBy[Us][0] = all;
    attackedBy2[Us] = twice;
    kingAttackersCount[Us] = attackers;
    kingAttackersWeight[Us] = attackWeight;
    kingAdjacentAttacks[Us] = adjacent;

    // A minor piece sheltered behind a pawn is hard for the enemy to chase or block; the
    // derived weight is a penalty, charged to the enemy for each such piece of ours.
    const Bitboard minors = board.pieces(Us, KNIGHT) | board.pieces(Us, BISHOP);
    add(Them, t.minorBehindPawn * popcount(minors & shiftUp<Them>(allPawns)));
    add(Us, score);
}

template void Evaluator::pieces<White>();
template void Evaluator::pieces<Black>();

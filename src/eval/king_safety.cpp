// The king: the attack on the enemy king, measured in attack units and read off the king-attack
// curve, and the king's activity once the middle game is over.
#include <algorithm>
#include <cstdlib>

#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Bishop and knight against king: per step of the lone king toward the mating corners, and per
// step the kings come closer.
constexpr int KBNK_CORNER = 120;
constexpr int KBNK_CLOSE = 40;

}  // namespace

// Attack units: the attackers and their weight, attacks next to the king and on weak squares of
// its zone, safe checks and half the shelter's weakness; an attack without the queen hardly
// counts, and every unit shrinks with the attacker's material.
template <Color Us>
int Evaluator::kingAttack() {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const AttackTables& at = board.attacks;
    const bool hasQueen = board.pieces(Us, QUEEN);
    // One attacker is no attack unless it is the queen.
    if (kingAttackersCount[Us] < (hasQueen ? 1 : 2) ||
        (!hasQueen && nonPawnMaterial[Us] < t.attackingMaterial))
        return t.kingAttackCurve[0];

    const int ksq = board.kingSquare[Them];
    const Bitboard occupied = board.occupiedBB;
    // Attacked by us, defended at most once and only by the king or the queen.
    Bitboard weak = attackedBy[Us][0] & ~attackedBy2[Them] &
                    (~attackedBy[Them][0] | attackedBy[Them][KING] | attackedBy[Them][QUEEN]);
    Bitboard safe = ~board.colorBB[Us] & (~attackedBy[Them][0] | (weak & attackedBy2[Us]));
    Bitboard rookLines = at.rookAttacks(ksq, occupied),
             bishopLines = at.bishopAttacks(ksq, occupied);
    int safeChecks =
        bool(at.knightAttacks[ksq] & attackedBy[Us][KNIGHT] & safe) +
        bool(bishopLines & attackedBy[Us][BISHOP] & safe) +
        bool(rookLines & attackedBy[Us][ROOK] & safe) +
        bool((rookLines | bishopLines) & attackedBy[Us][QUEEN] & safe & ~attackedBy[Them][QUEEN]);

    int units = kingAttackersCount[Us] * kingAttackersWeight[Us] +
                t.kingZoneAttackMg * (kingAdjacentAttacks[Us] + popcount(weak & kingZone[Them])) +
                t.safeCheckMg * safeChecks - pawnEntry->shelterMg[Them] / 2 -
                (hasQueen ? 0 : t.noQueenMg);
    // Weights set by hand can make the full material zero or negative; the attack then keeps
    // its size rather than divide by it.
    if (t.fullNonPawnMaterial > 0)
        units = units * std::clamp(nonPawnMaterial[Us], 0, t.fullNonPawnMaterial) /
                t.fullNonPawnMaterial;
    return t.kingAttackCurve[std::clamp(units / 6, 0, KING_ATTACK_CURVE_SIZE - 1)];
}

// The king wants room to move, and in the end game to stay near its own pawns and to stand on
// a wing where there are pawns at all (both kept in the pawn entry).
template <Color Us>
void Evaluator::kingActivity() {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const int ksq = board.kingSquare[Us];
    // In the middle game only the squares beside and behind the king count: room to step
    // aside from a check, not an invitation to walk forward.
    Bitboard moves = board.attacks.kingAttacks[ksq] & ~board.colorBB[Us] & ~attackedBy[Them][0];
    Bitboard aside = moves & ~board.attacks.passedMask[Us][ksq];
    add(Us, Score(t.kingMobility[popcount(aside)].mg(),
                  t.kingMobility[popcount(moves)].eg() + pawnEntry->kingPawnEg[Us]));

    // Bishop and knight mate only in a corner of the bishop's colour: drive the lone king
    // toward those corners, away from the diagonal between the other two, and keep the own
    // king close.
    if (board.state().endgameId == KBNK && board.pieces(Us, BISHOP)) {
        const int theirKing = board.kingSquare[Them];
        const int file = fileOf(theirKing), rank = rankOf(theirKing);
        const bool light = board.pieces(Us, BISHOP) & LIGHT_SQUARES;  // corners h1 and a8
        int towardCorner = light ? std::abs(file - rank) : std::abs(7 - file - rank);
        add(Us, Score(0, KBNK_CORNER * towardCorner + KBNK_CLOSE * (7 - distance(ksq, theirKing))));
    }
}

template int Evaluator::kingAttack<White>();
template int Evaluator::kingAttack<Black>();
template void Evaluator::kingActivity<White>();
template void Evaluator::kingActivity<Black>();

// Pawn structure, king shelter and the piece-square values of pawns and kings. All depend on
// pawns and kings alone, so they are kept in the pawn cache by the pawn-and-king key together
// with the pawn sets that later terms read.
#include <algorithm>

#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Growth of the connected-pawn and candidate bonuses with the rank, from the owner's side.
constexpr int RANK_GROWTH[8] = {0, 1, 1, 2, 3, 5, 8, 0};

}  // namespace

void Evaluator::probePawns() {
    uint64_t key = board.state().pawnKey;
    if (!pawnEntry) {
        PawnEntry& entry = pawnSlots()[key & (PAWN_CACHE_SIZE - 1)];
        pawnCounters.probes++;
        if (entry.key == key) {
            pawnCounters.hits++;
        } else {
            entry = PawnEntry{};
            entry.key = key;
            pawnStructure<White>(entry);
            pawnStructure<Black>(entry);
        }
        pawnEntry = &entry;
    }
    add(White, pawnEntry->score[White]);
    add(Black, pawnEntry->score[Black]);
}

// Shelter: how far the own pawn nearest the king has gone on the king's file and the two
// beside it. Storm: how close the enemy pawn in front of the king has come.
template <Color Us>
Score Evaluator::shelterAt(int ksq) const {
    const EvalTables& t = evalTables;
    const Bitboard ourPawns = board.pieces(Us, PAWN), theirPawns = board.pieces(~Us, PAWN);
    const int centre = std::clamp(fileOf(ksq), 1, 6);
    const Bitboard ahead = frontFill<Us>(shiftUp<Us>(rankBB(rankOf(ksq))));
    Score shelter;
    for (int f = centre - 1; f <= centre + 1; f++) {
        Bitboard ours = ourPawns & fileBB(f);
        int nearest = 8;
        for (Bitboard p = ours; p;) nearest = std::min(nearest, distance(ksq, popLsb(p)));
        shelter += t.shelter[nearest <= 1 ? 0 : nearest == 2 ? 1 : nearest == 3 ? 2 : 3];

        Bitboard storm = theirPawns & fileBB(f) & ahead;
        if (storm) {
            int stormSq = Us == White ? lsb(storm) : msb(storm);
            int penalty = t.stormMg[relativeRank(Us, stormSq)];
            if (ours & squareBB(stormSq - upDelta<Us>())) penalty /= 2;  // blocked by our pawn
            shelter -= Score(penalty, 0);
        }
    }
    return shelter;
}

template <Color Us>
void Evaluator::pawnStructure(PawnEntry& entry) {
    constexpr Color Them = ~Us;
    const EvalTables& t = evalTables;
    const AttackTables& at = board.attacks;
    const Bitboard ourPawns = board.pieces(Us, PAWN), theirPawns = board.pieces(Them, PAWN);

    // The piece-square values of the pawns and the king depend on nothing else either.
    Score score;
    for (Bitboard b = board.pieces(Us, KING); b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, KING)][sq];
    }
    Bitboard passed = 0;
    for (Bitboard b = ourPawns; b;) {
        int sq = popLsb(b);
        score += t.psq[makePiece(Us, PAWN)][sq];
        int file = fileOf(sq) + 1, r = relativeRank(Us, sq);
        Bitboard opposed = theirPawns & at.forwardFile[Us][sq];
        Bitboard neighbours = ourPawns & at.adjacentFiles[sq];
        Bitboard phalanx = neighbours & rankBB(rankOf(sq));
        Bitboard support = ourPawns & at.pawnAttacks[Them][sq];
        Bitboard level = neighbours & ~at.attackSpan[Us][sq];  // beside or behind
        bool doubled = ourPawns & at.forwardFile[Us][sq];
        bool isolated = !neighbours;
        int stop = sq + upDelta<Us>();
        // No neighbour can come up beside it, and an enemy pawn holds its stop square.
        bool backward =
            !isolated && !level && (theirPawns & (at.pawnAttacks[Us][stop] | squareBB(stop)));

        if (doubled) score += isolated ? t.doubledIsolated[file] : t.doubled[file];
        if (isolated || backward) {
            if (isolated)
                score += opposed ? t.isolatedOpposed[file] : t.isolated[file];
            else
                score += opposed ? t.backwardOpposed[file] : t.backward[file];
            if (!opposed) entry.weakUnopposed |= squareBB(sq);
        }
        // With an enemy pawn ahead on its file the chain cannot run through: half the bonus.
        Score connected = (phalanx ? t.phalanx : Score{}) + (support ? t.supported : Score{});
        score += scaleScore(connected, RANK_GROWTH[r], opposed ? 2 : 1);

        Bitboard sentries = theirPawns & at.attackSpan[Us][sq];
        if (!(theirPawns & at.passedMask[Us][sq]) && !doubled) {
            passed |= squareBB(sq);
            score += t.passedRank[r] + t.passedFile[file];
        } else if (!opposed && !doubled && popcount(level) >= popcount(sentries)) {
            score += scaleScore(t.candidate, r, 3);
        }
    }

    for (Bitboard b = passed; b;) {
        int sq = popLsb(b);
        int r = relativeRank(Us, sq);
        if (ourPawns & at.pawnAttacks[Them][sq]) score += Score(0, t.protectedPasserEg[r]);
        Bitboard nearRanks = rankBB(rankOf(sq)) | shiftUp<Us>(rankBB(rankOf(sq))) |
                             shiftUp<Them>(rankBB(rankOf(sq)));
        if (passed & at.adjacentFiles[sq] & nearRanks) score += Score(0, t.connectedPassersEg[r]);
    }

    uint32_t files = occupiedFiles(ourPawns);
    int islands = popcount(Bitboard(files & ~(files << 1)));
    if (islands > 1) score += t.pawnIsland * (islands - 1);
    if ((ourPawns & QUEEN_SIDE_FILES) && (ourPawns & KING_SIDE_FILES)) score += t.pawnsOnBothWings;

    // A king in the centre of its first rank is judged by the best shelter it could castle
    // into, two files to either side (both centre files, so that a mirrored board agrees).
    int ksq = board.kingSquare[Us];
    Score shelter = shelterAt<Us>(ksq);
    if (relativeRank(Us, ksq) == 0 && (fileOf(ksq) == 3 || fileOf(ksq) == 4))
        for (int castled : {ksq - 2, ksq + 2}) {
            Score there = shelterAt<Us>(castled);
            if (there.mg() > shelter.mg() ||
                (there.mg() == shelter.mg() && there.eg() > shelter.eg()))
                shelter = there;
        }
    entry.score[Us] = score + shelter;
    entry.passed |= passed;
    entry.shelterMg[Us] = shelter.mg();

    // For the end game: the king's distance to its nearest pawn, and a wing without pawns.
    int kingPawnEg = 0;
    if (ourPawns) {
        int nearest = 8;
        for (Bitboard b = ourPawns; b;) nearest = std::min(nearest, distance(ksq, popLsb(b)));
        kingPawnEg -= t.kingPawnDistanceEg * (nearest - 1);
    }
    if (!((ourPawns | theirPawns) & at.kingFlank[ksq])) kingPawnEg += t.pawnlessFlankEg;
    entry.kingPawnEg[Us] = kingPawnEg;
}

// The evaluation driver: cache probing, the order of the terms, the game phase, tapering and the
// side-to-move bonus.
#include "eval/evaluator.h"

#include <algorithm>
#include <cstring>

#include "eval/pawn_sets.h"

namespace {

constexpr uint64_t SCORE_MASK = 0x1FFFF;  // bits 0..16 of an evaluation-cache word
constexpr int SCORE_OFFSET = 65536;

}  // namespace

Evaluator::Evaluator(Board& b)
    : board(b),
      generation(weightsGeneration),
      evalCache(size_t(EVAL_CACHE_SIZE) * sizeof(uint64_t)),
      pawnCache(size_t(PAWN_CACHE_SIZE) * sizeof(PawnEntry)) {
    std::memset(materialCache, 0, sizeof(materialCache));
}

void Evaluator::clear() {
    evalCache.clear();
    pawnCache.clear();
    std::memset(materialCache, 0, sizeof(materialCache));
    materialEntry = nullptr;
    pawnEntry = nullptr;
    evalCounters = materialCounters = pawnCounters = {};
}

// Pawn and king attacks, the king zones, and the start of the piece attack maps.
template <Color Us>
void Evaluator::initAttacks() {
    Bitboard pawns = board.pieces(Us, PAWN);
    Bitboard left = shiftUpLeft<Us>(pawns), right = shiftUpRight<Us>(pawns);
    int ksq = board.kingSquare[Us];
    for (Bitboard& b : attackedBy[Us]) b = 0;
    attackedBy[Us][PAWN] = left | right;
    attackedBy[Us][KING] = board.attacks.kingAttacks[ksq];
    attackedBy[Us][0] = attackedBy[Us][PAWN] | attackedBy[Us][KING];
    attackedBy2[Us] = (left & right) | (attackedBy[Us][PAWN] & attackedBy[Us][KING]);
    kingZone[Us] = board.attacks.kingZone[Us][ksq];
}

int Evaluator::Evaluate() {
    if (generation != weightsGeneration) {
        clear();  // cached scores belong to the old weights
        generation = weightsGeneration;
    }
    if (board.state().endgameId != UNKNOWN && recognizedDraw()) return 0;

    // Start loading a pawn entry we will need while the evaluation cache is probed.
    uint64_t pawnKey = board.state().pawnKey;
    if (!pawnEntry || pawnEntry->key != pawnKey)
        __builtin_prefetch(&pawnSlots()[pawnKey & (PAWN_CACHE_SIZE - 1)]);

    int q = std::clamp(board.state().phaseMaterial, 0, 64);
    int bonus = ((64 - q) * evalTables.tempo.eg() + q * evalTables.tempo.mg()) / 64;

    // With a piece on each side the static value does not depend on who moves, so both sides
    // to move share one entry, keyed without the side and the en-passant square.
    bool sideFree = board.nonPawnCount[White] && board.nonPawnCount[Black];
    uint64_t key = sideFree ? board.reducedKey() : board.state().key;
    uint64_t& slot = evalSlots()[key & (EVAL_CACHE_SIZE - 1)];
    evalCounters.probes++;
    if (((slot ^ key) & ~SCORE_MASK) == 0) {
        evalCounters.hits++;
        int field = int(slot & SCORE_MASK);
        int r = sideFree && board.sideToMove == Black ? SCORE_OFFSET - field : field - SCORE_OFFSET;
        return r + bonus;  // unscaled, unlike a fresh answer
    }

    total[White] = total[Black] = Score();
    scale = 128;
    initAttacks<White>();
    initAttacks<Black>();
    if (pawnEntry && pawnEntry->key != pawnKey) pawnEntry = nullptr;

    evaluateMaterial(q);
    pieces<White>();
    pieces<Black>();
    probePawns();
    passedPawns<White>();
    threats<White>();
    passedPawns<Black>();
    threats<Black>();
    add(White, Score(kingAttack<White>(), 0));
    add(Black, Score(kingAttack<Black>(), 0));
    patterns();
    scaleEndgame();
    kingActivity<White>();
    kingActivity<Black>();

    const Score sum = total[Black] - total[White];
    const int mgSum = sum.mg(), egSum = sum.eg();
    int r = (mgSum * phase + egSum * (64 - phase) * scale / 128) / 64;
    if (board.sideToMove == White) r = -r;
    int whiteView = board.sideToMove == White ? r : -r;
    int field = (sideFree ? whiteView : r) + SCORE_OFFSET;
    slot = (key & ~SCORE_MASK) | (uint64_t(field) & SCORE_MASK);
    return r + scale * bonus / 128;
}

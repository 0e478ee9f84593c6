// The Evaluator: one integer score for the Board's position, from the side to move's point of
// view. Each search thread owns one, with its own evaluation, material and pawn caches; nothing
// is shared but the read-only derived weight tables.
#pragma once

#include <cstdint>

#include "core/board.h"
#include "eval/weights.h"
#include "eval/zeroed_buffer.h"

class alignas(64) Evaluator {
  public:
    explicit Evaluator(Board& board);
    Evaluator(const Evaluator&) = delete;
    Evaluator& operator=(const Evaluator&) = delete;

    // The static score of the Board's position; positive is good for the side to move.
    int Evaluate();
    // Whether the position is one of the small endings recognised as a dead draw.
    bool recognizedDraw() const;
    // Empties all three caches, for a new game.
    void clear();
    // Starts loading the evaluation-cache line of the position that a move of the side to move
    // reaches, given that position's key.
    void prefetch(uint64_t childKey) const;

    struct CacheCounters {
        uint64_t probes = 0;
        uint64_t hits = 0;
    };
    CacheCounters evalCounters;
    CacheCounters materialCounters;
    CacheCounters pawnCounters;

    // The game phase (64 = full middle game) and end-game scale (128 = none) of the last full
    // evaluation.
    int lastPhase() const { return phase; }
    int lastScale() const { return scale; }

    static constexpr int EVAL_CACHE_SIZE = 1 << 23;
    static constexpr int MATERIAL_CACHE_SIZE = 512;
    static constexpr int PAWN_CACHE_SIZE = 1 << 17;

  private:
    // Draw-ish material: 1 when each side's only piece is one bishop, 2 when there are no pawns
    // and the material differs by less than 400.
    enum Drawish : int32_t { NOT_DRAWISH = 0, BISHOP_EACH = 1, PAWNLESS_EQUAL = 2 };

    struct MaterialEntry {
        uint64_t key;
        int32_t mg;  // Black's material terms minus White's
        int32_t eg;
        int32_t whiteMaterial;
        int32_t blackMaterial;
        int32_t drawish;
        int32_t phase;
    };

    struct PawnEntry {
        uint64_t key;
        Score score[2];          // structure, king shelter and pawn and king squares, by colour
        Bitboard passed;         // passed pawns of both colours
        Bitboard weakUnopposed;  // isolated or backward pawns on half-open files, both colours
        int32_t shelterMg[2];    // shelter and storm of each colour's king, fed to the king attack
        int32_t kingPawnEg[2];   // each king's distance to its pawns and pawnless wing
    };
    static_assert(sizeof(PawnEntry) == 56);

    Board& board;

    // Accumulators by colour; each side's own view.
    Score total[2];
    int phase = 64;
    int scale = 128;
    int drawish = NOT_DRAWISH;
    int material[2];         // middle-game piece values including pawns
    int nonPawnMaterial[2];  // the same less a flat 100 per pawn

    // Attack maps, filled by the pawn and king set-up and by the piece terms.
    Bitboard attackedBy[2][7];  // index 0 all, then by piece type
    Bitboard attackedBy2[2];    // squares attacked at least twice
    Bitboard kingZone[2];       // around each colour's king
    Bitboard mobilityArea[2];
    Bitboard pinned[2];
    int kingAttackersCount[2];  // pieces of the colour attacking the enemy king zone
    int kingAttackersWeight[2];
    int kingAdjacentAttacks[2];  // their attacks on squares next to the enemy king

    MaterialEntry* materialEntry = nullptr;
    PawnEntry* pawnEntry = nullptr;
    uint32_t generation;  // weights generation the cached scores belong to

    ZeroedBuffer evalCache;
    ZeroedBuffer pawnCache;
    MaterialEntry materialCache[MATERIAL_CACHE_SIZE];

    uint64_t* evalSlots() const { return static_cast<uint64_t*>(evalCache.data()); }
    PawnEntry* pawnSlots() const { return static_cast<PawnEntry*>(pawnCache.data()); }
    void add(Color c, Score s) { total[c] += s; }

    // The steps of Evaluate, in order.
    template <Color Us>
    void initAttacks();
    void evaluateMaterial(int materialPhase);
    template <Color Us>
    void materialAdjustments(const int counts[13]);
    template <Color Us>
    void pieces();
    void probePawns();
    template <Color Us>
    void pawnStructure(PawnEntry& entry);
    template <Color Us>
    Score shelterAt(int kingSquare) const;
    template <Color Us>
    void passedPawns();
    template <Color Us>
    void threats();
    template <Color Us>
    int kingAttack();
    void patterns();
    void scaleEndgame();
    template <Color Us>
    void kingActivity();
};

// Inline: the search calls it for nearly every move it makes.
inline void Evaluator::prefetch(uint64_t childKey) const {
    // The child has the other side to move. With a piece on each side its entry is keyed
    // without the side, which differs from the position key by the side key when White moves.
    // A capture of the last piece can change that; the line fetched is then merely useless.
    bool sideFree = board.nonPawnCount[White] && board.nonPawnCount[Black];
    uint64_t key =
        sideFree && board.sideToMove == Black ? childKey ^ board.zobrist.sideKey : childKey;
    // For writing: a position that misses the cache stores its value there.
    prefetchForWrite(&evalSlots()[key & (EVAL_CACHE_SIZE - 1)]);
}

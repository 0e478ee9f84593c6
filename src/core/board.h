// The Board: one chess position with incrementally kept counters and keys, a stack of
// per-move state records that makes unmaking a move a pop, and its own attack and key tables.
// Every search thread owns a Board; nothing in it is shared between threads.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/attacks.h"
#include "core/endgame_id.h"
#include "core/types.h"
#include "core/zobrist.h"

constexpr int MAX_STATES = 1024;  // state records, index 0 being the root position
constexpr int MAX_PLY = 128;      // per-ply move lists of the search
constexpr int MAX_MOVES = 256;
// The search may push up to MAX_PLY records above the game, so a game kept on a Board must
// stay below this many plies for the stack to hold both.
constexpr int MAX_GAME_PLIES = MAX_STATES - MAX_PLY - 16;

struct PositionState {
    uint64_t key;          // position key
    uint64_t pawnKey;      // pawns and kings only
    uint64_t materialKey;  // material configuration only
    uint32_t rule50;
    uint32_t lastNull;
    uint32_t castling;
    uint32_t epSquare;
    Move move;  // the move that produced this record; 0 for the root and a null move
    uint8_t inCheck;
    uint32_t repetition;
    int32_t endgameId;
    int32_t phaseMaterial;
    int32_t staticEval;  // written by the search, read by the child as the parent's evaluation
};
static_assert(sizeof(PositionState) == 64);

struct MoveList {
    uint32_t count;
    Move moves[MAX_MOVES];
    uint64_t reducedKey;  // key of the position the list was filled for, side and e.p. removed

    void add(Move m) { moves[count++] = m; }
    Move* begin() { return moves; }
    Move* end() { return moves + count; }
};

struct StateStack {
    PositionState records[MAX_STATES];
    uint32_t index;
    uint8_t repetitions[16384];  // counters by key & 0x3fff
    const ZobristKeys* keys;
};

class Board {
  public:
    Board();
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    int squares[64];
    Bitboard colorBB[2];
    Bitboard pieceBB[14];
    uint32_t nonPawnCount[2];
    uint32_t pieceCount[13];
    uint32_t totalPieces;
    Bitboard emptyBB;
    Bitboard occupiedBB;
    uint32_t kingSquare[2];
    AttackTables attacks;
    Color sideToMove;
    uint32_t ply;
    Bitboard highlight;
    std::unique_ptr<StateStack> stack;
    ZobristKeys zobrist;
    EndgameMap endgameMap;
    std::string positionString;
    std::unique_ptr<MoveList[]> moveLists;

    // Position set-up.
    void setStartPosition();
    // Rebuilds every derived field from `squares` and `sideToMove`; resets the state stack.
    void initPosition(uint32_t castling, uint32_t epSquare, uint32_t rule50);
    void renewEndgameMap() { endgameMap = EndgameMap(zobrist); }

    // FEN and the position command.
    static int checkFen(std::string_view fen);
    int setFen(std::string_view fen);
    std::string getFen() const;
    int setPosition(std::string_view commandLine);
    std::string positionCommandString() const;
    std::string playedMoves() const;

    // Make and unmake.
    void makeMove(Move m);
    void unmakeMove(Move m);
    void makeNullMove();
    void unmakeNullMove();

    // Mirror operations used by the evaluation symmetry test.
    void flip();
    bool flop();

    // Queries.
    PositionState& state() { return stack->records[stack->index]; }
    const PositionState& state() const { return stack->records[stack->index]; }
    uint32_t stateIndex() const { return stack->index; }
    // The move that led to the position `back` records before the current one; 0 when the
    // records do not reach that far back.
    Move previousMove(uint32_t back) const {
        return stack->index >= back ? stack->records[stack->index - back].move : 0;
    }
    uint64_t key() const { return state().key; }
    // The key without the side to move and the en-passant square.
    uint64_t reducedKey() const {
        const PositionState& st = state();
        return st.key ^ zobrist.epKey[st.epSquare] ^ (sideToMove == White ? zobrist.sideKey : 0);
    }
    bool inCheck() const { return state().inCheck; }
    Bitboard pieces(int piece) const { return pieceBB[piece]; }
    Bitboard pieces(Color c, int type) const { return pieceBB[makePiece(c, type)]; }
    MoveList& moveList(int ply) { return moveLists[ply]; }

    // Attacks on a square by a colour; the defending king is taken off the board for the
    // slider tests so that a king cannot step back along the line of a checking slider.
    bool isAttacked(int sq, Color by) const;
    // Pieces of both colours standing on `occ` that attack a square, their lines blocked by
    // `occ`. Inline: the exchange evaluator calls it for nearly every capture it looks at, with
    // the capturing piece taken off; a slider taken off costs no magic lookup.
    Bitboard attackersTo(int sq, Bitboard occ) const {
        const Bitboard steppers =
            (attacks.pawnAttacks[Black][sq] & pieceBB[W_PAWN]) |
            (attacks.pawnAttacks[White][sq] & pieceBB[B_PAWN]) |
            (attacks.knightAttacks[sq] & (pieceBB[W_KNIGHT] | pieceBB[B_KNIGHT])) |
            (attacks.kingAttacks[sq] & (pieceBB[W_KING] | pieceBB[B_KING]));
        return (steppers & occ) | attacks.rookAttackers(sq, occ, rookMovers() & occ) |
               attacks.bishopAttackers(sq, occ, bishopMovers() & occ);
    }
    // Rooks and queens, and bishops and queens, of both colours.
    Bitboard rookMovers() const {
        return pieceBB[W_ROOK] | pieceBB[B_ROOK] | pieceBB[W_QUEEN] | pieceBB[B_QUEEN];
    }
    Bitboard bishopMovers() const {
        return pieceBB[W_BISHOP] | pieceBB[B_BISHOP] | pieceBB[W_QUEEN] | pieceBB[B_QUEEN];
    }
    bool computeInCheck() const;
    // Own pieces standing alone between the own king and an enemy slider.
    Bitboard pinnedPieces(Color c) const;
    // Pieces of `owner` standing alone between the square and a slider of `sliders` on a line
    // through it: pinned pieces, or pieces whose move uncovers an attack on the square.
    Bitboard lineBlockers(int sq, Color sliders, Color owner) const;

  private:
    void pushState(Move m);
    void finishPush();
    void transferPiece(int piece, int from, int to);
    void putPiece(int piece, int sq);
    void removePiece(int piece, int sq);
    void updateEndgameId();
};

// Inline: the move generator, make-move and the evaluation ask these at nearly every node.
inline bool Board::isAttacked(int sq, Color by) const {
    if (attacks.kingAttacks[sq] & pieces(by, KING)) return true;
    if (attacks.knightAttacks[sq] & pieces(by, KNIGHT)) return true;
    if (attacks.pawnAttacks[~by][sq] & pieces(by, PAWN)) return true;
    const Bitboard occ = occupiedBB & ~pieces(~by, KING);
    const Bitboard queens = pieces(by, QUEEN);
    return attacks.rookAttackers(sq, occ, pieces(by, ROOK) | queens) ||
           attacks.bishopAttackers(sq, occ, pieces(by, BISHOP) | queens);
}

inline bool Board::computeInCheck() const {
    int ksq = kingSquare[sideToMove];
    if (ksq == NO_SQUARE) return false;
    // The own king on the square blocks no line to it, so the attack test of king moves serves.
    return isAttacked(ksq, ~sideToMove);
}

inline Bitboard Board::lineBlockers(int sq, Color sliders, Color owner) const {
    Bitboard queens = pieces(sliders, QUEEN);
    Bitboard snipers = (attacks.rookLines[sq] & (pieces(sliders, ROOK) | queens)) |
                       (attacks.bishopLines[sq] & (pieces(sliders, BISHOP) | queens));
    Bitboard found = 0;
    while (snipers) {
        Bitboard blockers = attacks.between[sq][popLsb(snipers)] & occupiedBB;
        if (blockers && !moreThanOne(blockers)) found |= blockers & colorBB[owner];
    }
    return found;
}

inline Bitboard Board::pinnedPieces(Color c) const {
    return kingSquare[c] == NO_SQUARE ? 0 : lineBlockers(kingSquare[c], ~c, c);
}

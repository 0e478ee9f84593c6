// Making and unmaking moves: everything is updated incrementally on make, and unmake restores
// the placement and pops the state record, which brings keys, rights and counters back.
#include "core/board.h"

namespace {

// Castling right lost when a move starts or ends on a corner square.
constexpr uint32_t cornerRight(int sq) {
    return sq == 7 ? WHITE_OO : sq == 0 ? WHITE_OOO : sq == 63 ? BLACK_OO : sq == 56 ? BLACK_OOO : 0u;
}

}  // namespace

inline void Board::putPiece(int piece, int sq) {
    squares[sq] = piece;
    pieceBB[piece] |= squareBB(sq);
    colorBB[pieceColor(piece)] |= squareBB(sq);
}

inline void Board::removePiece(int piece, int sq) {
    squares[sq] = EMPTY;
    pieceBB[piece] &= ~squareBB(sq);
    colorBB[pieceColor(piece)] &= ~squareBB(sq);
}

inline void Board::transferPiece(int piece, int from, int to) {
    Bitboard fromTo = squareBB(from) | squareBB(to);
    squares[from] = EMPTY;
    squares[to] = piece;
    pieceBB[piece] ^= fromTo;
    colorBB[pieceColor(piece)] ^= fromTo;
}

inline void Board::pushState(Move m) {
    const PositionState& prev = state();
    PositionState& st = stack->records[++stack->index];
    st.key = prev.key ^ zobrist.epKey[prev.epSquare];
    st.pawnKey = prev.pawnKey;
    st.materialKey = prev.materialKey;
    st.castling = prev.castling;
    st.endgameId = prev.endgameId;
    st.phaseMaterial = prev.phaseMaterial;
    st.move = m;
    st.epSquare = NO_SQUARE;
    st.rule50 = (moveIsPawn(m) || moveCaptured(m)) ? 0 : prev.rule50 + 1;
    st.lastNull = m ? prev.lastNull : stack->index;
}

// Repetition bookkeeping: only positions with the same side to move are compared, the two most
// recent are skipped, and the scan goes back no further than the last irreversible move.
inline void Board::finishPush() {
    PositionState& st = state();
    uint8_t& counter = stack->repetitions[st.key & 0x3fff];
    if (++counter == 1) {
        st.repetition = 0;
        return;
    }
    int n = int(stack->index);
    int lowest = n - int(st.rule50) > 0 ? n - int(st.rule50) : 0;
    st.repetition = 0;
    for (int i = n - 4; i >= lowest; i -= 2) {
        if (stack->records[i].key == st.key) {
            st.repetition = 1;
            return;
        }
    }
}

inline void Board::updateEndgameId() {
    state().endgameId = endgameMap.lookup(state().materialKey);
}

void Board::makeMove(Move m) {
    ply++;
    pushState(m);
    PositionState& st = state();
    const int piece = movePiece(m), from = moveFrom(m), to = moveTo(m), captured = moveCaptured(m);
    const Color us = sideToMove;

    if (captured) {
        int victim = capturedSquare(m);
        removePiece(captured, victim);
        st.key ^= zobrist.pieceKey[victim][captured];
        st.pawnKey ^= zobrist.pawnKingKey[victim][captured];
        st.materialKey ^= zobrist.pieceKey[pieceCount[captured]][captured];
        st.phaseMaterial -= PHASE_WEIGHT[captured];
        totalPieces--;
        nonPawnCount[~us] -= NON_PAWN_FLAG[captured];
        pieceCount[captured]--;
        if (totalPieces < 6) updateEndgameId();
    }

    int placed = piece;
    if (moveIsPromotion(m)) {
        placed = promotionPiece(m);
        nonPawnCount[us] += NON_PAWN_FLAG[placed];
        pieceCount[placed]++;
        st.materialKey ^= zobrist.pieceKey[pieceCount[placed]][placed] ^ zobrist.pieceKey[pieceCount[piece]][piece];
        pieceCount[piece]--;
        st.phaseMaterial += PHASE_WEIGHT[placed] - PHASE_WEIGHT[piece];
        if (totalPieces < 6) updateEndgameId();
        removePiece(piece, from);
        putPiece(placed, to);
    } else {
        transferPiece(piece, from, to);
    }
    st.key ^= zobrist.pieceKey[to][placed] ^ zobrist.pieceKey[from][piece];
    st.pawnKey ^= zobrist.pawnKingKey[to][placed] ^ zobrist.pawnKingKey[from][piece];

    if (moveIsPawn(m) && (to - from == 16 || from - to == 16)) {
        // The en-passant square is kept only when an enemy pawn stands beside the arrival square.
        if (attacks.neighbours[to] & pieces(~us, PAWN)) {
            st.epSquare = (from + to) / 2;
            st.key ^= zobrist.epKey[st.epSquare];
        }
    }

    if (typeOf(piece) == KING) {
        kingSquare[us] = to;
        uint32_t ours = us == White ? WHITE_OO | WHITE_OOO : BLACK_OO | BLACK_OOO;
        if (st.castling & ours) {
            if (to - from == 2 || from - to == 2) {
                int rook = makePiece(us, ROOK);
                int rookFrom = to > from ? from + 3 : from - 4;
                int rookTo = to > from ? from + 1 : from - 1;
                transferPiece(rook, rookFrom, rookTo);
                st.key ^= zobrist.pieceKey[rookFrom][rook] ^ zobrist.pieceKey[rookTo][rook];
            }
            st.key ^= zobrist.castleSetKey[st.castling & ours];
            st.castling &= ~ours;
        }
    }
    if (st.castling) {
        uint32_t lost = (cornerRight(from) | cornerRight(to)) & st.castling;
        st.key ^= zobrist.castleSetKey[lost];
        st.castling &= ~lost;
    }

    sideToMove = ~us;
    st.key ^= zobrist.sideKey;
    occupiedBB = colorBB[White] | colorBB[Black];
    emptyBB = ~occupiedBB;
    st.inCheck = computeInCheck();
    finishPush();
}

void Board::unmakeMove(Move m) {
    const int piece = movePiece(m), from = moveFrom(m), to = moveTo(m), captured = moveCaptured(m);
    const Color us = ~sideToMove;

    if (moveIsPromotion(m)) {
        int placed = promotionPiece(m);
        removePiece(placed, to);
        putPiece(piece, from);
        nonPawnCount[us] -= NON_PAWN_FLAG[placed];
        pieceCount[placed]--;
        pieceCount[piece]++;
    } else {
        transferPiece(piece, to, from);
    }
    if (captured) {
        putPiece(captured, capturedSquare(m));
        totalPieces++;
        nonPawnCount[~us] += NON_PAWN_FLAG[captured];
        pieceCount[captured]++;
    }
    if (typeOf(piece) == KING) {
        kingSquare[us] = from;
        if (to - from == 2 || from - to == 2) {
            int rook = makePiece(us, ROOK);
            transferPiece(rook, to > from ? from + 1 : from - 1, to > from ? from + 3 : from - 4);
        }
    }

    ply--;
    sideToMove = us;
    stack->repetitions[state().key & 0x3fff]--;
    stack->index--;
    occupiedBB = colorBB[White] | colorBB[Black];
    emptyBB = ~occupiedBB;
}

void Board::makeNullMove() {
    ply++;
    pushState(0);
    PositionState& st = state();
    sideToMove = ~sideToMove;
    st.key ^= zobrist.sideKey;
    st.inCheck = 0;
    finishPush();
}

void Board::unmakeNullMove() {
    ply--;
    sideToMove = ~sideToMove;
    stack->repetitions[state().key & 0x3fff]--;
    stack->index--;
}

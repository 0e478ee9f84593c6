#include "core/board.h"

#include <cstring>

Board::Board()
    : stack(std::make_unique<StateStack>()),
      endgameMap(zobrist),
      moveLists(std::make_unique<MoveList[]>(MAX_PLY)) {
    std::memset(stack.get(), 0, sizeof(StateStack));
    stack->keys = &zobrist;
    setStartPosition();
}

void Board::setStartPosition() {
    static constexpr int BACK_RANK[8] = {W_ROOK, W_KNIGHT, W_BISHOP, W_QUEEN,
                                         W_KING, W_BISHOP, W_KNIGHT, W_ROOK};
    for (int sq = 0; sq < 64; sq++) squares[sq] = EMPTY;
    for (int file = 0; file < 8; file++) {
        squares[file] = BACK_RANK[file];
        squares[8 + file] = W_PAWN;
        squares[48 + file] = B_PAWN;
        squares[56 + file] = BACK_RANK[file] + 6;
    }
    sideToMove = White;
    ply = 0;
    initPosition(ALL_CASTLING, NO_SQUARE, 0);
    positionString = "startpos";
    highlight = 0;
}

void Board::initPosition(uint32_t castling, uint32_t epSquare, uint32_t rule50) {
    std::memset(pieceBB, 0, sizeof(pieceBB));
    std::memset(pieceCount, 0, sizeof(pieceCount));
    colorBB[White] = colorBB[Black] = 0;
    nonPawnCount[White] = nonPawnCount[Black] = 0;
    kingSquare[White] = kingSquare[Black] = NO_SQUARE;
    int phase = -14;
    for (int sq = 0; sq < 64; sq++) {
        int piece = squares[sq];
        if (piece == EMPTY) continue;
        Color c = colorOf(piece);
        pieceBB[piece] |= squareBB(sq);
        colorBB[c] |= squareBB(sq);
        pieceCount[piece]++;
        nonPawnCount[c] += NON_PAWN_FLAG[piece];
        if (typeOf(piece) == KING)
            kingSquare[c] = sq;
        else
            phase += PHASE_WEIGHT[piece];
    }
    occupiedBB = colorBB[White] | colorBB[Black];
    emptyBB = ~occupiedBB;
    totalPieces = popcount(occupiedBB);

    std::memset(stack->records, 0, sizeof(stack->records));
    std::memset(stack->repetitions, 0, sizeof(stack->repetitions));
    stack->index = 0;
    PositionState& st = state();
    st.castling = castling;
    st.epSquare = epSquare;
    st.rule50 = rule50;

    uint64_t key = 0, pawnKey = 0;
    for (int sq = 0; sq < 64; sq++) {
        key ^= zobrist.pieceKey[sq][squares[sq]];
        pawnKey ^= zobrist.pawnKingKey[sq][squares[sq]];
    }
    if (sideToMove == White) key ^= zobrist.sideKey;
    key ^= zobrist.castleSetKey[castling & ALL_CASTLING];
    key ^= zobrist.epKey[epSquare];
    int counts[13];
    for (int p = 0; p < 13; p++) counts[p] = int(pieceCount[p]);
    st.key = key;
    st.pawnKey = pawnKey;
    st.materialKey = materialKeyOf(zobrist, counts);
    stack->repetitions[key & 0x3fff]++;

    st.inCheck = computeInCheck();
    st.endgameId = totalPieces <= 5 ? endgameMap.lookup(st.materialKey) : UNKNOWN;
    st.phaseMaterial = phase;
    positionString = getFen();
}

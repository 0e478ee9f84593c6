// Mirror images of a position, used to check that the evaluation is symmetric.
#include "core/board.h"

void Board::flip() {
    int mirrored[64];
    for (int sq = 0; sq < 64; sq++) {
        int piece = squares[sq ^ 56];
        mirrored[sq] = piece == EMPTY ? EMPTY : makePiece(~colorOf(piece), typeOf(piece));
    }
    const PositionState& st = state();
    uint32_t castling = (st.castling & 3) << 2 | (st.castling & 12) >> 2;
    uint32_t ep = st.epSquare == NO_SQUARE ? NO_SQUARE : st.epSquare ^ 56;
    uint32_t rule50 = st.rule50;
    for (int sq = 0; sq < 64; sq++) squares[sq] = mirrored[sq];
    sideToMove = ~sideToMove;
    initPosition(castling, ep, rule50);
}

// A left-right mirror changes castling into something else, so it is refused while any
// castling right is held.
bool Board::flop() {
    const PositionState& st = state();
    if (st.castling) return false;
    int mirrored[64];
    for (int sq = 0; sq < 64; sq++) mirrored[sq] = squares[sq ^ 7];
    uint32_t ep = st.epSquare == NO_SQUARE ? NO_SQUARE : st.epSquare ^ 7;
    uint32_t rule50 = st.rule50;
    for (int sq = 0; sq < 64; sq++) squares[sq] = mirrored[sq];
    initPosition(0, ep, rule50);
    return true;
}

// Move properties the search asks about: whether a move gives check and whether it creates a
// threat against a more valuable piece.
#pragma once

#include "core/board.h"

bool givesCheck(const Board& board, Move m);

// What it takes to check the enemy king in a position, worked out once for all of its moves.
struct CheckInfo {
    Bitboard checkSquares[7];  // by piece type: the squares from which that piece gives check
    Bitboard discoverers;      // own pieces that alone stand between an own slider and the king
    int kingSquare;            // the enemy king's square
};
CheckInfo checkInfoOf(const Board& board);
// The same answer as givesCheck(board, m) for a legal move of the position the info was made
// for, which must itself be legal (the side not to move is not in check). Inline, as the search
// asks it of most quiet moves it considers pruning.
inline bool givesCheck(const Board& b, Move m, const CheckInfo& info) {
    if (info.kingSquare == NO_SQUARE) return false;
    // Promotions, castling and en passant change more than one square of a line; they are rare.
    if (moveIsPromotion(m) || moveIsCastling(m) || moveIsEnPassant(m)) return givesCheck(b, m);
    const int from = moveFrom(m), to = moveTo(m);
    // A slider that moves along a line away from the king was blocked there before the move
    // (the king is not in check), so the squares computed with the piece still on `from` hold.
    if (info.checkSquares[typeOf(movePiece(m))] & squareBB(to)) return true;
    // A blocker that stays on its line keeps blocking.
    return (info.discoverers & squareBB(from)) &&
           !(b.attacks.fullLine[from][info.kingSquare] & squareBB(to));
}
// The moved piece attacks, from its new square, an enemy piece of a more valuable kind
// (knights and bishops count as equal; kings are left to the check test).
bool createsThreat(const Board& board, Move m);

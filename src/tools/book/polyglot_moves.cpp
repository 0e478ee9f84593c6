#include "tools/book/polyglot_moves.h"

#include <string>

#include "core/notation.h"

namespace {

std::string squareName(int sq) { return {char('a' + fileOf(sq)), char('1' + rankOf(sq))}; }

}  // namespace

Move fromPolyglotMove(Board& board, uint16_t word) {
    int to = word & 63, from = (word >> 6) & 63, promotion = (word >> 12) & 7;
    if (word >> 15 || promotion > 4) return 0;
    int piece = board.squares[from];
    bool homeKing = (piece == W_KING && from == 4) || (piece == B_KING && from == 60);
    if (homeKing && board.squares[to] == makePiece(colorOf(piece), ROOK))
        to = to > from ? from + 2 : from - 2;
    std::string text = squareName(from) + squareName(to);
    if (promotion) text += "nbrq"[promotion - 1];
    Move m = parseMove(board, text);
    return m && isMoveInList(board, m) ? m & MOVE_MASK : 0;
}

uint16_t toPolyglotMove(Move m) {
    int from = moveFrom(m), to = moveTo(m);
    if (moveIsCastling(m)) to = to > from ? from + 3 : from - 4;
    int promotion = moveIsPromotion(m) ? movePromoChoice(m) + 1 : 0;
    return uint16_t(promotion << 12 | from << 6 | to);
}

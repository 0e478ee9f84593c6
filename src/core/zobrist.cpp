#include "core/zobrist.h"

uint64_t zobristValue(int index) {
    if (index < 768) {
        int piece = index / 64 + 1, sq = index % 64;
        int type = typeOf(piece);
        int kind = colorOf(piece) == White ? 2 * type - 1 : 2 * type - 2;
        return POLYGLOT_RANDOM64[64 * kind + sq];
    }
    if (index == 768) return POLYGLOT_RANDOM64[780];
    return POLYGLOT_RANDOM64[index - 1];  // castling 769..772 and en passant 773..780
}

ZobristKeys::ZobristKeys() : pieceKey{}, pawnKingKey{}, castleKey{}, castleSetKey{}, epKey{} {
    for (int piece = 1; piece <= 12; piece++) {
        bool pawnOrKing = typeOf(piece) == PAWN || typeOf(piece) == KING;
        for (int sq = 0; sq < 64; sq++) {
            pieceKey[sq][piece] = zobristValue(64 * (piece - 1) + sq);
            pawnKingKey[sq][piece] = pawnOrKing ? pieceKey[sq][piece] : 0;
        }
    }
    sideKey = zobristValue(768);
    for (int bit = 0; bit < 4; bit++) castleKey[bit] = zobristValue(769 + bit);
    for (int set = 0; set < 16; set++)
        for (int bit = 0; bit < 4; bit++)
            if (set & (1 << bit)) castleSetKey[set] ^= castleKey[bit];
    for (int sq = 16; sq < 48; sq++)
        if (rankOf(sq) == 2 || rankOf(sq) == 5) epKey[sq] = zobristValue(773 + fileOf(sq));
}

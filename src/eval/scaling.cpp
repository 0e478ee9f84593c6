// The end-game scale factor that pulls draw-ish material toward zero.
#include <cstdlib>

#include "eval/evaluator.h"

void Evaluator::scaleEndgame() {
    const Bitboard whitePawns = board.pieces(White, PAWN), blackPawns = board.pieces(Black, PAWN);
    const int d = std::abs(popcount(whitePawns) - popcount(blackPawns));
    if (drawish == BISHOP_EACH) {
        bool whiteLight = board.pieces(White, BISHOP) & LIGHT_SQUARES;
        bool blackLight = board.pieces(Black, BISHOP) & LIGHT_SQUARES;
        if (whiteLight == blackLight) {
            // Pawns the bishops cannot attack are the ones that count.
            Bitboard otherColour = whiteLight ? ~LIGHT_SQUARES : LIGHT_SQUARES;
            add(White, Score(0, evalTables.oddBishopPawnEg * popcount(whitePawns & otherColour)));
            add(Black, Score(0, evalTables.oddBishopPawnEg * popcount(blackPawns & otherColour)));
            scale = d == 0 ? 64 : d == 1 ? 115 : 128;
        } else {
            scale = d <= 1 ? 12 : d == 2 ? 64 : 128;
        }
    } else if (drawish == PAWNLESS_EQUAL) {
        scale = 64;
    }

    // A minor piece each and one pawn: the defender gives up the piece for the pawn unless the
    // pawn is far advanced and out of reach.
    Bitboard heavy = board.pieces(White, ROOK) | board.pieces(Black, ROOK) |
                     board.pieces(White, QUEEN) | board.pieces(Black, QUEEN);
    if (scale == 128 && board.totalPieces == 5 && board.nonPawnCount[White] == 1 &&
        board.nonPawnCount[Black] == 1 && !heavy) {
        Color strong = whitePawns ? White : Black;
        int pawnSq = lsb(whitePawns | blackPawns);
        Bitboard path = board.attacks.forwardFile[strong][pawnSq];
        int defender = board.kingSquare[~strong];
        if ((path & (board.attacks.kingAttacks[defender] | squareBB(defender))))
            scale = 32;
        else if (relativeRank(strong, pawnSq) <= 4)
            scale = 64;
    }
}

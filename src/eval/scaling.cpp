// Fixed-square patterns of trapped or blocked pieces, and the end-game scale factor that pulls
// draw-ish material toward zero.
#include <cstdlib>

#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Squares named from White's side; relativeSquare turns them for Black.
enum : int { A1 = 0, B1 = 1, C1 = 2, F1 = 5, G1 = 6, H1 = 7, D2 = 11, E2 = 12, D3 = 19, E3 = 20 };
enum : int {
    G5 = 38,
    B5 = 33,
    A6 = 40,
    B6 = 41,
    G6 = 46,
    H6 = 47,
    A7 = 48,
    C7 = 50,
    F7 = 53,
    H7 = 55
};
enum : int { A8 = 56, H8 = 63 };

struct TrapPattern {
    int piece;       // our piece type
    int square;      // where it stands
    int enemyPawn1;  // enemy pawns that shut it in
    int enemyPawn2;  // the same square again when one pawn is enough
};
// clang-format off
constexpr TrapPattern TRAPPED_BISHOPS[] = {
    {BISHOP, A7, B6, B6}, {BISHOP, H7, G6, G6},
};
constexpr TrapPattern TRAPPED_FAR_BISHOPS[] = {
    {BISHOP, A6, B5, B5}, {BISHOP, H6, G5, G5},
};
constexpr TrapPattern TRAPPED_KNIGHTS[] = {
    {KNIGHT, A8, A7, C7}, {KNIGHT, H8, H7, F7},
};
// A rook in the corner beyond its king, its file closed by its own pawn.
struct BoxedRook {
    int kings[2];
    int rooks[2];
    bool kingSide;  // the rook stands on the files beyond the king toward h
};
constexpr BoxedRook BOXED_ROOKS[] = {
    {{F1, G1}, {G1, H1}, true},
    {{B1, C1}, {A1, B1}, false},
};
// clang-format on

template <Color Us>
bool holds(const Board& board, int type, int whiteSideSquare) {
    return board.squares[relativeSquare<Us>(whiteSideSquare)] == makePiece(Us, type);
}

template <Color Us>
int trappedCount(const Board& board, const TrapPattern (&patterns)[2]) {
    int count = 0;
    for (const TrapPattern& p : patterns)
        count += holds<Us>(board, p.piece, p.square) && holds<~Us>(board, PAWN, p.enemyPawn1) &&
                 holds<~Us>(board, PAWN, p.enemyPawn2);
    return count;
}

template <Color Us>
Score patternsOf(const Board& board) {
    const EvalTables& t = evalTables;
    Score score;
    score.mg += t.trappedBishopMg * trappedCount<Us>(board, TRAPPED_BISHOPS);
    score.mg += t.trappedBishopFarMg * trappedCount<Us>(board, TRAPPED_FAR_BISHOPS);
    score += t.trappedKnight * trappedCount<Us>(board, TRAPPED_KNIGHTS);

    // A centre pawn on its home square with a piece in front locks in the own bishop.
    for (int sq : {D2, E2})
        if (holds<Us>(board, PAWN, sq) && board.squares[relativeSquare<Us>(sq + 8)] != EMPTY)
            score.mg += t.blockedCentrePawnMg;

    const int kingFile = fileOf(board.kingSquare[Us]);
    for (const BoxedRook& box : BOXED_ROOKS) {
        if (!holds<Us>(board, KING, box.kings[0]) && !holds<Us>(board, KING, box.kings[1]))
            continue;
        for (int rookSq : box.rooks) {
            bool beyondKing = box.kingSide ? fileOf(rookSq) > kingFile : fileOf(rookSq) < kingFile;
            Bitboard closing =
                fileBB(fileOf(rookSq)) & (relativeRankBB<Us>(1) | relativeRankBB<Us>(2));
            if (beyondKing && holds<Us>(board, ROOK, rookSq) && (board.pieces(Us, PAWN) & closing))
                score.mg += t.trappedRookMg;
        }
    }
    return score;
}

}  // namespace

void Evaluator::patterns() {
    add(White, patternsOf<White>(board));
    add(Black, patternsOf<Black>(board));
}

void Evaluator::scaleEndgame() {
    const Bitboard whitePawns = board.pieces(White, PAWN), blackPawns = board.pieces(Black, PAWN);
    const int d = std::abs(popcount(whitePawns) - popcount(blackPawns));
    if (drawish == BISHOP_EACH) {
        bool whiteLight = board.pieces(White, BISHOP) & LIGHT_SQUARES;
        bool blackLight = board.pieces(Black, BISHOP) & LIGHT_SQUARES;
        if (whiteLight == blackLight) {
            // Pawns the bishops cannot attack are the ones that count.
            Bitboard otherColour = whiteLight ? ~LIGHT_SQUARES : LIGHT_SQUARES;
            eg[White] += evalTables.oddBishopPawnEg * popcount(whitePawns & otherColour);
            eg[Black] += evalTables.oddBishopPawnEg * popcount(blackPawns & otherColour);
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

// Fixed-square patterns: bishops and knights shut in by enemy pawns, rooks boxed in by their own
// king, and centre pawns on their home squares blocked by a piece.
#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// Squares named from White's side; relativeSquare turns them for Black.
// clang-format off
enum : int {
    A1 = 0,  B1 = 1,  C1 = 2,  F1 = 5,  G1 = 6,  H1 = 7,  D2 = 11, E2 = 12,
    B5 = 33, G5 = 38, A6 = 40, B6 = 41, G6 = 46, H6 = 47,
    A7 = 48, C7 = 50, F7 = 53, H7 = 55, A8 = 56, H8 = 63,
};
// clang-format on

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
// A rook in the corner beyond its king, its file closed by its own pawn, with hardly a square
// to go to.
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
    score += Score(t.trappedBishopMg * trappedCount<Us>(board, TRAPPED_BISHOPS), 0);
    score += Score(t.trappedBishopFarMg * trappedCount<Us>(board, TRAPPED_FAR_BISHOPS), 0);
    score += t.trappedKnight * trappedCount<Us>(board, TRAPPED_KNIGHTS);

    // A centre pawn on its home square with a piece in front locks in the own bishop.
    for (int sq : {D2, E2})
        if (holds<Us>(board, PAWN, sq) && board.squares[relativeSquare<Us>(sq + 8)] != EMPTY)
            score += Score(t.blockedCentrePawnMg, 0);

    const int kingFile = fileOf(board.kingSquare[Us]);
    auto boxedIn = [&](int rookSq) {
        Bitboard closing = fileBB(fileOf(rookSq)) & (relativeRankBB<Us>(1) | relativeRankBB<Us>(2));
        Bitboard moves = board.attacks.rookAttacks(relativeSquare<Us>(rookSq), board.occupiedBB);
        return holds<Us>(board, ROOK, rookSq) && (board.pieces(Us, PAWN) & closing) &&
               popcount(moves) <= 3;
    };
    for (const BoxedRook& box : BOXED_ROOKS) {
        if (!holds<Us>(board, KING, box.kings[0]) && !holds<Us>(board, KING, box.kings[1]))
            continue;
        for (int rookSq : box.rooks) {
            bool beyondKing = box.kingSide ? fileOf(rookSq) > kingFile : fileOf(rookSq) < kingFile;
            if (beyondKing && boxedIn(rookSq)) score += Score(t.trappedRookMg, 0);
        }
    }
    return score;
}

}  // namespace

void Evaluator::patterns() {
    add(White, patternsOf<White>(board));
    add(Black, patternsOf<Black>(board));
}

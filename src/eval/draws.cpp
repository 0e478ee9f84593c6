// The draw recogniser: small endings, known by their EndGameId, that are dead draws either
// always or when their pieces stand in a known drawing pattern. A recognised draw scores 0
// before any cache is consulted.
#include "eval/evaluator.h"
#include "eval/pawn_sets.h"

namespace {

// The colour holding pieces of the type (the one side that has them in these endings).
Color owner(const Board& b, int type) { return b.pieces(White, type) ? White : Black; }
int squareOf(const Board& b, Color c, int type) { return lsb(b.pieces(c, type)); }

constexpr Bitboard EDGES = FILE_A | FILE_H | RANK_1 | RANK_8;
bool onEdge(int sq) { return EDGES & squareBB(sq); }

// The pawn's way to promotion and the one square in front.
Bitboard pawnPath(const Board& b, Color c, int pawnSq) { return b.attacks.forwardFile[c][pawnSq]; }
int promotionSquare(Color c, int pawnSq) { return makeSquare(fileOf(pawnSq), c == White ? 7 : 0); }

bool alwaysDrawn(const Board&) { return true; }

// The side to move is in check or attacks a piece: the pattern may not survive the next move,
// so the search has to look.
bool unsettled(const Board& b) {
    if (b.inCheck()) return true;
    Color us = b.sideToMove, them = ~us;
    Bitboard pieces = b.colorBB[them] & ~b.pieces(them, PAWN) & ~b.pieces(them, KING);
    for (Bitboard p = pieces; p;)
        if (b.attackersTo(popLsb(p), b.occupiedBB) & b.colorBB[us]) return true;
    return false;
}

// Two knights cannot force mate; only a king on the edge can walk into one.
bool drawnKNNK(const Board& b) { return !onEdge(b.kingSquare[~owner(b, KNIGHT)]); }

// The pawn is two steps or less from promotion, its king guards it from the side (from
// behind it would let the rook in front), the rook watches its path (or it would simply run)
// and the rook's king is too far away to help.
bool drawnKRKP(const Board& b) {
    Color strong = owner(b, ROOK), weak = ~strong;
    int pawnSq = squareOf(b, weak, PAWN), weakKing = b.kingSquare[weak],
        strongKing = b.kingSquare[strong];
    Bitboard rookReach = b.attacks.rookAttacks(squareOf(b, strong, ROOK), b.occupiedBB);
    Bitboard path = pawnPath(b, weak, pawnSq);
    return relativeRank(weak, pawnSq) >= 5 && distance(weakKing, pawnSq) <= 1 &&
           relativeRank(weak, weakKing) >= relativeRank(weak, pawnSq) && (rookReach & path) &&
           !(path & squareBB(weakKing)) && distance(strongKing, pawnSq) >= 4 &&
           distance(strongKing, promotionSquare(weak, pawnSq)) >= 4;
}

// A minor piece beside its king away from the edge holds against a rook.
bool minorHoldsRook(const Board& b, int minorType) {
    Color weak = ~owner(b, ROOK);
    int minorSq = squareOf(b, weak, minorType), weakKing = b.kingSquare[weak];
    return !onEdge(weakKing) && !onEdge(minorSq) && distance(weakKing, minorSq) <= 1;
}

bool drawnKRKN(const Board& b) { return minorHoldsRook(b, KNIGHT); }

// Against a rook and a bishop the king is safe in the corner the bishop does not cover: the
// bishop, kept beside the king out of the rook's forks, blocks the mating check.
bool drawnKRKB(const Board& b) {
    if (minorHoldsRook(b, BISHOP)) return true;
    Color weak = ~owner(b, ROOK);
    int weakKing = b.kingSquare[weak];
    bool bishopLight = b.pieces(weak, BISHOP) & LIGHT_SQUARES;
    for (int corner : {0, 7, 56, 63}) {
        bool cornerLight = LIGHT_SQUARES & squareBB(corner);
        if (cornerLight != bishopLight && distance(weakKing, corner) <= 1)
            return distance(weakKing, squareOf(b, weak, BISHOP)) <= 1;
    }
    return false;
}

// Equal heavy pieces (the side to move neither in check nor attacking the other piece, which
// the caller has ruled out): drawn unless it can check while attacking the other piece (a skewer
// or a fork), has a discovered check, or may have a mate on the edge.
bool equalHeavyPieces(const Board& b, int type) {
    Color us = b.sideToMove, them = ~us;
    int ours = squareOf(b, us, type), theirs = squareOf(b, them, type),
        theirKing = b.kingSquare[them];
    if (onEdge(theirKing) && distance(theirKing, b.kingSquare[us]) == 2) return false;
    const AttackTables& at = b.attacks;
    Bitboard reach = at.pieceAttacks(type, ours, b.occupiedBB);
    // The own king between the piece and the enemy king: a king move gives a discovered check
    // and may win the other piece with it.
    Bitboard withoutKing = b.occupiedBB ^ squareBB(b.kingSquare[us]);
    if (at.pieceAttacks(type, ours, withoutKing) & squareBB(theirKing)) return false;
    Bitboard without = b.occupiedBB ^ squareBB(ours);
    for (Bitboard targets = reach & ~b.colorBB[us]; targets;) {
        int sq = popLsb(targets);
        bool check = at.pieceAttacks(type, sq, without) & squareBB(theirKing);
        bool hitsPiece =
            at.pieceAttacks(type, sq, without ^ squareBB(theirKing)) & squareBB(theirs);
        if (check && hitsPiece) return false;
    }
    return true;
}

bool drawnKRKR(const Board& b) { return equalHeavyPieces(b, ROOK); }
// A queen check often goes on to win the other queen by a skewer or to mate, many moves deep,
// most of all against a king on the edge: only kings away from the edge, and a side to move
// that has no check at all, count.
bool drawnKQKQ(const Board& b) {
    const AttackTables& at = b.attacks;
    int ours = squareOf(b, b.sideToMove, QUEEN), theirKing = b.kingSquare[~b.sideToMove];
    bool hasCheck = at.queenAttacks(ours, b.occupiedBB) & at.queenAttacks(theirKing, b.occupiedBB);
    return !hasCheck && !onEdge(b.kingSquare[White]) && !onEdge(b.kingSquare[Black]) &&
           equalHeavyPieces(b, QUEEN);
}

// A minor piece against a pawn: drawn when the piece's king blocks the pawn's way. A king
// merely beside the path is not enough: the pawn's own king can shoulder it aside.
bool minorStopsPawn(const Board& b, int minorType) {
    Color defender = owner(b, minorType), runner = ~defender;
    int pawnSq = squareOf(b, runner, PAWN);
    return pawnPath(b, runner, pawnSq) & squareBB(b.kingSquare[defender]);
}

bool drawnKBKP(const Board& b) { return minorStopsPawn(b, BISHOP); }
bool drawnKNKP(const Board& b) { return minorStopsPawn(b, KNIGHT); }

// A rook pawn whose promotion square the bishop does not cover, with the defending king in
// that corner.
bool drawnKBPK(const Board& b) {
    Color strong = owner(b, BISHOP);
    int pawnSq = squareOf(b, strong, PAWN);
    if (fileOf(pawnSq) != 0 && fileOf(pawnSq) != 7) return false;
    int promotion = promotionSquare(strong, pawnSq);
    bool bishopLight = b.pieces(strong, BISHOP) & LIGHT_SQUARES;
    bool promotionLight = LIGHT_SQUARES & squareBB(promotion);
    return bishopLight != promotionLight && distance(b.kingSquare[~strong], promotion) <= 1;
}

// A rook or bishop pawn on the seventh, its king beside it and beside the promotion square,
// holds against the queen (stalemate ideas) when the queen's king is far away. Only with the
// pawn's side to move: the queen's side would first use its move to take the corner square.
bool drawnKQKP(const Board& b) {
    Color strong = owner(b, QUEEN), weak = ~strong;
    int pawnSq = squareOf(b, weak, PAWN);
    int file = fileOf(pawnSq), promotion = promotionSquare(weak, pawnSq);
    int weakKing = b.kingSquare[weak];
    bool drawingFile = file == 0 || file == 2 || file == 5 || file == 7;
    return b.sideToMove == weak && drawingFile && relativeRank(weak, pawnSq) == 6 &&
           distance(weakKing, pawnSq) <= 1 && distance(weakKing, promotion) <= 1 &&
           distance(b.kingSquare[strong], promotion) >= 5;
}

struct DrawPattern {
    EndGameId id;
    bool (*drawn)(const Board&);
};
constexpr DrawPattern DRAW_PATTERNS[] = {
    {KNKN, alwaysDrawn}, {KBKN, alwaysDrawn}, {KBKB, alwaysDrawn}, {KNNK, drawnKNNK},
    {KRKP, drawnKRKP},   {KRKN, drawnKRKN},   {KRKB, drawnKRKB},   {KRKR, drawnKRKR},
    {KBKP, drawnKBKP},   {KNKP, drawnKNKP},   {KBPK, drawnKBPK},   {KQKP, drawnKQKP},
    {KQKQ, drawnKQKQ},
};

}  // namespace

bool Evaluator::recognizedDraw() const {
    EndGameId id = EndGameId(board.state().endgameId);
    if (id == UNKNOWN) return false;
    for (const DrawPattern& pattern : DRAW_PATTERNS)
        if (pattern.id == id)
            return pattern.drawn == alwaysDrawn ||
                   (!unsettled(board) && pattern.drawn(board));
    return false;
}

#include "core/movegen.h"

namespace {

// Shared state of one generator call.
template <Color Us>
struct Gen {
    const Board& b;
    MoveList& list;
    const AttackTables& at;
    int ksq;
    Bitboard pinned;

    Gen(const Board& board, MoveList& l)
        : b(board), list(l), at(board.attacks), ksq(board.kingSquare[Us]), pinned(board.pinnedPieces(Us)) {}

    // A pinned piece may only move along the line through its king.
    bool pinOk(int from, int to) const {
        return !(pinned & squareBB(from)) || (at.fullLine[ksq][from] & squareBB(to));
    }

    void addPromotions(int from, int to, int captured) {
        constexpr int pawn = makePiece(Us, PAWN);
        for (int choice = 3; choice >= 0; choice--) list.add(makeMove(pawn, from, to, captured, choice));
    }

    void addEnPassant(Bitboard pawns) {
        int ep = b.state().epSquare;
        if (ep == NO_SQUARE || relativeRank(Us, ep) != 5) return;
        Bitboard from = at.pawnAttacks[~Us][ep] & pawns;
        while (from) {
            Move m = makeMove(makePiece(Us, PAWN), popLsb(from), ep, makePiece(~Us, PAWN)) | EP_FLAG;
            if (isLegal(b, ksq, m)) list.add(m);
        }
    }

    void addKingMoves(Bitboard targets) {
        if (ksq == NO_SQUARE) return;
        Bitboard to = at.kingAttacks[ksq] & targets;
        while (to) {
            int sq = popLsb(to);
            if (!b.isAttacked(sq, ~Us)) list.add(makeMove(makePiece(Us, KING), ksq, sq, b.squares[sq]));
        }
    }

    // Moves of one piece kind to the target squares; sliders use the given attack kind.
    template <int Type, int AttackType = Type>
    void addPieceMoves(Bitboard targets) {
        constexpr int piece = makePiece(Us, Type);
        Bitboard from = b.pieceBB[piece];
        while (from) {
            int sq = popLsb(from);
            Bitboard to = at.pieceAttacks(AttackType, sq, b.occupiedBB) & targets;
            while (to) {
                int dest = popLsb(to);
                if (pinOk(sq, dest)) list.add(makeMove(piece, sq, dest, b.squares[dest]));
            }
        }
    }

    void addPawnCaptures(Bitboard targets) {
        constexpr int pawn = makePiece(Us, PAWN);
        constexpr Bitboard lastRank = Us == White ? RANK_8 : RANK_1;
        Bitboard pawns = b.pieceBB[pawn];
        const Bitboard sides[2] = {shiftUpLeft<Us>(pawns) & targets, shiftUpRight<Us>(pawns) & targets};
        constexpr int deltas[2] = {Us == White ? 7 : -9, Us == White ? 9 : -7};
        for (int s = 0; s < 2; s++) {
            Bitboard side = sides[s];
            const int delta = deltas[s];
            while (side) {
                int to = popLsb(side), from = to - delta;
                if (!pinOk(from, to)) continue;
                if (squareBB(to) & lastRank)
                    addPromotions(from, to, b.squares[to]);
                else
                    list.add(makeMove(pawn, from, to, b.squares[to]));
            }
        }
    }

    void addPushPromotions(Bitboard targets) {
        constexpr Bitboard lastRank = Us == White ? RANK_8 : RANK_1;
        Bitboard to = shiftUp<Us>(b.pieceBB[makePiece(Us, PAWN)]) & b.emptyBB & lastRank & targets;
        while (to) {
            int sq = popLsb(to), from = sq - upDelta<Us>();
            if (pinOk(from, sq)) addPromotions(from, sq, 0);
        }
    }

    void addPawnPushes(Bitboard targets) {
        constexpr int pawn = makePiece(Us, PAWN);
        constexpr Bitboard lastRank = Us == White ? RANK_8 : RANK_1;
        constexpr Bitboard thirdRank = Us == White ? RANK_3 : RANK_6;
        Bitboard single = shiftUp<Us>(b.pieceBB[pawn]) & b.emptyBB & ~lastRank;
        Bitboard twice = shiftUp<Us>(single & thirdRank) & b.emptyBB & targets;
        single &= targets;
        while (single) {
            int to = popLsb(single), from = to - upDelta<Us>();
            if (pinOk(from, to)) list.add(makeMove(pawn, from, to));
        }
        while (twice) {
            int to = popLsb(twice), from = to - 2 * upDelta<Us>();
            if (pinOk(from, to)) list.add(makeMove(pawn, from, to));
        }
    }

    void addCastling() {
        constexpr int king = makePiece(Us, KING), rook = makePiece(Us, ROOK);
        constexpr int e = Us == White ? 4 : 60;
        uint32_t rights = b.state().castling;
        if (b.squares[e] != king) return;
        if ((rights & (Us == White ? WHITE_OO : BLACK_OO)) && b.squares[e + 3] == rook &&
            !(b.occupiedBB & (squareBB(e + 1) | squareBB(e + 2))) && !b.isAttacked(e + 1, ~Us) &&
            !b.isAttacked(e + 2, ~Us))
            list.add(Us == White ? CASTLE_WK : CASTLE_BK);
        if ((rights & (Us == White ? WHITE_OOO : BLACK_OOO)) && b.squares[e - 4] == rook &&
            !(b.occupiedBB & (squareBB(e - 1) | squareBB(e - 2) | squareBB(e - 3))) &&
            !b.isAttacked(e - 1, ~Us) && !b.isAttacked(e - 2, ~Us))
            list.add(Us == White ? CASTLE_WQ : CASTLE_BQ);
    }

    // Captures of the pieces on `victims`, and every promotion.
    void captures(Bitboard victims) {
        constexpr Bitboard lastRank = Us == White ? RANK_8 : RANK_1;
        const Bitboard enemies = b.colorBB[~Us] & ~b.pieceBB[makePiece(~Us, KING)];
        const Bitboard targets = enemies & victims;
        addKingMoves(targets);
        if (targets & b.pieceBB[makePiece(~Us, PAWN)]) addEnPassant(b.pieceBB[makePiece(Us, PAWN)]);
        addPawnCaptures(enemies & (victims | lastRank));
        addPushPromotions(~Bitboard(0));
        addPieceMoves<KNIGHT>(targets);
        addPieceMoves<BISHOP>(targets);
        addPieceMoves<ROOK>(targets);
        addPieceMoves<QUEEN>(targets);
    }

    void quiets() {
        addKingMoves(b.emptyBB);
        addCastling();
        addPawnPushes(b.emptyBB);
        addPieceMoves<KNIGHT>(b.emptyBB);
        addPieceMoves<BISHOP>(b.emptyBB);
        addPieceMoves<QUEEN, BISHOP>(b.emptyBB);
        addPieceMoves<ROOK>(b.emptyBB);
        addPieceMoves<QUEEN, ROOK>(b.emptyBB);
    }

    void evasions() {
        Bitboard notOwn = ~b.colorBB[Us] & ~b.pieceBB[makePiece(~Us, KING)];
        addKingMoves(notOwn);
        Bitboard checkers = b.attackersTo(ksq, b.occupiedBB) & b.colorBB[~Us];
        if (moreThanOne(checkers)) return;  // only the king can answer a double check
        int checker = lsb(checkers);
        Bitboard blocks = at.between[ksq][checker];
        Bitboard target = checkers | blocks;
        // A pinned piece can neither take the checker nor block: the pin line and the check
        // line meet only on the king, so pinOk rejects all of its moves here.
        addEnPassantEvasion(b.pieceBB[makePiece(Us, PAWN)], checker);
        addPawnCaptures(checkers);
        addPushPromotions(blocks);
        addPawnPushes(blocks);
        addPieceMoves<KNIGHT>(target);
        addPieceMoves<BISHOP>(target);
        addPieceMoves<ROOK>(target);
        addPieceMoves<QUEEN>(target);
    }

    // An en-passant capture answers a check only by removing the pawn that just gave it.
    void addEnPassantEvasion(Bitboard pawns, int checker) {
        int ep = b.state().epSquare;
        if (ep != NO_SQUARE && ep - upDelta<Us>() == checker) addEnPassant(pawns);
    }
};

template <Color Us>
void dispatchCaptures(const Board& b, MoveList& l, Bitboard victims) {
    Gen<Us>(b, l).captures(victims);
}
template <Color Us>
void dispatchQuiets(const Board& b, MoveList& l) { Gen<Us>(b, l).quiets(); }
template <Color Us>
void dispatchEvasions(const Board& b, MoveList& l) { Gen<Us>(b, l).evasions(); }
template <Color Us>
void dispatchCastling(const Board& b, MoveList& l) { Gen<Us>(b, l).addCastling(); }

}  // namespace

void generateCaptures(const Board& b, MoveList& l, Bitboard victims) {
    b.sideToMove == White ? dispatchCaptures<White>(b, l, victims)
                          : dispatchCaptures<Black>(b, l, victims);
}
void generateQuiets(const Board& b, MoveList& l) {
    b.sideToMove == White ? dispatchQuiets<White>(b, l) : dispatchQuiets<Black>(b, l);
}
void generateEvasions(const Board& b, MoveList& l) {
    b.sideToMove == White ? dispatchEvasions<White>(b, l) : dispatchEvasions<Black>(b, l);
}

void generateAll(Board& b, MoveList& list) {
    list.count = 0;
    list.reducedKey = b.reducedKey();
    if (b.inCheck()) {
        generateEvasions(b, list);
    } else {
        generateCaptures(b, list);
        generateQuiets(b, list);
    }
}

MoveList& generateAll(Board& b, int ply) {
    MoveList& list = b.moveList(ply);
    generateAll(b, list);
    return list;
}

bool isLegal(const Board& b, int ksq, Move m) {
    const AttackTables& at = b.attacks;
    const int from = moveFrom(m), to = moveTo(m);
    const bool inCheck = b.inCheck();
    const bool ep = moveIsEnPassant(m);
    Color us = b.sideToMove, them = ~us;
    if (inCheck && !moveCaptured(m) && !(at.queenLines[ksq] & squareBB(to))) return false;
    if (!inCheck && !ep) {
        Bitboard beyond = at.lineBeyond[ksq][from];
        Bitboard queens = b.pieces(them, QUEEN);
        Bitboard sliders = (at.rookLines[ksq] & (b.pieces(them, ROOK) | queens)) |
                           (at.bishopLines[ksq] & (b.pieces(them, BISHOP) | queens));
        if (!(beyond & sliders)) return true;
    }
    int victim = capturedSquare(m);
    Bitboard occ = (b.occupiedBB & ~squareBB(from) & ~squareBB(victim)) | squareBB(to);
    Bitboard enemy = b.colorBB[them] & ~squareBB(victim);
    Bitboard queens = b.pieces(them, QUEEN);
    return !((at.knightAttacks[ksq] & b.pieces(them, KNIGHT) & enemy) ||
             (at.pawnAttacks[us][ksq] & b.pieces(them, PAWN) & enemy) ||
             (at.rookAttacks(ksq, occ) & (b.pieces(them, ROOK) | queens) & enemy) ||
             (at.bishopAttacks(ksq, occ) & (b.pieces(them, BISHOP) | queens) & enemy));
}

Move validateMove(const Board& b, Move m) {
    m &= MOVE_MASK;
    if (!m) return 0;
    const int piece = movePiece(m), from = moveFrom(m), to = moveTo(m), captured = moveCaptured(m);
    const Color us = b.sideToMove;
    const AttackTables& at = b.attacks;
    if (piece < W_PAWN || piece > B_KING || colorOf(piece) != us || b.squares[from] != piece) return 0;
    if (from == to) return 0;
    const bool ep = moveIsEnPassant(m);
    const int type = typeOf(piece);
    if (ep && type != PAWN) return 0;
    if (movePromoChoice(m) && !moveIsPromotion(m)) return 0;
    if (ep && (to != int(b.state().epSquare) || b.squares[to] != EMPTY)) return 0;
    if (captured) {
        if (colorOf(captured) != ~us || typeOf(captured) == KING) return 0;
        int victim = capturedSquare(m);
        if (b.squares[victim] != captured) return 0;
    } else if (b.squares[to] != EMPTY || ep) {
        return 0;
    }
    switch (type) {
        case PAWN: {
            int up = us == White ? 8 : -8;
            if (captured) {
                if (!(at.pawnAttacks[us][from] & squareBB(to))) return 0;
            } else if (to != from + up &&
                       !(to == from + 2 * up && b.squares[from + up] == EMPTY && relativeRank(us, from) == 1)) {
                return 0;
            }
            break;
        }
        case KING: {
            if (b.isAttacked(to, ~us)) return 0;
            if (to == from + 2 || to == from - 2) {
                MoveList castles;
                castles.count = 0;
                if (b.inCheck()) return 0;
                us == White ? dispatchCastling<White>(b, castles) : dispatchCastling<Black>(b, castles);
                for (Move c : castles)
                    if (c == m) return m;
                return 0;
            }
            return (at.kingAttacks[from] & squareBB(to)) ? m : 0;
        }
        case KNIGHT:
            if (!(at.knightAttacks[from] & squareBB(to))) return 0;
            break;
        default:
            if (!at.sliderSees(type, from, to, b.occupiedBB)) return 0;
    }
    return isLegal(b, b.kingSquare[us], m) ? m : 0;
}

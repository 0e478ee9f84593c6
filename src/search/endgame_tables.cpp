#include "search/endgame_tables.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "core/attacks.h"
#include "core/board.h"

namespace {

// The a1-d1-d4 triangle: a rook or queen on any square is brought onto one of these by the
// board's eight symmetries, which gives the ten classes of the piece tables.
constexpr int TRIANGLE[10] = {0, 1, 2, 3, 9, 10, 11, 18, 19, 27};
constexpr int triangleClass(int sq) {
    for (int i = 0; i < 10; i++)
        if (TRIANGLE[i] == sq) return i;
    return -1;
}

constexpr int transpose(int sq) { return (sq & 7) << 3 | sq >> 3; }
constexpr bool aboveDiagonal(int sq) { return rankOf(sq) > fileOf(sq); }
constexpr bool onDiagonal(int sq) { return rankOf(sq) == fileOf(sq); }

// Table index of a position whose piece belongs to White; White to move means the owner moves.
// A rook or queen on the a1-h8 diagonal leaves the reflection in that diagonal free; the kings
// settle it, so that every position has exactly one index and equal positions share it.
int tableIndex(int kind, Color stm, int owner, int lone, int piece) {
    if (kind == PAWN) {
        if (fileOf(piece) > 3) owner ^= 7, lone ^= 7, piece ^= 7;
        int pawnClass = rankOf(piece) * 4 + fileOf(piece);
        return ((pawnClass * 2 + stm) * 64 + owner) * 64 + lone;
    }
    int flip = (fileOf(piece) > 3 ? 7 : 0) | (rankOf(piece) > 3 ? 56 : 0);
    owner ^= flip, lone ^= flip, piece ^= flip;
    if (aboveDiagonal(piece) ||
        (onDiagonal(piece) && (aboveDiagonal(owner) || (onDiagonal(owner) && aboveDiagonal(lone)))))
        owner = transpose(owner), lone = transpose(lone), piece = transpose(piece);
    return ((triangleClass(piece) * 2 + stm) * 64 + owner) * 64 + lone;
}

constexpr bool isLoss(int v) { return v < 0 && v >= EndgameTables::MATED; }

struct Position {
    Color stm;
    int owner, lone, piece;
};

// Fills one table by retrograde analysis. Passes alternate: the wins of level L are the
// positions with an owner move into a loss of level -(L + 1), found from those losses by
// unmaking owner moves; the losses of level -L are the positions whose every lone-king move
// reaches a win, found from the wins of level L by unmaking lone-king moves. Each position is
// decided at the first pass that reaches it, so a win keeps the fastest mate and a loss the
// slowest.
class TableBuilder {
  public:
    TableBuilder(const AttackTables& attacks, int kind, int8_t* table, int size)
        : attacks(attacks), kind(kind), table(table), size(size) {}

    // The queen and rook tables, already built, score the pawn's promotions.
    void build(const int8_t* queenTable, const int8_t* rookTable);

  private:
    const AttackTables& attacks;
    const int kind;
    int8_t* const table;
    const int size;

    int index(Color stm, int owner, int lone, int piece) const {
        return tableIndex(kind, stm, owner, lone, piece);
    }
    Position decode(int i) const {
        int pieceClass = i >> 13;
        int piece = kind == PAWN ? pieceClass / 4 * 8 + pieceClass % 4 : TRIANGLE[pieceClass];
        return {Color((i >> 12) & 1), (i >> 6) & 63, i & 63, piece};
    }
    Bitboard pieceAttacks(int piece, int owner) const {
        return kind == PAWN ? attacks.pawnAttacks[White][piece]
                            : attacks.pieceAttacks(kind, piece, squareBB(owner));
    }
    // The lone king's legal steps, a capture of an unprotected piece included.
    Bitboard loneSteps(int owner, int lone, int piece) const {
        return attacks.kingAttacks[lone] & ~attacks.kingAttacks[owner] &
               ~pieceAttacks(piece, owner);
    }
    bool isIllegal(int i, const Position& p) const;
    void markTerminal(std::vector<int>& mated);
    std::vector<std::pair<int, int>> promotionWins(const int8_t* queenTable,
                                                   const int8_t* rookTable) const;
    void addOwnerPredecessors(int lossIndex, int level, std::vector<int>& wins);
    void addLonePredecessors(int winIndex, int level, std::vector<int>& losses);
    void decide(int i, int level, std::vector<int>& found) {
        if (table[i] != EndgameTables::UNKNOWN) return;
        table[i] = int8_t(level);
        found.push_back(i);
    }
};

bool TableBuilder::isIllegal(int i, const Position& p) const {
    if (index(p.stm, p.owner, p.lone, p.piece) != i) return true;  // a duplicate by symmetry
    if (p.owner == p.piece || p.lone == p.piece || distance(p.owner, p.lone) <= 1) return true;
    if (kind == PAWN && (rankOf(p.piece) == 0 || rankOf(p.piece) == 7)) return true;
    return p.stm == White && (pieceAttacks(p.piece, p.owner) & squareBB(p.lone));
}

void TableBuilder::markTerminal(std::vector<int>& mated) {
    for (int i = 0; i < size; i++) {
        Position p = decode(i);
        if (isIllegal(i, p)) {
            table[i] = EndgameTables::ILLEGAL;
            continue;
        }
        table[i] = EndgameTables::UNKNOWN;
        if (p.stm == White) continue;
        Bitboard steps = loneSteps(p.owner, p.lone, p.piece);
        if (steps & squareBB(p.piece))
            table[i] = 0;  // the piece falls: king against king
        else if (steps == 0 && (pieceAttacks(p.piece, p.owner) & squareBB(p.lone)))
            decide(i, EndgameTables::MATED, mated);
        else if (steps == 0)
            table[i] = 0;  // stalemate
    }
}

// Pawn positions, owner to move with the pawn on the seventh rank, that win by promoting, as
// (level, index) pairs from the highest level down.
std::vector<std::pair<int, int>> TableBuilder::promotionWins(const int8_t* queenTable,
                                                             const int8_t* rookTable) const {
    std::vector<std::pair<int, int>> wins;
    for (int file = 0; file < 4; file++) {
        int pawn = makeSquare(file, 6), promoted = pawn + 8;
        for (int owner = 0; owner < 64; owner++) {
            for (int lone = 0; lone < 64; lone++) {
                int i = index(White, owner, lone, pawn);
                if (table[i] != EndgameTables::UNKNOWN || owner == promoted || lone == promoted)
                    continue;
                int best = 0;
                for (auto [promotedKind, promotedTable] :
                     {std::pair{QUEEN, queenTable}, std::pair{ROOK, rookTable}}) {
                    int v = promotedTable[tableIndex(promotedKind, Black, owner, lone, promoted)];
                    if (isLoss(v)) best = std::max(best, -v - 1);
                }
                if (best > 0) wins.emplace_back(best, i);
            }
        }
    }
    std::sort(wins.begin(), wins.end(), std::greater<>());
    return wins;
}

void TableBuilder::addOwnerPredecessors(int lossIndex, int level, std::vector<int>& wins) {
    Position p = decode(lossIndex);
    Bitboard occupied = squareBB(p.owner) | squareBB(p.lone) | squareBB(p.piece);
    for (Bitboard from = attacks.kingAttacks[p.owner] & ~occupied & ~attacks.kingAttacks[p.lone];
         from;)
        decide(index(White, popLsb(from), p.lone, p.piece), level, wins);
    if (kind != PAWN) {
        // Sliders move back the way they came.
        for (Bitboard from = attacks.pieceAttacks(kind, p.piece, occupied) & ~occupied; from;)
            decide(index(White, p.owner, p.lone, popLsb(from)), level, wins);
        return;
    }
    int back = p.piece - 8;
    if (rankOf(p.piece) < 2 || (occupied & squareBB(back))) return;
    decide(index(White, p.owner, p.lone, back), level, wins);
    if (rankOf(p.piece) == 3 && !(occupied & squareBB(back - 8)))
        decide(index(White, p.owner, p.lone, back - 8), level, wins);
}

void TableBuilder::addLonePredecessors(int winIndex, int level, std::vector<int>& losses) {
    Position p = decode(winIndex);
    Bitboard from =
        attacks.kingAttacks[p.lone] & ~attacks.kingAttacks[p.owner] & ~squareBB(p.piece);
    while (from) {
        int lone = popLsb(from);
        int i = index(Black, p.owner, lone, p.piece);
        if (table[i] != EndgameTables::UNKNOWN) continue;
        // Undecided, so the piece cannot be taken: every step keeps the material.
        bool allStepsLose = true;
        for (Bitboard to = loneSteps(p.owner, lone, p.piece); to && allStepsLose;)
            allStepsLose = table[index(White, p.owner, popLsb(to), p.piece)] > 0;
        if (allStepsLose) decide(i, -level, losses);
    }
}

void TableBuilder::build(const int8_t* queenTable, const int8_t* rookTable) {
    std::vector<int> losses, wins;
    markTerminal(losses);
    std::vector<std::pair<int, int>> promotions;
    if (kind == PAWN) promotions = promotionWins(queenTable, rookTable);
    size_t nextPromotion = 0;
    for (int level = EndgameTables::MATE_IN_ONE; level > 0; level--) {
        wins.clear();
        for (; nextPromotion < promotions.size() && promotions[nextPromotion].first == level;
             nextPromotion++)
            decide(promotions[nextPromotion].second, level, wins);
        for (int i : losses) addOwnerPredecessors(i, level, wins);
        losses.clear();
        for (int i : wins) addLonePredecessors(i, level, losses);
        if (wins.empty() && nextPromotion == promotions.size()) break;
    }
    std::replace(table, table + size, int8_t(EndgameTables::UNKNOWN), int8_t(0));
}

}  // namespace

EndgameTables::EndgameTables() {
    auto start = std::chrono::steady_clock::now();
    auto attacks = std::make_unique<AttackTables>();
    TableBuilder(*attacks, QUEEN, queenTable, PIECE_TABLE_SIZE).build(nullptr, nullptr);
    TableBuilder(*attacks, ROOK, rookTable, PIECE_TABLE_SIZE).build(nullptr, nullptr);
    TableBuilder(*attacks, PAWN, pawnTable, PAWN_TABLE_SIZE).build(queenTable, rookTable);
    blocked_pawns::build(
        *attacks,
        [this](int owner, int lone, int pawn) { return rawValue(PAWN, Black, owner, lone, pawn); },
        blockedPawnTable);
    buildTime =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

const EndgameTables& EndgameTables::instance() {
    static const EndgameTables tables;
    return tables;
}

int EndgameTables::rawValue(int kind, Color sideToMove, int ownerKing, int loneKing,
                            int pieceSq) const {
    const int8_t* table = kind == PAWN ? pawnTable : kind == ROOK ? rookTable : queenTable;
    return table[tableIndex(kind, sideToMove, ownerKing, loneKing, pieceSq)];
}

int EndgameTables::probe(const Board& board) const {
    if (board.pieceCount[W_KING] != 1 || board.pieceCount[B_KING] != 1) return NO_TABLE_VALUE;
    if (board.totalPieces == 4) return probeBlockedPawns(board);
    if (board.totalPieces != 3) return NO_TABLE_VALUE;
    int pieceSq = lsb(board.occupiedBB & ~board.pieces(W_KING) & ~board.pieces(B_KING));
    int piece = board.squares[pieceSq];
    int kind = typeOf(piece);
    if (kind != PAWN && kind != ROOK && kind != QUEEN) return NO_TABLE_VALUE;
    // A black piece is seen from the other side of the board, so that its owner is White.
    Color owner = pieceColor(piece);
    int flip = owner == White ? 0 : 56;
    int v = rawValue(kind, Color(board.sideToMove ^ owner), board.kingSquare[owner] ^ flip,
                     board.kingSquare[~owner] ^ flip, pieceSq ^ flip);
    if (v == ILLEGAL) return NO_TABLE_VALUE;
    return v > 0 ? 2 * v + 32516 : v < 0 ? 2 * v - 32514 : 0;
}

int EndgameTables::probeBlockedPawns(const Board& board) const {
    if (board.pieceCount[W_PAWN] != 1 || board.pieceCount[B_PAWN] != 1) return NO_TABLE_VALUE;
    int i = blocked_pawns::tableIndex(board.sideToMove, board.kingSquare[White],
                                      board.kingSquare[Black], lsb(board.pieces(W_PAWN)),
                                      lsb(board.pieces(B_PAWN)));
    if (i < 0 || blockedPawnTable[i] == blocked_pawns::ILLEGAL) return NO_TABLE_VALUE;
    int w = blockedPawnTable[i];
    return w > 128 ? 2 * w + 32260 : w < 128 ? 2 * w - 32770 : 0;
}

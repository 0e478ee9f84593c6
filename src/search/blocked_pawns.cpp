#include "search/blocked_pawns.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/attacks.h"

namespace blocked_pawns {

namespace {

// The rank pair of the pawns (rank indexes 0..7, White's below Black's) to its number 0..14,
// -1 where the pawns could not stand, and back.
constexpr auto RANK_PAIR = [] {
    std::array<std::array<int, 8>, 8> pair{};
    int next = 0;
    for (int white = 0; white < 8; white++)
        for (int black = 0; black < 8; black++)
            pair[white][black] = white >= 1 && white < black && black <= 6 ? next++ : -1;
    return pair;
}();
constexpr auto PAIR_RANKS = [] {
    std::array<std::array<int, 2>, 15> ranks{};
    for (int white = 0; white < 8; white++)
        for (int black = 0; black < 8; black++)
            if (RANK_PAIR[white][black] >= 0) ranks[RANK_PAIR[white][black]] = {white, black};
    return ranks;
}();

struct Men {
    Color stm;
    int king[2];
    int pawn[2];
};

Men decode(int i) {
    int pairClass = i >> 13, file = pairClass / 15, pair = pairClass % 15;
    auto [white, black] = PAIR_RANKS[pair];
    return {Color(i & 1),
            {(i >> 7) & 63, (i >> 1) & 63},
            {makeSquare(file, white), makeSquare(file, black)}};
}

int indexOf(const Men& m) {
    return tableIndex(m.stm, m.king[White], m.king[Black], m.pawn[White], m.pawn[Black]);
}

constexpr int NO_WIN = 1000;
constexpr int OPEN = 1;  // not decided yet, while building
constexpr int MOST_PLIES = 250;

// What the side to move can do: the positions its moves reach inside the table, and the best
// a capture of the enemy pawn gives.
struct Moves {
    int successors[10];
    int count = 0;
    int captureWin = NO_WIN;  // plies to mate through the fastest winning capture
    bool captureDraws = false;
    bool inCheck = false;
};

class Solver {
  public:
    Solver(const AttackTables& attacks, const LoneToMoveValue& pawnEnding, uint8_t* table)
        : at(attacks), pawnEnding(pawnEnding), table(table) {}

    void solve();

  private:
    const AttackTables& at;
    const LoneToMoveValue& pawnEnding;
    uint8_t* const table;
    std::vector<uint8_t> pending;  // successors not yet known to win for the opponent
    std::vector<bool> cannotLose;  // a capture draws or wins
    std::vector<int> buckets[MOST_PLIES + 2];

    bool isLegal(const Men& m) const;
    Moves generate(const Men& m) const;
    template <typename Visit>
    void forEachPredecessor(const Men& m, Visit visit) const;
    void classify();
    void decide(int i, int plies);
};

bool Solver::isLegal(const Men& m) const {
    Bitboard pawns = squareBB(m.pawn[White]) | squareBB(m.pawn[Black]);
    if (m.king[White] == m.king[Black] ||
        (pawns & (squareBB(m.king[White]) | squareBB(m.king[Black]))) ||
        distance(m.king[White], m.king[Black]) <= 1)
        return false;
    return !(at.pawnAttacks[m.stm][m.pawn[m.stm]] & squareBB(m.king[~m.stm]));
}

Moves Solver::generate(const Men& m) const {
    Moves moves;
    const Color us = m.stm, them = ~us;
    const Bitboard occupied = squareBB(m.king[White]) | squareBB(m.king[Black]) |
                              squareBB(m.pawn[White]) | squareBB(m.pawn[Black]);
    moves.inCheck = at.pawnAttacks[them][m.pawn[them]] & squareBB(m.king[us]);
    Bitboard steps = at.kingAttacks[m.king[us]] & ~at.kingAttacks[m.king[them]] &
                     ~at.pawnAttacks[them][m.pawn[them]] & ~squareBB(m.pawn[us]);
    while (steps) {
        int to = popLsb(steps);
        if (to == m.pawn[them]) {
            // King and pawn against king, the lone king to move, seen with our side as White.
            int flip = us == White ? 0 : 56;
            int v = pawnEnding(to ^ flip, m.king[them] ^ flip, m.pawn[us] ^ flip);
            if (v < 0) moves.captureWin = std::min(moves.captureWin, 2 * v + 253);
            if (v == 0) moves.captureDraws = true;
            continue;
        }
        Men next = m;
        next.stm = them;
        next.king[us] = to;
        moves.successors[moves.count++] = indexOf(next);
    }
    // A pawn move never answers a pawn's check: the pawn cannot take a piece on its own file.
    const int push = us == White ? 8 : -8, pawn = m.pawn[us];
    for (int to = pawn + push; !moves.inCheck && !(occupied & squareBB(to)); to += push) {
        Men next = m;
        next.stm = them;
        next.pawn[us] = to;
        moves.successors[moves.count++] = indexOf(next);
        if (relativeRank(us, pawn) != 1 || to != pawn + push) break;  // one double step
    }
    return moves;
}

// Marks every position illegal or open, counts the moves of the open ones, and sorts the mates
// and the winning captures into their buckets.
void Solver::classify() {
    pending.assign(TABLE_SIZE, 0);
    cannotLose.assign(TABLE_SIZE, false);
    for (int i = 0; i < TABLE_SIZE; i++) {
        Men m = decode(i);
        table[i] = ILLEGAL;
        if (!isLegal(m)) continue;
        table[i] = OPEN;
        Moves moves = generate(m);
        pending[i] = uint8_t(moves.count);
        cannotLose[i] = moves.captureDraws || moves.captureWin != NO_WIN;
        if (moves.captureWin != NO_WIN) buckets[moves.captureWin].push_back(i);
        if (moves.count == 0 && !cannotLose[i]) {
            if (moves.inCheck)
                buckets[0].push_back(i);
            else
                table[i] = DRAW;  // stalemate
        }
    }
}

// The open positions from which the side not to move reached this one: by a king step, or by a
// pawn step of one or two squares (a capture leaves the table, so none led here). The side to
// move cannot have stood in check from the pawn while the other side moved its king.
template <typename Visit>
void Solver::forEachPredecessor(const Men& m, Visit visit) const {
    const Color mover = ~m.stm;
    const Bitboard occupied = squareBB(m.king[White]) | squareBB(m.king[Black]) |
                              squareBB(m.pawn[White]) | squareBB(m.pawn[Black]);
    Men before = m;
    before.stm = mover;
    auto reach = [&] {
        int i = indexOf(before);
        if (i >= 0 && table[i] == OPEN) visit(i);
    };
    if (!(at.pawnAttacks[mover][m.pawn[mover]] & squareBB(m.king[m.stm]))) {
        Bitboard from = at.kingAttacks[m.king[mover]] & ~occupied & ~at.kingAttacks[m.king[m.stm]];
        while (from) {
            before.king[mover] = popLsb(from);
            reach();
        }
        before.king[mover] = m.king[mover];
    }
    const int push = mover == White ? 8 : -8;
    for (int steps = 1; steps <= 2; steps++) {
        int from = m.pawn[mover] - steps * push;
        if ((occupied & squareBB(from)) || relativeRank(mover, from) < 1) break;
        if (steps == 2 && relativeRank(mover, from) != 1) break;
        before.pawn[mover] = from;
        if (!(at.pawnAttacks[mover][from] & squareBB(m.king[m.stm]))) reach();
    }
}

// Decides a position at its distance from the mate; a loss at n plies makes every open
// predecessor a win at n + 1, a win makes a predecessor a loss once all its moves are known to
// lose.
void Solver::decide(int i, int plies) {
    if (table[i] != OPEN) return;
    bool lost = plies % 2 == 0;
    table[i] = uint8_t(DRAW + (lost ? (plies - 252) / 2 : (251 - plies) / 2));
    forEachPredecessor(decode(i), [&](int j) {
        if (lost || (--pending[j] == 0 && !cannotLose[j])) buckets[plies + 1].push_back(j);
    });
}

void Solver::solve() {
    classify();
    // Distances are decided in increasing order, so a win keeps its fastest mate and a loss,
    // decided by its last move to be refuted, its slowest.
    for (int plies = 0; plies <= MOST_PLIES; plies++)
        for (size_t k = 0; k < buckets[plies].size(); k++) decide(buckets[plies][k], plies);
    std::replace(table, table + TABLE_SIZE, uint8_t(OPEN), uint8_t(DRAW));
}

}  // namespace

int tableIndex(Color stm, int whiteKing, int blackKing, int whitePawn, int blackPawn) {
    if (fileOf(whitePawn) != fileOf(blackPawn)) return -1;
    int pair = RANK_PAIR[rankOf(whitePawn)][rankOf(blackPawn)];
    if (pair < 0) return -1;
    int file = fileOf(whitePawn);
    if (file > 3) file ^= 7, whiteKing ^= 7, blackKing ^= 7;
    return (((file * 15 + pair) * 64 + whiteKing) * 64 + blackKing) * 2 + stm;
}

void build(const AttackTables& attacks, const LoneToMoveValue& pawnEnding, uint8_t* table) {
    Solver(attacks, pawnEnding, table).solve();
}

}  // namespace blocked_pawns

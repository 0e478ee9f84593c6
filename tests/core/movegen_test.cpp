// Move generation and validation against a slow generator that knows nothing of bitboards.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "test_positions.h"

namespace {

bool onBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// Squares that the piece on sq attacks.
std::vector<int> slowAttacks(const Board& b, int sq) {
    static constexpr int KNIGHT_STEPS[8][2] = {{1, 2},   {2, 1},   {2, -1}, {1, -2},
                                               {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
    static constexpr int KING_STEPS[8][2] = {{1, 0},  {1, 1},   {0, 1},  {-1, 1},
                                             {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
    const int piece = b.squares[sq], type = typeOf(piece), forward = piece == W_PAWN ? 1 : -1;
    std::vector<int> targets;
    auto go = [&](int df, int dr, bool slide) {
        for (int f = fileOf(sq) + df, r = rankOf(sq) + dr; onBoard(f, r); f += df, r += dr) {
            targets.push_back(makeSquare(f, r));
            if (!slide || b.squares[makeSquare(f, r)] != EMPTY) break;
        }
    };
    if (type == PAWN) go(-1, forward, false), go(1, forward, false);
    if (type == KNIGHT || type == KING)
        for (auto& s : type == KNIGHT ? KNIGHT_STEPS : KING_STEPS) go(s[0], s[1], false);
    if (type == BISHOP || type == QUEEN)
        go(1, 1, true), go(1, -1, true), go(-1, 1, true), go(-1, -1, true);
    if (type == ROOK || type == QUEEN)
        go(1, 0, true), go(-1, 0, true), go(0, 1, true), go(0, -1, true);
    return targets;
}

bool slowAttacked(const Board& b, int target, Color by) {
    for (int sq = 0; sq < 64; sq++) {
        if (colorOf(b.squares[sq]) != by) continue;
        std::vector<int> t = slowAttacks(b, sq);
        if (std::find(t.begin(), t.end(), target) != t.end()) return true;
    }
    return false;
}

// Moves by the piece rules, whether or not they leave the own king in check.
std::vector<Move> pseudoLegalMoves(const Board& b) {
    const Color us = b.sideToMove, them = ~us;
    std::vector<Move> moves;
    for (int from = 0; from < 64; from++) {
        const int piece = b.squares[from];
        if (colorOf(piece) != us) continue;
        if (typeOf(piece) != PAWN) {
            for (int to : slowAttacks(b, from))
                if (colorOf(b.squares[to]) != us && typeOf(b.squares[to]) != KING)
                    moves.push_back(makeMove(piece, from, to, b.squares[to]));
            continue;
        }
        const int up = us == White ? 8 : -8;
        auto add = [&](int to, int captured, Move flag) {
            for (int choice = 3; choice >= 0; choice--)
                if (relativeRank(us, to) == 7 || choice == 0)
                    moves.push_back(makeMove(piece, from, to, captured, choice) | flag);
        };
        if (b.squares[from + up] == EMPTY) {
            add(from + up, 0, 0);
            if (relativeRank(us, from) == 1 && b.squares[from + 2 * up] == EMPTY)
                add(from + 2 * up, 0, 0);
        }
        for (int to : slowAttacks(b, from)) {
            if (colorOf(b.squares[to]) == them && typeOf(b.squares[to]) != KING)
                add(to, b.squares[to], 0);
            if (to == int(b.state().epSquare)) add(to, makePiece(them, PAWN), EP_FLAG);
        }
    }
    // Castling: right held, rook at home, squares between empty, and the king's start, transit
    // and landing squares not attacked.
    const int e = us == White ? 4 : 60, king = makePiece(us, KING), rook = makePiece(us, ROOK);
    const uint32_t rights = b.state().castling >> (2 * us);
    auto clear = [&](int a, int z) {
        for (int sq = a; sq <= z; sq++)
            if (b.squares[sq] != EMPTY) return false;
        return true;
    };
    auto safe = [&](int a, int z) {
        for (int sq = a; sq <= z; sq++)
            if (slowAttacked(b, sq, them)) return false;
        return true;
    };
    if (b.squares[e] == king && (rights & 1) && b.squares[e + 3] == rook && clear(e + 1, e + 2) &&
        safe(e, e + 2))
        moves.push_back(makeMove(king, e, e + 2));
    if (b.squares[e] == king && (rights & 2) && b.squares[e - 4] == rook && clear(e - 3, e - 1) &&
        safe(e - 2, e))
        moves.push_back(makeMove(king, e, e - 2));
    return moves;
}

bool leavesKingSafe(Board& b, Move m) {
    const Color us = b.sideToMove;
    b.makeMove(m);
    bool safe = !slowAttacked(b, b.kingSquare[us], ~us);
    b.unmakeMove(m);
    return safe;
}

std::vector<Move> sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

// Corner cases that the published positions lack, then positions from random games.
const std::vector<std::string>& positions() {
    static const std::vector<std::string> fens = [] {
        std::vector<std::string> fens = {
            // Castling past an attacked rook or b1; a promotion out of a pin; en passant that
            // uncovers the king along the rank, off a diagonal, or not at all.
            "1r2k3/8/8/8/8/8/8/R3K3 w Q - 0 1",   "4k3/8/8/8/8/8/1p6/R3K3 b Q - 0 1",
            "K3r2k/1P6/8/8/8/8/8/8 w - - 0 1",    "8/8/8/K2pP2r/8/8/8/4k3 w - d6 0 1",
            "1b2k3/8/8/3pP3/8/8/7K/8 w - d6 0 1", "4k1b1/8/8/3pP3/8/8/K7/8 w - d6 0 1",
        };
        const std::vector<std::string>& games = coretest::randomGamePositions();
        fens.insert(fens.end(), games.begin(), games.end());
        return fens;
    }();
    return fens;
}

}  // namespace

// The list holds every legal move once, with captured piece and flags, and nothing else. In
// check the evasion generator alone fills it; otherwise the captures generator gives captures
// and promotions and the quiet generator the rest.
TEST(MoveGen, LegalMovesEqualSlowGenerator) {
    auto board = coretest::newBoard();
    int inCheck = 0;
    for (const std::string& fen : positions()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        std::vector<Move> generated = coretest::legalMoves(*board), slow;
        for (Move m : pseudoLegalMoves(*board))
            if (leavesKingSafe(*board, m)) slow.push_back(m);
        EXPECT_EQ(sorted(generated), sorted(slow)) << fen;
        if (board->inCheck()) {
            inCheck++;
            continue;
        }
        MoveList captures, quiets;
        captures.count = quiets.count = 0;
        generateCaptures(*board, captures);
        generateQuiets(*board, quiets);
        for (Move m : captures)
            EXPECT_TRUE(moveCaptured(m) || moveIsPromotion(m)) << moveToUci(m) << " in " << fen;
        for (Move m : quiets)
            EXPECT_FALSE(moveCaptured(m) || moveIsPromotion(m)) << moveToUci(m) << " in " << fen;
        EXPECT_EQ(captures.count + quiets.count, generated.size()) << fen;
    }
    EXPECT_GT(inCheck, 100);
}

// Legal moves (with any ordering key) validate to themselves; moves of other positions, random
// values and one-bit corruptions (often moves into check) validate to 0 unless legal here.
TEST(MoveGen, ValidateMoveAcceptsExactlyTheLegalMoves) {
    auto board = coretest::newBoard();
    std::mt19937_64 rng(5);
    std::vector<Move> pool;
    int accepted = 0, rejected = 0;
    for (const std::string& fen : positions()) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        const std::vector<Move> legal = coretest::legalMoves(*board);
        const std::set<Move> legalSet(legal.begin(), legal.end());
        auto check = [&](Move candidate) {
            Move expected = legalSet.count(candidate & MOVE_MASK) ? candidate & MOVE_MASK : 0;
            EXPECT_EQ(validateMove(*board, candidate) & MOVE_MASK, expected)
                << std::hex << candidate << " " << moveToUci(candidate & MOVE_MASK) << " in "
                << fen;
            expected ? accepted++ : rejected++;
        };
        for (Move m : legal) {
            check(m | Move(rng() % 512) << 23);
            for (int bit = 0; bit < 23; bit++) check(m ^ (1u << bit));
        }
        for (int i = 0; i < 100 && !pool.empty(); i++) check(pool[rng() % pool.size()]);
        for (int i = 0; i < 100; i++) check(Move(rng()) & MOVE_MASK);
        pool.insert(pool.end(), legal.begin(), legal.end());
        if (HasFailure()) return;
    }
    EXPECT_GT(accepted, 10000);
    EXPECT_GT(rejected, 100000);
}

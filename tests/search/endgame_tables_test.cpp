// The endgame tables against known positions, and against the values of their successors.
#include "search/endgame_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/movegen.h"

namespace {

const EndgameTables& tables() { return EndgameTables::instance(); }

// Scores of the tables: a win in n plies is 32767 - n, a loss in n plies n - 32766.
constexpr int winIn(int plies) { return 32767 - plies; }
constexpr int lossIn(int plies) { return plies - 32766; }
constexpr int MATE_BOUND = 31743;

// The probe of a position and of its colour-mirrored twin, which must agree.
int probeBothColours(Board& board, const std::string& fen) {
    EXPECT_EQ(board.setFen(fen), 0) << fen;
    int score = tables().probe(board);
    board.flip();
    EXPECT_EQ(tables().probe(board), score) << "mirrored " << fen;
    return score;
}

}  // namespace


// Exact scores where the distance is known, outcomes for the king-and-pawn classics.
TEST(EndgameTables, KnownPositions) {
    constexpr int ANY_WIN = 1, ANY_LOSS = -1;  // beyond the mate bound, at whatever distance
    const struct {
        const char* fen;
        int score;
    } cases[] = {
        {"k7/8/1K6/8/8/8/8/6Q1 w - - 0 1", winIn(1)},        // Qg8 mates
        {"R6k/8/7K/8/8/8/8/8 b - - 0 1", lossIn(0)},         // checkmated by the rook
        {"k7/8/1K6/8/8/8/8/7R b - - 0 1", lossIn(2)},        // Kb8 forced, then Rh8 mates
        {"k7/8/1Q6/8/8/8/8/7K b - - 0 1", 0},                // stalemate
        {"k7/1R6/8/8/8/8/8/7K b - - 0 1", 0},                // the rook is taken
        {"k7/8/1K6/8/8/8/8/7N w - - 0 1", NO_TABLE_VALUE},   // knight
        {"k7/8/1K6/8/8/8/p7/7R w - - 0 1", NO_TABLE_VALUE},  // rook against pawn
        {"3k4/8/3K4/3P4/8/8/8/8 w - - 0 1", ANY_WIN},   // king on the sixth in front of the pawn
        {"8/3k4/8/3K4/3P4/8/8/8 b - - 0 1", ANY_LOSS},  // the attacker holds the opposition
        {"8/3k4/8/3K4/3P4/8/8/8 w - - 0 1", 0},         // the defender holds it
        {"k7/8/1K6/P7/8/8/8/8 w - - 0 1", 0},           // rook pawn, defender in the corner
        {"8/8/8/8/P5k1/8/8/7K b - - 0 1", ANY_LOSS},    // the defender cannot enter the square
        {"8/8/8/8/P4k2/8/8/7K b - - 0 1", 0},           // it can
        // Pawns blocking each other: whoever wins the other pawn wins, if that pawn ending does.
        {"7K/8/8/8/4p3/3kP3/8/8 b - - 0 1", winIn(21)},   // Kxe3
        {"8/8/8/8/k3p3/4P3/8/4K3 w - - 0 1", ANY_LOSS},   // Black reaches e3 first
        {"8/8/4k3/4p3/4P3/4K3/8/8 w - - 0 1", 0},         // neither king gets through
        {"8/8/8/3kp3/8/3P4/8/4K3 w - - 0 1", NO_TABLE_VALUE},  // pawns on two files
        {"8/8/4P3/3k4/8/4p3/8/4K3 w - - 0 1", NO_TABLE_VALUE},  // pawns past each other
    };
    Board board;
    for (const auto& c : cases) {
        int score = probeBothColours(board, c.fen);
        if (c.score == ANY_WIN || c.score == ANY_LOSS)
            EXPECT_GT(c.score * score, MATE_BOUND) << c.fen;
        else
            EXPECT_EQ(score, c.score) << c.fen;
    }
}

namespace {

// A random legal position of two kings and the pieces, or false.
bool placeRandomPosition(Board& board, const std::vector<int>& pieces, std::mt19937& rng) {
    std::fill(std::begin(board.squares), std::end(board.squares), EMPTY);
    int kings[2] = {int(rng() % 64), int(rng() % 64)};
    if (distance(kings[0], kings[1]) <= 1) return false;
    board.squares[kings[0]] = W_KING;
    board.squares[kings[1]] = B_KING;
    for (int piece : pieces) {
        int sq = int(rng() % 64);
        if (board.squares[sq] != EMPTY ||
            (typeOf(piece) == PAWN && (rankOf(sq) == 0 || rankOf(sq) == 7)))
            return false;
        board.squares[sq] = piece;
    }
    board.sideToMove = Color(rng() % 2);
    board.initPosition(0, NO_SQUARE, 0);
    return !board.isAttacked(board.kingSquare[~board.sideToMove], board.sideToMove);
}

}  // namespace

// Promotions lead into the queen and rook tables through the probe; a capture or a minor
// promotion leaves a draw. Blocked pawns lead into the king-and-pawn table when one is taken.
TEST(EndgameTables, EveryValueFollowsFromItsSuccessors) {
    std::mt19937 rng(20191005);
    Board board;
    MoveList list;
    const std::vector<std::vector<int>> endings = {{W_ROOK}, {B_ROOK}, {W_QUEEN}, {B_QUEEN},
                                                   {W_PAWN}, {B_PAWN}, {W_PAWN, B_PAWN}};
    for (const std::vector<int>& pieces : endings) {
        for (int checked = 0; checked < 20000;) {
            if (!placeRandomPosition(board, pieces, rng) ||
                tables().probe(board) == NO_TABLE_VALUE)
                continue;
            checked++;
            generateAll(board, list);
            // The best successor seen from this side, one ply further from the mate (a win in n
            // for the opponent is a loss in n + 1); without a move, mated or stalemated.
            int expected = list.count || board.inCheck() ? lossIn(0) : 0;
            for (Move m : list) {
                board.makeMove(m);
                int s = tables().probe(board);
                board.unmakeMove(m);
                if (s == NO_TABLE_VALUE) s = 0;  // a capture or a minor promotion: a draw
                expected = std::max(expected, s < 0 ? -s : s == 0 ? 0 : 2 - s);
            }
            ASSERT_EQ(tables().probe(board), expected) << board.getFen();
        }
    }
}

// Shared material of the chess tests: data-file positions, random moves, board comparison.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/movegen.h"
#include "core/notation.h"

namespace coretest {

// The first four fields (placement, side, castling, en passant) of every line of a data file.
inline std::vector<std::string> loadFens(const std::string& fileName) {
    std::ifstream in(std::string(MORVANE_DATA_DIR) + "/" + fileName);
    std::vector<std::string> fens;
    for (std::string line, a, b, c, d; std::getline(in, line);)
        if (std::istringstream(line) >> a >> b >> c >> d)
            fens.push_back(a + " " + b + " " + c + " " + d);
    return fens;
}
inline const std::vector<std::string>& perftFens() {
    static const std::vector<std::string> fens = loadFens("perft.epd");
    return fens;
}
inline const std::vector<std::string>& openingFens() {
    static const std::vector<std::string> fens = loadFens("openings.epd");
    return fens;
}
// Every step-th opening, to keep the slower tests fast.
inline std::vector<std::string> someOpenings(size_t step) {
    std::vector<std::string> fens;
    for (size_t i = 0; i < openingFens().size(); i += step) fens.push_back(openingFens()[i]);
    return fens;
}

// A Board is about a megabyte, too big for several on the stack.
inline std::unique_ptr<Board> newBoard() { return std::make_unique<Board>(); }

inline std::vector<Move> legalMoves(Board& board) {
    MoveList list;
    generateAll(board, list);
    std::vector<Move> moves;
    for (Move m : list) moves.push_back(m);
    return moves;
}

// A random legal move (0: none), preferring the moves rare in random play: promotions,
// castling and en passant.
inline Move randomMove(Board& board, std::mt19937_64& rng) {
    std::vector<Move> moves = legalMoves(board), special;
    for (Move m : moves)
        if (moveIsPromotion(m) || moveIsCastling(m) || moveIsEnPassant(m)) special.push_back(m);
    if (!special.empty() && rng() % 2) return special[rng() % special.size()];
    return moves.empty() ? 0 : moves[rng() % moves.size()];
}

// The published perft positions and, along random games from every 20th opening, the position
// after every fourth ply and every check.
inline const std::vector<std::string>& randomGamePositions() {
    static const std::vector<std::string> fens = [] {
        std::vector<std::string> fens;
        for (const std::string& fen : perftFens()) fens.push_back(fen + " 0 1");
        std::mt19937_64 rng(99);
        auto board = newBoard();
        for (const std::string& opening : someOpenings(20)) {
            if (board->setFen(opening) != 0) continue;  // MakeMove reports it
            for (int ply = 0; ply < 80; ply++) {
                Move m = randomMove(*board, rng);
                if (!m) break;
                board->makeMove(m);
                if (ply % 4 == 0 || board->inCheck()) fens.push_back(board->getFen());
            }
        }
        return fens;
    }();
    return fens;
}

// Corner cases that the published positions lack, with their leaf counts at depth 5 as
// independent generators give them: castling past an attacked rook or b1; a promotion out of
// a pin; en passant that uncovers the king along the rank, off a diagonal, or not at all, or
// that takes the pawn giving check.
struct CountedPosition {
    const char* fen;
    uint64_t perft5;
};
inline constexpr CountedPosition CORNER_CASES[] = {
    {"1r2k3/8/8/8/8/8/8/R3K3 w Q - 0 1", 953159},  {"4k3/8/8/8/8/8/1p6/R3K3 b Q - 0 1", 230789},
    {"K3r2k/1P6/8/8/8/8/8/8 w - - 0 1", 37154},    {"8/8/8/K2pP2r/8/8/8/4k3 w - d6 0 1", 78822},
    {"1b2k3/8/8/3pP3/8/8/7K/8 w - d6 0 1", 25828}, {"4k1b1/8/8/3pP3/8/8/K7/8 w - d6 0 1", 19501},
    {"8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1", 17879},
};

// The fields that a position determines, without the history behind it, as one list.
inline std::vector<uint64_t> positionFields(const Board& b) {
    const PositionState& st = b.state();
    std::vector<uint64_t> f(std::begin(b.squares), std::end(b.squares));
    f.insert(f.end(), std::begin(b.pieceBB), std::end(b.pieceBB));
    f.insert(f.end(), std::begin(b.pieceCount), std::end(b.pieceCount));
    // clang-format off
    f.insert(f.end(), {b.colorBB[White], b.colorBB[Black], b.occupiedBB, b.emptyBB,
                       b.nonPawnCount[White], b.nonPawnCount[Black], b.kingSquare[White],
                       b.kingSquare[Black], b.totalPieces, b.ply, uint64_t(b.sideToMove), st.key,
                       st.pawnKey, st.materialKey, st.rule50, st.castling, st.epSquare,
                       st.inCheck, uint64_t(st.endgameId), uint64_t(st.phaseMaterial)});
    // clang-format on
    return f;
}

// Everything a make and unmake must give back: the position, the state records of the game
// and the repetition counters.
struct BoardSnapshot {
    std::vector<uint64_t> fields;
    std::vector<PositionState> records;
    std::vector<uint8_t> repetitions;

    explicit BoardSnapshot(const Board& b)
        : fields(positionFields(b)),
          records(b.stack->records, b.stack->records + b.stateIndex() + 1),
          repetitions(std::begin(b.stack->repetitions), std::end(b.stack->repetitions)) {}

    void expectRestored(const Board& b) const {
        EXPECT_EQ(fields, positionFields(b));
        ASSERT_EQ(b.stateIndex() + 1, records.size());
        for (size_t i = 0; i < records.size(); i++) {
            const PositionState &x = records[i], &y = b.stack->records[i];
            EXPECT_TRUE(x.key == y.key && x.move == y.move && x.lastNull == y.lastNull &&
                        x.repetition == y.repetition)
                << "record " << i;
        }
        EXPECT_TRUE(std::equal(repetitions.begin(), repetitions.end(), b.stack->repetitions))
            << "repetition counters";
    }
};

}  // namespace coretest

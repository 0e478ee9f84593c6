#include "tools/match/rules.h"

#include <algorithm>

#include "core/movegen.h"

namespace match {

bool insufficientMaterial(const Board& board) {
    Bitboard kings = board.pieces(W_KING) | board.pieces(B_KING);
    Bitboard others = board.occupiedBB & ~kings;
    Bitboard bishops = board.pieces(W_BISHOP) | board.pieces(B_BISHOP);
    Bitboard minors = bishops | board.pieces(W_KNIGHT) | board.pieces(B_KNIGHT);
    if (popcount(others) <= 1 && (others & ~minors) == 0) return true;
    // Bishops that all run on one square colour can never attack the other colour.
    return others == bishops && (!(bishops & LIGHT_SQUARES) || !(bishops & ~LIGHT_SQUARES));
}

std::optional<Verdict> ruleVerdict(Board& board, const std::vector<uint64_t>& history) {
    MoveList moves;
    generateAll(board, moves);
    // Mate is looked at first: a mate on the hundredth quiet half-move still wins.
    if (moves.count == 0 && board.inCheck())
        return board.sideToMove == White
                   ? Verdict{Result::BlackWins, Termination::Normal, "Black mates"}
                   : Verdict{Result::WhiteWins, Termination::Normal, "White mates"};
    if (moves.count == 0) return Verdict{Result::Draw, Termination::Normal, "Draw by stalemate"};
    if (board.state().rule50 >= 100)
        return Verdict{Result::Draw, Termination::Normal, "Draw by fifty-move rule"};
    if (std::count(history.begin(), history.end(), board.key()) >= 3)
        return Verdict{Result::Draw, Termination::Normal, "Draw by threefold repetition"};
    if (insufficientMaterial(board))
        return Verdict{Result::Draw, Termination::Normal, "Draw by insufficient material"};
    return std::nullopt;
}

}  // namespace match

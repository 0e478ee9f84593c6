#include "tools/tune/quiet_positions.h"

#include <memory>

#include "core/movegen.h"
#include "search/see.h"

namespace {

bool isQuiet(Board& board) {
    if (board.inCheck()) return false;
    MoveList captures;
    captures.count = 0;
    generateCaptures(board, captures);
    for (Move m : captures)
        if (moveIsPromotion(m) || see(board, m) > 0) return false;
    return true;
}

// The placement, side, castling and en-passant fields: equal positions give equal texts.
std::string positionText(const Board& board) {
    std::string fen = board.getFen();
    for (int fields = 0, i = 0; i < int(fen.size()); i++)
        if (fen[i] == ' ' && ++fields == 4) return fen.substr(0, i);
    return fen;
}

}  // namespace

void forEachQuietPosition(const PgnGame& game, int skipPlies,
                          const std::function<void(const std::string& fen)>& take) {
    auto board = std::make_unique<Board>();
    if (!game.startFen.empty() && board->setFen(game.startFen) != 0) return;
    // The board's state stack bounds the plies; no finished game comes near it.
    for (size_t ply = 0; ply <= game.moves.size() && ply < MAX_STATES - 1; ply++) {
        if (int(ply) >= skipPlies && isQuiet(*board)) take(positionText(*board));
        if (ply < game.moves.size()) board->makeMove(game.moves[ply]);
    }
}

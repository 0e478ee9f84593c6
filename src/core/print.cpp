#include "core/print.h"

#include "core/board.h"
#include "core/endgame_id.h"
#include "core/names.h"

namespace {

// The light and dark shades of the console's box-drawing set, as UTF-8.
constexpr const char* LIGHT_SHADE = "\u2591";
constexpr const char* DARK_SHADE = "\u2593";
constexpr const char* FILE_HEADER = "    A   B   C   D   E   F   G   H ";

// Squares of a8's colour are light; highlighted squares are dark whatever their colour.
std::string fillOf(const Board& board, int sq) {
    if (board.highlight & squareBB(sq)) return DARK_SHADE;
    return (LIGHT_SQUARES & squareBB(sq)) ? LIGHT_SHADE : " ";
}

}  // namespace

void appendBoardPrint(const Board& board, std::vector<std::string>& lines) {
    lines.push_back(FILE_HEADER);
    lines.push_back("");
    for (int rank = 7; rank >= 0; rank--) {
        std::string edge = "   ", middle = std::to_string(rank + 1) + " ";
        for (int file = 0; file < 8; file++) {
            int sq = makeSquare(file, rank);
            std::string fill = fillOf(board, sq);
            edge += fill + fill + fill + fill;
            std::string body = board.squares[sq] ? std::string(SHORT_NAMES[board.squares[sq]]) : fill + fill;
            middle += fill + body + fill;
        }
        lines.push_back(edge);
        lines.push_back(middle);
        lines.push_back(edge);
    }
    lines.push_back("");
    lines.push_back(FILE_HEADER);
    lines.push_back("");
    lines.push_back("FEN: " + board.getFen());
    lines.push_back("EndGame Id: " + std::string(ENDGAME_NAMES[board.state().endgameId]));
    lines.push_back("");
    lines.push_back("Played moves : " + board.playedMoves());
    lines.push_back("");
    lines.push_back("Current ply : " + std::to_string(board.ply) + "   Side to move : " +
                    std::string(COLOR_NAMES[board.sideToMove]) +
                    (board.inCheck() ? "     [King is in Check !]" : "     [King is NOT in Check !]"));
    lines.push_back("Repetitions : " + std::to_string(board.state().repetition));
    lines.push_back("Piece count : " + std::to_string(board.totalPieces) + "  Major White : " +
                    std::to_string(board.nonPawnCount[White]) + "  Major Black : " +
                    std::to_string(board.nonPawnCount[Black]));
}

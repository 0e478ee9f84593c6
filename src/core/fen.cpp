// FEN reading and writing and the arguments of the position command.
#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

#include "core/board.h"
#include "core/movegen.h"
#include "core/names.h"
#include "core/notation.h"
#include "core/text.h"

namespace {

std::vector<std::string_view> splitFields(std::string_view text) {
    std::vector<std::string_view> fields;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(' ', start);
        if (end == std::string_view::npos) end = text.size();
        if (end > start) fields.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return fields;
}

// A decimal integer; 0 when the field holds none.
long readNumber(std::string_view field) {
    long value = 0;
    std::from_chars(field.data(), field.data() + field.size(), value);
    return value;
}

int pieceOfLetter(char c) {
    std::string_view letters(FEN_LETTERS + 1, 12);
    size_t at = letters.find(c);
    return at == std::string_view::npos ? EMPTY : int(at) + 1;
}

// Material a game can reach: per side at most 16 men, 8 pawns, and no more promoted pieces
// than missing pawns. It also keeps every move list well inside its 256 slots.
bool reachableMaterial(const Board& b) {
    for (Color c : {White, Black}) {
        auto count = [&](int type) { return int(b.pieceCount[makePiece(c, type)]); };
        int promoted = std::max(0, count(KNIGHT) - 2) + std::max(0, count(BISHOP) - 2) +
                       std::max(0, count(ROOK) - 2) + std::max(0, count(QUEEN) - 1);
        if (popcount(b.colorBB[c]) > 16 || count(PAWN) > 8 || promoted > 8 - count(PAWN)) return false;
    }
    return !((b.pieceBB[W_PAWN] | b.pieceBB[B_PAWN]) & (RANK_1 | RANK_8));
}

// An en-passant square is kept only when a capture onto it is possible, as after a double step.
uint32_t usableEpSquare(const Board& b, int sq) {
    Color us = b.sideToMove;
    if (sq == NO_SQUARE || relativeRank(us, sq) != 5) return NO_SQUARE;
    int victim = us == White ? sq - 8 : sq + 8;
    if (b.squares[victim] != makePiece(~us, PAWN) || b.squares[sq] != EMPTY) return NO_SQUARE;
    return (b.attacks.neighbours[victim] & b.pieces(us, PAWN)) ? sq : NO_SQUARE;
}

}  // namespace

int Board::checkFen(std::string_view fen) {
    std::string_view placement = fen.substr(0, fen.find(' '));
    int slashes = 0, whiteKings = 0, blackKings = 0;
    for (char c : placement) {
        slashes += c == '/';
        whiteKings += c == 'K';
        blackKings += c == 'k';
    }
    if (slashes != 7 || whiteKings != 1 || blackKings != 1) return 1;
    if (splitFields(fen).size() < 2) return 1;
    int counter = 0;
    for (char c : placement) {
        if (c >= '1' && c <= '8')
            counter += c - '0';
        else if (pieceOfLetter(c) != EMPTY)
            counter++;
        else if (c != '/' || counter % 8 != 0)
            return 1;
    }
    return 0;
}

int Board::setFen(std::string_view fen) {
    const std::string savedGame = positionCommandString();
    auto restore = [&] { setPosition(savedGame); };
    if (checkFen(fen)) return -1;
    std::vector<std::string_view> fields = splitFields(fen);
    std::string_view placement = fields[0];

    int parsed[64];
    for (int& sq : parsed) sq = EMPTY;
    size_t i = 0;
    for (int c = 0; c < 64; i++) {
        if (i >= placement.size()) throw std::out_of_range("FEN placement ends before h1");
        char ch = placement[i];
        int square = (7 - c / 8) * 8 + c % 8;
        if (ch >= '1' && ch <= '8')
            c += ch - '0';
        else if (int piece = pieceOfLetter(ch))
            parsed[square] = piece, c++;
        else if (ch != '/')
            return -1;
    }

    Color side = White;
    if (fields.size() >= 2) {
        if (fields[1] == "b")
            side = Black;
        else if (fields[1] != "w")
            return -1;
    }
    uint32_t castling = 0;
    if (fields.size() >= 3) {
        std::string_view rights = fields[2];
        if (rights.find('K') != std::string_view::npos) castling |= WHITE_OO;
        if (rights.find('Q') != std::string_view::npos) castling |= WHITE_OOO;
        if (rights.find('k') != std::string_view::npos) castling |= BLACK_OO;
        if (rights.find('q') != std::string_view::npos) castling |= BLACK_OOO;
    }
    int ep = NO_SQUARE;
    if (fields.size() >= 4 && fields[3].size() >= 2) {
        char file = fields[3][0], rank = fields[3][1];
        if (file < 'a' || file > 'h' || (rank != '3' && rank != '6')) return -1;
        ep = (rank - '1') * 8 + (file - 'a');
    }
    long plies = 0;
    if (fields.size() >= 6) plies = std::clamp(2 * readNumber(fields[5]) - 2, 0L, 2000000L) + (side == Black);
    long rule50 = fields.size() >= 5 ? std::min(std::max(readNumber(fields[4]), 0L), plies) : 0;

    for (int sq = 0; sq < 64; sq++) squares[sq] = parsed[sq];
    sideToMove = side;
    ply = uint32_t(plies);
    initPosition(castling, NO_SQUARE, uint32_t(rule50));
    uint32_t usable = usableEpSquare(*this, ep);
    if (usable != NO_SQUARE) initPosition(castling, usable, uint32_t(rule50));

    if (pieceCount[W_KING] != 1 || pieceCount[B_KING] != 1 || isAttacked(kingSquare[~side], side) ||
        !reachableMaterial(*this)) {
        restore();
        return -1;
    }
    return 0;
}

std::string Board::getFen() const {
    std::string fen;
    for (int rank = 7; rank >= 0; rank--) {
        int empty = 0;
        for (int file = 0; file < 8; file++) {
            int piece = squares[makeSquare(file, rank)];
            if (piece == EMPTY) {
                empty++;
                continue;
            }
            if (empty) fen += char('0' + empty);
            empty = 0;
            fen += FEN_LETTERS[piece];
        }
        if (empty) fen += char('0' + empty);
        if (rank > 0) fen += '/';
    }
    const PositionState& st = state();
    fen += sideToMove == White ? " w " : " b ";
    if (st.castling & WHITE_OO) fen += 'K';
    if (st.castling & WHITE_OOO) fen += 'Q';
    if (st.castling & BLACK_OO) fen += 'k';
    if (st.castling & BLACK_OOO) fen += 'q';
    if (!st.castling) fen += '-';
    if (st.epSquare != NO_SQUARE) {
        fen += ' ';
        fen += SQUARE_NAMES[st.epSquare];
        fen += ' ';
    } else {
        fen += " - ";
    }
    fen += std::to_string(st.rule50) + " " + std::to_string(ply / 2 + 1);
    return fen;
}

// Returns 0 when done, 1 for a malformed command, 2 for a bad FEN, 3 for an illegal move and
// 4 when the game would no longer fit on the state stack.
int Board::setPosition(std::string_view commandLine) {
    std::string line(commandLine);
    std::vector<std::string> tokens = splitTokens(line, ' ');
    if (tokens.size() < 2) return 1;
    size_t next;
    if (tokens[1] == "startpos") {
        next = 2;
    } else if (tokens[1] == "fen") {
        if (tokens.size() < 4) return 1;
        next = 2;
        while (next < tokens.size() && next <= 7 && tokens[next] != "moves") next++;
    } else {
        return 1;
    }
    // Reject a malformed tail before anything changes.
    if (next < tokens.size() && tokens[next] != "moves") return 1;

    if (tokens[1] == "startpos") {
        setStartPosition();
    } else {
        std::string fen;
        for (size_t i = 2; i < next; i++) fen += tokens[i] + " ";
        if (setFen(fen) != 0) return 2;
    }
    for (size_t i = next + 1; i < tokens.size(); i++) {
        if (stateIndex() >= MAX_GAME_PLIES) return 4;
        Move m = parseMove(*this, tokens[i]);
        if (!m || !isMoveInList(*this, m)) return 3;
        makeMove(m);
    }
    return 0;
}

std::string Board::playedMoves() const {
    std::string moves;
    for (uint32_t i = 1; i <= stack->index; i++) {
        if (i > 1) moves += ' ';
        moves += moveToUci(stack->records[i].move);
    }
    return moves;
}

std::string Board::positionCommandString() const {
    std::string text = "position ";
    text += positionString == "startpos" ? "startpos" : "fen " + positionString;
    return text + " moves " + playedMoves();
}

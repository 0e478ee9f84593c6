#include "core/notation.h"

#include "core/movegen.h"
#include "core/names.h"

std::string moveToUci(Move m) {
    if (!m) return "0000";
    std::string text = std::string(SQUARE_NAMES[moveFrom(m)]) + std::string(SQUARE_NAMES[moveTo(m)]);
    if (moveIsPromotion(m)) text += PROMOTION_LETTERS[promotionPiece(m)];
    return text;
}

Move parseMove(const Board& board, std::string_view text) {
    text = text.substr(0, text.find('\r'));
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    if (text.size() != 4 && text.size() != 5) return 0;
    auto isFile = [](char c) { return c >= 'a' && c <= 'h'; };
    auto isRank = [](char c) { return c >= '1' && c <= '8'; };
    if (!isFile(text[0]) || !isRank(text[1]) || !isFile(text[2]) || !isRank(text[3])) return 0;
    int from = (text[1] - '1') * 8 + (text[0] - 'a');
    int to = (text[3] - '1') * 8 + (text[2] - 'a');
    int piece = board.squares[from];
    int captured = board.squares[to];
    int promo = 0;
    bool pawn = typeOf(piece) == PAWN;
    if ((piece == W_PAWN && to >= 56) || (piece == B_PAWN && to <= 7)) promo = 3;
    if (pawn && text.size() == 5) {
        std::string_view letters = "nbrq";
        size_t choice = letters.find(text[4]);
        // On a move that does not promote, any letter leaves promotion bits that no generated move
        // has; the knight's bits would read as none, so they are marked as a queen's.
        bool promotes = to >= 56 || to <= 7;
        if (choice != std::string_view::npos) promo = promotes ? int(choice) : 3;
    }
    Move m = makeMove(piece, from, to, captured, promo);
    int up = piece == W_PAWN ? 8 : -8;
    if (pawn && to != from + up && to != from + 2 * up && captured == EMPTY)
        m |= makeMove(0, 0, 0, makePiece(~colorOf(piece), PAWN)) | EP_FLAG;
    return m;
}

bool isMoveInList(Board& board, Move m) {
    MoveList list;
    generateAll(board, list);
    for (Move legal : list)
        if ((legal & MOVE_MASK) == (m & MOVE_MASK)) return true;
    return false;
}

std::string moveToSan(Board& board, Move m) {
    m &= MOVE_MASK;
    std::string san;
    const int piece = movePiece(m), from = moveFrom(m), to = moveTo(m);
    if (moveIsCastling(m)) {
        san = to > from ? "O-O" : "O-O-O";
    } else {
        san = SAN_LETTERS[piece];
        MoveList list;
        generateAll(board, list);
        if (typeOf(piece) == PAWN) {
            if (moveCaptured(m)) san += FILE_LETTERS[fileOf(from) + 1];
        } else {
            bool ambiguous = false, sameFile = false, sameRank = false;
            for (Move other : list) {
                if (movePiece(other) != piece || moveTo(other) != to || moveFrom(other) == from) continue;
                ambiguous = true;
                sameFile |= fileOf(moveFrom(other)) == fileOf(from);
                sameRank |= rankOf(moveFrom(other)) == rankOf(from);
            }
            if (ambiguous && (!sameFile || sameRank)) san += FILE_LETTERS[fileOf(from) + 1];
            if (ambiguous && sameFile) san += char('1' + rankOf(from));
        }
        if (moveCaptured(m)) san += 'x';
        san += SQUARE_NAMES[to];
        if (moveIsPromotion(m)) {
            san += '=';
            san += SAN_LETTERS[promotionPiece(m)];
        }
    }
    board.makeMove(m);
    if (board.inCheck()) {
        MoveList replies;
        generateAll(board, replies);
        san += replies.count ? "+" : "#";
    }
    board.unmakeMove(m);
    return san;
}

Move sanToMove(Board& board, std::string_view san) {
    while (!san.empty() && std::string_view("+#!?").find(san.back()) != std::string_view::npos)
        san.remove_suffix(1);
    MoveList list;
    generateAll(board, list);
    if (san == "O-O" || san == "0-0" || san == "O-O-O" || san == "0-0-0") {
        bool queenSide = san.size() == 5;
        for (Move m : list)
            if (moveIsCastling(m) && (moveTo(m) < moveFrom(m)) == queenSide) return m & MOVE_MASK;
        return 0;
    }
    int type = PAWN;
    if (!san.empty() && std::string_view("NBRQK").find(san[0]) != std::string_view::npos) {
        type = int(std::string_view("PNBRQK").find(san[0])) + 1;
        san.remove_prefix(1);
    }
    int promoType = 0;
    size_t eq = san.find('=');
    if (eq != std::string_view::npos || (!san.empty() && std::string_view("NBRQ").find(san.back()) != std::string_view::npos)) {
        char letter = san.back();
        promoType = int(std::string_view("PNBRQK").find(letter)) + 1;
        san = san.substr(0, eq != std::string_view::npos ? eq : san.size() - 1);
    }
    if (san.size() < 2) return 0;
    std::string_view dest = san.substr(san.size() - 2);
    if (dest[0] < 'a' || dest[0] > 'h' || dest[1] < '1' || dest[1] > '8') return 0;
    int to = (dest[1] - '1') * 8 + (dest[0] - 'a');
    int fromFile = -1, fromRank = -1;
    for (char c : san.substr(0, san.size() - 2)) {
        if (c >= 'a' && c <= 'h') fromFile = c - 'a';
        else if (c >= '1' && c <= '8') fromRank = c - '1';
        else if (c != 'x' && c != '-') return 0;
    }
    Move found = 0;
    for (Move m : list) {
        if (typeOf(movePiece(m)) != type || moveTo(m) != to) continue;
        if (fromFile >= 0 && fileOf(moveFrom(m)) != fromFile) continue;
        if (fromRank >= 0 && rankOf(moveFrom(m)) != fromRank) continue;
        if (moveIsPromotion(m) && typeOf(promotionPiece(m)) != (promoType ? promoType : QUEEN)) continue;
        if (found) return 0;  // ambiguous
        found = m & MOVE_MASK;
    }
    return found;
}

std::string sanToCoordinate(Board& board, std::string_view san) {
    Move m = sanToMove(board, san);
    return m ? moveToUci(m) : std::string();
}

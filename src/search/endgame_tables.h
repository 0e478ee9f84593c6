// Endgame tables of king and rook, king and queen, and king and pawn against a lone king, and
// of king and pawn against king and pawn with the pawns blocking each other on one file, built
// once per process by retrograde analysis and shared read-only by all search threads.
//
// Each table holds one signed byte per position, from the side to move's point of view:
// 0 a draw, v > 0 a win in 251 - 2v plies (125 = mate in one), v < 0 a loss in 2v + 252 plies
// (-126 = checkmated now). Only the side holding the piece can win.
#pragma once

#include <cstdint>

#include "core/types.h"
#include "search/blocked_pawns.h"

class Board;

constexpr int NO_TABLE_VALUE = -1000000;

class EndgameTables {
  public:
    static const EndgameTables& instance();

    // The score for the side to move of a KRK, KQK or KPK position, either colour holding the
    // piece, or of a KPKP position whose pawns block each other: 32767 - n for a win in n
    // plies, n - 32766 for a loss in n plies, 0 for a draw; NO_TABLE_VALUE for any other
    // material or placement, or an illegal position. Castling rights and the fifty-move counter
    // are not looked at.
    int probe(const Board& board) const;

    // The stored byte of a position given with the piece's owner as White: kind is PAWN, ROOK or
    // QUEEN, sideToMove White when the owner moves. Illegal positions read ILLEGAL.
    int rawValue(int kind, Color sideToMove, int ownerKing, int loneKing, int pieceSq) const;

    // Milliseconds the one-time build took.
    double buildMilliseconds() const { return buildTime; }

    static constexpr int UNKNOWN = -127;
    static constexpr int ILLEGAL = -128;
    static constexpr int MATED = -126;
    static constexpr int MATE_IN_ONE = 125;

    static constexpr int PIECE_TABLE_SIZE = 10 * 2 * 64 * 64;
    static constexpr int PAWN_TABLE_SIZE = 32 * 2 * 64 * 64;

  private:
    EndgameTables();
    int probeBlockedPawns(const Board& board) const;

    int8_t rookTable[PIECE_TABLE_SIZE];
    int8_t queenTable[PIECE_TABLE_SIZE];
    int8_t pawnTable[PAWN_TABLE_SIZE];
    uint8_t blockedPawnTable[blocked_pawns::TABLE_SIZE];
    double buildTime = 0;
};

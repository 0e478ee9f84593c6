// King and pawn against king and pawn with the two pawns on one file, White's below Black's.
// Neither pawn can pass the other or take it, so the ending lasts until a king takes a pawn and
// the king-and-pawn table takes over. Inside it every position is solved exactly.
//
// One byte per position and side to move, 128 + v with v on the scale of the one-piece tables
// (v > 0 a win in 251 - 2v plies, v < 0 a loss in 2v + 252 plies): 128 is a draw; 0 marks an
// illegal position.
#pragma once

#include <cstdint>
#include <functional>

#include "core/types.h"

struct AttackTables;

namespace blocked_pawns {

// Pawn pairs on files a..d (the other files are mirrored onto them): 15 rank pairs per file.
constexpr int PAIR_CLASSES = 4 * 15;
constexpr int TABLE_SIZE = PAIR_CLASSES * 64 * 64 * 2;
constexpr int ILLEGAL = 0;
constexpr int DRAW = 128;

// The table index of a position, or -1 when the pawns do not block each other.
int tableIndex(Color stm, int whiteKing, int blackKing, int whitePawn, int blackPawn);

// The one-piece table byte of a king-and-pawn position with its owner as White, the lone king
// to move: v <= 0.
using LoneToMoveValue = std::function<int(int ownerKing, int loneKing, int pawn)>;

// Solves every position by retrograde analysis from the mates, the stalemates and the captures
// that leave king and pawn against king.
void build(const AttackTables& attacks, const LoneToMoveValue& pawnEnding, uint8_t* table);

}  // namespace blocked_pawns

// Piece-square tables and the outpost scale, rebuilt at the end of every RecomputeDerived.
#pragma once

#include "eval/weights.h"

// Copies the base tables into the working tables for White, fills the outpost scale for both
// colours and mirrors White's tables into Black's.
void buildPieceSquareTables(EvalTables& tables);

// Squares in the order a board diagram is written: a8..h8 first, a1..h1 last. A square's
// diagram index is 8 * DIAGRAM_ROW[s] - DIAGRAM_COLUMN[s].
extern const int DIAGRAM_ROW[64];     // 1 for rank 8 .. 8 for rank 1
extern const int DIAGRAM_COLUMN[64];  // 8 for file a .. 1 for file h

// Writes fitted piece-square tables back into the engine's source, as the board diagrams it
// keeps them in.
#pragma once

#include <string>

#include "tools/tune/psqt_fit.h"

// Replaces the twelve diagrams PAWN_MG .. KING_EG of the source file; everything else in the
// file stays. Returns an error text, empty on success.
std::string writeDiagrams(const std::string& path, const PieceSquareValues& values);

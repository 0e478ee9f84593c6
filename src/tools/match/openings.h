// Opening positions from an EPD file: the first four fields of each line (placement, side,
// castling, en passant) make the position; operations after them are ignored.
#pragma once

#include <string>
#include <vector>

namespace match {

// The positions in file order, each checked by the core. On failure `error` says which line.
bool readOpenings(const std::string& path, std::vector<std::string>& openings, std::string& error);

}  // namespace match

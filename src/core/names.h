// Text names of squares, pieces and colours used by every printed report.
#pragma once

#include <string_view>

// Square names a1..h8; index 64 (no square) prints as "er".
extern const std::string_view SQUARE_NAMES[65];
// File letters indexed 1..8; index 0 is empty.
constexpr std::string_view FILE_LETTERS[9] = {"", "a", "b", "c", "d", "e", "f", "g", "h"};

constexpr std::string_view PIECE_NAMES[13] = {"  ",       "W_PAWN",   "W_KNIGHT", "W_BISHOP", "W_ROOK",
                                              "W_QUEEN",  "W_KING",   "B_PAWN",   "B_KNIGHT", "B_BISHOP",
                                              "B_ROOK",   "B_QUEEN",  "B_KING"};
constexpr std::string_view SHORT_NAMES[13] = {"  ", "WP", "WN", "WB", "WR", "WQ", "WK",
                                              "BP", "BN", "BB", "BR", "BQ", "BK"};
constexpr std::string_view SAN_LETTERS[13] = {" ", "", "N", "B", "R", "Q", "K",
                                              "",  "N", "B", "R", "Q", "K"};
constexpr std::string_view PROMOTION_LETTERS[14] = {"x", "x", "n", "b", "r", "q", "x",
                                                    "x", "n", "b", "r", "q", "x", "x"};
// FEN letters by piece code.
constexpr char FEN_LETTERS[13] = {' ', 'P', 'N', 'B', 'R', 'Q', 'K', 'p', 'n', 'b', 'r', 'q', 'k'};
constexpr std::string_view COLOR_NAMES[2] = {"White", "Black"};

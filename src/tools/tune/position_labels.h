// Search scores added to the positions a tuner learns from, written as they are found so that
// a long run cut short goes on where it stopped.
#pragma once

#include <functional>
#include <string>

// Adds to every "FEN;result" line of `positionsPath` White's score by a search of `depth`
// plies (clamped to ±2000), `jobs` searches at a time, and writes the lines to `labelledPath`
// a block at a time. Lines already there that label the first positions in order are kept, so
// the same command started again goes on after the last whole line. `progress` hears the
// number of labelled lines after each block. Returns an error text, empty on success.
std::string labelPositions(const std::string& positionsPath, const std::string& labelledPath,
                           int depth, int jobs,
                           const std::function<void(size_t labelled)>& progress);

// A search that prints nothing, for tools and tests: one search thread with a table of its own,
// the table, caches and move-ordering statistics cleared before every search, returning the
// scored root moves.
#pragma once

#include <string>
#include <vector>

#include "search/threads.h"
#include "search/tt.h"

struct ScoredMove {
    Move move;
    int score;
};

class QuietSearch {
  public:
    explicit QuietSearch(int hashMb = 16);
    // The best `lines` root moves of the game given as a position command, best first. With
    // `forget` false the table and caches of the searches before are kept, which is faster and
    // makes the answer depend a little on them.
    std::vector<ScoredMove> search(const std::string& positionCommand, int depth, int lines = 1,
                                   bool forget = true);

  private:
    TranspositionTable tt;
    TMainSearchThread thread;
};

// Per-thread memory of good moves (killers, counter moves, history, evaluation gains) and the
// keys that order each stage's move list. A move's ordering key sits in bits 23-31 of its list
// entry; a list is sorted once by the whole word, descending.
#pragma once

#include <cstdint>

#include "core/board.h"

constexpr int KILLER_PLIES = 129;  // plies 0..99 are read; the spare ones serve the threat slot

struct OrderingTables {
    Move killers[KILLER_PLIES][3];    // killer 1, killer 2, last cut-off move (the threat slot)
    Move counters[13 * 64][13 * 64];  // by (earlier move's piece and to-square, last move's)
    int32_t history[13][64];          // by piece and to-square
    int32_t gains[13][64];            // best observed change in static evaluation of a quiet move

    void clear();
    void storeKiller(int ply, Move m);
    // Adds the bonus (positive bonuses capped at 1024); at +-2048 every entry is halved.
    void updateHistory(Move m, int bonus);
    int historyOf(Move m) const { return history[movePiece(m)][moveTo(m)]; }
    Move& counterMove(Move earlier, Move last) {
        return counters[counterIndex(earlier)][counterIndex(last)];
    }

  private:
    static int counterIndex(Move m) { return movePiece(m) * 64 + moveTo(m); }
};

constexpr int keyOf(Move m) { return int(m >> 23); }
constexpr Move withKey(Move m, int key) { return (m & MOVE_MASK) | Move(key) << 23; }
// Sorts the list by key, best first; ties fall to the move bits.
void sortMoves(MoveList& list);
// Removes every occurrence of the move (compared on bits 0..22); returns how many were removed.
int removeMove(MoveList& list, Move m);

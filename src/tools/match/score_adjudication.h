// Ending a game early by the engines' own scores: a resignation when both agree that one side
// is lost, a draw when both see the position as level, each for some consecutive moves.
#pragma once

#include <optional>

#include "core/types.h"
#include "tools/match/verdict.h"

namespace match {

struct ResignRule {
    int moveCount = 0;  // moves of each engine in a row; 0 turns the rule off
    int score = 0;      // centipawns
};

struct DrawRule {
    int moveNumber = 0;  // moves played before a draw may be adjudicated
    int moveCount = 0;   // moves of each engine in a row; 0 turns the rule off
    int score = 0;       // centipawns either way
};

class ScoreAdjudicator {
  public:
    ScoreAdjudicator(ResignRule resign, DrawRule draw) : resign(resign), draw(draw) {}

    // After each move: the colour that moved, the score it reported for itself (none when it
    // gave no score) and the number of half-moves played in the game so far.
    std::optional<Verdict> afterMove(Color mover, std::optional<int> score, int plies);

  private:
    ResignRule resign;
    DrawRule draw;
    // Half-moves in a row on which the mover's score said `losing` is lost.
    int resignStreak = 0;
    Color losing = NoColor;
    int drawStreak = 0;  // half-moves in a row with a score within the draw margin
};

}  // namespace match

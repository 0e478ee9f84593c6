#include "tools/match/score_adjudication.h"

#include <cstdlib>

namespace match {

std::optional<Verdict> ScoreAdjudicator::afterMove(Color mover, std::optional<int> score,
                                                   int plies) {
    Color lost = NoColor;
    if (score && *score <= -resign.score) lost = mover;
    if (score && *score >= resign.score) lost = ~mover;
    resignStreak = lost != NoColor && lost == losing ? resignStreak + 1 : lost != NoColor;
    losing = lost;
    drawStreak = score && std::abs(*score) <= draw.score ? drawStreak + 1 : 0;

    if (resign.moveCount > 0 && resignStreak >= 2 * resign.moveCount)
        return losing == White ? Verdict{Result::BlackWins, Termination::Adjudication,
                                         "Black wins by adjudication"}
                               : Verdict{Result::WhiteWins, Termination::Adjudication,
                                         "White wins by adjudication"};
    if (draw.moveCount > 0 && plies / 2 >= draw.moveNumber && drawStreak >= 2 * draw.moveCount)
        return Verdict{Result::Draw, Termination::Adjudication, "Draw by adjudication"};
    return std::nullopt;
}

}  // namespace match

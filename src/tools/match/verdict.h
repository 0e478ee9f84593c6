// How a game ended: its result, the kind of ending (the PGN Termination tag, and for faults the
// count it goes to) and the reason in words.
#pragma once

#include <string>

namespace match {

enum class Result { None, WhiteWins, BlackWins, Draw };

enum class Termination {
    Normal,        // mate, stalemate, repetition, fifty moves, insufficient material
    Adjudication,  // by the engines' scores
    IllegalMove,
    Crash,
    Stall,
    TimeForfeit,
    Aborted,  // the match stopped while the game ran; it is not scored
};

struct Verdict {
    Result result = Result::None;
    Termination termination = Termination::Normal;
    std::string reason;  // "White mates", "Draw by threefold repetition", ...
};

// "1-0", "0-1", "1/2-1/2" or "*".
std::string resultText(Result result);
// The PGN Termination tag value.
std::string terminationText(Termination termination);

}  // namespace match

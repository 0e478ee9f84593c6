#include "tools/match/verdict.h"

namespace match {

std::string resultText(Result result) {
    switch (result) {
        case Result::WhiteWins:
            return "1-0";
        case Result::BlackWins:
            return "0-1";
        case Result::Draw:
            return "1/2-1/2";
        case Result::None:
            break;
    }
    return "*";
}

std::string terminationText(Termination termination) {
    switch (termination) {
        case Termination::Normal:
            return "normal";
        case Termination::Adjudication:
            return "adjudication";
        case Termination::IllegalMove:
            return "illegal move";
        case Termination::Crash:
            return "abandoned";
        case Termination::Stall:
            return "stalled connection";
        case Termination::TimeForfeit:
            return "time forfeit";
        case Termination::Aborted:
            break;
    }
    return "unterminated";
}

}  // namespace match

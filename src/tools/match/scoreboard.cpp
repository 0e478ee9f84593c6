#include "tools/match/scoreboard.h"

#include <cmath>
#include <cstdio>

namespace match {

namespace {

std::string format(const char* pattern, double value) {
    if (!std::isfinite(value)) return value > 0 ? "inf" : "-inf";
    if (value == 0) value = 0;  // no "-0.0"
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

const char* decisionText(SprtDecision decision) {
    switch (decision) {
        case SprtDecision::AcceptH0:
            return "H0 accepted";
        case SprtDecision::AcceptH1:
            return "H1 accepted";
        case SprtDecision::Continue:
            break;
    }
    return "no decision yet";
}

}  // namespace

Scoreboard::Scoreboard(std::vector<std::string> names, std::vector<Pairing> pairs)
    : names(std::move(names)), pairs(std::move(pairs)) {
    tallies.resize(this->pairs.size());
    pentanomials.resize(this->pairs.size());
    unpaired.resize(this->pairs.size());
    faultCounts.resize(this->names.size());
}

void Scoreboard::add(const ScheduledGame& game, const Verdict& verdict) {
    if (verdict.result == Result::None) return;
    bool firstIsWhite = game.white == pairs[game.pair].first;
    int halfPoints = verdict.result == Result::Draw                          ? 1
                     : (verdict.result == Result::WhiteWins) == firstIsWhite ? 2
                                                                             : 0;
    Tally& tally = tallies[game.pair];
    (halfPoints == 2 ? tally.wins : halfPoints == 1 ? tally.draws : tally.losses)++;

    std::map<int, int>& waiting = unpaired[game.pair];
    auto partner = waiting.find(game.opening);
    if (partner == waiting.end()) {
        waiting[game.opening] = halfPoints;
    } else {
        pentanomials[game.pair].counts[partner->second + halfPoints]++;
        waiting.erase(partner);
    }

    if (verdict.result == Result::Draw) return;
    FaultCounts& loser = faultCounts[verdict.result == Result::WhiteWins ? game.black : game.white];
    switch (verdict.termination) {
        case Termination::IllegalMove:
            loser.illegalMoves++;
            break;
        case Termination::Crash:
            loser.crashes++;
            break;
        case Termination::Stall:
            loser.stalls++;
            break;
        case Termination::TimeForfeit:
            loser.timeForfeits++;
            break;
        default:
            break;
    }
}

std::string Scoreboard::pairLine(int pair) const {
    const Tally& t = tallies[pair];
    std::string counts;
    for (int count : pentanomials[pair].counts)
        counts += (counts.empty() ? "" : ", ") + std::to_string(count);
    EloEstimate e = estimateElo(pentanomials[pair]);
    return names[pairs[pair].first] + " vs " + names[pairs[pair].second] + ": " +
           std::to_string(t.games()) + " games, +" + std::to_string(t.wins) + " -" +
           std::to_string(t.losses) + " =" + std::to_string(t.draws) + ", pairs [" + counts +
           "], score " + format("%.1f%%", 100 * t.score()) + ", Elo " + format("%+.1f", e.elo) +
           " +/- " + format("%.1f", e.margin) + ", LOS " + format("%.1f%%", 100 * e.los);
}

std::string Scoreboard::summary(const std::optional<SprtSettings>& sprtSettings) const {
    std::string text =
        "Results (Elo of the first engine, 95% error bar; pairs: opening pairs scored LL, LD, "
        "DD or WL, WD, WW)\n";
    for (size_t pair = 0; pair < pairs.size(); pair++) text += "  " + pairLine(int(pair)) + "\n";
    text += "Faults (illegal moves, crashes, stalls, time forfeits)\n";
    for (size_t engine = 0; engine < names.size(); engine++) {
        const FaultCounts& f = faultCounts[engine];
        text += "  " + names[engine] + ": " + std::to_string(f.illegalMoves) + " " +
                std::to_string(f.crashes) + " " + std::to_string(f.stalls) + " " +
                std::to_string(f.timeForfeits) + "\n";
    }
    if (sprtSettings) {
        SprtState state = sprt(pentanomials[0], *sprtSettings);
        text += "SPRT elo0=" + format("%g", sprtSettings->elo0) +
                " elo1=" + format("%g", sprtSettings->elo1) +
                " alpha=" + format("%g", sprtSettings->alpha) +
                " beta=" + format("%g", sprtSettings->beta) + " (logistic Elo, pentanomial): LLR " +
                format("%.2f", state.llr) + " [" + format("%.2f", state.lower) + ", " +
                format("%.2f", state.upper) + "], " + decisionText(state.decision) + "\n";
    }
    return text;
}

}  // namespace match

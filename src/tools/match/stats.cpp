#include "tools/match/stats.h"

#include <cmath>
#include <limits>

namespace match {

namespace {

// Per-game variance of the score around its mean.
double scoreVariance(const Tally& t) {
    double s = t.score(), n = t.games();
    return (t.wins * (1 - s) * (1 - s) + t.draws * (0.5 - s) * (0.5 - s) + t.losses * s * s) / n;
}

}  // namespace

double eloFromScore(double score) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    if (score <= 0) return -INF;
    if (score >= 1) return INF;
    return -400 * std::log10(1 / score - 1);
}

double scoreFromElo(double elo) { return 1 / (1 + std::pow(10, -elo / 400)); }

EloEstimate estimateElo(const Tally& tally) {
    EloEstimate estimate;
    if (tally.games() == 0) return estimate;
    double s = tally.score();
    double deviation = std::sqrt(scoreVariance(tally) / tally.games());
    constexpr double Z95 = 1.959963984540054;
    estimate.elo = eloFromScore(s);
    double low = s - Z95 * deviation, high = s + Z95 * deviation;
    estimate.margin = low > 0 && high < 1 ? (eloFromScore(high) - eloFromScore(low)) / 2
                                          : std::numeric_limits<double>::infinity();
    int decisive = tally.wins + tally.losses;
    if (decisive)
        estimate.los =
            0.5 * (1 + std::erf((tally.wins - tally.losses) / std::sqrt(2.0 * decisive)));
    return estimate;
}

SprtState sprt(const Tally& tally, const SprtSettings& settings) {
    SprtState state;
    state.lower = std::log(settings.beta / (1 - settings.alpha));
    state.upper = std::log((1 - settings.beta) / settings.alpha);
    if (tally.games() == 0) return state;
    double variance = scoreVariance(tally);
    // All draws, or all one result, says nothing about the spread yet.
    if (variance <= 0) return state;
    double s0 = scoreFromElo(settings.elo0), s1 = scoreFromElo(settings.elo1);
    state.llr = tally.games() * (s1 - s0) * (2 * tally.score() - s0 - s1) / (2 * variance);
    if (state.llr >= state.upper) state.decision = SprtDecision::AcceptH1;
    if (state.llr <= state.lower) state.decision = SprtDecision::AcceptH0;
    return state;
}

}  // namespace match

#include "tools/match/stats.h"

#include <cmath>
#include <limits>

namespace match {

namespace {

// A pair of k/2 points scores k/4 a game.
double pairScore(int k) { return k / 4.0; }

}  // namespace

double Pentanomial::score() const {
    if (!pairs()) return 0.5;
    double sum = 0;
    for (int k = 0; k < 5; k++) sum += counts[k] * pairScore(k);
    return sum / pairs();
}

double Pentanomial::variance() const {
    if (!pairs()) return 0;
    double mean = score(), sum = 0;
    for (int k = 0; k < 5; k++) sum += counts[k] * (pairScore(k) - mean) * (pairScore(k) - mean);
    return sum / pairs();
}

double eloFromScore(double score) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    if (score <= 0) return -INF;
    if (score >= 1) return INF;
    return -400 * std::log10(1 / score - 1);
}

double scoreFromElo(double elo) { return 1 / (1 + std::pow(10, -elo / 400)); }

EloEstimate estimateElo(const Pentanomial& pairs) {
    EloEstimate estimate;
    if (pairs.pairs() == 0) return estimate;
    double s = pairs.score();
    double deviation = std::sqrt(pairs.variance() / pairs.pairs());
    constexpr double Z95 = 1.959963984540054;
    estimate.elo = eloFromScore(s);
    double low = s - Z95 * deviation, high = s + Z95 * deviation;
    estimate.margin = low > 0 && high < 1 ? (eloFromScore(high) - eloFromScore(low)) / 2
                                          : std::numeric_limits<double>::infinity();
    // The normal approximation of P(true score > 1/2); a spread of zero leaves it certain.
    if (deviation > 0)
        estimate.los = 0.5 * (1 + std::erf((s - 0.5) / (deviation * std::sqrt(2.0))));
    else if (s != 0.5)
        estimate.los = s > 0.5 ? 1 : 0;
    return estimate;
}

SprtState sprt(const Pentanomial& pairs, const SprtSettings& settings) {
    SprtState state;
    state.lower = std::log(settings.beta / (1 - settings.alpha));
    state.upper = std::log((1 - settings.beta) / settings.alpha);
    double variance = pairs.variance();
    // No pair yet, or every pair alike, says nothing about the spread.
    if (variance <= 0) return state;
    double s0 = scoreFromElo(settings.elo0), s1 = scoreFromElo(settings.elo1);
    state.llr = pairs.pairs() * (s1 - s0) * (2 * pairs.score() - s0 - s1) / (2 * variance);
    if (state.llr >= state.upper) state.decision = SprtDecision::AcceptH1;
    if (state.llr <= state.lower) state.decision = SprtDecision::AcceptH0;
    return state;
}

}  // namespace match

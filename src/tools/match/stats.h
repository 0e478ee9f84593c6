// Match statistics from win, draw and loss counts: the Elo difference with its 95% error bar,
// the likelihood of superiority, and a sequential probability ratio test.
//
// The error bar and the SPRT both use the trinomial model: each game scores 1, 1/2 or 0 with the
// observed frequencies, so the mean score s and its per-game variance come straight from W, D,
// L. Elo is the logistic model, s = 1 / (1 + 10^(-elo/400)). The SPRT is the generalized SPRT
// with the normal approximation of the log-likelihood ratio,
//     LLR = N (s1 - s0) (2 s - s0 - s1) / (2 var),
// where s0 and s1 are the scores of the hypotheses elo0 and elo1; it accepts H1 at
// ln((1 - beta) / alpha) and H0 at ln(beta / (1 - alpha)).
#pragma once

namespace match {

struct Tally {
    int wins = 0, draws = 0, losses = 0;
    int games() const { return wins + draws + losses; }
    double score() const { return games() ? (wins + 0.5 * draws) / games() : 0.5; }
};

double eloFromScore(double score);  // infinite at 0 and 1
double scoreFromElo(double elo);

struct EloEstimate {
    double elo = 0;
    double margin = 0;  // half the width of the 95% interval; infinite when it reaches 0 or 1
    double los = 0.5;   // likelihood of superiority, from wins and losses only
};

EloEstimate estimateElo(const Tally& tally);

struct SprtSettings {
    double elo0 = 0, elo1 = 5, alpha = 0.05, beta = 0.05;
};

enum class SprtDecision { Continue, AcceptH0, AcceptH1 };

struct SprtState {
    double llr = 0, lower = 0, upper = 0;
    SprtDecision decision = SprtDecision::Continue;
};

SprtState sprt(const Tally& tally, const SprtSettings& settings);

}  // namespace match

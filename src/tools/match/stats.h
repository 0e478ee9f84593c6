// Match statistics: the Elo difference with its 95% error bar, the likelihood of superiority,
// and a sequential probability ratio test.
//
// The openings are unbalanced and each is played twice with the colours reversed, so the two
// games of an opening are strongly correlated (often each side wins with White). Counting them
// as independent games overstates the variance of the score, so all three numbers use the
// pentanomial model instead: each opening pair is one sample scoring 0, 1/2, 1, 3/2 or 2 points
// for the first engine (LL, LD, DD or WL, WD, WW). The mean score per game s is the points of the
// complete pairs over their games, and var is the variance over pairs of the pair's score per
// game (its points / 2); the standard error of s is sqrt(var / pairs), and the likelihood of
// superiority is the normal approximation of P(true score > 1/2) with that error.
//
// Elo is the logistic model, s = 1 / (1 + 10^(-elo/400)). The SPRT is the generalized SPRT with
// the normal approximation of the log-likelihood ratio,
//     LLR = pairs (s1 - s0) (2 s - s0 - s1) / (2 var),
// where s0 and s1 are the scores of the hypotheses elo0 and elo1; it accepts H1 at
// ln((1 - beta) / alpha) and H0 at ln(beta / (1 - alpha)).
#pragma once

#include <array>

namespace match {

// Per-game wins, draws and losses, for the record; the statistics come from the pairs.
struct Tally {
    int wins = 0, draws = 0, losses = 0;
    int games() const { return wins + draws + losses; }
    double score() const { return games() ? (wins + 0.5 * draws) / games() : 0.5; }
};

// The opening pairs by the first engine's points in them: counts[k] pairs scored k/2 points, so
// the order is LL, LD, DD or WL, WD, WW.
struct Pentanomial {
    std::array<int, 5> counts{};
    int pairs() const { return counts[0] + counts[1] + counts[2] + counts[3] + counts[4]; }
    double score() const;     // per game; 1/2 with no pair yet
    double variance() const;  // over pairs, of the pair's score per game
};

double eloFromScore(double score);  // infinite at 0 and 1
double scoreFromElo(double elo);

struct EloEstimate {
    double elo = 0;
    double margin = 0;  // half the width of the 95% interval; infinite when it reaches 0 or 1
    double los = 0.5;   // likelihood of superiority
};

EloEstimate estimateElo(const Pentanomial& pairs);

struct SprtSettings {
    double elo0 = 0, elo1 = 5, alpha = 0.05, beta = 0.05;
};

enum class SprtDecision { Continue, AcceptH0, AcceptH1 };

struct SprtState {
    double llr = 0, lower = 0, upper = 0;
    SprtDecision decision = SprtDecision::Continue;
};

SprtState sprt(const Pentanomial& pairs, const SprtSettings& settings);

}  // namespace match

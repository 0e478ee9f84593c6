// Texel tuning of the piece-square tables: the tables are fitted so that a sigmoid of the
// static evaluation predicts the results of the games the positions come from. Everything else
// in the evaluation stays as it is; the tables stay left-right symmetric.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The fitted values: [piece type - 1][square of White's side a1..h8][0 middle game, 1 end game].
struct PieceSquareValues {
    int value[6][64][2];
};

// One labelled position, reduced to what the tables change in its evaluation.
struct TuneSample {
    float rest;         // White's evaluation less the table terms
    float mgWeight;     // the share of a middle-game table value in the evaluation
    float egWeight;     // the same for an end-game value, the end-game scale included
    float whiteScore;   // what the evaluation should predict: the result for White, 0..1
    float gameResult;   // the game's result for White
    float searchScore;  // White's score by a deeper search, in centipawns, when labelled
    uint32_t firstFeature;
    uint32_t featureCount;
};

class PsqtFit {
  public:
    // Evaluates every "FEN;result" or "FEN;result;search score" line of the file with today's
    // tables; positions the evaluation does not score in full (recognised endings) are left
    // out. Returns an error text, empty on success.
    std::string load(const std::string& path);

    size_t size() const { return samples.size(); }
    // The sigmoid's scale that best fits today's evaluation, and the error with it.
    double fitScale();
    // Targets between the game's result (weight `resultShare`) and the sigmoid of the search
    // score; every line must carry a search score unless the share is 1.
    void blendTargets(double resultShare);
    double error(const double* params) const;
    double error() const { return error(start.data()); }
    // Fits from today's tables; returns the fitted tables.
    // The prior holds each value to today's with the weight of that many positions.
    PieceSquareValues fit(int iterations, double priorPositions,
                          void (*report)(int iteration, double error));

    double scale = 0.0;

  private:
    std::vector<TuneSample> samples;
    std::vector<int16_t> features;  // +-(parameter index + 1), White's pieces positive
    std::vector<double> start;      // today's tables as parameters

    double evaluate(const TuneSample& s, const double* params) const;
};

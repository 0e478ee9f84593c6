#include "tools/tune/psqt_fit.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "core/text.h"
#include "eval/evaluator.h"

namespace {

constexpr int SQUARE_CLASSES = 32;  // a square and its left-right mirror share a value
constexpr int PARAMS = 6 * SQUARE_CLASSES * 2;

int squareClass(int whiteSideSquare) {
    int file = fileOf(whiteSideSquare);
    return rankOf(whiteSideSquare) * 4 + (file < 4 ? file : 7 - file);
}

int parameter(int type, int whiteSideSquare) {
    return (type - PAWN) * SQUARE_CLASSES + squareClass(whiteSideSquare);
}

double sigmoid(double scale, double evaluation) {
    return 1.0 / (1.0 + std::exp(-scale * evaluation));
}

}  // namespace

std::string PsqtFit::load(const std::string& path) {
    std::ifstream in(path);
    if (!in) return "cannot read " + path;
    auto board = std::make_unique<Board>();
    auto evaluator = std::make_unique<Evaluator>(*board);
    start.assign(PARAMS, 0.0);
    for (int type = PAWN; type <= KING; type++)
        for (int sq = 0; sq < 64; sq++) {
            Score s = evalTables.psq[makePiece(White, type)][sq];
            start[2 * parameter(type, sq)] = s.mg();
            start[2 * parameter(type, sq) + 1] = s.eg();
        }
    int lineNumber = 0;
    for (std::string line; readLine(in, line);) {
        lineNumber++;
        size_t split = line.find(';');
        if (split == std::string::npos || board->setFen(line.substr(0, split)) != 0)
            return path + ":" + std::to_string(lineNumber) + ": not a FEN;score line";
        if (evaluator->recognizedDraw()) continue;
        uint64_t hits = evaluator->evalCounters.hits;
        int score = evaluator->Evaluate();
        if (evaluator->evalCounters.hits != hits) {
            evaluator->clear();  // the same position with the other side to move; rare
            score = evaluator->Evaluate();
        }
        TuneSample s;
        size_t second = line.find(';', split + 1);
        char* end = nullptr;
        s.gameResult = s.whiteScore = std::strtof(line.c_str() + split + 1, &end);
        s.searchScore =
            second == std::string::npos ? 0 : std::strtof(line.c_str() + second + 1, &end);
        if (end == line.c_str() + split + 1 || *end)
            return path + ":" + std::to_string(lineNumber) + ": not a FEN;result line";
        s.mgWeight = float(evaluator->lastPhase() / 64.0);
        s.egWeight = float((64 - evaluator->lastPhase()) * evaluator->lastScale() / (128.0 * 64.0));
        s.firstFeature = uint32_t(features.size());
        double tables = 0;
        for (Bitboard b = board->occupiedBB; b;) {
            int sq = popLsb(b), piece = board->squares[sq];
            Color c = pieceColor(piece);
            int p = parameter(typeOf(piece), c == White ? sq : sq ^ 56);
            int sign = c == White ? 1 : -1;
            features.push_back(int16_t(sign * (p + 1)));
            tables += sign * (s.mgWeight * start[2 * p] + s.egWeight * start[2 * p + 1]);
        }
        s.featureCount = uint32_t(features.size()) - s.firstFeature;
        s.rest = float((board->sideToMove == White ? score : -score) - tables);
        samples.push_back(s);
    }
    return samples.empty() ? path + ": no positions" : "";
}

double PsqtFit::evaluate(const TuneSample& s, const double* params) const {
    double mg = 0, eg = 0;
    for (size_t f = s.firstFeature; f < s.firstFeature + s.featureCount; f++) {
        int p = std::abs(features[f]) - 1;
        double sign = features[f] > 0 ? 1 : -1;
        mg += sign * params[2 * p];
        eg += sign * params[2 * p + 1];
    }
    return s.rest + s.mgWeight * mg + s.egWeight * eg;
}

double PsqtFit::error(const double* params) const {
    double sum = 0;
    for (const TuneSample& s : samples) {
        double miss = s.whiteScore - sigmoid(scale, evaluate(s, params));
        sum += miss * miss;
    }
    return sum / double(samples.size());
}

void PsqtFit::blendTargets(double resultShare) {
    for (TuneSample& s : samples)
        s.whiteScore =
            float(resultShare * s.gameResult + (1 - resultShare) * sigmoid(scale, s.searchScore));
}

// Golden-section search over the scale; the error is unimodal in it.
double PsqtFit::fitScale() {
    double low = 0.0005, high = 0.02;
    const double ratio = (std::sqrt(5.0) - 1) / 2;
    for (int step = 0; step < 40; step++) {
        double a = high - ratio * (high - low), b = low + ratio * (high - low);
        scale = a;
        double errorA = error(start.data());
        scale = b;
        double errorB = error(start.data());
        (errorA < errorB ? high : low) = errorA < errorB ? b : a;
    }
    scale = (low + high) / 2;
    return error(start.data());
}

// Damped Gauss-Newton steps on each parameter by itself: the step is the error's slope over
// its curvature. A prior pulls every value towards today's with the weight of `priorPositions`
// positions, so that squares a piece seldom stands on keep about their hand-written value.
// The material values are fixed weights, so a table may not drift as a whole: after every step
// each table is shifted back to today's average over the squares its piece stands on.
PieceSquareValues PsqtFit::fit(int iterations, double priorPositions, void (*report)(int, double)) {
    constexpr double DAMPING = 0.5;
    const double n = double(samples.size());
    const double prior = 2 * std::pow(0.25 * scale, 2) * priorPositions / n;
    std::vector<double> occupancy(PARAMS / 2);
    for (int16_t f : features) occupancy[std::abs(f) - 1]++;
    std::vector<double> params = start, slope(PARAMS), curvature(PARAMS);
    for (int iteration = 1; iteration <= iterations; iteration++) {
        std::fill(slope.begin(), slope.end(), 0.0);
        std::fill(curvature.begin(), curvature.end(), 0.0);
        for (const TuneSample& s : samples) {
            double predicted = sigmoid(scale, evaluate(s, params.data()));
            double steepness = predicted * (1 - predicted) * scale;
            double miss = 2 * (predicted - s.whiteScore) * steepness / n;
            double bend = 2 * steepness * steepness / n;
            for (size_t f = s.firstFeature; f < s.firstFeature + s.featureCount; f++) {
                int p = std::abs(features[f]) - 1;
                double signedMiss = features[f] > 0 ? miss : -miss;
                slope[2 * p] += signedMiss * s.mgWeight;
                slope[2 * p + 1] += signedMiss * s.egWeight;
                curvature[2 * p] += bend * s.mgWeight * s.mgWeight;
                curvature[2 * p + 1] += bend * s.egWeight * s.egWeight;
            }
        }
        for (int p = 0; p < PARAMS; p++)
            params[p] -=
                DAMPING * (slope[p] + prior * (params[p] - start[p])) / (curvature[p] + prior);
        for (int table = 0; table < 6; table++)
            for (int phase = 0; phase < 2; phase++) {
                double drift = 0, weight = 0;
                for (int c = 0; c < SQUARE_CLASSES; c++) {
                    int p = 2 * (table * SQUARE_CLASSES + c) + phase;
                    drift += occupancy[p / 2] * (params[p] - start[p]);
                    weight += occupancy[p / 2];
                }
                for (int c = 0; c < SQUARE_CLASSES && weight > 0; c++)
                    params[2 * (table * SQUARE_CLASSES + c) + phase] -= drift / weight;
            }
        if (report && (iteration % 10 == 0 || iteration == iterations))
            report(iteration, error(params.data()));
    }
    PieceSquareValues fitted{};
    for (int type = PAWN; type <= KING; type++)
        for (int sq = 0; sq < 64; sq++) {
            bool pawnEdge = type == PAWN && (rankOf(sq) == 0 || rankOf(sq) == 7);
            for (int phase = 0; phase < 2; phase++)
                fitted.value[type - PAWN][sq][phase] =
                    pawnEdge ? 0 : int(std::lround(params[2 * parameter(type, sq) + phase]));
        }
    return fitted;
}

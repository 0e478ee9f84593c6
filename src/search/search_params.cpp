#include "search/search_params.h"

#include <cmath>

const SearchParams SEARCH_PARAMS;

// Table B's move factor is small on purpose: ln(0.2 m) is negative below five moves, so the
// first quiet moves are reduced less than the offset alone would say.
SearchParams::SearchParams() {
    futilityMargins[0] = -1;
    for (int d = 1; d <= 6; d++) futilityMargins[d] = futilityMargin * d - futilityOffset;
    for (int d = 0; d < 64; d++) {
        for (int m = 0; m < 64; m++) {
            if (d < 3 || m < 3) {
                reductionA[d][m] = reductionB[d][m] = 0;
                continue;
            }
            reductionA[d][m] = int(std::log((tableADepthFactor + 1) * d / 10.0) * (100.0 / (tableADivisor + 1)) *
                                       std::log((tableAMoveFactor + 1) * m / 10.0) + tableAOffset);
            reductionB[d][m] = int(std::log((tableBDepthFactor + 1) * d / 10.0) * (100.0 / (tableBDivisor + 1)) *
                                       std::log((tableBMoveFactor + 1) * m / 10.0) + tableBOffset);
        }
    }
    historyBound = 1 << (historyBoundExponent + 8);
}

// The tunable integers of the search and the constants derived from them. Margins are in
// centipawns, extensions and reductions in tenths of a ply.
#pragma once

struct SearchParams {
    int pawnEndingExtension = 26;  // a capture of a piece leaves a pure pawn ending
    int checkExtension = 2;
    int singleCaptureEvasionExtension = 8;
    int singleEvasionExtension = 13;
    int twoEvasionsCaptureExtension = 5;  // two evasions, the first generated one a capture
    int twoEvasionsExtension = 7;
    int seventhRankPushExtension = 14;
    int reverseFutilityMargin = 60;  // per ply
    int futilityOffset = 15;
    int futilityMargin = 60;  // per ply
    int futilitySubtrahend = 50;
    int reductionMinDepth = 1;      // reductions only above this depth
    int quietMovesBeforeReduction = 5;
    int tableAOffset = 20, tableADepthFactor = 23, tableAMoveFactor = 24, tableADivisor = 94;
    int tableBOffset = 46, tableBDepthFactor = 9, tableBMoveFactor = 1, tableBDivisor = 85;
    int pvReductionSixteenths = 13;
    int quietPruningDepth = 15;  // quiet moves may be pruned below this depth
    int lateMovePruningBase = 2;
    int lateMovePruningQuarters = 6;
    int seeQuietPruning = 16;     // quiet move pruned when SEE < -16 * depth^2
    int seePruningEighths = 16;   // any move pruned when SEE < -(16 * 8) * depth
    int razorMargin = 250;
    int historyBoundExponent = 3;  // history is kept within +-2^(3 + 8)
    int quiescenceEqualExchangeMargin = 85;
    int quiescenceDeltaMargin = 167;

    // Derived once when the engine starts.
    int futilityMargins[7];      // index = depth; 60 * d - 15, and -1 at depth 0
    int reductionA[64][64];      // [depth][moves searched], active or non-quiet moves
    int reductionB[64][64];      // quiet moves that are not active
    int historyBound;

    SearchParams();
};

// The one set the search reads.
extern const SearchParams SEARCH_PARAMS;

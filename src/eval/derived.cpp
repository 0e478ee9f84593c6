// RecomputeDerived: the weight table turned into the lookup tables the evaluation terms read.
#include <cmath>

#include "eval/psqt.h"
#include "eval/weights.h"

EvalTables evalTables;
uint32_t weightsGeneration = 0;

namespace {

// Shapes of the per-file tables, index 0 unused, then files a..h.
struct FileShape {
    int id;
    Score (EvalTables::*table)[9];
    int mg[9];
    int eg[9];
};
// clang-format off
constexpr FileShape FILE_SHAPES[] = {
    {20, &EvalTables::doubledIsolated,       { 0,  9,  3, 26, 32, 32, 26,  3,  9}, { 0, 19, 13, 11, 10, 10, 11, 13, 19}},
    {21, &EvalTables::doubled,               { 0, 42,  3,  4,  9,  9,  4,  3, 42}, { 0, 31, 10,  8,  4,  4,  8, 10, 31}},
    {22, &EvalTables::isolatedOpposed,       { 0,  1,  8,  9,  0,  0,  9,  8,  1}, { 0,  3,  4,  7, 13, 13,  7,  4,  3}},
    {23, &EvalTables::isolated,              { 0,  2,  3,  4,  6,  6,  4,  3,  2}, { 0,  6,  7, 16, 27, 27, 16,  7,  6}},
    {24, &EvalTables::backwardOpposed,       { 0,  0,  6, 22, 13, 13, 22,  6,  0}, { 0,  2,  4,  4,  4,  4,  4,  4,  2}},
    {25, &EvalTables::backward,              { 0,  3,  0,  8, 12, 12,  8,  0,  3}, { 0,  8, 12, 15,  6,  6, 15, 12,  8}},
    {28, &EvalTables::passedFile,            { 0,  4,  4, 10, 11, 11, 10,  4,  4}, { 0, 26, 23,  5,  0,  0,  5, 23, 26}},
};
// clang-format on

// Shapes of the per-rank tables, by the rank counted from the owner's side.
constexpr int PASSED_RANK_MG[8] = {0, 0, 0, 0, 1, 3, 8, 18};
constexpr int PASSED_RANK_EG[8] = {0, 0, 3, 2, 6, 10, 17, 24};
struct RankShape {
    int id;
    int (EvalTables::*table)[8];
    int shape[8];
};
// clang-format off
constexpr RankShape RANK_SHAPES[] = {
    {53, &EvalTables::passerEnemyKingEg,      { 0,  0,  0,  0,  2,  5,  8,  9}},
    {54, &EvalTables::passerOwnKingEg,        { 0,  0,  0,  0,  2,  4,  5,  7}},
    {55, &EvalTables::passerFreePathEg,       { 0,  0,  0,  0,  5,  9, 15, 27}},
    {56, &EvalTables::passerSafeStopEg,       { 0,  0,  0,  0,  2,  5, 10, 28}},
    {57, &EvalTables::passerDefendedStopEg,   { 0,  0,  0,  0,  0,  2,  3,  5}},
    {58, &EvalTables::passerDefendedPathEg,   { 0,  0,  0,  0,  1,  4,  7, 18}},
    {61, &EvalTables::protectedPasserEg,      { 0,  0,  0,  0,  4,  6,  8, 10}},
    {62, &EvalTables::connectedPassersEg,     { 0,  0,  0,  0,  0,  3, 10, 12}},
};
// clang-format on

// Threats by the victim's type (none, pawn, knight, bishop, rook, queen): multiples of the
// middle-game and end-game halves of ids 36 and 38.
constexpr int THREAT_BY_MINOR[6][2] = {{0, 0}, {0, 2}, {3, 3}, {3, 3}, {5, 8}, {3, 9}};
constexpr int THREAT_BY_ROOK[6][2] = {{0, 0}, {0, 2}, {3, 4}, {3, 4}, {0, 3}, {3, 4}};

Score pair(int id) { return weights.pairs[id]; }
int mgOf(int id) { return weights.pairs[id].mg(); }
int egOf(int id) { return weights.pairs[id].eg(); }

// Mobility curve: w * (ln(moves + 1) - offset), truncated, for both halves.
template <int N>
void fillCurve(Score (&curve)[N], int id, double offset, int distinctEntries) {
    for (int k = 0; k < N; k++) {
        double shape = std::log(double(k < distinctEntries ? k : distinctEntries - 1) + 1) - offset;
        curve[k] = {int(mgOf(id) * shape), int(egOf(id) * shape)};
    }
}

void computeMaterial(EvalTables& t) {
    constexpr int VALUE_ID[7] = {0, 0, 2, 3, 4, 5, 1};  // by piece type
    for (int type = PAWN; type <= KING; type++) {
        t.pieceValue[type] = pair(VALUE_ID[type]);
        t.pieceValueMg[type] = mgOf(VALUE_ID[type]);
    }
    t.exchangeValue[0] = t.exchangeValue[13] = 0;
    for (int type = PAWN; type <= KING; type++) {
        int value = t.pieceValueMg[type == BISHOP ? KNIGHT : type];
        t.exchangeValue[makePiece(White, type)] = t.exchangeValue[makePiece(Black, type)] = value;
    }
    t.fullNonPawnMaterial =
        t.pieceValueMg[QUEEN] +
        2 * (t.pieceValueMg[ROOK] + t.pieceValueMg[BISHOP] + t.pieceValueMg[KNIGHT]);
    t.attackingMaterial = 2 * t.pieceValueMg[ROOK] + t.pieceValueMg[BISHOP] + 1;
    t.bishopPair = pair(6);
    t.rookPairEg = -egOf(7);
    t.knightPerPawn = pair(11);
    t.rookPerMissingPawnEg = egOf(12);
    t.oddBishopPawnEg = egOf(13);
    t.tempo = pair(14);
}

void computeCurves(EvalTables& t) {
    fillCurve(t.kingMobility, 15, 1.5, 9);
    fillCurve(t.knightMobility, 16, 1.5, 9);
    fillCurve(t.bishopMobility, 17, 1.7, 14);
    fillCurve(t.rookMobility, 18, 1.7, 15);
    fillCurve(t.queenMobility, 19, 1.7, 15);  // flat from 14 moves on

    for (int i = 0; i < KING_ATTACK_CURVE_SIZE; i++) {
        double x = i;
        int p = int(((x * 0.0184 * x * x - x * 0.1615 * x) + x * 3.5664) - 37.096);
        t.kingAttackCurve[i] = p * mgOf(64) / 32;
    }
}

void computePawnTables(EvalTables& t) {
    for (const FileShape& shape : FILE_SHAPES) {
        Score* table = t.*shape.table;
        int sign = shape.id == 28 ? 1 : -1;
        for (int f = 0; f < 9; f++)
            table[f] = {sign * (shape.mg[f] * mgOf(shape.id) / 8),
                        sign * (shape.eg[f] * egOf(shape.id) / 8)};
    }
    for (int r = 0; r < 8; r++)
        t.passedRank[r] = {PASSED_RANK_MG[r] * mgOf(52), PASSED_RANK_EG[r] * egOf(52)};
    for (const RankShape& shape : RANK_SHAPES) {
        int sign = shape.id == 54 ? -1 : 1;
        for (int r = 0; r < 8; r++) (t.*shape.table)[r] = sign * shape.shape[r] * egOf(shape.id);
    }
    t.pawnsOnBothWings = pair(8);
    t.supported = pair(9);
    t.phalanx = pair(26);
    t.pawnIsland = -pair(27);
    t.candidate = pair(40);

    Score w49 = pair(49);
    t.shelter[0] = {0, 0};
    t.shelter[1] = {-3 * w49.mg(), -5 * w49.eg()};
    t.shelter[2] = {-5 * w49.mg(), -4 * w49.eg()};
    t.shelter[3] = {-7 * w49.mg(), -3 * w49.eg()};
    t.pawnlessFlankEg = -7 * w49.eg();
    for (int& storm : t.stormMg) storm = 0;
    t.stormMg[2] = mgOf(63);
    t.stormMg[3] = mgOf(66);
    t.stormMg[4] = mgOf(65);
}

void computePieceTerms(EvalTables& t) {
    t.knightOutpost = pair(29);
    t.rookOpenFile = pair(30);
    t.rookHalfOpenFile = pair(31);
    t.kingProtector = pair(32);
    t.longDiagonalBishop = pair(33);
    t.bishopPawns = pair(34);
    t.rookOnQueenFile = pair(39);
    t.connectedRooks = pair(43);
    t.queenOnSeventh = pair(45);
    t.bishopOutpost = pair(46);
    t.supportedOutpost = pair(47);
    t.minorBehindPawn = -pair(73);
    t.rookOnSeventh = pair(74);

    t.rookBehindPasser = pair(42);
    t.blockedPasserEg = -egOf(59);
    t.enemyRookBehindPasserEg = -egOf(60);

    for (int victim = 0; victim < 6; victim++) {
        t.threatByMinor[victim] = {THREAT_BY_MINOR[victim][0] * mgOf(36),
                                   THREAT_BY_MINOR[victim][1] * egOf(36)};
        t.threatByRook[victim] = {THREAT_BY_ROOK[victim][0] * mgOf(38),
                                  THREAT_BY_ROOK[victim][1] * egOf(38)};
    }
    t.threatBySafePawn = pair(35);
    t.restricted = pair(37);
    t.weakUnopposedPawn = pair(41);
    t.threatByPawnPush = pair(44);
    t.threatByKing = pair(68);
    t.hanging = -pair(69);

    t.noQueenMg = mgOf(10);
    t.safeCheckMg = mgOf(50);
    t.kingZoneAttackMg = mgOf(51);
    t.kingPawnDistanceEg = egOf(48);

    t.blockedCentrePawnMg = -mgOf(67);
    t.trappedRookMg = -10 * mgOf(70);
    t.trappedBishopMg = -10 * mgOf(71);
    t.trappedBishopFarMg = -7 * mgOf(71);
    t.trappedKnight = {-5 * mgOf(72), -5 * egOf(72)};
}

}  // namespace

void RecomputeDerived() {
    EvalTables& t = evalTables;
    computeMaterial(t);
    computeCurves(t);
    computePawnTables(t);
    computePieceTerms(t);
    buildPieceSquareTables(t);
    weightsGeneration++;
}

namespace {
// The tables are ready before main, whatever the start-up code does.
[[maybe_unused]] const bool derivedReady = (RecomputeDerived(), true);
}  // namespace

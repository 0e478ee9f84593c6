// The weight table, its defaults and range descriptors, and the "setweight" command.
#include "eval/weights.h"

#include <sstream>

namespace {

// mg or eg -1: that half is not used. base and bits bound what setweight accepts:
// -1 .. base - 1 + 2^bits.
struct WeightDefault {
    int mg, eg, base, bits;
};

// Which term reads each id: material (material.cpp), pawns (pawns.cpp), pieces (pieces.cpp),
// passers (passers.cpp), threats (threats.cpp), king attack and king activity (king_safety.cpp),
// patterns (patterns.cpp), scaling (scaling.cpp) and the driver (evaluator.cpp).
// clang-format off
constexpr WeightDefault DEFAULTS[WEIGHT_COUNT] = {
    //   mg     eg  base bits       id  read by
    {  101,   113,    0,  7},  //  0  material: pawn value; passers: unstoppable pawn
    {32000, 32000,    0, 15},  //  1  material: king value (exchanges only)
    {  407,   406,  300,  8},  //  2  material: knight value
    {  407,   432,  300,  8},  //  3  material: bishop value
    {  548,   716,  450,  9},  //  4  material: rook value
    { 1310,  1240,  900, 10},  //  5  material: queen value; passers: unstoppable pawn
    {   51,    76,   50,  6},  //  6  material: bishop pair
    {   -1,    15,    0,  4},  //  7  material: second rook (penalty)
    {    1,    22,    0,  5},  //  8  pawns: pawns on both wings
    {   13,     7,    0,  5},  //  9  pawns: pawn supported by a pawn
    {  139,    -1,    0,  8},  // 10  king attack: attacker without a queen (units off)
    {   10,     9,    0,  4},  // 11  material: knight per own pawn above five
    {   -1,    15,    0,  4},  // 12  material: rook per own pawn below five
    {   -1,    56,    0,  6},  // 13  scaling: pawn off the colour of same-coloured bishops
    {   31,    31,    0,  5},  // 14  driver: side to move
    {   45,    21,    0,  7},  // 15  king activity: king mobility curve
    {   49,    84,    0,  7},  // 16  pieces: knight mobility curve
    {   45,    81,    0,  7},  // 17  pieces: bishop mobility curve
    {   25,    80,    0,  7},  // 18  pieces: rook mobility curve
    {   44,   123,    0,  7},  // 19  pieces: queen mobility curve
    {    9,    38,    0,  6},  // 20  pawns: doubled and isolated, by file
    {   25,    19,    0,  6},  // 21  pawns: doubled, by file
    {    7,    31,    0,  5},  // 22  pawns: isolated and opposed, by file
    {   18,    17,    0,  5},  // 23  pawns: isolated, by file
    {   10,    20,    0,  5},  // 24  pawns: backward and opposed, by file
    {   30,    21,    0,  6},  // 25  pawns: backward, by file
    {    8,    14,    0,  4},  // 26  pawns: phalanx (pawn beside a pawn)
    {    7,    11,    0,  4},  // 27  pawns: each pawn island after the first (penalty)
    {    4,     3,    0,  4},  // 28  pawns: passed pawn, by file
    {   30,     1,    0,  5},  // 29  pieces: knight outpost
    {   31,    24,    0,  5},  // 30  pieces: rook on an open file
    {   10,    19,    0,  5},  // 31  pieces: rook on a half-open file
    {    2,     2,    0,  5},  // 32  pieces: minor piece per square from its king (penalty)
    {   27,    20,    0,  5},  // 33  pieces: bishop on a long diagonal seeing the centre
    {    6,     7,    0,  5},  // 34  pieces: own pawn on the bishop's colour (penalty)
    {   96,    36,    0,  7},  // 35  threats: piece attacked by a safe pawn
    {    5,     8,    0,  4},  // 36  threats: by a minor piece, by victim
    {    5,     7,    0,  4},  // 37  threats: restricted enemy squares
    {   10,     9,    0,  4},  // 38  threats: by a rook, by victim
    {    7,     7,    0,  4},  // 39  pieces: rook on a queen's file
    {    4,    31,    0,  5},  // 40  pawns: candidate passed pawn
    {    7,    27,    0,  6},  // 41  threats: weak unopposed enemy pawn against rooks or queens
    {    2,    50,    0,  6},  // 42  passers: own rook behind a passed pawn
    {    9,     9,    0,  5},  // 43  pieces: rook protecting a rook
    {   20,    17,    0,  5},  // 44  threats: safe pawn push attacks a piece
    {   19,    24,    0,  5},  // 45  pieces: queen on the seventh rank
    {   21,     9,    0,  5},  // 46  pieces: bishop outpost
    {   25,    10,    0,  5},  // 47  pieces: outpost supported by a pawn
    {   -1,     7,    0,  5},  // 48  king activity: per square from the nearest own pawn
    {   10,     7,    0,  5},  // 49  pawns: shield pawn advanced/missing; king activity: pawnless flank
    {   32,    -1,    0,  6},  // 50  king attack: safe check
    {    8,    -1,    0,  5},  // 51  king attack: attack next to the king or on a weak zone square
    {   12,    11,    0,  5},  // 52  pawns: passed pawn, by rank
    {   -1,     6,    0,  4},  // 53  passers: enemy king distance, by rank
    {   -1,     5,    0,  4},  // 54  passers: own king distance, by rank (penalty)
    {   -1,    14,    0,  4},  // 55  passers: whole path safe, by rank
    {   -1,     9,    0,  4},  // 56  passers: stop square safe, by rank
    {   -1,     4,    0,  4},  // 57  passers: stop square defended, by rank
    {   -1,    11,    0,  4},  // 58  passers: whole path defended, by rank
    {   -1,    56,    0,  6},  // 59  passers: blocked by an enemy piece (penalty)
    {   -1,    30,    0,  6},  // 60  passers: enemy rook behind (penalty)
    {   -1,     5,    0,  4},  // 61  pawns: passed pawn supported by a pawn, by rank
    {   -1,     5,    0,  4},  // 62  pawns: passed pawn beside another, by rank
    {   27,    -1,    0,  5},  // 63  pawns: storming pawn on the third rank
    {   35,    -1,    0,  6},  // 64  king attack: king-attack curve
    {    5,    -1,    0,  4},  // 65  pawns: storming pawn on the fifth rank
    {   10,    -1,    0,  4},  // 66  pawns: storming pawn on the fourth rank
    {   48,    -1,    0,  7},  // 67  patterns: blocked d2/e2 pawn
    {    1,    14,    0,  6},  // 68  threats: weak piece attacked by the king
    {   36,    22,    0,  6},  // 69  threats: hanging piece (penalty)
    {   11,    -1,   10,  4},  // 70  patterns: rook boxed in by its king
    {   14,    -1,   10,  4},  // 71  patterns: bishop trapped on a7/h7 or a6/h6
    {   11,    17,   10,  4},  // 72  patterns: knight trapped in an enemy corner
    {   16,     4,    0,  5},  // 73  pieces: minor piece behind a pawn (penalty to the enemy)
    {   11,    44,    0,  6},  // 74  pieces: rook on the seventh rank
};
// clang-format on

const char* const USAGE =
    "Usage: setweight name <name> values <mg eg> [-q]\n"
    "       setweight id <id> values <mg eg> [-q]\n"
    "       setweight default";

// Stream extraction of a leading decimal integer, the fallback when there is none.
int parseOr(const std::string& text, int fallback) {
    std::istringstream in(text);
    int value;
    return in >> value ? value : fallback;
}

}  // namespace

constinit WeightTable weights = [] {
    WeightTable table{};
    for (int id = 0; id < WEIGHT_COUNT; id++) table.pairs[id] = {DEFAULTS[id].mg, DEFAULTS[id].eg};
    return table;
}();

int maxWeight(int id) { return DEFAULTS[id].base - 1 + (1 << DEFAULTS[id].bits); }

void ResetWeights() {
    for (int id = 0; id < WEIGHT_COUNT; id++)
        weights.pairs[id] = {DEFAULTS[id].mg, DEFAULTS[id].eg};
}

std::string SetWeightCommand(const std::vector<std::string>& tokens) {
    if (tokens.size() >= 2 && tokens[1] == "default") {
        ResetWeights();
        RecomputeDerived();
        return "weights are resetted to defaults";
    }
    if (tokens.size() < 5 || (tokens[1] != "id" && tokens[1] != "name") ||
        (tokens[3] != "value" && tokens[3] != "values"))
        return USAGE;

    // No weight has a name, so a name never resolves to an id.
    int id = tokens[1] == "id" ? parseOr(tokens[2], WEIGHT_COUNT) : WEIGHT_COUNT;
    int mg = parseOr(tokens.at(4), -1);
    int eg = parseOr(tokens.at(5), -1);
    if (id < 0 || id >= WEIGHT_COUNT) return "Incorrect weight id: (" + tokens[2] + ")";
    if (id == 0 || id == 1) return "";  // pawn and king values anchor the scale

    int limit = maxWeight(id);
    if (mg > limit) mg = -2;
    if (eg > limit) eg = -2;
    if (mg < -1 || eg < -1)
        return "Incorrect weight pair (" + tokens[4] + ", " + tokens[5] +
               ") ---> valid range -1 .. " + std::to_string((1 << DEFAULTS[id].bits) - 1) + ")";
    weights.pairs[id] = {mg, eg};
    RecomputeDerived();
    return "";
}

// Endgame classification: a name for every material configuration of at most five men that
// the evaluation and the search know something about. Both colour orientations of a
// configuration share one id.
#pragma once

#include <cstdint>
#include <string_view>

struct ZobristKeys;

enum EndGameId : int32_t {
    UNKNOWN, KK, KNK, KBK, KRK, KQK, KPK, KNKN, KPKP, KBKN, KBKB, KNNK, KBNK, KBBK, KRKP,
    KRKN, KRKB, KRKR, KBKP, KNKP, KBPK, KQKP, KQKR, KQKQ, KNNKN, KNNKB, KBPKP, KBNKN, KBNKB,
    KBBKN, KBBKB, KNNKR, KBNKR, KBBKR, KRNKR, KRBKR, KRPKR, KBPPK, KPPKP, KPPKN, KPPKB,
    ENDGAME_ID_COUNT
};

extern const std::string_view ENDGAME_NAMES[ENDGAME_ID_COUNT];

// Material key of a configuration given by its piece counts per code (1..12): the i-th piece
// of a code contributes the piece-square key of square number i.
uint64_t materialKeyOf(const ZobristKeys& keys, const int counts[13]);

// Ordered map from material key to id, built once per Board from the names. It never grows
// while searching: a key it does not hold is UNKNOWN.
class EndgameMap {
public:
    explicit EndgameMap(const ZobristKeys& keys);
    EndGameId lookup(uint64_t materialKey) const;
    int size() const { return count; }

private:
    struct Entry {
        uint64_t key;
        EndGameId id;
    };
    void insert(uint64_t key, EndGameId id);
    Entry entries[2 * ENDGAME_ID_COUNT];
    int count = 0;
};

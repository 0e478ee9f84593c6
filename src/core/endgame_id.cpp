#include "core/endgame_id.h"

#include <algorithm>
#include <string>

#include "core/types.h"
#include "core/zobrist.h"

const std::string_view ENDGAME_NAMES[ENDGAME_ID_COUNT] = {
    "UNKNOWN", "KK",    "KNK",   "KBK",   "KRK",   "KQK",   "KPK",   "KNKN",  "KPKP",
    "KBKN",    "KBKB",  "KNNK",  "KBNK",  "KBBK",  "KRKP",  "KRKN",  "KRKB",  "KRKR",
    "KBKP",    "KNKP",  "KBPK",  "KQKP",  "KQKR",  "KQKQ",  "KNNKN", "KNNKB", "KBPKP",
    "KBNKN",   "KBNKB", "KBBKN", "KBBKB", "KNNKR", "KBNKR", "KBBKR", "KRNKR", "KRBKR",
    "KRPKR",   "KBPPK", "KPPKP", "KPPKN", "KPPKB"};

uint64_t materialKeyOf(const ZobristKeys& keys, const int counts[13]) {
    uint64_t key = 0;
    for (int piece = 1; piece <= 12; piece++)
        for (int i = 1; i <= counts[piece]; i++) key ^= keys.pieceKey[i][piece];
    return key;
}

namespace {

// Counts of a name such as "KRKP": the first part is White's men, the second Black's.
uint64_t keyOfName(const ZobristKeys& keys, std::string_view name) {
    int counts[13] = {};
    Color side = White;
    for (size_t i = 0; i < name.size(); i++) {
        if (name[i] == 'K' && i > 0) side = Black;
        std::string_view letters = "PNBRQK";
        counts[makePiece(side, int(letters.find(name[i])) + 1)]++;
    }
    return materialKeyOf(keys, counts);
}

}  // namespace

EndgameMap::EndgameMap(const ZobristKeys& keys) {
    for (int id = KK; id < ENDGAME_ID_COUNT; id++) {
        std::string_view name = ENDGAME_NAMES[id];
        size_t second = name.find('K', 1);
        std::string reversed = std::string(name.substr(second)) + std::string(name.substr(0, second));
        insert(keyOfName(keys, name), EndGameId(id));
        insert(keyOfName(keys, reversed), EndGameId(id));
    }
}

void EndgameMap::insert(uint64_t key, EndGameId id) {
    Entry* end = entries + count;
    Entry* at = std::lower_bound(entries, end, key, [](const Entry& e, uint64_t k) { return e.key < k; });
    if (at != end && at->key == key) {
        at->id = id;  // a later name overwrites an earlier one
        return;
    }
    std::move_backward(at, end, end + 1);
    *at = {key, id};
    count++;
}

EndGameId EndgameMap::lookup(uint64_t materialKey) const {
    const Entry* end = entries + count;
    const Entry* at =
        std::lower_bound(entries, end, materialKey, [](const Entry& e, uint64_t k) { return e.key < k; });
    return at != end && at->key == materialKey ? at->id : UNKNOWN;
}

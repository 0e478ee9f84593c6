#include "tools/match/schedule.h"

namespace match {

std::vector<Pairing> pairings(int engineCount, bool gauntlet) {
    std::vector<Pairing> pairs;
    for (int first = 0; first < (gauntlet ? 1 : engineCount); first++)
        for (int second = first + 1; second < engineCount; second++)
            pairs.push_back({first, second});
    return pairs;
}

std::vector<ScheduledGame> schedule(const std::vector<Pairing>& pairs, int gamesPerPair,
                                    const std::vector<std::string>& openings, int start) {
    std::vector<ScheduledGame> games;
    int openingCount = int(openings.size());
    int round = 1;
    for (int game = 0; game < gamesPerPair; game += 2) {
        int opening = game / 2;
        for (int pair = 0; pair < int(pairs.size()); pair++) {
            auto [first, second] = pairs[pair];
            std::string fen = openingCount ? openings[(start + opening) % openingCount] : "";
            games.push_back({round++, pair, opening, first, second, fen});
            if (game + 1 < gamesPerPair)
                games.push_back({round++, pair, opening, second, first, fen});
        }
    }
    return games;
}

}  // namespace match

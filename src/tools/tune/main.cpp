// morvane-tune: fits the piece-square tables to the results of played games.
//
//   morvane-tune extract POSITIONS.txt GAMES.pgn... [--skip N]
//     writes the distinct quiet positions of the games, after their first N plies (default 8),
//     one "FEN;score" line each, the score being the game's result for White (1, 0.5, 0).
//   morvane-tune label POSITIONS.txt LABELLED.txt [--depth N] [--jobs N]
//     adds to every line White's score by a search of the position (default depth 6); started
//     again on the same files, it goes on after the lines already labelled.
//   morvane-tune fit POSITIONS.txt src/eval/psqt.cpp [--iterations N] [--prior N]
//                    [--result-percent N]
//     fits the tables to the positions (default 100 iterations, each value held to today's
//     with the weight of N positions, default 1000) and rewrites the diagrams of the source.
//     The evaluation is fitted to the game's result, or with --result-percent below 100 to a
//     blend of it and the search score of labelled positions.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <unordered_set>
#include <vector>

#include "eval/weights.h"
#include "tools/tune/pgn_games.h"
#include "tools/tune/position_labels.h"
#include "tools/tune/psqt_fit.h"
#include "tools/tune/psqt_source.h"
#include "tools/tune/quiet_positions.h"

namespace {

const char* const USAGE =
    "usage: morvane-tune extract POSITIONS.txt GAMES.pgn... [--skip N]\n"
    "       morvane-tune label POSITIONS.txt LABELLED.txt [--depth N] [--jobs N]\n"
    "       morvane-tune fit POSITIONS.txt PSQT.cpp [--iterations N] [--prior N]"
    " [--result-percent N]";

// The words after the command, with one "--name value" option taken out; false when the
// option's value is missing or not a number of at least `least`.
bool takeOption(std::vector<std::string>& words, const std::string& name, int& value,
                int least = 1) {
    for (size_t i = 0; i < words.size(); i++) {
        if (words[i] != name) continue;
        if (i + 1 >= words.size()) return false;
        char* end = nullptr;
        value = int(std::strtol(words[i + 1].c_str(), &end, 10));
        bool number = !words[i + 1].empty() && !*end;
        words.erase(words.begin() + long(i), words.begin() + long(i) + 2);
        return number && value >= least;
    }
    return true;
}

int extract(const std::vector<std::string>& files, int skipPlies) {
    std::ofstream out(files[0]);
    if (!out) {
        std::cerr << "morvane-tune: cannot write " << files[0] << "\n";
        return 1;
    }
    std::unordered_set<std::string> seen;
    long games = 0, skipped = 0;
    for (size_t i = 1; i < files.size(); i++) {
        std::ifstream in(files[i]);
        if (!in) {
            std::cerr << "morvane-tune: cannot read " << files[i] << "\n";
            return 1;
        }
        skipped += readPgnGames(in, [&](const PgnGame& game) {
            games++;
            char score[16];
            std::snprintf(score, sizeof score, "%g", game.whiteScore);
            forEachQuietPosition(game, skipPlies, [&](const std::string& fen) {
                if (seen.insert(fen).second) out << fen << ';' << score << '\n';
            });
        });
    }
    std::cout << games << " games read (" << skipped << " without a result skipped), "
              << seen.size() << " distinct quiet positions written to " << files[0] << "\n";
    return 0;
}

int label(const std::vector<std::string>& files, int depth, int jobs) {
    ResetWeights();
    RecomputeDerived();
    std::string error = labelPositions(files[0], files[1], depth, jobs, [](size_t labelled) {
        std::cerr << "\r" << labelled << " positions labelled" << std::flush;
    });
    std::cerr << "\n";
    if (!error.empty()) {
        std::cerr << "morvane-tune: " << error << "\n";
        return 1;
    }
    std::cout << "every position labelled at depth " << depth << " in " << files[1] << "\n";
    return 0;
}

int fit(const std::vector<std::string>& files, int iterations, int prior, int resultPercent) {
    ResetWeights();
    RecomputeDerived();
    PsqtFit tuner;
    if (std::string error = tuner.load(files[0]); !error.empty()) {
        std::cerr << "morvane-tune: " << error << "\n";
        return 1;
    }
    double before = tuner.fitScale();
    std::cout << tuner.size() << " positions, sigmoid scale " << tuner.scale << ", error " << before
              << std::endl;
    if (resultPercent < 100) {
        tuner.blendTargets(resultPercent / 100.0);
        std::cout << "targets: " << resultPercent << "% result, the rest search score; error "
                  << tuner.error() << std::endl;
    }
    PieceSquareValues fitted = tuner.fit(iterations, prior, [](int iteration, double error) {
        std::cout << "iteration " << iteration << ": error " << error << std::endl;
    });
    if (std::string error = writeDiagrams(files[1], fitted); !error.empty()) {
        std::cerr << "morvane-tune: " << error << "\n";
        return 1;
    }
    std::cout << "tables written to " << files[1] << "\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    int skipPlies = 8, iterations = 100, prior = 1000, depth = 6, jobs = 1, resultPercent = 100;
    if (words.empty() || !takeOption(words, "--skip", skipPlies) ||
        !takeOption(words, "--iterations", iterations) || !takeOption(words, "--prior", prior) ||
        !takeOption(words, "--depth", depth) || !takeOption(words, "--jobs", jobs) ||
        !takeOption(words, "--result-percent", resultPercent, 0) || resultPercent > 100) {
        std::cerr << USAGE << "\n";
        return 2;
    }
    std::string command = words[0];
    words.erase(words.begin());
    if (command == "extract" && words.size() >= 2) return extract(words, skipPlies);
    if (command == "label" && words.size() == 2) return label(words, depth, jobs);
    if (command == "fit" && words.size() == 2) return fit(words, iterations, prior, resultPercent);
    std::cerr << USAGE << "\n";
    return 2;
}

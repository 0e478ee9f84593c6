// morvane-tune: fits the piece-square tables to the results of played games.
//
//   morvane-tune extract POSITIONS.txt GAMES.pgn... [--skip N]
//     writes the distinct quiet positions of the games, after their first N plies (default 8),
//     one "FEN;score" line each, the score being the game's result for White (1, 0.5, 0).
//   morvane-tune label POSITIONS.txt LABELLED.txt [--depth N] [--jobs N]
//     adds to every line White's score by a search of the position (default depth 6).
//   morvane-tune fit POSITIONS.txt src/eval/psqt.cpp [--iterations N] [--prior N]
//                    [--result-percent N]
//     fits the tables to the positions (default 100 iterations, each value held to today's
//     with the weight of N positions, default 1000) and rewrites the diagrams of the source.
//     The evaluation is fitted to the game's result, or with --result-percent below 100 to a
//     blend of it and the search score of labelled positions.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "core/text.h"
#include "eval/weights.h"
#include "search/quiet_search.h"
#include "tools/tune/pgn_games.h"
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

// Searches every position, `jobs` at a time, keeping each searcher's table between positions.
int label(const std::vector<std::string>& files, int depth, int jobs) {
    ResetWeights();
    RecomputeDerived();
    std::ifstream in(files[0]);
    if (!in) {
        std::cerr << "morvane-tune: cannot read " << files[0] << "\n";
        return 1;
    }
    std::vector<std::string> lines;
    for (std::string line; readLine(in, line);) lines.push_back(line);
    std::vector<int> scores(lines.size());
    std::vector<std::thread> workers;
    std::atomic<size_t> next = 0;
    for (int j = 0; j < jobs; j++)
        workers.emplace_back([&] {
            QuietSearch search;
            Board board;
            for (size_t i; (i = next++) < lines.size();) {
                std::string fen = lines[i].substr(0, lines[i].find(';'));
                std::vector<ScoredMove> best =
                    search.search("position fen " + fen, depth, 1, false);
                int score = best.empty() ? 0 : std::clamp(best[0].score, -2000, 2000);
                bool whiteMoves = fen.find(" w") != std::string::npos;
                scores[i] = whiteMoves ? score : -score;
                if (i % 10000 == 0) std::cerr << "\r" << i << " positions labelled" << std::flush;
            }
        });
    for (std::thread& w : workers) w.join();
    std::ofstream out(files[1]);
    for (size_t i = 0; i < lines.size(); i++) out << lines[i] << ';' << scores[i] << '\n';
    std::cerr << "\n";
    std::cout << lines.size() << " positions labelled at depth " << depth << " in " << files[1]
              << "\n";
    return out ? 0 : 1;
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

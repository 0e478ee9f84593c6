#include "tools/tune/position_labels.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <thread>
#include <vector>

#include "core/text.h"
#include "search/quiet_search.h"

namespace {

// Positions searched between two writes: an interruption loses at most this many searches.
constexpr size_t BLOCK = 10000;

// How many whole lines at the start of `path` label the first of `lines`, in order, after
// cutting off a last line that a stopped run left unfinished; -1 when the file labels others.
long keptLabels(const std::string& path, const std::vector<std::string>& lines) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return 0;
    const std::string text(std::istreambuf_iterator<char>(in), {});
    in.close();
    size_t kept = 0, start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string prefix = kept < lines.size() ? lines[kept] + ';' : "";
        if (prefix.empty() || text.compare(start, prefix.size(), prefix) != 0) return -1;
        kept++;
    }
    std::filesystem::resize_file(path, start);
    return long(kept);
}

int whiteScore(QuietSearch& search, const std::string& line, int depth) {
    const std::string fen = line.substr(0, line.find(';'));
    std::vector<ScoredMove> best = search.search("position fen " + fen, depth, 1, false);
    const int score = best.empty() ? 0 : std::clamp(best[0].score, -2000, 2000);
    return fen.find(" w") != std::string::npos ? score : -score;
}

}  // namespace

std::string labelPositions(const std::string& positionsPath, const std::string& labelledPath,
                           int depth, int jobs,
                           const std::function<void(size_t labelled)>& progress) {
    std::ifstream in(positionsPath);
    if (!in) return "cannot read " + positionsPath;
    std::vector<std::string> lines;
    for (std::string line; readLine(in, line);) lines.push_back(line);
    const long kept = keptLabels(labelledPath, lines);
    if (kept < 0) return labelledPath + " holds lines that do not label " + positionsPath;
    std::ofstream out(labelledPath, std::ios::app);
    if (!out) return "cannot write " + labelledPath;

    // Each searcher keeps its table from one position to the next, which is faster.
    std::vector<std::unique_ptr<QuietSearch>> searches;
    for (int j = 0; j < jobs; j++) searches.push_back(std::make_unique<QuietSearch>());
    std::vector<int> scores(BLOCK);
    for (size_t first = size_t(kept); first < lines.size(); first += BLOCK) {
        const size_t last = std::min(first + BLOCK, lines.size());
        std::atomic<size_t> next = first;
        std::vector<std::thread> workers;
        for (int j = 0; j < jobs; j++)
            workers.emplace_back([&, j] {
                for (size_t i; (i = next++) < last;)
                    scores[i - first] = whiteScore(*searches[j], lines[i], depth);
            });
        for (std::thread& w : workers) w.join();
        for (size_t i = first; i < last; i++) out << lines[i] << ';' << scores[i - first] << '\n';
        if (!out.flush()) return "cannot write " + labelledPath;
        progress(last);
    }
    return "";
}

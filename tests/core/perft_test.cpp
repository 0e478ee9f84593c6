// The move generator is proved by the published leaf counts of 125 positions.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "core/board.h"
#include "tools/perft.h"

namespace {

struct PerftCase {
    std::string fen;
    std::vector<uint64_t> counts;  // depth 1 first
};

std::vector<PerftCase> loadPerftCases() {
    std::ifstream in(std::string(MORVANE_DATA_DIR) + "/perft.epd");
    std::vector<PerftCase> cases;
    for (std::string line; std::getline(in, line);) {
        size_t at = line.find(" perft1 ");
        if (at == std::string::npos) continue;
        PerftCase c{line.substr(0, at), {}};
        std::istringstream ops(line.substr(at));
        for (std::string word, count; ops >> word >> count;) c.counts.push_back(std::stoull(count));
        cases.push_back(c);
    }
    return cases;
}

}  // namespace

// Every depth whose count is below ten million, for all positions of the published set.
TEST(Perft, PublishedCountsBelowTenMillion) {
    std::vector<PerftCase> cases = loadPerftCases();
    ASSERT_EQ(cases.size(), 126u);
    Board board;
    for (const PerftCase& c : cases) {
        ASSERT_EQ(board.setFen(c.fen), 0) << c.fen;
        for (size_t d = 0; d < c.counts.size() && c.counts[d] < 10'000'000; d++)
            EXPECT_EQ(perft(board, int(d) + 1), c.counts[d]) << c.fen << " depth " << d + 1;
        EXPECT_EQ(board.getFen().substr(0, c.fen.size() - 2), c.fen.substr(0, c.fen.size() - 2));
    }
}

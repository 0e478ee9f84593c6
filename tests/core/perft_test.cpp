// The move generator is proved by the published leaf counts of 126 positions and by the counts
// of the corner cases they lack.
#include "tools/perft.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "test_positions.h"

// Every depth whose count is below ten million; perft leaves the position as it found it.
TEST(Perft, PublishedCountsBelowTenMillion) {
    std::ifstream in(std::string(MORVANE_DATA_DIR) + "/perft.epd");
    Board board;
    int positions = 0;
    for (std::string line; std::getline(in, line); positions++) {
        const size_t at = line.find(" perft1 ");
        ASSERT_NE(at, std::string::npos) << line;
        const std::string fen = line.substr(0, at);
        ASSERT_EQ(board.setFen(fen), 0) << fen;
        std::istringstream ops(line.substr(at));
        std::string word, count;
        for (int depth = 1; ops >> word >> count && std::stoull(count) < 10'000'000; depth++)
            EXPECT_EQ(perft(board, depth), std::stoull(count)) << fen << " depth " << depth;
        EXPECT_EQ(board.getFen().substr(0, fen.size()), fen);
    }
    EXPECT_EQ(positions, 126);
}

TEST(Perft, CornerCases) {
    Board board;
    for (const auto& [fen, count] : coretest::CORNER_CASES) {
        ASSERT_EQ(board.setFen(fen), 0) << fen;
        EXPECT_EQ(perft(board, 5), count) << fen;
    }
}

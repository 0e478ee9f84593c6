// Single nodes of the search, called directly on a search thread's board.
#include <gtest/gtest.h>

#include <string>

#include "search/threads.h"

namespace {

// A worker (index 1): it never polls the clock, so a node does exactly what it is asked.
class NodeProbe : public TSearchThread {
  public:
    explicit NodeProbe(TranspositionTable& tt) : TSearchThread(1, tt) {}

    // A fresh node: the table is emptied too, so no stored result stands in for a search.
    void setPosition(const std::string& fen) {
        tt.clear();
        SearchLimits limits;
        limits.depth = 10;
        setUp("position fen " + fen, limits, 1, 0);
        nodes = 0;
        stopFlag = 0;
    }
    int search(int ply, int depth, int alpha, int beta) {
        Move pv[MAX_PLY + 1] = {};
        return alphaBeta(ply, depth, 0, alpha, beta, 1, pv);
    }
    int quiesce(int ply, int alpha, int beta) {
        Move pv[MAX_PLY + 1] = {};
        return quiescence(ply, 0, alpha, beta, pv);
    }
    using TSearchThread::evaluate;
    using TSearchThread::stopFlag;
};

class SearchNodes : public ::testing::Test {
  protected:
    SearchNodes() { tt.resize(1); }
    TranspositionTable tt;
    NodeProbe node{tt};
};

const std::string CHECKMATED = "6k1/R4ppp/8/8/8/8/5PPP/1r4K1 w - - 0 1";
const std::string MIDDLEGAME = "r2q1rk1/pp2bppp/2n1bn2/3p4/3P4/2NBBN2/PP3PPP/R2Q1RK1 w - - 4 11";
const std::string ITALIAN = "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4";

}  // namespace

// Being mated at ply p scores p - 32767 in search and quiescence, and the fifty-move rule's draw
// 0, whatever the window.
TEST_F(SearchNodes, TerminalValuesIgnoreTheWindow) {
    const int windows[][2] = {{-MATE, MATE}, {100, 101}, {-300, -299}, {-MATE, -MATE + 50}};
    for (const auto& w : windows) {
        for (int ply : {1, 7, 40}) {
            for (int depth : {0, 3}) {
                node.setPosition(CHECKMATED);
                EXPECT_EQ(node.search(ply, depth, w[0], w[1]), ply - MATE) << ply << ", " << depth;
            }
            node.setPosition(CHECKMATED);
            EXPECT_EQ(node.quiesce(ply, w[0], w[1]), ply - MATE) << ply;
        }
        node.setPosition("4k3/8/8/8/8/8/3r4/Q5K1 w - - 101 80");
        EXPECT_EQ(node.search(1, 3, w[0], w[1]), 0) << w[0] << ", " << w[1];
    }
}

// Nodes answered before any move is searched: mate-distance pruning (no score beats a mate at
// the next ply, none loses to being mated here), the stop flag (alpha, and nothing stored), and
// quiescence far from the root (the static evaluation from ply 120, from 127 even in check).
TEST_F(SearchNodes, AnsweredWithoutSearchingAMove) {
    constexpr int QUIESCENCE = -1, EVAL = MATE + 1;
    const std::string mated = "r1bqkbnr/pppp1Qpp/2n5/4p3/2B1P3/8/PPPP1PPP/RNB1K1NR b KQkq - 0 3";
    const struct {
        std::string fen;
        int ply, depth, alpha, beta;
        bool stop;
        int expected;
        uint64_t nodes;
    } cases[] = {
        {MIDDLEGAME, 5, 6, MATE - 3, MATE - 2, false, MATE - 3, 1},
        {MIDDLEGAME, 10, 6, 10 - MATE - 20, 10 - MATE, false, 10 - MATE, 1},
        {MIDDLEGAME, 1, 8, -123, 456, true, -123, 1},
        {MIDDLEGAME, 120, QUIESCENCE, -MATE, MATE, false, EVAL, 0},
        {ITALIAN, 125, QUIESCENCE, -MATE, MATE, false, EVAL, 0},
        {mated, 127, QUIESCENCE, -MATE, MATE, false, EVAL, 0},
    };
    for (const auto& c : cases) {
        node.setPosition(c.fen);
        node.stopFlag = c.stop;
        const int expected = c.expected == EVAL ? node.evaluate() : c.expected;
        EXPECT_EQ(c.depth == QUIESCENCE ? node.quiesce(c.ply, c.alpha, c.beta)
                                        : node.search(c.ply, c.depth, c.alpha, c.beta),
                  expected)
            << c.fen << " at ply " << c.ply;
        EXPECT_EQ(node.totalNodes(), c.nodes) << c.fen << " at ply " << c.ply;
        EXPECT_EQ(tt.filled(), 0u) << c.fen << " at ply " << c.ply;
    }
}

// Perft speed of the release build: leaf nodes per second with bulk counting at the last ply.
// BM_PerftAllPublished also proves every published count (all depths, up to 6) of perft.epd.
#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "core/board.h"
#include "tools/perft.h"

namespace {

void runPerft(benchmark::State& state, const char* fen, int depth) {
    static Board board;
    board.setFen(fen);
    uint64_t nodes = 0;
    for (auto _ : state) nodes += perft(board, depth);
    state.counters["nps"] = benchmark::Counter(double(nodes), benchmark::Counter::kIsRate);
}

void BM_PerftStart6(benchmark::State& state) {
    runPerft(state, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6);
}
void BM_PerftKiwipete5(benchmark::State& state) {
    runPerft(state, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 5);
}

void BM_PerftAllPublished(benchmark::State& state) {
    static Board board;
    std::ifstream in(std::string(MORVANE_DATA_DIR) + "/perft.epd");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    uint64_t nodes = 0;
    for (auto _ : state) {
        for (const std::string& line : lines) {
            size_t at = line.find(" perft1 ");
            board.setFen(line.substr(0, at));
            std::istringstream ops(line.substr(at));
            std::string word, count;
            for (int depth = 1; ops >> word >> count; depth++) {
                uint64_t counted = perft(board, depth);
                nodes += counted;
                if (counted != std::stoull(count)) state.SkipWithError(("wrong count: " + line).c_str());
            }
        }
    }
    state.counters["positions"] = double(lines.size());
    state.counters["nps"] = benchmark::Counter(double(nodes), benchmark::Counter::kIsRate);
}

}  // namespace

BENCHMARK(BM_PerftStart6)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_PerftKiwipete5)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_PerftAllPublished)->Unit(benchmark::kSecond)->Iterations(1);
BENCHMARK_MAIN();

// Perft speed of the release build: leaf nodes per second with bulk counting at the last ply.
#include <benchmark/benchmark.h>

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

}  // namespace

BENCHMARK(BM_PerftStart6)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_PerftKiwipete5)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();

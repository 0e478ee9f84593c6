// Evaluation speed over the positions one move away from each of the thirty bench positions, as
// the search meets them: answered from the evaluation cache, computed in full with the material
// and pawn entries at hand, and computed with every cache missing. Each iteration sets up the
// next bench position untimed, then times make, evaluate and unmake over all its legal moves;
// the make-and-unmake baseline shows how much of that is not evaluation.
#include <benchmark/benchmark.h>

#include <chrono>

#include "core/board.h"
#include "core/movegen.h"
#include "eval/evaluator.h"
#include "tools/bench_positions.h"

namespace {

enum class Keys {
    None,        // make and unmake only
    Unchanged,   // answered from the evaluation cache after the first round
    AboveIndex,  // the probe misses in a slot the processor already holds
    AllRandom,   // evaluation, pawn and material caches all miss, on fresh memory lines
};

void runEvaluations(benchmark::State& state, Keys keys) {
    static Board board;
    static Evaluator evaluator(board);
    evaluator.clear();
    MoveList list;
    uint64_t salt = 0;
    int next = 0;
    int64_t evaluations = 0;
    for (auto _ : state) {
        board.setFen(BENCH_POSITIONS[next].fen);
        next = (next + 1) % BENCH_POSITION_COUNT;
        generateAll(board, list);
        auto start = std::chrono::steady_clock::now();
        for (Move move : list) {
            board.makeMove(move);
            PositionState& st = board.state();
            const PositionState saved = st;
            // A new key makes the probe miss; the search would have prefetched the line, so
            // only the bits above the index change for the full evaluation.
            if (keys == Keys::AboveIndex) st.key ^= ++salt << 32;
            if (keys == Keys::AllRandom) {
                uint64_t change = ++salt * 0x9E3779B97F4A7C15ULL;
                st.key ^= change;
                st.pawnKey ^= change;
                st.materialKey ^= change;
            }
            if (keys != Keys::None) benchmark::DoNotOptimize(evaluator.Evaluate());
            st = saved;
            board.unmakeMove(move);
        }
        std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        evaluations += list.count;
    }
    state.SetItemsProcessed(evaluations);
}

void BM_MakeUnmakeOnly(benchmark::State& state) { runEvaluations(state, Keys::None); }
void BM_EvaluateCached(benchmark::State& state) { runEvaluations(state, Keys::Unchanged); }
void BM_EvaluateFull(benchmark::State& state) { runEvaluations(state, Keys::AboveIndex); }
void BM_EvaluateAllCachesMissing(benchmark::State& state) {
    runEvaluations(state, Keys::AllRandom);
}

}  // namespace

BENCHMARK(BM_MakeUnmakeOnly)->UseManualTime();
BENCHMARK(BM_EvaluateCached)->UseManualTime();
BENCHMARK(BM_EvaluateFull)->UseManualTime();
BENCHMARK(BM_EvaluateAllCachesMissing)->UseManualTime();

#include "search/threads.h"

#include <chrono>

#include "core/console.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "eval/evaluator.h"

namespace {

// Workers skip depths by these patterns so that they do not all search the same iteration.
constexpr int SKIP_SIZE[16] = {1, 2, 2, 4, 4, 3, 2, 5, 4, 3, 2, 6, 5, 4, 3, 2};
constexpr int SKIP_PLIES[16] = {1, 1, 1, 2, 2, 2, 1, 3, 2, 2, 1, 3, 3, 2, 2, 1};
constexpr int MAX_DEPTH = 100;

}  // namespace

TSearchThread::TSearchThread(int index, TranspositionTable& table)
    : index(index),
      evaluator(std::make_unique<Evaluator>(board)),
      ordering(std::make_unique<OrderingTables>()),
      tt(table) {
    ordering->clear();
}

TSearchThread::~TSearchThread() {
    {
        std::lock_guard<std::mutex> lock(mutex);
        exitFlag = 1;
        stopFlag = 1;
    }
    wakeUp.notify_all();
    if (osThread.joinable()) osThread.join();
}

void TSearchThread::launch() { osThread = std::thread(&TSearchThread::idleLoop, this); }

// The searching flag is cleared only after a run, never before the first wait: a start() that
// comes before this thread first waits must not be lost.
void TSearchThread::idleLoop() {
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
        while (!searching && !exitFlag) {
            wakeUp.notify_all();  // tells a waiting main thread that this one is idle
            wakeUp.wait(lock);
        }
        if (exitFlag) return;
        lock.unlock();
        run();
        lock.lock();
        searching = 0;
    }
}

void TSearchThread::start() {
    {
        std::lock_guard<std::mutex> lock(mutex);
        searching = 1;
        stopFlag = 0;
    }
    wakeUp.notify_all();
}

void TSearchThread::waitUntilIdle() {
    std::unique_lock<std::mutex> lock(mutex);
    wakeUp.wait(lock, [this] { return !searching; });
}

void TSearchThread::setUp(const std::string& command, const SearchLimits& searchLimits, int lines, uint32_t flags) {
    positionCommand = command;
    limits = searchLimits;
    multiPv = lines;
    outputFlags = flags;
    board.setPosition(positionCommand);
    timeManager.setLimits(limits, board.sideToMove);
}

void TSearchThread::clear() {
    ordering->clear();
    evaluator->clear();
    board.setStartPosition();
}

void TSearchThread::resetSearchState() {
    nodes.store(0, std::memory_order_relaxed);
    selDepth = 0;
    bestScore = NO_VALUE;
    bestMove = 0;
    bestPv[0] = 0;
}

void TSearchThread::resetPollCountdown() {
    const SearchLimits& l = timeManager.limits;
    bool longBudget = !l.movetime && l.movestogo >= 2 && timeManager.targetDeadline() - TimeManager::now() > 1000;
    pollCountdown = longBudget ? 100000 : 10000;
}

void TSearchThread::pollTime() {
    const SearchLimits& l = timeManager.limits;
    if (timeManager.timeUp() || (l.nodes && int64_t(totalNodes()) >= l.nodes)) timeoutStop();
    resetPollCountdown();
}

// A worker deepens on its own until the main thread stops it.
void TSearchThread::run() {
    resetSearchState();
    prepareRootMoves();
    const int pattern = (index - 1) & 15;
    int depth = startDepth - 1;
    while (!stopFlag) {
        depth++;
        if ((depth + pattern + 1) % SKIP_SIZE[pattern] == 0) depth += SKIP_PLIES[pattern];
        if (depth >= MAX_DEPTH) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        rootSearch(depth);
    }
}

// The main thread's caches are touched once here so that the first search does not fault them in.
TMainSearchThread::TMainSearchThread(TranspositionTable& table) : TSearchThread(0, table) { evaluator->clear(); }

TMainSearchThread::~TMainSearchThread() {
    stop();
    waitUntilIdle();
    workers.clear();
}

void TMainSearchThread::stop() {
    stopFlag = 1;
    timeManager.pondering = false;
    released = 1;
    for (auto& w : workers) w->stop();
}

void TMainSearchThread::timeoutStop() {
    stopFlag = 1;
    for (auto& w : workers) w->stop();
}

void TMainSearchThread::start() {
    released = 0;
    TSearchThread::start();
}

void TMainSearchThread::clear() {
    TSearchThread::clear();
    for (auto& w : workers) w->clear();
}

uint64_t TMainSearchThread::totalNodes() const {
    uint64_t total = TSearchThread::totalNodes();
    for (const auto& w : workers) total += w->totalNodes();
    return total;
}

void TMainSearchThread::setWorkerCount(int count) {
    while (int(workers.size()) > count) workers.pop_back();
    while (int(workers.size()) < count) {
        workers.push_back(std::make_unique<TSearchThread>(int(workers.size()) + 1, tt));
        workers.back()->launch();
    }
}

void TMainSearchThread::run() {
    resetSearchState();
    prepareRootMoves();
    if (rootMoveCount == 0) {
        if (!testRun) consolePrint("bestmove (none) ponder (none)");
        return;
    }
    resetPollCountdown();
    startDepth = 1;
    ProbeResult root = tt.probe(board.key(), 0);
    if (root.bound == BOUND_EXACT && multiPv == 1)
        startDepth = std::max(1, limits.depth ? std::min(root.depth, limits.depth) : root.depth);
    for (auto& w : workers) {
        w->setUp(positionCommand, limits, multiPv, outputFlags);
        w->startDepth = startDepth;
        w->start();
    }
    iterativeDeepening();
    finishSearch();
}

void TMainSearchThread::iterativeDeepening() {
    for (int depth = startDepth;;) {
        int64_t iterationStart = TimeManager::now();
        rootSearch(depth);
        printIteration(depth);
        depth++;
        if ((limits.depth && depth > limits.depth) || depth >= MAX_DEPTH || stopFlag) break;
        if (limits.mate && bestScore > MATE_THRESHOLD && (MATE - bestScore + 1) / 2 <= limits.mate) break;
        if (timeManager.clockMode() && !timeManager.pondering) {
            int64_t now = TimeManager::now();
            if ((now - iterationStart) * 3 / 10 >= timeManager.targetDeadline() - now) break;
        }
    }
}

Move TMainSearchThread::ponderMove() {
    if (!bestMove) return 0;
    board.makeMove(bestMove);
    ProbeResult entry = tt.probe(board.key(), 1);
    Move reply = entry.bound == BOUND_EXACT ? validateMove(board, entry.move) : 0;
    board.unmakeMove(bestMove);
    return reply;
}

void TMainSearchThread::finishSearch() {
    for (auto& w : workers) w->stop();
    for (auto& w : workers) w->waitUntilIdle();
    stopFlag = 1;
    if (!bestMove) bestMove = rootMoves[0].move;
    Move reply = ponderMove();
    // A ponder search or an infinite analysis holds its move until "ponderhit" or "stop".
    while (!released && (timeManager.pondering || limits.infinite))
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::string line = "bestmove " + moveToUci(bestMove);
    if (reply) line += " ponder " + moveToUci(reply);
    if (!testRun) consolePrint(line);
}

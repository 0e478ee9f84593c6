// Search threads: one main search thread and any number of workers searching the same root
// position, sharing only the transposition table. Workers deepen on their own, skipping depths
// by a fixed pattern, to fill the table for the main thread; only the main thread prints and
// decides the move.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/board.h"
#include "search/limits.h"
#include "search/moveorder.h"
#include "search/timeman.h"
#include "search/tt.h"

struct ExchangeMemo;

class Evaluator;

constexpr int MATE = 32767;
constexpr int MATE_THRESHOLD = 31743;  // beyond this a score announces a mate
constexpr int NO_VALUE = -1000000;     // no score: unsearched, or the static value of a node in check
constexpr bool isMateScore(int score) { return score != NO_VALUE && (score > MATE_THRESHOLD || score < -MATE_THRESHOLD); }

// The score as the protocol prints it: "cp 25", "mate 3", "mate -2".
std::string uciScore(int score);

// Copies a move and the child's line into a PV buffer (zero-terminated, at most MAX_PLY moves).
inline void copyPv(Move* pv, Move m, const Move* child) {
    pv[0] = m & MOVE_MASK;
    int i = 0;
    while (i < MAX_PLY - 1 && child[i]) {
        pv[i + 1] = child[i];
        i++;
    }
    pv[i + 1] = 0;
}

struct RootMove {
    Move move;
    int score;
    int previousScore;
    Move pv[MAX_PLY + 1];  // zero-terminated
};

class TSearchThread {
public:
    TSearchThread(int index, TranspositionTable& tt);
    virtual ~TSearchThread();
    TSearchThread(const TSearchThread&) = delete;
    TSearchThread& operator=(const TSearchThread&) = delete;

    virtual void stop() { stopFlag = 1; }
    // Ends the search because time or a limit ran out; a ponder search still holds its move.
    virtual void timeoutStop() { stopFlag = 1; }
    virtual void clear();
    virtual uint64_t totalNodes() const { return nodes.load(std::memory_order_relaxed); }
    virtual void run();

    // Starts the operating-system thread, idle until start(); called once the object is complete.
    void launch();
    // Copies a search set-up: the game as a position command, the limits and the output settings.
    void setUp(const std::string& positionCommand, const SearchLimits& limits, int multiPv, uint32_t outputFlags);
    // Wakes the thread to run its search.
    virtual void start();
    // Blocks until the thread is idle again.
    void waitUntilIdle();
    bool isSearching() const { return searching.load(); }
    // The root moves of the last search, best first.
    int rootMoveTotal() const { return rootMoveCount; }
    const RootMove& rootMove(int i) const { return rootMoves[i]; }

    const int index;
    int startDepth = 1;
    Board board;
    std::unique_ptr<Evaluator> evaluator;
    std::unique_ptr<OrderingTables> ordering;
    TimeManager timeManager;
    Move bestMove = 0;
    int bestScore = NO_VALUE;
    Move bestPv[MAX_PLY + 1] = {};
    int multiPv = 1;
    uint32_t outputFlags = 0;
    int selDepth = 0;

protected:
    int alphaBeta(int ply, int depth, int extFraction, int alpha, int beta, int nullAllowed, Move* pv);
    int quiescence(int ply, int depth, int alpha, int beta, Move* pv);
    // Static evaluation of the thread's board from the side to move's view.
    int evaluate();
    // Start loading what the probes of a child position will read. The children of move i of
    // the list and of the move after it: the next move's lines then arrive while this one is
    // searched, instead of while its own child waits for them. The child of the table's move,
    // searched first, as soon as the table names it.
    void prefetchChild(Move m) const;
    void prefetchChildren(const MoveList& list, uint32_t i, uint32_t& fetched) const;
    void prefetchHashChild(Move m) const;
    // The value of a recognised ending (draw, endgame table), or NO_VALUE.
    int recognizedEnding(int ply);
    void keyEvasions(MoveList& list, Move hashMove, ExchangeMemo* memo = nullptr);
    void countNode() { nodes.store(nodes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed); }
    void pollTime();
    void resetPollCountdown();

    void prepareRootMoves();
    // One iteration over all root moves at the given depth.
    void rootSearch(int depth);
    void resetSearchState();

    TranspositionTable& tt;
    std::string positionCommand;
    SearchLimits limits;
    RootMove rootMoves[MAX_MOVES];
    int rootMoveCount = 0;
    std::atomic<uint64_t> nodes{0};
    int pollCountdown = 0;
    std::atomic<uint8_t> stopFlag{0};

private:
    void idleLoop();

    std::atomic<uint8_t> searching{0};
    std::atomic<uint8_t> exitFlag{0};
    std::mutex mutex;
    std::condition_variable wakeUp;
    std::thread osThread;

    friend class TMainSearchThread;
};

class TMainSearchThread : public TSearchThread {
public:
    explicit TMainSearchThread(TranspositionTable& tt);
    ~TMainSearchThread() override;

    // Releases a held move too: "stop" always answers with the move.
    void stop() override;
    void timeoutStop() override;
    void clear() override;
    uint64_t totalNodes() const override;
    void run() override;
    void start() override;

    // ponderhit: the search goes on under its time control.
    void ponderHit() { timeManager.pondering = false; }
    // Sets the number of worker threads; workers beyond it are destroyed last-created first.
    void setWorkerCount(int count);
    int workerCount() const { return int(workers.size()); }
    // Set while an EPD suite runs: the searches print no info lines and no move (a position
    // without a legal move still answers).
    bool testRun = false;

private:
    void iterativeDeepening();
    void printIteration(int depth);
    void finishSearch();
    Move ponderMove();

    std::vector<std::unique_ptr<TSearchThread>> workers;
    std::atomic<uint8_t> released{0};  // "stop" arrived: a held move is printed at once
};

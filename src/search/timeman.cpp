#include "search/timeman.h"

#include <algorithm>
#include <chrono>

int64_t TimeManager::now() {
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count() / 1000000;
}

void TimeManager::setLimits(const SearchLimits& l, Color c) {
    limits = l;
    side = c;
    polls = 0;
    rootMoveNumber = 0;
    pondering = l.ponder != 0;
    mateSearch = l.mate > 0;
    // No moves to go, or a count below one that no clock can mean (it would divide by zero
    // below), takes the usual guess.
    if (limits.movestogo <= 0) limits.movestogo = limits.ponder ? 40 : 50;
    clock = !limits.infinite && !limits.depth && !limits.nodes && !limits.mate && !limits.movetime;
    const int64_t start = limits.startTime;
    if (!clock) {
        target = hard = start + limits.movetime;
    } else {
        const int64_t time = side == White ? limits.wtime : limits.btime;
        const int64_t inc = side == White ? limits.winc : limits.binc;
        const int64_t moves = limits.movestogo;
        int64_t soft, maximum;
        if (inc >= 1) {
            soft = std::min(time, inc);
            if (time - soft > 750) soft += (time - soft) / moves;
            maximum = std::min((time - soft) * 5 / moves + soft, time < 200 ? time / 2 : time - 100);
        } else {
            soft = time / (moves + 1);
            maximum = moves <= 9 ? time / moves : 5 * soft;
            maximum = std::min(maximum, time - 32 * moves);
        }
        target = start + soft;
        hard = start + maximum;
        if (hard < target) target = hard;
        // With one move to go the whole clock is given, less a margin; these deadlines are
        // deliberately not offset by the start time.
        if (moves == 1) target = hard = time >= 500 ? time - 100 : time >= 100 ? time - 50 : time - 10;
    }
    hard = std::max<int64_t>(hard - 10, 1);
    target = std::min(target, hard);
}

bool TimeManager::timeUp() {
    polls++;
    int64_t t = now();
    if (clock && !pondering) {
        int64_t average = (t - limits.startTime) / int64_t(polls);
        return t >= hard - average || (t >= target - average && rootMoveNumber == 0);
    }
    return limits.movetime && t >= hard;
}

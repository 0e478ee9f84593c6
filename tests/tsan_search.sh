#!/usr/bin/env bash
# A multi-threaded search under the thread sanitizer: four threads search, are stopped, search
# again under a clock and with pondering, and the program quits. Any report fails the run.
set -euo pipefail
engine="$1"
export TSAN_OPTIONS="halt_on_error=1 exitcode=66"
{
    echo "setoption name Threads value 4"
    echo "ucinewgame"
    echo "position startpos moves e2e4 c7c5 g1f3"
    echo "go infinite"
    sleep 3
    echo "isready"
    echo "stop"
    sleep 0.5
    echo "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
    echo "go wtime 4000 btime 4000 winc 50 binc 50"
    sleep 3
    echo "go ponder wtime 3000 btime 3000"
    sleep 1
    echo "ponderhit"
    sleep 2
    echo "setoption name Threads value 2"
    echo "go depth 8"
    sleep 2
    echo "quit"
} | "$engine" > /tmp/tsan_search.out
grep -c '^bestmove' /tmp/tsan_search.out | grep -q '^4$' || { echo "expected four bestmove lines"; cat /tmp/tsan_search.out; exit 1; }
echo "thread-sanitizer search run: 1 passed, 0 failed"

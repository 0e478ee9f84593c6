#!/usr/bin/env bash
# Compares the search speed of two engine binaries by their `bench` command.
#
#   bench/compare_speed.sh [--alone] OLD NEW [ROUNDS]
#
# On a shared or virtual machine one run's speed swings by far more than a code change moves it,
# and one core can be steadily faster than the other. So both binaries run at the same time,
# each on a core of its own, and they swap cores every round: a pair of rounds gives NEW/OLD as
# the geometric mean of its two ratios, and the pairs give the mean and two standard errors.
#
# Two engines at once also share the last-level cache and the memory bus, which weighs memory
# stalls more than one engine alone meets them. With --alone the binaries run one at a time on
# core 0, in the order OLD NEW, NEW OLD, ... so that a drift of the machine's speed cancels; a
# round gives NEW/OLD directly. This is the speed a user's single engine sees, but it needs a
# quiet machine.
# Needs two cores and taskset; stop everything else on the machine first.
set -euo pipefail
alone=0
if [ "${1:-}" = --alone ]; then
    alone=1
    shift
fi
if [ $# -lt 2 ]; then
    echo "usage: $0 [--alone] OLD NEW [ROUNDS]" >&2
    exit 2
fi
old=$1 new=$2 rounds=${3:-10}
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

nps() { awk '/^ Total/ { print $(NF - 2) }' "$1"; }

benchOn() { echo bench | taskset -c "$1" "$2" >"$3" 2>&1; }

for round in $(seq "$rounds"); do
    if [ $alone = 1 ]; then
        if [ $((round % 2)) = 1 ]; then
            benchOn 0 "$old" "$out/old" && benchOn 0 "$new" "$out/new"
        else
            benchOn 0 "$new" "$out/new" && benchOn 0 "$old" "$out/old"
        fi
    else
        if [ $((round % 2)) = 1 ]; then oldCore=0 newCore=1; else oldCore=1 newCore=0; fi
        benchOn $oldCore "$old" "$out/old" &
        benchOn $newCore "$new" "$out/new" &
        wait
    fi
    echo "$(nps "$out/old") $(nps "$out/new")"
done | awk -v alone=$alone '
    { ratio[NR] = $2 / $1
      printf "round %2d: old %8d nps%s, new %8d nps, new/old %.4f\n", NR, $1,
             alone ? "" : sprintf(" (core %d)", (NR + 1) % 2), $2, ratio[NR] }
    END {
        # Alone, each round is a sample; at once, each pair of rounds on swapped cores.
        step = alone ? 1 : 2
        for (i = step; i <= NR; i += step) {
            g = alone ? ratio[i] : sqrt(ratio[i - 1] * ratio[i]); sum += g; sq += g * g; n++
            sample[n] = g
        }
        if (n == 0) { print "at least two rounds are needed"; exit 1 }
        mean = sum / n; sd = n > 1 ? sqrt((sq - n * mean * mean) / (n - 1)) : 0
        printf "new/old over %d %s: %.4f +- %.4f\n", n, alone ? "rounds, one engine at a time" : "swapped pairs",
               mean, 2 * sd / sqrt(n)
        # The machine stays fast or slow for minutes, so neighbouring samples are alike and the
        # error above is too small. Means of blocks of ten samples are nearly independent.
        blocks = int(n / 10)
        if (blocks < 3) exit
        for (b = 0; b < blocks; b++) {
            m = 0
            for (i = 1; i <= 10; i++) m += sample[10 * b + i] / 10
            bsum += m; bsq += m * m
        }
        bmean = bsum / blocks; bsd = sqrt((bsq - blocks * bmean * bmean) / (blocks - 1))
        printf "in %d blocks of ten: %.4f +- %.4f\n", blocks, bmean, 2 * bsd / sqrt(blocks) }'

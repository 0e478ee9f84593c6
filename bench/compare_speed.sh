#!/usr/bin/env bash
# Compares the search speed of two engine binaries by their `bench` command.
#
#   bench/compare_speed.sh OLD NEW [ROUNDS]
#
# On a shared or virtual machine one run's speed swings by far more than a code change moves it,
# and one core can be steadily faster than the other. So both binaries run at the same time,
# each on a core of its own, and they swap cores every round: a pair of rounds gives NEW/OLD as
# the geometric mean of its two ratios, and the pairs give the mean and two standard errors.
# Needs two cores and taskset; stop everything else on the machine first.
set -euo pipefail
if [ $# -lt 2 ]; then
    echo "usage: $0 OLD NEW [ROUNDS]" >&2
    exit 2
fi
old=$1 new=$2 rounds=${3:-10}
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

nps() { awk '/^ Total/ { print $(NF - 2) }' "$1"; }

for round in $(seq "$rounds"); do
    if [ $((round % 2)) = 1 ]; then oldCore=0 newCore=1; else oldCore=1 newCore=0; fi
    echo bench | taskset -c $oldCore "$old" >"$out/old" 2>&1 &
    echo bench | taskset -c $newCore "$new" >"$out/new" 2>&1 &
    wait
    echo "$(nps "$out/old") $(nps "$out/new")"
done | awk '
    { ratio[NR] = $2 / $1; printf "round %2d: old %8d nps (core %d), new %8d nps, new/old %.4f\n",
                                  NR, $1, (NR + 1) % 2, $2, ratio[NR] }
    END {
        for (i = 2; i <= NR; i += 2) { g = sqrt(ratio[i - 1] * ratio[i]); sum += g; sq += g * g; n++ }
        if (n == 0) { print "at least two rounds are needed"; exit 1 }
        mean = sum / n; sd = n > 1 ? sqrt((sq - n * mean * mean) / (n - 1)) : 0
        printf "new/old over %d swapped pairs: %.4f +- %.4f\n", n, mean, 2 * sd / sqrt(n) }'

#!/usr/bin/env bash
# Plays Morvane against a field of engines from Debian's packages and writes a strength report:
# a table of scores and Elo differences and a plot of Morvane's estimated rating among the
# rated opponents (Stockfish limited to fixed UCI_Elo levels).
#
# Usage: src/tools/gauntlet/gauntlet.sh [GAMES_PER_OPPONENT] [TIME_CONTROL] [REPORT_DIR]
# Defaults: 400 games, 10+0.1, reports/strength. Installs the opponents it needs (as root).
set -euo pipefail
cd "$(dirname "$0")/../../.."
games="${1:-400}"
tc="${2:-10+0.1}"
out="${3:-reports/strength}"
levels=(1800 2100 2400)

need=()
for pkg in glaurung toga2 ethereal-chess stockfish gnuplot-nox; do
    dpkg -s "$pkg" >/dev/null 2>&1 || need+=("$pkg")
done
if ((${#need[@]})); then
    apt-get update -qq && apt-get install -y -qq "${need[@]}" >/dev/null
fi
make build >/dev/null
mkdir -p "$out"

opponents=(
    "--engine name=Glaurung cmd=/usr/games/glaurung option.Threads=1"
    "--engine name=Toga2 cmd=/usr/games/toga2"
    "--engine name=Ethereal cmd=/usr/games/ethereal-chess option.Threads=1"
)
for elo in "${levels[@]}"; do
    opponents+=("--engine name=Stockfish-$elo cmd=/usr/games/stockfish option.Threads=1 option.UCI_LimitStrength=true option.UCI_Elo=$elo")
done

# One gauntlet: every opponent plays Morvane the same number of games from the same openings.
# shellcheck disable=SC2068
build/release/src/tools/match/morvane-match --gauntlet \
    --engine name=Morvane cmd="$PWD/build/release/morvane" \
    ${opponents[@]} \
    --tc "$tc" --games "$games" --openings ../shared/data/openings.epd --concurrency 2 \
    --resign movecount=4 score=800 --pgn "$out/games.pgn" | tee "$out/match.log"

src/tools/gauntlet/report.py "$out/match.log" "$tc" "$games" "${levels[@]}" > "$out/README.md"
gnuplot "$out/plot.gp"
echo "report: $out/README.md, plot: $out/rating.png"

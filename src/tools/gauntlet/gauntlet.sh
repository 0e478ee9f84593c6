#!/usr/bin/env bash
# Plays Morvane against a field of engines from Debian's packages and writes a strength report:
# a table of scores and Elo differences and a plot of Morvane's estimated rating among the
# rated opponents (Stockfish limited to fixed UCI_Elo levels).
#
# Usage: src/tools/gauntlet/gauntlet.sh [GAMES_PER_OPPONENT] [TIME_CONTROL] [REPORT_DIR]
# Defaults: 400 games, 2+0.02 (the committed report), reports/strength. Installs the opponents it needs (as root).
#
# The games are played in rounds of ROUND games (default 40) against each opponent in turn and
# kept in one PGN file per opponent. A rerun drops any opening left with one of its two games,
# counts the games already there and goes on from the next opening, so an interrupted gauntlet
# loses at most the games that were being played, and every opponent has about as many games as
# the others at any moment.
#
# LEVELS (default "1950 2100 2250") picks the Stockfish UCI_Elo levels; choose ones that
# bracket Morvane at the time control played.
set -euo pipefail
cd "$(dirname "$0")/../../.."
games="${1:-400}"
tc="${2:-2+0.02}"
out="${3:-reports/strength}"
round="${ROUND:-40}"
read -r -a levels <<< "${LEVELS:-1950 2100 2250}"

need=()
for pkg in glaurung toga2 ethereal-chess stockfish gnuplot-nox; do
    dpkg -s "$pkg" >/dev/null 2>&1 || need+=("$pkg")
done
if ((${#need[@]})); then
    apt-get update -qq && apt-get install -y -qq "${need[@]}" >/dev/null
fi
make build >/dev/null
mkdir -p "$out"

names=(Glaurung Toga2 Ethereal)
commands=(
    "cmd=/usr/games/glaurung option.Threads=1"
    "cmd=/usr/games/toga2"
    "cmd=/usr/games/ethereal-chess option.Threads=1"
)
for elo in "${levels[@]}"; do
    names+=("Stockfish-$elo")
    commands+=("cmd=/usr/games/stockfish option.Threads=1 option.UCI_LimitStrength=true option.UCI_Elo=$elo")
done

played() { grep -c '^\[Result ' "$1" 2>/dev/null || true; }
# Games at another time control must not be added to a report: its Elo figures would mean nothing.
for pgn in "$out"/*.pgn; do
    if [[ -f $pgn ]] && grep -q '^\[TimeControl ' "$pgn" && ! grep -q "^\[TimeControl \"$tc\"\]" "$pgn"; then
        echo "$pgn holds games at another time control than $tc; give another report folder" >&2
        exit 2
    fi
done
# The report is rewritten after every round, so it always shows every game played so far.
report() {
    src/tools/gauntlet/report.py "$out" "$tc" "${levels[@]}" > "$out/README.md"
    gnuplot "$out/plot.gp"
}

while :; do
    progress=0
    for i in "${!names[@]}"; do
        pgn="$out/${names[i]}.pgn"
        [[ -f $pgn ]] && src/tools/gauntlet/complete_pairs.py "$pgn" data/openings.epd
        done=$(played "$pgn")
        ((done < games)) || continue
        count=$((games - done < round ? games - done : round))
        # shellcheck disable=SC2086
        build/release/src/tools/match/morvane-match \
            --engine name=Morvane cmd="$PWD/build/release/morvane" \
            --engine name="${names[i]}" ${commands[i]} \
            --tc "$tc" --games "$count" --openings data/openings.epd \
            --start $((done / 2)) --concurrency 2 \
            --resign movecount=3 score=600 --draw movenumber=40 movecount=8 score=10 \
            --event "Morvane gauntlet" --pgn "$pgn" >> "$out/match.log"
        report
        progress=1
    done
    ((progress)) || break
done

report
echo "report: $out/README.md, plot: $out/rating.png"

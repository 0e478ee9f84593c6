#!/usr/bin/env python3
"""Turns the result lines of a morvane-match gauntlet into the strength report (Markdown on
standard output) and a gnuplot script beside the log that draws Morvane's estimated rating.

Morvane's rating is estimated from the rated opponents (Stockfish at fixed UCI_Elo levels): each
gives the opponent's rating plus the measured Elo difference, and the estimates are combined
weighted by the inverse square of their error bars."""
import math
import os
import re
import sys

RESULT = re.compile(r"^\s*Morvane vs (\S+): (\d+) games, \+(\d+) -(\d+) =(\d+), score ([\d.]+)%, "
                    r"Elo (\S+) \+/- (\S+)")


def main():
    log, tc, games, levels = sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4:]
    rows = {}
    for line in open(log):
        m = RESULT.match(line)
        if m:
            rows[m.group(1)] = m.groups()  # the last summary line of each pairing wins
    estimates = []
    print("# Morvane's strength\n")
    print(f"Gauntlet at {tc} per side, {games} games per opponent (each opening twice, colours")
    print("reversed), one thread each, two games at a time on a 2-core machine.\n")
    print("| Opponent | Games | +W | -L | =D | Score | Elo difference (95%) |")
    print("|---|---|---|---|---|---|---|")
    for name, g in rows.items():
        _, n, w, l, d, score, elo, err = g
        print(f"| {name} | {n} | {w} | {l} | {d} | {score}% | {elo} ± {err} |")
        level = re.match(r"Stockfish-(\d+)", name)
        try:
            diff, sigma = float(elo), float(err) / 1.96
        except ValueError:
            continue
        if level and math.isfinite(diff) and sigma > 0:
            estimates.append((int(level.group(1)) + diff, sigma))
    if estimates:
        weight = sum(1 / s**2 for _, s in estimates)
        rating = sum(r / s**2 for r, s in estimates) / weight
        error = 1.96 / math.sqrt(weight)
        print(f"\nEstimated rating on the scale of Stockfish's UCI_Elo: **{rating:.0f} ± {error:.0f}**.")
    else:
        rating, error = None, None
    folder = os.path.dirname(log)
    with open(os.path.join(folder, "plot.gp"), "w") as gp:
        gp.write(f'set terminal png size 900,500\nset output "{folder}/rating.png"\n')
        gp.write('set title "Morvane among its opponents (UCI_Elo scale)"\nset ylabel "Elo"\n')
        gp.write("set style fill solid 0.6\nset boxwidth 0.6\nset xtics rotate by -30\nset grid ytics\n")
        points = [(f"Stockfish-{lv}", int(lv), 0) for lv in levels]
        if rating is not None:
            points.append(("Morvane", rating, error))
        points.sort(key=lambda p: p[1])
        gp.write("$data << EOD\n")
        for i, (name, value, err) in enumerate(points):
            gp.write(f'{i} "{name}" {value:.0f} {err:.0f}\n')
        gp.write("EOD\n")
        gp.write('plot $data using 1:3:xtic(2) with boxes notitle, "" using 1:3:4 with yerrorbars lw 2 notitle\n')
    print("\n![rating](rating.png)")


if __name__ == "__main__":
    main()

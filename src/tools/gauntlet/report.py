#!/usr/bin/env python3
"""Turns the PGN files of a gauntlet (one per opponent, in the report folder) into the strength
report (Markdown on standard output) and a gnuplot script beside them that draws Morvane's
estimated rating.

The Elo difference and its 95% error bar are computed as morvane-match computes them: the
logistic Elo of the mean score, with the bar taken from the spread of the game results.
Morvane's rating is estimated from the rated opponents (Stockfish at fixed UCI_Elo levels): each
gives the opponent's rating plus the measured Elo difference, and the estimates are combined
weighted by the inverse square of their error bars."""
import glob
import math
import os
import re
import subprocess
import sys

TAG = re.compile(r'^\[(\w+) "(.*)"\]$')
FAULTS = ("illegal move", "abandoned", "stalled connection", "time forfeit")
Z95 = 1.959963984540054


def games_of(path):
    """The tags of each game of a PGN file."""
    games, tags = [], {}
    for line in open(path):
        m = TAG.match(line.strip())
        if m:
            tags[m.group(1)] = m.group(2)
        elif tags and "Result" in tags:
            games.append(tags)
            tags = {}
    return games


def elo(score):
    if score <= 0:
        return -math.inf
    if score >= 1:
        return math.inf
    return -400 * math.log10(1 / score - 1)


def tally(games):
    """Morvane's wins, losses and draws, and the faults of each side."""
    wins = losses = draws = 0
    faults = {"Morvane": 0, "opponent": 0}
    for g in games:
        points = {"1-0": 1.0, "0-1": 0.0, "1/2-1/2": 0.5}.get(g["Result"])
        if points is None:
            continue
        if g["Black"] == "Morvane":
            points = 1 - points
        wins += points == 1
        losses += points == 0
        draws += points == 0.5
        if g.get("Termination") in FAULTS:
            faults["Morvane" if points == 0 else "opponent"] += 1
    return wins, losses, draws, faults


def estimate(wins, losses, draws):
    n = wins + losses + draws
    s = (wins + draws / 2) / n
    variance = (wins * (1 - s) ** 2 + draws * (0.5 - s) ** 2 + losses * s**2) / n
    deviation = math.sqrt(variance / n)
    low, high = s - Z95 * deviation, s + Z95 * deviation
    margin = (elo(high) - elo(low)) / 2 if 0 < low and high < 1 else math.inf
    return s, elo(s), margin


def write_plot(folder, levels, rating, error, measured):
    """Each engine at its rating: the Stockfish levels at their nominal value, Morvane at its
    estimate, and the other opponents placed by their measured difference from Morvane."""
    points = [(f"Stockfish-{lv}", int(lv), 0) for lv in levels]
    if rating is not None:
        points.append(("Morvane", rating, error))
        for name, diff, margin in measured:
            if not name.startswith("Stockfish-") and math.isfinite(diff) and math.isfinite(margin):
                points.append((name, rating - diff, math.hypot(error, margin)))
    points.sort(key=lambda p: p[1])
    with open(os.path.join(folder, "plot.gp"), "w") as gp:
        gp.write(f'set terminal png size 900,500 noenhanced\nset output "{folder}/rating.png"\n')
        gp.write('set title "Morvane among its opponents (UCI_Elo scale, 95% bars)"\n')
        gp.write('set ylabel "Elo"\nset xtics rotate by -30\nset grid ytics\nset offsets 0.5, 0.5, 100, 100\n')
        gp.write("$data << EOD\n")
        for i, (name, value, err) in enumerate(points):
            gp.write(f'{i} "{name}" {value:.0f} {err:.0f}\n')
        gp.write("EOD\n")
        gp.write('plot $data using 1:3:4:xtic(2) with yerrorbars pt 7 ps 1.5 lw 2 notitle\n')


def main():
    folder, tc, levels = sys.argv[1], sys.argv[2], sys.argv[3:]
    estimates, rows, measured, total = [], [], [], 0
    for path in sorted(glob.glob(os.path.join(folder, "*.pgn"))):
        name = os.path.splitext(os.path.basename(path))[0]
        wins, losses, draws, faults = tally(games_of(path))
        n = wins + losses + draws
        if not n:
            continue
        total += n
        s, diff, margin = estimate(wins, losses, draws)
        rows.append(f"| {name} | {n} | {wins} | {losses} | {draws} | {100 * s:.1f}% | "
                    f"{diff:+.0f} ± {margin:.0f} | {faults['Morvane']} | {faults['opponent']} |")
        measured.append((name, diff, margin))
        level = re.match(r"Stockfish-(\d+)$", name)
        if level and math.isfinite(diff) and math.isfinite(margin) and margin > 0:
            estimates.append((int(level.group(1)) + diff, margin / Z95))
    commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True,
                            text=True).stdout.strip() or "unknown"
    print("# Morvane's strength\n")
    print(f"Morvane at commit {commit}, in a gauntlet at {tc} per side: {total} games in all, each opening of")
    print("`data/openings.epd` played twice with colours reversed, one thread per engine,")
    print("two games at a time on a 2-core machine (`src/tools/gauntlet/gauntlet.sh`). Games are")
    print("adjudicated as lost after three moves at 6 pawns or worse by both engines' scores, as")
    print("drawn from move 40 after eight moves within 0.1 pawn of zero.\n")
    print("| Opponent | Games | +W | -L | =D | Score | Elo difference (95%) | Faults of Morvane | Faults of the opponent |")
    print("|---|---|---|---|---|---|---|---|---|")
    print("\n".join(rows))
    print("\nFaults are illegal moves, crashes, stalls and time forfeits, each scored as a loss.")
    rating = error = None
    if estimates:
        weight = sum(1 / s**2 for _, s in estimates)
        rating = sum(r / s**2 for r, s in estimates) / weight
        error = Z95 / math.sqrt(weight)
        print(f"\nEstimated rating on the scale of Stockfish's UCI_Elo: **{rating:.0f} ± {error:.0f}**.")
        print("\nStockfish's UCI_Elo levels are calibrated at a much longer time control. A limited")
        print("Stockfish weakens itself mostly by how deep it looks before choosing, not by the clock,")
        print("so at a fast control it plays above its level against engines whose depth depends on")
        print("the time: the estimate above holds for this time control only.")
    write_plot(folder, levels, rating, error, measured)
    print("\n![rating](rating.png)")


if __name__ == "__main__":
    main()

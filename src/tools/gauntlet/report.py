#!/usr/bin/env python3
"""Turns the PGN files of a gauntlet (one per opponent, in the report folder) into the strength
report (Markdown on standard output) and a gnuplot script beside them that draws Morvane's
estimated rating.

The Elo difference and its 95% error bar are computed as morvane-match computes them, from
opening pairs: the two games of an opening (the same FEN, colours reversed) are one sample
scoring 0, 1/2, 1, 3/2 or 2 points, since an unbalanced opening ties their results together.
The Elo is the logistic Elo of the mean score of the complete pairs, the bar comes from the
spread of the pairs' scores; a game whose partner is missing (a run stopped midway) counts in
W/D/L only.
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
    """Morvane's wins, losses and draws, the faults of each side, and the opening pairs by
    Morvane's half points in them (LL, LD, DD or WL, WD, WW)."""
    wins = losses = draws = 0
    faults = {"Morvane": 0, "opponent": 0}
    pairs = [0] * 5
    waiting = {}  # (FEN, Morvane has White) -> half points of the games still without a partner
    for g in games:
        points = {"1-0": 1.0, "0-1": 0.0, "1/2-1/2": 0.5}.get(g["Result"])
        if points is None:
            continue
        white = g["Black"] != "Morvane"
        if not white:
            points = 1 - points
        wins += points == 1
        losses += points == 0
        draws += points == 0.5
        if g.get("Termination") in FAULTS:
            faults["Morvane" if points == 0 else "opponent"] += 1
        fen = g.get("FEN", "")
        partners = waiting.get((fen, not white))
        if partners:
            pairs[partners.pop(0) + int(2 * points)] += 1
        else:
            waiting.setdefault((fen, white), []).append(int(2 * points))
    return wins, losses, draws, faults, pairs


def estimate(pairs):
    """The mean score, its Elo and the half width of the 95% interval in Elo."""
    n = sum(pairs)
    if not n:
        return 0.5, 0.0, math.inf
    s = sum(count * k / 4 for k, count in enumerate(pairs)) / n
    variance = sum(count * (k / 4 - s) ** 2 for k, count in enumerate(pairs)) / n
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
        wins, losses, draws, faults, pairs = tally(games_of(path))
        n = wins + losses + draws
        if not n:
            continue
        total += n
        _, diff, margin = estimate(pairs)
        rows.append(f"| {name} | {n} | {wins} | {losses} | {draws} | {' '.join(map(str, pairs))} | "
                    f"{100 * (wins + draws / 2) / n:.1f}% | {diff:+.0f} ± {margin:.0f} | "
                    f"{faults['Morvane']} | {faults['opponent']} |")
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
    print("| Opponent | Games | +W | -L | =D | Pairs | Score | Elo difference (95%) | Faults of Morvane | Faults of the opponent |")
    print("|---|---|---|---|---|---|---|---|---|---|")
    print("\n".join(rows))
    print("\nPairs counts the openings whose two games gave Morvane 0, ½, 1, 1½ and 2 points; the Elo")
    print("difference and its error bar come from them, since the two games of an opening are not")
    print("independent. Faults are illegal moves, crashes, stalls and time forfeits, each scored as a loss.")
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

#!/usr/bin/env python3
"""Trims a gauntlet PGN to whole opening pairs before a run resumes.

Usage: complete_pairs.py GAMES.pgn OPENINGS.epd

Two games run at once and are written as they end, so an interrupted run can leave an opening
with only one of its two games, not necessarily the last one written. The rerun starts at
opening (games kept) / 2, so the file must hold exactly the pairs of the first openings: every
game from the first opening that lacks a game on is dropped, and that opening is played again.
"""
import sys


def fields(fen, count):
    return ' '.join(fen.split()[:count])


def main(pgn_path, epd_path):
    with open(epd_path) as f:
        lines = f.readlines()
    # The engines' FEN drops an en-passant square that no pawn can take, which the opening file
    # may list: a position not found with its square is looked up without it.
    exact, loose = {}, {}
    for i, line in enumerate(lines):
        exact.setdefault(fields(line, 4), i)
        loose.setdefault(fields(line, 3), i)
    with open(pgn_path) as f:
        games = ['[Event ' + g for g in f.read().split('[Event ')[1:]]
    opening = []
    for number, g in enumerate(games, 1):
        fen = g.split('[FEN "', 1)[1].split('"', 1)[0] if '[FEN "' in g else ''
        o = exact.get(fields(fen, 4), loose.get(fields(fen, 3)))
        if o is None:
            # Not a game of this opening file: better to stop than to cut the wrong games.
            print(f'{pgn_path}: game {number} does not start from an opening of {epd_path}',
                  file=sys.stderr)
            return 1
        opening.append(o)
    counts = [0] * (max(opening, default=-1) + 1)
    for o in opening:
        counts[o] += 1
    whole = next((o for o, c in enumerate(counts) if c < 2), len(counts))
    kept = [g for g, o in zip(games, opening) if o < whole]
    if len(kept) != len(games):
        with open(pgn_path, 'w') as f:
            f.write(''.join(kept))
        print(f'{pgn_path}: {len(games) - len(kept)} game(s) of unfinished openings dropped',
              file=sys.stderr)
    return 0


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))

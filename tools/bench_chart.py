#!/usr/bin/env python3
"""Draws the table of `make bench` as a chart, and says which losing rows a page does not explain.

    bench_chart.py TABLE PAGE >CHART.svg

A bar runs from 1, where both are equal, to the ratio of the peer's time to ours: to the right we are faster, on a
logarithmic scale. A row loses when its ratio is below 0.95; the page explains it when it has its name, without the
size, in a first column of a table.
"""

import html
import math
import re
import sys

ROW, BAR, LEFT, WIDTH, RIGHT = 16, 11, 300, 420, 240
LOWEST, HIGHEST = 1 / 4, 64
LOSES_BELOW = 0.95


def read_table(path):
    """Yields (group, None) for a heading and (what, ratio, peer) for a row."""
    for line in open(path, encoding="utf-8"):
        columns = re.split(r" {2,}", line.strip("\n"))
        row = re.match(r"(.+?) {2,}[\d.]+ +[\d.]+ +([\d.]+) +(.+)", line)
        if row:
            yield row[1], float(row[2]), row[3].strip()
        elif re.fullmatch(r"[a-z0-9 ]+", columns[0]) and len(columns) == 1:
            yield columns[0], None, None


def across(ratio):
    ratio = min(max(ratio, LOWEST), HIGHEST)
    return LEFT + WIDTH * math.log(ratio / LOWEST) / math.log(HIGHEST / LOWEST)


def text(x, y, content, kind, anchor="start"):
    return f'<text x="{x:.0f}" y="{y:.0f}" class="{kind}" text-anchor="{anchor}">{html.escape(content)}</text>'


def draw(rows):
    """The chart's lines."""
    height = 3 * ROW + sum(ROW * (2 if ratio is None else 1) for _, ratio, _ in rows)
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {LEFT + WIDTH + RIGHT} {height}" '
           f'role="img" aria-label="How often faster than its peer each operation is">')
    yield ("<style>text{font:11px sans-serif;fill:#222}.group{font-weight:bold}.note{fill:#666}"
           ".faster{fill:#2a78a8}.slower{fill:#c8643c}line{stroke:#ccc}.equal{stroke:#222}</style>")
    yield '<rect width="100%" height="100%" fill="#fff"/>'
    ratio = LOWEST
    while ratio <= HIGHEST:
        kind = "equal" if ratio == 1 else "grid"
        yield f'<line class="{kind}" x1="{across(ratio):.1f}" x2="{across(ratio):.1f}" y1="{2 * ROW}" y2="{height - 4}"/>'
        yield text(across(ratio), 1.7 * ROW, f"{ratio:g}", "note", "middle")
        ratio *= 2
    yield text(LEFT + WIDTH + 20, 1.7 * ROW, "times as fast as", "note")
    y = 2 * ROW
    for what, ratio, peer in rows:
        y += ROW if ratio else 2 * ROW
        if ratio is None:
            yield text(8, y - 4, what, "group")
            continue
        start, end = sorted((across(1), across(ratio)))
        kind = "faster" if ratio >= 1 else "slower"
        yield (f'<rect class="{kind}" x="{start:.1f}" y="{y - BAR}" width="{max(end - start, 1):.1f}" '
               f'height="{BAR}"/>')
        yield text(LEFT - 60, y - 2, what, "what", "end")
        yield text(LEFT + WIDTH + 8, y - 2, f"{ratio:g}  {peer}", "note")
    yield "</svg>"


def main():
    rows = list(read_table(sys.argv[1]))
    explained = set()
    for line in open(sys.argv[2], encoding="utf-8"):
        if line.startswith("|"):
            explained.update(name.strip() for name in line.split("|")[1].split(";"))
    for what, ratio, peer in rows:
        name = re.sub(r", \d+$", "", what.strip())
        if ratio is not None and ratio < LOSES_BELOW and name not in explained:
            print(f"{what.strip()}: {ratio:g} of {peer}, and {sys.argv[2]} does not say why", file=sys.stderr)
    print("\n".join(draw(rows)))


if __name__ == "__main__":
    main()

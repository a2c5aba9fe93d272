#!/usr/bin/env python3
"""Draws the table of `make bench` as charts, one for each group, and says which losing rows a page does not explain.

    bench_chart.py TABLE PAGE FOLDER

A bar runs from 1, where both are equal, to the ratio of the peer's time to ours. A blue bar to the right means that we are
faster, a red bar to the left that we are slower. Position and colour are logarithmic and the same in all charts; a bar with a
point continues beyond its chart. A row without a peer, "no peer" in the table, is not drawn. A row loses if its ratio is
below 0.95. The page explains a row if the first column of one of its tables has the row's name, without the size. The page
must also show each chart.
"""

import html
import math
import pathlib
import re
import sys

ROW, BAR, LEFT, WIDTH, RIGHT = 15, 10, 270, 420, 250
LOWEST, HIGHEST = 1 / 4, 64
STRONGEST = 4 # a colour is full at this ratio and at its reciprocal
RED, GREY, BLUE = (178, 24, 43), (205, 205, 205), (33, 102, 172)
LOSES_BELOW = 0.95
STYLE = "text{font:11px sans-serif;fill:#222}.note{fill:#555}line{stroke:#ddd}.equal{stroke:#222}"


def read_table(path):
    """The rows by group, each as (what, ratio, peer)."""
    groups = {}
    for line in open(path, encoding="utf-8"):
        row = re.match(r"(.+?) {2,}[\d.]+ +[\d.]+ +([\d.]+) +(.+)", line)
        if row and not row[3].startswith("no peer"):
            groups[group].append((row[1], float(row[2]), row[3].strip()))
        elif not row and re.fullmatch(r"[a-z0-9 ]+\n", line):
            group = line.strip()
            groups[group] = []
    return {group: by_operation(rows) for group, rows in groups.items() if rows}


def by_operation(rows):
    """The rows sorted so that those of one operation are together, in the order of the operations."""
    names = list(dict.fromkeys(name_of(what) for what, _, _ in rows))
    return sorted(rows, key=lambda row: names.index(name_of(row[0])))


def name_of(what):
    """A row's name without the size."""
    return re.sub(r", \d+$", "", what)


def across(ratio):
    ratio = min(max(ratio, LOWEST), HIGHEST)
    return LEFT + WIDTH * math.log(ratio / LOWEST) / math.log(HIGHEST / LOWEST)


def colour(ratio):
    share = max(-1, min(1, math.log(ratio) / math.log(STRONGEST)))
    full = BLUE if share > 0 else RED
    return "#" + "".join(f"{round(grey + (end - grey) * abs(share)):02x}" for grey, end in zip(GREY, full))


def text(x, y, content, anchor="start", kind=""):
    kind = f' class="{kind}"' if kind else ""
    return f'<text x="{x:.0f}" y="{y:.0f}"{kind} text-anchor="{anchor}">{html.escape(content)}</text>'


def scale(height):
    """The ratios above the bars, their colours, and a line down from each."""
    steps = [2 ** (power / 4) for power in range(round(math.log2(LOWEST) * 4), round(math.log2(HIGHEST) * 4))]
    for ratio in steps:
        x, end = across(ratio), across(ratio * 2 ** 0.25)
        yield f'<rect fill="{colour(ratio * 2 ** 0.125)}" x="{x:.1f}" y="18" width="{end - x + 0.3:.1f}" height="4"/>'
    ratio = LOWEST
    while ratio <= HIGHEST:
        kind = ' class="equal"' if ratio == 1 else ""
        yield f'<line{kind} x1="{across(ratio):.1f}" x2="{across(ratio):.1f}" y1="22" y2="{height - 4}"/>'
        yield text(across(ratio), 13, f"{ratio:g}", "middle", "note")
        ratio *= 2
    yield text(LEFT - 20, 13, "slower", "end", "note")
    yield text(LEFT + WIDTH + 15, 13, "times as fast as", kind="note")


def bar(ratio, top):
    """A bar from 1 to the ratio, with a point at the end if the ratio is beyond the chart."""
    start, end = across(1), across(ratio)
    if LOWEST <= ratio <= HIGHEST:
        return (f'<rect fill="{colour(ratio)}" x="{min(start, end):.1f}" y="{top}" '
                f'width="{max(abs(end - start), 1):.1f}" height="{BAR}"/>')
    neck = end + (-8 if ratio > 1 else 8)
    points = [(start, top), (neck, top), (end, top + BAR / 2), (neck, top + BAR), (start, top + BAR)]
    return f'<polygon fill="{colour(ratio)}" points="' + " ".join(f"{x:.1f},{y:.1f}" for x, y in points) + '"/>'


def draw(group, rows):
    """The lines of a chart."""
    height = 28 + ROW * len(rows)
    width = LEFT + WIDTH + RIGHT
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
           f'role="img" aria-label="How often faster than its peer: {group}">')
    yield f"<style>{STYLE}</style>"
    yield '<rect width="100%" height="100%" fill="#fff"/>'
    yield from scale(height)
    for i, (what, ratio, peer) in enumerate(rows):
        top = 26 + ROW * i
        yield bar(ratio, top)
        yield text(LEFT - 12, top + 9, what, "end")
        yield text(LEFT + WIDTH + 40, top + 9, f"{ratio:.{2 if ratio < 10 else 1}f}", "end")
        yield text(LEFT + WIDTH + 50, top + 9, peer, kind="note")
    yield "</svg>\n"


def faults(groups, charts, page):
    lines = page.read_text(encoding="utf-8").splitlines()
    explained = {name.strip() for line in lines if line.startswith("|") for name in line.split("|")[1].split(";")}
    for what, ratio, peer in sum(groups.values(), []):
        if ratio < LOSES_BELOW and name_of(what) not in explained:
            yield f"{what}: {ratio:g} of {peer}, and {page} does not say why"
    for chart in charts:
        if not any(f"({chart.relative_to(page.parent)})" in line for line in lines):
            yield f"{page} does not show {chart.name}"


def main():
    table, page, folder = map(pathlib.Path, sys.argv[1:])
    groups = read_table(table)
    charts = {folder / (group.replace(" ", "-") + ".svg"): (group, rows) for group, rows in groups.items()}
    for old in folder.glob("*.svg"):
        old.unlink()
    for chart, (group, rows) in charts.items():
        chart.write_text("\n".join(draw(group, rows)), encoding="utf-8")
    for fault in faults(groups, charts, page):
        print(fault, file=sys.stderr)


if __name__ == "__main__":
    main()

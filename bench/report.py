#!/usr/bin/env python3
"""report.py BENCH.json MEMORY.txt [DOCUMENT PLOT]: prints the ratios of one benchmark run as a table; with DOCUMENT,
puts the table between its "<!-- ratios -->" marks and draws how load time grows with size as an SVG plot."""
import json
import math
import re
import sys

GOALS = [
    ("Tcl time / load time, 300,000 mixed lines", "LoadTcl", "Load/300000", ">=", 25),
    ("load time / floor", "Load/300000", "LoadFloor", "<=", 2.0),
    ("save time / load time", "SaveText", "Load/300000", "<=", 0.5),
    ("destroy time / load time", "Destroy", "Load/300000", "<=", 0.6),
    ("300,000 lines / 30,000 lines", "Load/300000", "Load/30000", "<=", 11),
    ("3,000,000 lines / 300,000 lines", "Load/3000000", "Load/300000", "<=", 11),
    ("one line with 400,000 names / 400,000 lines with one name", "LoadOneLineOfNames", "LoadLinesOfOneName", "<=", 1.0),
    ("import time / load time of the same number of lines", "Import", "Load/300000", None, None),
    ("save to a file / save to a text", "SaveFile", "SaveText", None, None),
    ("design load / bare pass of the XML reader", "DesignLoad/100000", "BareReaderPass", "<=", 1.25),
    ("DOM document / design load", "DomDocument", "DesignLoad/100000", None, None),
    ("all ten queries, first time / design load", "FirstQueries", "DesignLoad/100000", "<=", 0.05),
    ("all ten queries, once more / design load", "LaterQueries", "DesignLoad/100000", "<=", 0.05),
    ("design destroy / design load", "DesignDestroy", "DesignLoad/100000", "<=", 0.10),
    ("1,000,000 instances / 100,000 instances", "DesignLoad/1000000", "DesignLoad/100000", "<=", 11),
]


def read_times(path):
    """The shortest time of each benchmark over its repetitions: the one that was disturbed least."""
    times = {}
    with open(path) as file:
        for entry in json.load(file)["benchmarks"]:
            if entry.get("run_type") == "aggregate" or entry.get("error_occurred"):
                continue
            name = entry["name"].replace("/manual_time", "").split("/repeats:")[0]
            times[name] = min(times.get(name, math.inf), entry["real_time"])
    return times


def table(times, memory):
    rows = ["| figure | goal | measured |", "|---|---|---|"]
    for title, above, below, relation, goal in GOALS:
        if above not in times or below not in times:
            continue
        ratio = times[above] / times[below]
        aim, verdict = "", ""
        if relation:
            met = ratio >= goal if relation == ">=" else ratio <= goal
            aim = f"{'at least' if relation == '>=' else 'at most'} {goal}"
            verdict = "" if met else " (missed)"
        rows.append(f"| {title} | {aim} | {ratio:.3g}{verdict} |")
    for line in memory:
        kind, figures = line.strip().split(": ", 1)
        rows.append(f"| memory, {kind} | | {figures} |")
    return "\n".join(rows)


def plot(times):
    series = []
    for name, prefix, unit in (("constraint lines", "Load/", "line"), ("design instances", "DesignLoad/", "instance")):
        points = sorted((int(key[len(prefix):]), value) for key, value in times.items() if key.startswith(prefix))
        series.append((f"{name}: time per {unit}", [(size, ms * 1e6 / size) for size, ms in points]))
    width, height, left, bottom, top = 720, 360, 60, 50, 60
    log_min, log_max = 3, 6.5
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" font-family="sans-serif" '
             'font-size="12">', f'<rect width="{width}" height="{height}" fill="white"/>',
             f'<text x="{left}" y="20" font-size="14">Load time per unit of input, relative to 1,000 units '
             '(flat is linear)</text>']

    def x(size):
        return left + (math.log10(size) - log_min) / (log_max - log_min) * (width - left - 20)

    def y(ratio):
        return height - bottom - ratio / 2.5 * (height - bottom - top)

    for ratio in (0, 0.5, 1, 1.5, 2, 2.5):
        parts.append(f'<line x1="{left}" x2="{width - 20}" y1="{y(ratio):.1f}" y2="{y(ratio):.1f}" stroke="#ddd"/>')
        parts.append(f'<text x="{left - 8}" y="{y(ratio) + 4:.1f}" text-anchor="end">{ratio}</text>')
    for power in (3, 4, 5, 6):
        parts.append(f'<text x="{x(10 ** power):.1f}" y="{height - bottom + 18}" text-anchor="middle">'
                     f'{10 ** power:,}</text>')
    for index, ((label, points), colour) in enumerate(zip(series, ("#1f6fb4", "#c0392b"))):
        if not points:
            continue
        path = " ".join(f"{x(size):.1f},{y(value / points[0][1]):.1f}" for size, value in points)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        parts.append(f'<text x="{left + 10 + 330 * index}" y="44" fill="{colour}">{label}</text>')
    parts.append(f'<text x="{width / 2}" y="{height - 12}" text-anchor="middle">size of the input</text></svg>')
    return "\n".join(parts) + "\n"


def main():
    times = read_times(sys.argv[1])
    with open(sys.argv[2]) as file:
        ratios = table(times, file.readlines())
    print(ratios)
    if len(sys.argv) > 4:
        with open(sys.argv[3]) as file:
            text = file.read()
        mark = "<!-- ratios -->"
        text = re.sub(f"{mark}.*{mark}", lambda _: f"{mark}\n{ratios}\n{mark}", text, flags=re.S)
        with open(sys.argv[3], "w") as file:
            file.write(text)
        with open(sys.argv[4], "w") as file:
            file.write(plot(times))


main()

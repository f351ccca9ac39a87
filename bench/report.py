#!/usr/bin/env python3
"""report.py BENCH.json [DOCUMENT PLOT]: prints the ratios of one benchmark run as a table. With DOCUMENT, puts the table
between its "<!-- times -->" marks and draws how load time grows with size as an SVG plot."""
import collections
import json
import statistics
import sys

import document
import plot

# The orders of the lines of a file, as inputs::Order numbers them.
ORDERS = ["as a save writes them", "with a period", "at random"]
RATIOS = [
    ("Tcl / load, 300,000 mixed lines", "LoadTcl", "Load/300000"),
    ("load / floor", "Load/300000", "LoadFloor"),
    *((f"load / load of lines as a save writes them, lines {order}", f"LoadInOrder/{i}", "LoadInOrder/0")
      for i, order in enumerate(ORDERS) if i > 0),
    *((f"save to a text / load, lines {order}", f"SaveText/{i}", f"LoadInOrder/{i}") for i, order in enumerate(ORDERS)),
    *((f"destroy / load, lines {order}", f"Destroy/{i}", f"LoadInOrder/{i}") for i, order in enumerate(ORDERS)),
    *((f"check / load, lines {order}", f"Check/{i}", f"LoadInOrder/{i}") for i, order in enumerate(ORDERS)),
    ("save to a file / save to a text", "SaveFile", "SaveText/1"),
    ("import / load of as many lines", "Import", "Load/300000"),
    ("load of 300,000 lines / 30,000 lines", "Load/300000", "Load/30000"),
    ("load of 3,000,000 lines / 300,000 lines", "Load/3000000", "Load/300000"),
    ("load of one line of 400,000 names / 400,000 lines of one name", "LoadOneLineOfNames", "LoadLinesOfOneName"),
    ("dump load / bare pass of the XML reader", "DesignLoad/100000", "BareReaderPass"),
    ("DOM document / dump load", "DomDocument", "DesignLoad/100000"),
    ("ten queries, first time / dump load", "FirstQueries", "DesignLoad/100000"),
    ("ten queries, once more / dump load", "LaterQueries", "DesignLoad/100000"),
    ("dump destroy / dump load", "DesignDestroy", "DesignLoad/100000"),
    ("dump of 1,000,000 instances / 100,000 instances", "DesignLoad/1000000", "DesignLoad/100000"),
]


def read_times(path):
    """The times of each benchmark, in the order of the repetitions."""
    times = collections.defaultdict(list)
    with open(path) as file:
        entries = json.load(file)["benchmarks"]
    for entry in sorted(entries, key=lambda entry: entry.get("repetition_index", 0)):
        if entry.get("run_type") != "aggregate" and not entry.get("error_occurred"):
            times[entry["name"].split("/iterations")[0]].append(entry["real_time"])
    return times


def table(times):
    """Each ratio of two times is taken within a repetition, in which the machine is the same for both."""
    rows = ["| times | median | range |", "|---|---|---|"]
    for title, above, below in RATIOS:
        ratios = [a / b for a, b in zip(times[above], times[below])]
        if ratios:
            rows.append(f"| {title} | {statistics.median(ratios):.3g} | {min(ratios):.3g} to {max(ratios):.3g} |")
    return "\n".join(rows)


def medians(times, prefix):
    """The size and the median time of each benchmark NAME/SIZE, by size."""
    return sorted((int(name[len(prefix):]), statistics.median(values)) for name, values in times.items()
                  if name.startswith(prefix))


def main():
    times = read_times(sys.argv[1])
    print(table(times))
    if len(sys.argv) > 2:
        document.put(sys.argv[2], "times", table(times))
        series = [("constraint lines: time per line", medians(times, "Load/")),
                  ("design instances: time per instance", medians(times, "DesignLoad/"))]
        plot.draw(sys.argv[3], series)


main()

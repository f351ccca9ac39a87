#!/usr/bin/env python3
"""counts.py PROGRAM RECORD [--record DOCUMENT]: counts the instructions of the operations of toveng_count, prints them
as a table and compares them with the record. Exits with 1 when a figure is more than 3 % above its record or above
its promise. With --record, writes the record, and puts the table between the "<!-- counts -->" marks of the
document."""
import collections
import concurrent.futures
import os
import re
import subprocess
import sys

sys.dont_write_bytecode = True  # leave no files beside the sources

import document

TOLERANCE = 1.03

# An operation is counted per byte of its input file, per word, or relative to another operation.
Figure = collections.namedtuple("Figure", "title operation against promise")
BYTE = WORD = None  # the program prints the number
FIGURES = [
    Figure("load, instructions per byte of the file", "load", BYTE, 34),
    Figure("save, instructions per byte of the file", "save", BYTE, 14),
    Figure("destroy, instructions per byte of the file", "destroy", BYTE, 10.1),
    Figure("check, instructions per byte of the file", "check", BYTE, None),
    Figure("index of a design's names, times the load of its dump", "index", "dump-load", 0.1),
    Figure("a pin that the design has, instructions per word", "pins", WORD, 3000),
    Figure("a pin that it does not have, instructions per word", "pins-missing", WORD, 3000),
    Figure("a plain name that the design has, instructions per word", "names", WORD, 3000),
    Figure("a plain name that it does not have, instructions per word", "names-missing", WORD, 3000),
    Figure("`u_core_N/u_blk_*/inst_M/A?`, instructions per word", "patterns", WORD, None),
    Figure("`u_core_N/u_blk_M/inst_K/C*` for a clock, instructions per word", "clock-patterns", WORD, 20000),
    Figure("the same for a plain name, instructions per word", "name-patterns", WORD, 20000),
    Figure("`*/*/*/Z`, which the design does not have, times the load of its dump", "pattern-nowhere", "dump-load", 0.04),
    Figure("join with a design of 10,000 instances, instructions per byte of the file", "join", BYTE, 250),
    Figure("dump load, times a bare pass of the XML reader", "dump-load", "dump-bare", 1.15),
    Figure("ten queries of a dump, first time, times its load", "dump-queries", "dump-load", None),
    Figure("dump destroy, times its load", "dump-destroy", "dump-load", None),
]


def count(program, operation):
    """Returns the instructions of the operation, and how many bytes or words it is counted by."""
    # Symbols are bound before the operation, and hash tables have no random seed: the same count in each run.
    environment = {"PATH": os.environ["PATH"], "LD_BIND_NOW": "1", "QT_HASH_SEED": "0"}
    command = ["valgrind", "--tool=callgrind", "--instr-atstart=no", "--callgrind-out-file=/dev/null", program, operation]
    run = subprocess.run(command, env=environment, capture_output=True, text=True)
    collected = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not collected:
        sys.exit(f"{' '.join(command)} failed:\n{run.stderr}")
    return int(collected[1]), int(run.stdout)


def measure(program):
    operations = sorted({name for figure in FIGURES for name in (figure.operation, figure.against) if name})
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        counts = dict(zip(operations, pool.map(lambda operation: count(program, operation), operations)))
    figures = {}
    for figure in FIGURES:
        instructions, steps = counts[figure.operation]
        figures[figure.operation] = instructions / (counts[figure.against][0] if figure.against else steps)
    return figures


def read_record(path):
    with open(path) as file:
        rows = (line.split() for line in file if not line.startswith("#"))
        return {operation: float(figure) for operation, figure in rows}


def counted_and_recorded(figures, record, figure):
    """What has no record yet counts as its own."""
    counted = figures[figure.operation]
    return counted, record.get(figure.operation, counted)


def write_record(path, figures):
    with open(path, "w") as file:
        file.write("# What scripts/bench --count found when a change last recorded it; see docs/performance.md.\n")
        file.writelines(f"{operation} {figure:.5g}\n" for operation, figure in figures.items())


def table(figures, record):
    rows = ["| operation | promise | recorded | counted | |", "|---|---|---|---|---|"]
    for figure in FIGURES:
        counted, recorded = counted_and_recorded(figures, record, figure)
        promise = f"at most {figure.promise}" if figure.promise else ""
        rows.append(f"| {figure.title} | {promise} | {recorded:.4g} | {counted:.4g} | {counted / recorded - 1:+.1%} |")
    return "\n".join(rows)


def rounded(figure):
    return f"{float(f'{figure:.3g}'):g}"


def document_table(figures):
    rows = ["| operation | promise | counted |", "|---|---|---|"]
    for figure in FIGURES:
        promise = f"at most {figure.promise}" if figure.promise else ""
        rows.append(f"| {figure.title} | {promise} | {rounded(figures[figure.operation])} |")
    return "\n".join(rows)


def faults(figures, record):
    for figure in FIGURES:
        counted, recorded = counted_and_recorded(figures, record, figure)
        if counted > recorded * TOLERANCE:
            yield f"{figure.operation}: {counted:.4g} is more than 3 % above the record, {recorded:.4g}"
        if figure.promise and counted > figure.promise:
            yield f"{figure.operation}: {counted:.4g} is above the promise, {figure.promise}"


def main():
    program, record_path = sys.argv[1:3]
    figures = measure(program)
    if sys.argv[3:4] == ["--record"]:
        write_record(record_path, figures)
        document.put(sys.argv[4], "counts", document_table(figures))
    record = read_record(record_path)
    print(table(figures, record))
    found = list(faults(figures, record))
    for fault in found:
        print(fault, file=sys.stderr)
    sys.exit(1 if found else 0)


main()

#!/usr/bin/env python3
"""document.py DOCUMENT MARK FILE: inserts the text of the file between the two comments "<!-- MARK -->" of a document.
document.py --check DOCUMENT MARK FILE: compares the tables in both instead; numbers may differ by a tenth and 8."""
import re
import sys

sys.dont_write_bytecode = True


def split(path, mark):
    """The text of a document before, between and after the two comments."""
    with open(path) as file:
        parts = file.read().split(f"<!-- {mark} -->")
    if len(parts) != 3:
        sys.exit(f"{path} has no pair of <!-- {mark} -->")
    return parts


def put(path, mark, text):
    before, _, after = split(path, mark)
    comment = f"<!-- {mark} -->"
    with open(path, "w") as file:
        file.write(f"{before}{comment}\n{text}\n{comment}{after}")


def is_near(a, b):
    if re.fullmatch(r"[\d.]+", a) and re.fullmatch(r"[\d.]+", b):
        return abs(float(a) - float(b)) <= 8 + max(float(a), float(b)) / 10
    return a == b


def differences(recorded, text):
    old, new = (lines.strip().splitlines() for lines in (recorded, text))
    if len(old) != len(new):
        yield f"{len(old)} rows are recorded, {len(new)} measured"
    for row, measured in zip(old, new):
        # The last column is a ratio of two others.
        cells = zip(row.split(" | ")[:-1], measured.split(" | ")[:-1])
        if not all(is_near(a.strip("| "), b.strip("| ")) for a, b in cells):
            yield f"recorded {row}\nmeasured {measured}"


def main():
    check = sys.argv[1] == "--check"
    path, mark, source = sys.argv[-3:]
    with open(source) as file:
        text = file.read().strip()
    if check:
        found = list(differences(split(path, mark)[1], text))
        sys.exit("\n".join(found) or None)
    put(path, mark, text)


if __name__ == "__main__":
    main()

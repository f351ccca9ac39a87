#!/usr/bin/env python3
"""document.py DOCUMENT MARK FILE: puts the text of the file between the two comments "<!-- MARK -->" of a document."""
import re
import sys


def put(path, mark, text):
    with open(path) as file:
        document = file.read()
    comment = f"<!-- {mark} -->"
    document, found = re.subn(f"{comment}.*{comment}", lambda _: f"{comment}\n{text}\n{comment}", document, flags=re.S)
    if found != 1:
        sys.exit(f"{path} has no pair of {comment}")
    with open(path, "w") as file:
        file.write(document)


if __name__ == "__main__":
    with open(sys.argv[3]) as source:
        put(sys.argv[1], sys.argv[2], source.read().strip())

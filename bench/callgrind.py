"""Sums the profiles that callgrind leaves, by the library that an instruction belongs to."""
import collections
import re
import subprocess

# The first group whose pattern is found in "file:function [library]" takes the function.
GROUPS = [
    ("malloc", r"malloc/|:operator (new|delete)"),
    ("XML reader and Qt", r"\[.*libQt"),
    ("C and C++ libraries", r"\[.*(libc|ld-linux|libm|libstdc\+\+|libgcc)"),
    ("own code", r""),
]
DEAREST = 4


def short(function):
    """The name of a C++ function without its namespace, parameters and return type."""
    name = re.sub(r"\(anonymous namespace\)::|kiri::tov::|impl_detail::|\[.*?\]", "", function)
    while "<" in name:
        shorter = re.sub(r"<[^<>]*>", "", name)
        if shorter == name:
            break
        name = shorter
    return name.split("(")[0].split(" ")[-1] or function


def read(path):
    """Yields the instructions and "file:function [library]" of each function of a profile."""
    command = ["callgrind_annotate", "--auto=no", "--threshold=100", path]
    for line in subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines():
        entry = re.match(r" *([\d,]+) \([ \d.]+%\)  (.*:.*)", line)
        if entry:
            yield int(entry[1].replace(",", "")), entry[2]


def row(operation, path):
    groups = collections.Counter()
    own = collections.Counter()
    for instructions, function in read(path):
        group = next(name for name, pattern in GROUPS if re.search(pattern, function))
        groups[group] += instructions
        if group == "own code":
            own[short(function.split(":", 1)[1])] += instructions
    total = sum(groups.values())
    shares = " | ".join(f"{groups[name] / total:.0%}" for name, _ in GROUPS)
    dearest = ", ".join(f"`{name}` {instructions / total:.1%}" for name, instructions in own.most_common(DEAREST))
    return f"| {operation} | {shares} | {dearest} |"


def table(profiles):
    """A table with a row for each (operation, path of its profile)."""
    rows = ["| operation | " + " | ".join(name for name, _ in GROUPS) + " | most expensive own functions |",
            "|---" * (len(GROUPS) + 2) + "|"]
    return "\n".join(rows + [row(operation, path) for operation, path in profiles])

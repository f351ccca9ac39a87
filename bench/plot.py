"""Draws how load time grows with the size of the input."""
import math

WIDTH, HEIGHT, LEFT, RIGHT, TOP, BOTTOM = 720, 360, 60, 20, 60, 50
FIRST_POWER, LAST_POWER = 3, 6.5
HIGHEST = 2.5
COLOURS = ("#1f6fb4", "#c0392b")


def x(size):
    return LEFT + (math.log10(size) - FIRST_POWER) / (LAST_POWER - FIRST_POWER) * (WIDTH - LEFT - RIGHT)


def y(ratio):
    return HEIGHT - BOTTOM - ratio / HIGHEST * (HEIGHT - BOTTOM - TOP)


def text(left, top, content, more=""):
    return f'<text x="{left:.1f}" y="{top:.1f}"{more}>{content}</text>'


def grid():
    for half in range(6):
        ratio = half / 2
        yield f'<line x1="{LEFT}" x2="{WIDTH - RIGHT}" y1="{y(ratio):.1f}" y2="{y(ratio):.1f}" stroke="#ddd"/>'
        yield text(LEFT - 8, y(ratio) + 4, ratio, ' text-anchor="end"')
    for power in (3, 4, 5, 6):
        yield text(x(10 ** power), HEIGHT - BOTTOM + 18, f"{10 ** power:,}", ' text-anchor="middle"')
    yield text(WIDTH / 2, HEIGHT - 12, "size of the input", ' text-anchor="middle"')


def curve(index, label, points):
    """The time per unit at each size, relative to that at the first."""
    first_size, first_time = points[0]
    line = " ".join(f"{x(size):.1f},{y(time / size / (first_time / first_size)):.1f}" for size, time in points)
    yield f'<polyline points="{line}" fill="none" stroke="{COLOURS[index]}" stroke-width="2"/>'
    yield text(LEFT + 10 + 330 * index, 44, label, f' fill="{COLOURS[index]}"')


def draw(path, series):
    """Writes an SVG plot of (label, [(size, time)]) to the file."""
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" font-family="sans-serif" '
             'font-size="12">', f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
             text(LEFT, 20, "Load time per unit of input, relative to 1,000 units (flat is linear)", ' font-size="14"'),
             *grid()]
    for index, (label, points) in enumerate(series):
        if points:
            parts += curve(index, label, points)
    with open(path, "w") as file:
        file.write("\n".join(parts) + "\n</svg>\n")

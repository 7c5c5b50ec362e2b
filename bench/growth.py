#!/usr/bin/env python3
"""Measures how the cost of velmora-batch grows with the size of the model, and draws it.

bench/growth.py                        models of 10,000 to 1,000,000 triangles or points, a table
bench/growth.py --largest 7            up to 10 to the power of 7: takes gigabytes of disk and memory
bench/growth.py --chart docs/x.svg     draws the table too
bench/growth.py --only slice --runs 5  the rows whose name holds the word

Each figure is of a program that opens the file and does the work, small models several times: the least processor time of
the runs for one of them, in user mode, as that is what other work on the machine disturbs least, and the most memory. The last column is by what power of
the size the time grew from the size before to the largest one: 1 is a time in proportion, 2 one that grows with the
square. Readers thin points of .apt files above 201,000; zones are read whole.
"""

import argparse
import math
import multiprocessing
import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import compare  # noqa: E402

COLOURS = ("#1b6ca8", "#c0392b", "#1e8449", "#8e44ad", "#b9770e", "#17807e", "#7f3b08", "#555555")


def sheet_of(size, triangles):
    """Columns and rows of a sheet of about so many triangles or points."""
    side = round(math.sqrt(size / 2 if triangles else size))
    return (side + 1, side + 1) if triangles else (side, side)


def write_points(path, size):
    columns, rows = sheet_of(size, False)
    with path.open("w") as file:
        file.write(f"{rows} {columns}\n")
        file.writelines(compare.sheet(columns, rows))


def write_ordered(path, size):
    columns, rows = sheet_of(size, False)
    with path.open("w") as file:
        file.write('TITLE = "sheet"\nVARIABLES = "x", "y", "z"\n')
        file.write(f'ZONE T="sheet", I={columns}, J={rows}, K=1, F=POINT\n')
        file.writelines(compare.sheet(columns, rows))


def with_sheet(write):
    def written(path, size):
        compare.triangle_sheet = lambda small: sheet_of(size, True)
        write(path, False)

    return written


def works():
    """Name, kind of file, what writes it, and the lines of the script behind the opening."""
    facets, zone = with_sheet(compare.write_facets), with_sheet(compare.write_triangles)
    moves = [f"mouse move {350 + i} 300" for i in range(100)]
    drag = ["run point.capture", "mouse down 350 300", *moves, "mouse up 450 300"]
    return [
        ("open points of .apt", "apt", write_points, []),
        ("open points of ordered .dat", "dat", write_ordered, []),
        ("open triangles of text .stl", "stl", facets, []),
        ("open triangles of .dat", "dat", zone, []),
        ("open triangles of .dat, slice by 100 planes", "dat", zone, ["run convert.toSkl number=100"]),
        ("open triangles of .dat, drag over them", "dat", zone, drag),
        ("open triangles of .dat, save them", "dat", zone, ["run file.saveAs file={copy}"]),
    ]


def repeats(size):
    """Small work is done several times by one program: the clock of processor time ticks slowly."""
    return max(1, min(50, 300_000 // size))


def measure(options, path, lines, times):
    least = None
    memory = 0
    for _ in range(options.runs):
        words = [options.program]
        for number in range(times):
            copy = path.with_name(f"copy{number}{path.suffix}")
            copy.unlink(missing_ok=True)
            words += ["-c", f'open "{path}"']
            for line in lines:
                words += ["-c", line.format(copy=f'"{copy}"')]
        child = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        if child.returncode != 0:
            raise compare.Failed(f"status {child.returncode}: {words}")
        seconds = usage.ru_utime / times
        least = seconds if least is None else min(least, seconds)
        memory = max(memory, usage.ru_maxrss / 1024)
    return least, memory


def power(points):
    """From the last size but one to the last one."""
    if len(points) < 2:
        return "-"
    (n, t, _), (more, longer, _) = points[-2:]
    return f"{math.log(longer / t) / math.log(more / n):.2f}" if t > 0 and longer > 0 else "-"


# ---- Chart -----------------------------------------------------------------------------------------------------------


def panel(left, title, unit, figures, column, guide):
    """One picture with logarithmic axes; `figures` are (name, points)."""
    width, height, top = 320, 300, 40
    sizes = [point[0] for _, points in figures for point in points]
    values = [max(point[column], 1e-4) for _, points in figures for point in points]
    x0, x1 = math.floor(math.log10(min(sizes)) + 0.01), math.ceil(math.log10(max(sizes)) - 0.01)
    y0, y1 = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    x1, y1 = max(x1, x0 + 1), max(y1, y0 + 1)

    def at(size, value):
        x = left + width * (math.log10(size) - x0) / (x1 - x0)
        y = top + height * (1 - (math.log10(max(value, 1e-4)) - y0) / (y1 - y0))
        return f"{x:.1f},{y:.1f}"

    drawn = [f'<text x="{left}" y="{top - 14}" class="title">{title}</text>']
    for e in range(x0, x1 + 1):
        x = at(10**e, 10**y0).split(",")[0]
        drawn.append(f'<path d="M{x},{top} V{top + height}" class="grid"/>')
        drawn.append(f'<text x="{x}" y="{top + height + 16}" class="x">{10**e:,}</text>')
    for e in range(y0, y1 + 1):
        y = at(10**x0, 10.0**e).split(",")[1]
        drawn.append(f'<path d="M{left},{y} H{left + width}" class="grid"/>')
        drawn.append(f'<text x="{left - 6}" y="{float(y) + 4:.1f}" class="y">{10.0**e:g} {unit}</text>')
    if guide:
        least = min(values)
        top_of_guide = least * 10 ** (x1 - x0)
        drawn.append(f'<path d="M{at(10**x0, least)} L{at(10**x1, top_of_guide)}" class="guide"/>')
    for (_, points), colour in zip(figures, COLOURS):
        line = " ".join(at(point[0], point[column]) for point in points)
        drawn.append(f'<polyline points="{line}" stroke="{colour}"/>')
        drawn += [
            '<circle cx="{}" cy="{}" r="3" fill="{}"/>'.format(*at(point[0], point[column]).split(","), colour)
            for point in points
        ]
    return drawn


STYLE = """<style>
text { font-family: sans-serif; font-size: 11px; fill: #333 } .title { font-size: 14px }
.x { text-anchor: middle } .y { text-anchor: end } .grid { stroke: #ddd } polyline { fill: none; stroke-width: 1.8 }
.guide { stroke: #999; stroke-dasharray: 5 4 }
</style>"""


def chart(figures):
    height = 400 + 18 * ((len(figures) + 1) // 2)
    drawn = ["<!-- Drawn by bench/growth.py. -->"]
    drawn += [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 880 {height}" width="880">', STYLE]
    drawn.append(f'<rect width="880" height="{height}" fill="#fff"/>')
    drawn += panel(80, "User time; dashed: in proportion to the size", "s", figures, 1, True)
    drawn += panel(510, "Peak memory", "MB", figures, 2, False)
    for i, ((name, _), colour) in enumerate(zip(figures, COLOURS)):
        x, y = 80 + 430 * (i % 2), 390 + 18 * (i // 2)
        drawn.append(f'<path d="M{x},{y - 4} h24" stroke="{colour}" stroke-width="2"/>')
        drawn.append(f'<text x="{x + 32}" y="{y}">{name}</text>')
    return "\n".join([*drawn, "</svg>", ""])


# ---- All of it -------------------------------------------------------------------------------------------------------


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=pathlib.Path, metavar="PROGRAM",
                        default=compare.ROOT / "build" / "release" / "bin" / "velmora-batch")
    parser.add_argument("--smallest", type=int, default=4, metavar="POWER", help="of ten")
    parser.add_argument("--largest", type=int, default=6, metavar="POWER", help="of ten")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--only", nargs="+", default=[""], metavar="WORD")
    parser.add_argument("--chart", type=pathlib.Path, metavar="FILE")
    return parser.parse_args()


def main():
    options = parse_options()
    sizes = [10**power_of_ten for power_of_ten in range(options.smallest, options.largest + 1)]
    figures = []
    heads = [f"{size:,}" for size in sizes]
    print("| work | " + " | ".join(heads) + " | power |\n|---|" + "---|" * (len(heads) + 1))
    with tempfile.TemporaryDirectory(prefix="growth-") as folder:
        for name, kind, write, lines in works():
            if not any(word in name for word in options.only):
                continue
            points = []
            for size in sizes:
                path = pathlib.Path(folder) / f"{name.split()[1]}{size}.{kind}"
                if not path.exists():
                    writer = multiprocessing.Process(target=write, args=(path, size))  # its memory goes with it
                    writer.start()
                    writer.join()
                points.append((size, *measure(options, path, lines, repeats(size))))
            figures.append((name, points))
            row = [f"{seconds:.3f} s, {memory:.0f} MB" for _, seconds, memory in points]
            print("| " + " | ".join([name, *row, power(points)]) + " |", flush=True)
    if options.chart and figures:
        options.chart.write_text(chart(figures))


if __name__ == "__main__":
    try:
        main()
    except compare.Failed as failure:
        sys.exit(f"growth.py: {failure}")

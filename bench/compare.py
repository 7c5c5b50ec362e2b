#!/usr/bin/env python3
"""Sets the programs beside the least that their work can cost, and prints a table.

bench/compare.py                         every row, five runs, programs of build/release
bench/compare.py --before FOLDER         the programs of another folder run along: what was there before a change
bench/compare.py --only .stl --runs 11   the rows whose name holds one of the words

The least is a loop of its own over the same bytes or triangles. All that stands in one row runs in turns, so that what
else the machine does meets all of them alike. A figure is the median, the smallest and the largest behind it. The files
are made in a temporary folder; put that into memory (TMPDIR) to leave the disk out of the figures, or name one that they
stay in (--files). A program that takes
less memory than this script, some 15 MB, seems to take as much.
"""

import argparse
import json
import math
import multiprocessing
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
DIGITS = ".16e"


# ---- Files -----------------------------------------------------------------------------------------------------------


def place(x, y, z):
    return f"{x:{DIGITS}} {y:{DIGITS}} {z:{DIGITS}}\n"


def sheet(columns, rows):
    """The points of a wavy sheet, row by row."""
    for row in range(rows):
        v = 0.013 * row
        for column in range(columns):
            u = 0.01 * column
            yield place(u + 0.1 * math.sin(v), v - 3.0, math.sin(3.0 * u) * math.cos(v))


def cells(columns, rows):
    """Two triangles for each cell of a sheet, nodes from 0."""
    for row in range(rows - 1):
        for column in range(columns - 1):
            a = row * columns + column
            yield (a, a + 1, a + columns)
            yield (a + columns, a + 1, a + columns + 1)


def write_grid(path, small):
    patches = 5 if small else 1000
    with path.open("w") as file:
        for k in range(patches):
            file.write("50 40\n")
            for n in range(50):
                for m in range(40):
                    u, v = 0.1 * n, 0.15 * m
                    file.write(place(k + math.cos(u) * math.cos(v), math.sin(u) * math.cos(v), -math.sin(v) / 3.0))


def write_ordered(path, small):
    columns, rows = (100, 100) if small else (2000, 1000)
    with path.open("w") as file:
        file.write('TITLE = "sheet"\nVARIABLES = "x", "y", "z"\n')
        file.write(f'ZONE T="sheet", I={columns}, J={rows}, K=1, F=POINT\n')
        file.writelines(sheet(columns, rows))


def triangle_sheet(small):
    return (101, 51) if small else (1001, 501)


def write_triangles(path, small):
    columns, rows = triangle_sheet(small)
    with path.open("w") as file:
        file.write('TITLE = "sheet"\nVARIABLES = "x", "y", "z"\n')
        file.write(f'ZONE T="sheet", N={columns * rows}, E={2 * (columns - 1) * (rows - 1)}, F=FEPOINT, ET=TRIANGLE\n')
        file.writelines(sheet(columns, rows))
        file.writelines(f"{a + 1} {b + 1} {c + 1}\n" for a, b, c in cells(columns, rows))


def write_facets(path, small):
    columns, rows = triangle_sheet(small)
    points = ["vertex " + point for point in sheet(columns, rows)]
    with path.open("w") as file:
        file.write("solid sheet\n")
        for corners in cells(columns, rows):
            file.write("facet normal 0 0 1\nouter loop\n")
            file.writelines(points[corner] for corner in corners)
            file.write("endloop\nendfacet\n")
        file.write("endsolid sheet\n")


# ---- One run ---------------------------------------------------------------------------------------------------------


class Failed(Exception):
    pass


def run_program(words, errors=None):
    """Seconds of processor and of clock, and the most memory in MB, of a whole program."""
    begin = time.perf_counter()
    child = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors)
    _, status, usage = os.wait4(child.pid, 0)
    wall = time.perf_counter() - begin
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        raise Failed(f"status {child.returncode}: {' '.join(map(str, words))}")
    return {"cpu": usage.ru_utime + usage.ru_stime, "wall": wall, "memory": usage.ru_maxrss / 1024}


def run_benchmark(program, name):
    """The same of one benchmark, without what was made for it, and without its memory."""
    words = [program, f"--benchmark_filter=^{name}$", "--benchmark_min_time=0", "--benchmark_format=json"]
    done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    found = json.loads(done.stdout)["benchmarks"] if done.returncode == 0 and done.stdout else []
    if len(found) != 1 or found[0]["time_unit"] != "ms":
        raise Failed(f"no such benchmark: {name}")
    return {"cpu": found[0]["cpu_time"] / 1000, "wall": found[0]["real_time"] / 1000}


# ---- Rows ------------------------------------------------------------------------------------------------------------


def rows_of(options, folder):
    """Name, and what runs in turns: a function for each of the columns."""
    folders = {"program": options.programs, **({"before": options.before} if options.before else {})}
    loops = options.programs / "bare_loops"

    def script(line):
        return {
            column: lambda programs=programs: run_program([programs / "velmora-batch", "-c", line])
            for column, programs in folders.items()
        }

    def file_row(name, file, write, *reals):
        path = folder / file

        def make():
            if path.exists():
                return
            # In a process of its own: what this one holds would count as the memory of those that it starts.
            writer = multiprocessing.Process(target=write, args=(path, options.small))
            writer.start()
            writer.join()

        bare = [loops, "numbers", path, *map(str, reals)]
        return name, make, {"bare": lambda: run_program(bare), **script(f'open "{path}"')}

    def benchmark(program, name):
        return {
            column: lambda programs=programs: run_benchmark(programs / program, name)
            for column, programs in folders.items()
        }

    def whole_benchmark(program, name):
        words = [options.programs / program, f"--benchmark_filter=^{name}$", "--benchmark_min_time=0"]
        return {"program": lambda: run_program(words, subprocess.DEVNULL)}

    columns, rows = triangle_sheet(options.small)
    return [
        ("start and quit", None, {"bare": lambda: run_program([loops, "nothing"]), **script("quit")}),
        file_row("open 2 million points of .apt", "points.apt", write_grid),
        file_row("open 1 million triangles of text .stl", "triangles.stl", write_facets),
        file_row("open 2 million points of ordered .dat", "points.dat", write_ordered),
        file_row("open 1 million triangles of .dat", "triangles.dat", write_triangles, 3 * columns * rows),
        (
            "slice 1 million triangles, 100 planes",
            None,
            {
                "bare": lambda: run_benchmark(options.programs / "slice_bench",
                                              "bareSlice/triangles:1000000/process_time"),
                **benchmark("slice_bench", "slice/triangles:1000000/shared:1/process_time"),
            },
        ),
        (
            "slice 1 million triangles, 20,000 planes",
            None,
            {} if options.small else whole_benchmark("slice_bench", "slicePlanes/planes:20000/process_time/real_time"),
        ),
        (
            "project 100,000 points on 1 million triangles",
            None,
            benchmark("projection_bench", "projection/process_time"),
        ),
    ]


def figure(runs, what):
    values = [run[what] for run in runs if what in run]
    if not values:
        return "-"
    digits = 0 if what == "memory" else 4 if max(values) < 0.1 else 2
    middle, least, most = statistics.median(values), min(values), max(values)
    return f"{middle:.{digits}f} ({least:.{digits}f} to {most:.{digits}f})"


def ratio(runs, column, what):
    if "bare" not in runs:
        return "-"
    bare = statistics.median(run[what] for run in runs["bare"])
    return f"{statistics.median(run[what] for run in runs[column]) / bare:.2f}" if bare > 0 else "-"


def table_lines(name, runs):
    for column in ("bare", "before", "program"):
        if column in runs:
            figures = [figure(runs[column], what) for what in ("cpu", "wall", "memory")]
            shares = ["", ""] if column == "bare" else [ratio(runs, column, what) for what in ("cpu", "wall")]
            yield "| " + " | ".join([name, column, *figures, *shares]) + " |"


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", type=pathlib.Path, default=ROOT / "build" / "release" / "bin", metavar="FOLDER")
    parser.add_argument("--before", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("--files", type=pathlib.Path, metavar="FOLDER", help="files that are there are taken")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--only", nargs="+", default=[""], metavar="WORD")
    parser.add_argument("--small", action="store_true", help="small files: to see that it works")
    options = parser.parse_args()
    if options.runs < 1:
        parser.error("at least one run")
    return options


def main():
    options = parse_options()
    threads = os.environ.get("VELMORA_THREADS", "as many")
    print(f"Seconds on {os.cpu_count()} processors, {threads} threads, {options.runs} runs in turns.\n")
    print("| work | what | cpu | wall | memory, MB | cpu to bare | wall to bare |\n|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory(prefix="compare-") as folder:
        for name, make, work in rows_of(options, options.files or pathlib.Path(folder)):
            if not any(word in name for word in options.only):
                continue
            if make:
                make()
            runs = {column: [] for column in work}
            for _ in range(options.runs):
                for column, run in work.items():
                    runs[column].append(run())
            print("\n".join(table_lines(name, runs)), flush=True)


if __name__ == "__main__":
    try:
        main()
    except Failed as failure:
        sys.exit(f"compare.py: {failure}")

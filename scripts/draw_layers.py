#!/usr/bin/env python3
"""Draws docs/layers.svg, the picture of the libraries and what each is built on, from the CMakeLists.txt of src.

scripts/draw_layers.py           draws it anew
scripts/draw_layers.py --check   says whether the picture is true: a test runs this
"""

import dataclasses
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PICTURE = ROOT / "docs" / "layers.svg"
WIDTH, HEIGHT = 180, 46  # of a box
ACROSS, DOWN = 210, 84  # from box to box
MARGIN = 24


@dataclasses.dataclass
class Library:
    folder: str
    depends: list  # names of our own libraries
    foreign: list  # packages of others
    programs: list


def library_of(lists, text):
    declared = re.search(r"velmora_add_library\(\s*(\w+)(.*?)\)", text, re.DOTALL)
    if not declared:
        return None
    words = re.sub(r"#.*", "", declared[2]).split()
    used, keyword = [], ""
    for word in words:
        if word in ("SOURCES", "DEPENDS", "USES", "FOLDERS", "PRECOMPILE"):
            keyword = word
        elif keyword in ("DEPENDS", "USES"):
            used.append(word)
    foreign = sorted({word.split("::")[0] for word in used if "::" in word})
    programs = re.findall(r"add_executable\((\S+)", text)
    folder = lists.parent.relative_to(ROOT / "src").as_posix()
    return declared[1], Library(folder, [word for word in used if "::" not in word], foreign, programs)


def libraries():
    found = [library_of(lists, lists.read_text()) for lists in sorted((ROOT / "src").rglob("CMakeLists.txt"))]
    return dict(library for library in found if library)


def heights(all_libraries):
    """How many libraries stand below each, one upon the other."""
    known = {}

    def height(name, above=()):
        if name in above:
            sys.exit("libraries depend on each other in a ring: " + " > ".join([*above, name]))
        if name not in all_libraries:
            sys.exit(f"{above[-1]} depends on {name}, which no CMakeLists.txt of src declares")
        if name not in known:
            known[name] = 1 + max((height(below, (*above, name)) for below in all_libraries[name].depends), default=-1)
        return known[name]

    for name in all_libraries:
        height(name)
    return known


def needed_lines(all_libraries):
    """The dependencies that do not follow from others: only these are drawn."""

    def reached(name):
        below = all_libraries[name].depends
        return set(below).union(*[reached(other) for other in below])

    lines = []
    for name, library in all_libraries.items():
        for below in library.depends:
            if not any(below in reached(other) for other in library.depends if other != below):
                lines.append((name, below))
    return sorted(lines)


def rows_of(level, lines):
    """Rows from the top. A line that passes a row has a place of its own in it, so that it runs round the boxes."""
    rows = [sorted(name for name in level if level[name] == h) for h in range(max(level.values()), -1, -1)]
    top = max(level.values())
    roads = []
    for above, below in lines:
        road = [above]
        for h in range(level[above] - 1, level[below], -1):
            road.append((above, below, h))
            rows[top - h].append(road[-1])
        roads.append([*road, below])
    return rows, roads


def places_of(rows, roads):
    """Each thing of a row stands under the middle of what is above it and joined to it."""
    above = {}
    for road in roads:
        for first, second in zip(road, road[1:]):
            above.setdefault(second, []).append(first)
    longest = max(len(row) for row in rows)
    x, places = {}, {}
    for number, row in enumerate(rows):
        wish = {thing: [x[other] for other in above.get(thing, [])] for thing in row}
        row.sort(key=lambda thing: (sum(wish[thing]) / max(len(wish[thing]), 1), str(thing)))
        start = (longest - len(row)) * ACROSS / 2
        for column, thing in enumerate(row):
            x[thing] = start + column * ACROSS
            places[thing] = (MARGIN + x[thing] + WIDTH / 2, MARGIN + number * DOWN)
    return places, 2 * MARGIN + (longest - 1) * ACROSS + WIDTH, 2 * MARGIN + (len(rows) - 1) * DOWN + HEIGHT


def box(library, place):
    x, y = place
    notes = ", ".join([*library.programs, *library.foreign])
    lines = [f'<rect x="{x - WIDTH / 2:g}" y="{y:g}" width="{WIDTH}" height="{HEIGHT}" rx="6" class="box"/>']
    lines.append(f'<text x="{x:g}" y="{y + (20 if notes else 28):g}" class="name">{library.folder}</text>')
    if notes:
        lines.append(f'<text x="{x:g}" y="{y + 36:g}" class="note">{notes}</text>')
    return lines


def road_drawn(road, places):
    points = []
    for thing in road:
        x, y = places[thing]
        points += [(x, y), (x, y + HEIGHT)]
    points = points[1:-1]  # from below the first box to the top of the last
    return '<polyline points="' + " ".join(f"{x:g},{y:g}" for x, y in points) + '" marker-end="url(#tip)"/>'


STYLE = """<style>
text { font-family: sans-serif; text-anchor: middle; fill: #222 }
.name { font-size: 15px } .note { font-size: 11px; fill: #666 }
.box { fill: #eef3f8; stroke: #557 } polyline { fill: none; stroke: #557; stroke-width: 1.5 }
</style>
<marker id="tip" viewBox="0 0 8 8" refX="8" refY="4" markerWidth="8" markerHeight="8" orient="auto"><path d="M0,0 L8,4 L0,8 z" fill="#557"/></marker>"""


def picture():
    all_libraries = libraries()
    lines = needed_lines(all_libraries)
    rows, roads = rows_of(heights(all_libraries), lines)
    places, width, height = places_of(rows, roads)
    drawn = ["<!-- Drawn by scripts/draw_layers.py: change the CMakeLists.txt and draw it anew. -->"]
    drawn += [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:g} {height:g}" width="{width:g}">', STYLE]
    drawn.append(f'<rect width="{width:g}" height="{height:g}" fill="#fff"/>')
    drawn += [road_drawn(road, places) for road in roads]
    for name in sorted(all_libraries):
        drawn += box(all_libraries[name], places[name])
    return "\n".join([*drawn, "</svg>", ""])


def main():
    if sys.argv[1:] == ["--check"]:
        if not PICTURE.exists() or PICTURE.read_text() != picture():
            sys.exit("docs/layers.svg is not what the CMakeLists.txt say: run scripts/draw_layers.py")
    elif sys.argv[1:]:
        sys.exit(__doc__)
    else:
        PICTURE.write_text(picture())


main()

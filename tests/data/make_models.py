#!/usr/bin/env python3
"""Writes the project's own models of this folder, into the folder itself or into the one given.

Each imitates a habit of other programs that a reader has to cope with; README.md names it. What they hold is worked out
here from plain shapes, so that a test can tell from the shape what must come out.
"""

import math
import pathlib
import sys


def number(value):
    """At most 6 decimals, never a negative zero."""
    return f"{round(value, 6) + 0.0:.6f}"


def rows(points):
    return [" ".join(number(value) for value in point) for point in points]


def around(radius, parts):
    """The corners of a regular polygon in the plane of x and y, the first on x."""
    return [(radius * math.cos(2 * math.pi * i / parts), radius * math.sin(2 * math.pi * i / parts))
            for i in range(parts)]


def half_cylinder():
    """Half a cylinder about z: 7 rows of 4 points, with a velocity at each. Some keywords in small letters, and empty
    lines at the end."""
    lines = ['TITLE = "Half cylinder"', 'Variables = "X", "Y", "Z", "U", "V", "W"', "Zone I=4, J=7, K=1, F=POINT"]
    for j in range(7):
        angle = math.pi * j / 6
        for i in range(4):
            normal = (math.cos(angle), math.sin(angle), 0)
            lines += rows([(2 * normal[0], 2 * normal[1], 0.5 * i, *normal)])
    return lines + [""] * 3


def plates_and_geometries():
    """Two plates whose zones name no K, then drawn lines as records of their own, in both packings."""
    lines = ['TITLE = "Two plates and lines" ', 'VARIABLES = "X", "Y", "Z"']
    for name, height in (("Lower", 0), ("Upper", 4)):
        lines.append(f'ZONE T="{name}", I=3, J=3, F=POINT ')
        lines += [f"{2 * i}. {3 * j}. {height}." for j in range(3) for i in range(3)]
    lines += ["GEOMETRY X=0, Y=0, Z=0, M=GRID, C=GREEN, T=LINE3D, F=POINT, AAT=END,", "AST=FILLED, ASZ=.02", "1", "5"]
    lines += [f"{i}.5 {6 - i}. {0.5 * i}" for i in range(5)]
    lines += ["GEOMETRY X=0, Y=0, Z=0, M=GRID, C=BLACK, T=LINE3D, F=BLOCK", "1", "6",
              "0 .5 1. 2. 3. 4. ", "6. 5. 4. 3. 2. 1. ", ".1 .2 .4 .8 1.6 3.2 "]
    return lines


def volume():
    """A volume of 3 x 4 x 3 points in block packing, an empty line before each variable and behind the last."""
    points = [(1 + i, 10 + 2 * j + 0.25 * i, 100 + 5 * k + 0.5 * j) for k in range(3) for j in range(4)
              for i in range(3)]
    lines = ['TITLE = "A volume"', 'VARIABLES = "X", "Y", "Z", "Pressure"', "ZONE I=3, J=4, K=3, F=BLOCK"]
    for values in [*zip(*points), [sum(point) for point in points]]:
        lines.append("")
        lines += [" ".join(f"{value:g}" for value in values[12 * k:12 * k + 12]) for k in range(3)]
    return lines + [""]


def split_volume():
    """A volume of 9 x 13 x 17 points split in 2 x 3 x 4 zones; the last part of each direction is the longer one.
    Comments that hold the word ZONE stand before the header and between the zones, exponents have three digits."""
    def parts(count, pieces):
        size = count // pieces
        return [(size * p, count if p == pieces - 1 else size * (p + 1)) for p in range(pieces)]

    lines = ["#PART_INFO: parts=24 dim=3", "#PART_MINS: 0.000000e+000 -1.000000e+000", 'TITLE = "Wave"',
             'VARIABLES = "X","Y","Z","A"']
    index = 0
    for i0, i1 in parts(9, 2):
        for j0, j1 in parts(13, 3):
            for k0, k1 in parts(17, 4):
                lines += [f"#PART_ZONE: num={index} at={i0},{j0},{k0} 0 0 0",
                          f'ZONE T="ZONE {index}", I={i1 - i0}, J={j1 - j0}, K={k1 - k0}, F=POINT']
                for k in range(k0, k1):
                    for j in range(j0, j1):
                        for i in range(i0, i1):
                            wave = f"{(i - 4) * (j - 6) / 8:.4e}".replace("e+", "e+0").replace("e-", "e-0")
                            lines.append(f"{i / 8:.6f} {j / 12:.6f} {k / 16:.6f} {wave} ")
                index += 1
    return lines


def coloured_ring():
    """A ring of 8 x 8 nodes, radius 3 and 1, with a colour at each node."""
    lines = ['TITLE = "Ring with colours"', 'VARIABLES = "X", "Y", "Z", "R", "G", "B"',
             "ZONE N = 64, E = 128, DATAPACKING = POINT, ZONETYPE = FETRIANGLE"]
    for across, up in around(1, 8):
        lines += ["   " + "    ".join(number(value) for value in (x * (3 + across), y * (3 + across), up, 0.5, 0.5, 1)) +
                  "    " for x, y in around(1, 8)]
    for row in range(8):
        for column in range(8):
            a, b = 8 * row + column + 1, 8 * row + (column + 1) % 8 + 1
            c, d = 8 * ((row + 1) % 8) + (column + 1) % 8 + 1, 8 * ((row + 1) % 8) + column + 1
            lines += [f" {a} {b} {c} ", f" {a} {c} {d} "]
    return lines


def tetrahedra():
    """A cube of 8 nodes in 6 tetrahedra around its diagonal, in block packing, with two more variables."""
    nodes = [(n & 1, n >> 1 & 1, n >> 2) for n in range(8)]
    lines = ['TITLE = "Cube of tetrahedra"', 'VARIABLES = "X", "Y", "Z", "C", "U"',
             "ZONE N = 8, E = 6, DATAPACKING = BLOCK, ZONETYPE = FETETRAHEDRON"]
    lines += [" ".join(str(10 * value) for value in values) for values in zip(*nodes)]
    lines += [" ".join(str(n - 4) for n in range(8)), " ".join(str(n * n) for n in range(8)), ""]
    for a in (1, 2, 4):
        lines += [f"1 {1 + a} {1 + a + b} 8" for b in (1, 2, 4) if a != b]
    return lines


def unquoted_panels():
    """Panels of a plate as some flutter codes write them: names without quotes, the counts of nodes and panels as I and
    J, a number behind the coordinates. Lines end with CR LF."""
    lines = ["TITLE =\"PANELS WITH      12 GRIDS. NO. OF BOXES =       6\"", "VARIABLES= X, Y, Z, EXTID",
             'ZONE T="PANELS" I=      12 J=       6 F=FEPOINT']
    lines += [f"{2.5 * i:12.4E}{4.0 * j:12.4E}{0.0:12.4E}{100 * (j + 1) + i + 1:18d}" for j in range(3) for i in range(4)]
    lines += [f"{4 * j + i + 1:8d}{4 * j + i + 2:8d}{4 * j + i + 6:8d}{4 * j + i + 5:8d}" for j in range(2)
              for i in range(3)]
    return lines


def cell_centred():
    """One square each way, four of the seven variables given once for the cell; no line feed at the end."""
    location = "VARLOCATION=([4,5-7]=CELLCENTERED)"
    return ['TITLE="ONE CELL"', 'VARIABLES="X","Y","Z","P","Q","S","T"',
            f'ZONE T="PATCH", N=4, E=1, ET=QUADRILATERAL, DATAPACKING=FEBLOCK, {location}',
            "0 2 2 0 0 0 2 2 1 1 1 1", "5", "0.125", "-40", "3", "1 2 3 4",
            f'ZONE T="OTHER", I=2, J=2, K=1, DATAPACKING=BLOCK, {location}',
            "2 4 2 4 0 0 2 2 1 1 1 1", "6", "0.25", "-50", "4"]


def dome():
    """Cuts of a dome that stands on the plane of x and y, each as a patch of sections of one point: 31 cuts of 3 to 33
    points, each with the origin of its curve twice at the beginning."""
    lines = []
    for cut in range(31):
        across = -1.5 + 0.1 * cut
        radius = math.sqrt(2.56 - across * across)
        count = 2 + cut
        lines.append(f"{count + 1:12d}{1:12d}")
        angles = [0.0] + [math.pi * n / (count - 1) for n in range(count)]
        lines += [f"{across:16.12f}{-radius * math.cos(a) + 0.0:16.12f}{radius * math.sin(a):16.12f}" for a in angles]
    return lines


def faces(polygons):
    return " ".join(" ".join(str(corner) for corner in polygon) + " -1" for polygon in polygons)


def many_corners():
    """A tower over a polygon of 12 corners: its floor, 5 storeys of squares, a roof of triangles. Comments come first,
    the shape has a name, and each list stands on one line."""
    points = [(x, y, floor) for floor in range(6) for x, y in around(2, 12)] + [(0, 0, 7)]
    polygons = [list(range(11, -1, -1))]
    for floor in range(5):
        for i in range(12):
            a, b = 12 * floor + i, 12 * floor + (i + 1) % 12
            polygons.append([a, b, b + 12, a + 12])
    polygons += [[60 + i, 60 + (i + 1) % 12, 72] for i in range(12)]
    return ["#VRML V2.0 utf8", "#", "# a tower of 73 points and 73 polygons", "#", "DEF tower", "Shape {",
            "\tappearance Appearance {", "\t\tmaterial Material {", "\t\t\tdiffuseColor 1 .5 0", "\t\t}", "\t}",
            "\tgeometry IndexedFaceSet {", "\t\tcreaseAngle .9", "\t\tcoord Coordinate {",
            "\t\t\tpoint [ " + " ".join(rows(points)) + " ]", "\t\t}", "\t\tcoordIndex [ " + faces(polygons) + " ]",
            "\t}", "}"]


def named_coordinates():
    """31 links of a chain, each a face set whose coordinates have a name."""
    lines = ["#VRML V2.0 utf8", "", "DEF chain Transform {", "\tchildren ["]
    for link in range(31):
        corners = ",\n\t\t\t\t\t".join(f"{2 * link + x} {y} {z}" for x in (0, 1) for y in (0, 1) for z in (0, 1))
        sides = ((0, 1, 3, 2), (4, 6, 7, 5), (0, 4, 5, 1), (2, 3, 7, 6), (0, 2, 6, 4), (1, 5, 7, 3))
        index = ", -1,\n\t\t\t\t\t".join(", ".join(map(str, side)) for side in sides)
        lines += [f"\t\tDEF link{link} Shape {{", f"\t\t\tgeometry DEF link{link}-FACES IndexedFaceSet {{",
                  f"\t\t\t\tcoord DEF link{link}-COORD Coordinate {{", f"\t\t\t\t\tpoint [ {corners} ]", "\t\t\t\t}",
                  f"\t\t\t\tcoordIndex [ {index}, -1 ]", "\t\t\t}", "\t\t}"]
    return lines + ["\t]", "}"]


def comma_points():
    """A tent whose points have commas between them and whose faces have comments, and a ball, which is no face set."""
    return ["#VRML V2.0 utf8", "", "WorldInfo {", '    title "A tent"', "}", "Shape {", "    geometry Sphere { radius 1 }",
            "}", "Shape {", "    geometry IndexedFaceSet {", "        coord Coordinate{", "            point[",
            "                -3 -3 0,", "                 3 -3 0,", "                 3  3 0,", "                -3  3 0,",
            "                 0  0 4,", "            ]", "        } # end of coord", "        coordIndex [",
            "            0, 1, 4, -1, # south", "            1, 2, 4, -1, # east", "            2, 3, 4, -1, # north",
            "            3, 0, 4, -1, # west", "            3, 2, 1, 0, -1, # ground", "        ]", "    }", "}"]


def iges_surface(points):
    """The parameters of a surface between four corners: a spline of degree 1 both ways, with knots, weights, points."""
    knots = [0, 0, 1, 1]
    numbers = [1, 1, 1, 1, 0, 0, 1, 0, 0, *knots, *knots, 1, 1, 1, 1, *(c for point in points for c in point), 0, 1, 0, 1]
    words = [f"{value}" if index < 9 else f"{value:.3f}" for index, value in enumerate(numbers)]
    return ",".join(["128", *words]) + ";"


def pieces(text, size):
    """The text broken behind commas to pieces of that size at most."""
    lines = [""]
    for word in text.replace(";", ";,").rstrip(",").split(","):
        word += "" if word.endswith(";") else ","
        if len(lines[-1]) + len(word) > size:
            lines.append("")
        lines[-1] += word
    return lines


def two_surfaces():
    """IGES by hand, in inches: a twisted deck and a flat side, each under its label."""
    surfaces = {"deck": [(0, 0, 0), (2, 0, 0), (0, 1, 0), (2, 1, 0.5)], "side": [(0, 0, 0), (0, 0, -1), (2, 0, 0), (2, 0, -1)]}
    head = ("1H,,1H;,4Hdeck,8Hdeck.igs,6Hhands.,1H1,32,38,6,308,15,4Hdeck,1.,1,2HIN,1,0.01,15H20260101.120000,1E-06,10.,"
            "4Hnone,4Hnone,11,0,15H20260101.120000;")
    sections = {"S": ["Two surfaces"], "G": pieces(head, 72), "D": [], "P": []}
    for label, points in surfaces.items():
        entry = len(sections["D"]) + 1
        data = pieces(iges_surface(points), 64)
        first = [128, len(sections["P"]) + 1, 0, 0, 0, 0, 0, 0]
        second = [128, 0, 0, len(data), 0, "", "", label, 0]
        sections["D"].append("".join(f"{field:>8}" for field in first) + "00000000")
        sections["D"].append("".join(f"{field:>8}" for field in second))
        sections["P"] += [f"{line:<64}{entry:>8}" for line in data]
    lines = [f"{line:<72}{letter}{i + 1:>7}" for letter, part in sections.items() for i, line in enumerate(part)]
    return lines + [f"{''.join(f'{k}{len(v):>7}' for k, v in sections.items()):<72}T{1:>7}"]


def write(path, lines, end="\n"):
    path.write_bytes((end.join(lines) + end).encode("ascii"))


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__ + "/..").resolve()
    write(folder / "half_cylinder.dat", half_cylinder())
    write(folder / "plates_and_geometries.dat", plates_and_geometries())
    write(folder / "volume_block.dat", volume())
    write(folder / "split_volume.dat", split_volume())
    write(folder / "coloured_ring.dat", coloured_ring())
    write(folder / "tetrahedra.dat", tetrahedra())
    write(folder / "unquoted_panels.dat", unquoted_panels(), "\r\n")
    (folder / "cell_centred.dat").write_text("\n".join(cell_centred()), encoding="ascii")
    write(folder / "dome.apt", dome())
    write(folder / "many_corners.wrl", many_corners())
    write(folder / "named_coordinates.wrl", named_coordinates())
    write(folder / "comma_points.wrl", comma_points())
    write(folder / "two_surfaces.igs", two_surfaces())


main()

"""Exports models by the program and reads the files back by others: meshio, and VTK's readers.

The coordinates stand in this file and go in as text with all digits; what another reader gives must be the same
numbers to the bit, in the precision of the format or of that reader. Usage: read_back.py VELMORA_BATCH [--without KIND].
Ends with 77, which CTest shows as skipped, where one of the readers is not installed, or with a kind of file that the
program was built without, and tells which one is missing.
"""

import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

SKIPPED = 77

try:
    import numpy
    import meshio
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy
except ImportError as missing:
    print(f"SKIPPED: exported files were not read by any other program: {missing}")
    print("Install python3-numpy, python3-meshio and python3-vtk9, and let this interpreter be the system's own")
    sys.exit(SKIPPED)

# Numbers that six digits, or single precision, do not hold.
FAR = 2.0**20
ZONES = {
    "upper side": (
        [(0.0, 0.0, 1 / 3), (1.0, 0.1, 1 / 3), (1 / 7, 1.0, 1 / 3), (1.0, 1.0, -2 / 3)],
        [(0, 1, 2), (1, 3, 2)],
    ),
    "tail": (
        [(FAR + 1 / 3, 0.0, 0.0), (FAR + 1.0, 1e-3, 0.0), (FAR + 0.5, 1.0, 1e-5)],
        [(0, 1, 2)],
    ),
}
# Patches: sections of points. The second one is of another shape.
GRIDS = [
    [[(0.1 * m, 1 / 3 * s, 0.01 * m * m + s / 7) for m in range(4)] for s in range(3)],
    [[(2.0 + s / 3, 0.3 * m, 1e-4 * m) for m in range(2)] for s in range(5)],
]


class Failure(Exception):
    """What another reader gives is not what went in."""


def run(batch, folder, lines):
    arguments = [str(batch), "--strict"]
    for line in lines:
        arguments += ["-c", line]
    result = subprocess.run(arguments, cwd=folder, capture_output=True, text=True, timeout=120, check=False)
    if result.returncode != 0:
        raise Failure(f"{lines}: status {result.returncode}\n{result.stdout}{result.stderr}")


def write_sources(folder):
    """The models as an OBJ file and as a grid, by this script: the program reads them first."""
    with open(folder / "zones.obj", "w", encoding="utf-8") as out:
        before = 1
        for title, (points, triangles) in ZONES.items():
            out.write(f"o {title}\n")
            out.writelines("v {!r} {!r} {!r}\n".format(*point) for point in points)
            out.writelines("f {} {} {}\n".format(*(before + corner for corner in t)) for t in triangles)
            before += len(points)
    with open(folder / "grids.apt", "w", encoding="utf-8") as out:
        for sections in GRIDS:
            out.write(f"{len(sections)} {len(sections[0])}\n")
            out.writelines("{!r} {!r} {!r}\n".format(*point) for section in sections for point in section)


def triangles_of_zones():
    return [[points[corner] for corner in triangle] for points, triangles in ZONES.values() for triangle in triangles]


def triangles_of_grids():
    """A cell with corners a (i,j), b (i+1,j), c (i+1,j+1), d (i,j+1), i counting sections: (a,c,b) and (a,d,c)."""
    result = []
    for g in GRIDS:
        for i in range(len(g) - 1):
            for j in range(len(g[0]) - 1):
                a, b, c, d = g[i][j], g[i + 1][j], g[i + 1][j + 1], g[i][j + 1]
                result += [[a, c, b], [a, d, c]]
    return result


# ---- Other readers: each gives an array of triangles x corners x coordinates ----------------------------------------


def by_meshio(path):
    mesh = meshio.read(path)
    parts = [mesh.points[cells.data] for cells in mesh.cells if cells.type == "triangle"]
    return numpy.concatenate(parts)


def corners_of_poly_data(data):
    triangulated = vtk.vtkTriangleFilter()
    triangulated.SetInputData(data)
    triangulated.PassLinesOff()
    triangulated.PassVertsOff()
    triangulated.Update()
    data = triangulated.GetOutput()
    points = vtk_to_numpy(data.GetPoints().GetData())
    cells = vtk_to_numpy(data.GetPolys().GetConnectivityArray()).reshape(-1, 3)
    return points[cells]


def by_vtk(make_reader):
    def read(path):
        reader = make_reader()
        reader.SetFileName(str(path))
        reader.Update()
        return corners_of_poly_data(reader.GetOutput())

    return read


def stl_reader():
    reader = vtk.vtkSTLReader()
    reader.MergingOff()
    return reader


def by_vtk_vrml(path):
    importer = vtk.vtkVRMLImporter()
    importer.SetFileName(str(path))
    importer.Read()
    actors = importer.GetRenderer().GetActors()
    actors.InitTraversal()
    parts = []
    for _ in range(actors.GetNumberOfItems()):
        mapper = actors.GetNextActor().GetMapper()
        mapper.Update()
        parts.append(corners_of_poly_data(mapper.GetInput()))
    return numpy.concatenate(parts)


def leaves_of(data):
    """The data sets of a tree of blocks, in their order."""
    if isinstance(data, vtk.vtkMultiBlockDataSet):
        blocks = [data.GetBlock(i) for i in range(data.GetNumberOfBlocks())]
        return [leaf for block in blocks if block for leaf in leaves_of(block)]
    return [data]


def corners_of_leaves(leaves):
    surface = vtk.vtkDataSetSurfaceFilter()
    parts = []
    for leaf in leaves:
        surface.SetInputData(leaf)
        surface.Update()
        parts.append(corners_of_poly_data(surface.GetOutput()))
    return numpy.concatenate(parts)


def leaves_by_vtk_tecplot(path):
    reader = vtk.vtkTecplotReader()
    reader.SetFileName(str(path))
    reader.Update()
    return leaves_of(reader.GetOutput())


def by_vtk_tecplot(path):
    return corners_of_leaves(leaves_by_vtk_tecplot(path))


def leaves_by_vtk_cgns(path):
    reader = vtk.vtkCGNSReader()
    reader.SetFileName(str(path))
    reader.UpdateInformation()
    reader.EnableAllBases()
    reader.EnableAllFamilies()
    reader.SetDoublePrecisionMesh(1)
    reader.Update()
    return leaves_of(reader.GetOutput())


def by_vtk_cgns(path):
    return corners_of_leaves(leaves_by_vtk_cgns(path))


def grids_by_vtk_cgns(path):
    return grids_of(leaves_by_vtk_cgns(path))


def grids_of(leaves):
    """Of each structured block its extent and its points."""
    grids = []
    for leaf in leaves:
        extent = [0, 0, 0]
        leaf.GetDimensions(extent)
        grids.append((extent, vtk_to_numpy(leaf.GetPoints().GetData())))
    return grids


def grids_by_vtk_tecplot(path):
    return grids_of(leaves_by_vtk_tecplot(path))


def grids_by_vtk_plot3d(binary, double):
    def read(path):
        reader = vtk.vtkMultiBlockPLOT3DReader()
        reader.SetFileName(str(path))
        reader.SetBinaryFile(binary)
        reader.SetMultiGrid(True)
        reader.SetHasByteCount(binary)
        reader.SetByteOrderToLittleEndian()
        reader.SetDoublePrecision(double)
        reader.Update()
        return grids_of(leaves_of(reader.GetOutput()))

    return read


# ---- Comparing ------------------------------------------------------------------------------------------------------


def turned(triangle):
    """Begins with the least corner; the sense stays."""
    start = triangle.index(min(triangle))
    return triangle[start:] + triangle[:start]


def as_written(values, single):
    return numpy.array(values, dtype=numpy.float32 if single else numpy.float64).astype(numpy.float64)


def compare_triangles(what, wanted, found, single):
    wanted = sorted(turned([tuple(p) for p in t]) for t in as_written(wanted, single).tolist())
    found = sorted(turned([tuple(p) for p in t]) for t in found.astype(numpy.float64).tolist())
    if wanted != found:
        raise Failure(f"{what}:\n wanted {wanted}\n found  {found}")


def compare_grids(what, wanted, found, single):
    if len(wanted) != len(found):
        raise Failure(f"{what}: {len(found)} blocks instead of {len(wanted)}")
    for sections, (extent, points) in zip(wanted, found):
        if list(extent) != [len(sections[0]), len(sections), 1]:
            raise Failure(f"{what}: a block of {extent}")
        flat = as_written([point for section in sections for point in section], single)
        if flat.tolist() != points.astype(numpy.float64).tolist():
            raise Failure(f"{what}:\n wanted {flat.tolist()}\n found  {points.tolist()}")


# Name of the file, options of Export, the other reader, its name, whether the numbers come back in single precision.
TRIANGLE_FILES = [
    ("binary.stl", "", by_meshio, "meshio", True),
    ("binary.stl", "", by_vtk(stl_reader), "VTK", True),
    ("text.stl", "binary=0", by_meshio, "meshio", False),
    ("text.stl", "binary=0", by_vtk(stl_reader), "VTK", True),
    ("a.obj", "", by_meshio, "meshio", False),
    ("a.obj", "", by_vtk(vtk.vtkOBJReader), "VTK", True),
    ("binary.ply", "", by_meshio, "meshio", False),
    ("single.ply", "precision=1", by_meshio, "meshio", True),
    ("single.ply", "precision=1", by_vtk(vtk.vtkPLYReader), "VTK", True),
    ("text.ply", "binary=0", by_meshio, "meshio", False),
    ("text.ply", "binary=0", by_vtk(vtk.vtkPLYReader), "VTK", True),
    ("a.wrl", "", by_vtk_vrml, "VTK", True),
]
# Grids do not become triangles in these.
ZONE_FILES = [
    ("zones.dat", "", by_vtk_tecplot, "VTK", True),
    ("zones.cgns", "", by_vtk_cgns, "VTK", False),
    ("single.cgns", "precision=1", by_vtk_cgns, "VTK", True),
]
GRID_FILES = [
    ("grids.dat", "", grids_by_vtk_tecplot, "VTK", True),
    ("grids.cgns", "", grids_by_vtk_cgns, "VTK", False),
    ("binary.p3d", "", grids_by_vtk_plot3d(True, True), "VTK", False),
    ("single.p3d", "precision=1", grids_by_vtk_plot3d(True, False), "VTK", True),
    ("text.xyz", "binary=0", grids_by_vtk_plot3d(False, True), "VTK", False),
]


def command_line():
    parser = argparse.ArgumentParser()
    parser.add_argument("batch", type=lambda name: Path(name).resolve())
    parser.add_argument("coin", nargs="?", type=lambda name: Path(name).resolve())
    parser.add_argument("folders", nargs="*", type=Path)
    parser.add_argument("--without", action="append", default=[], help="a kind of file that this build does not know")
    return parser.parse_args()


def known(cases, kind, suffix, without):
    """The cases of this build, which tells of the others. A case begins with the name of its file."""
    if kind in without:
        for name in sorted({case[0] for case in cases if case[0].endswith(suffix)}):
            print(f"SKIPPED: {name}: this build knows no {kind}")
        cases = [case for case in cases if not case[0].endswith(suffix)]
    return cases


def check(batch, folder, opening, cases, wanted, compare):
    """Each case; how many failed."""
    failed = 0
    for name, options, read, reader, single in cases:
        what = f"{opening} to {name} {options} read by {reader}"
        try:
            (folder / name).unlink(missing_ok=True)
            run(batch, folder, [opening, f"run file.export file={name} {options}".strip()])
            compare(what, wanted, read(folder / name), single)
            print("as written:", what)
        except Exception as error:  # pylint: disable=broad-except
            failed += 1
            print(f"FAILED: {what}\n{type(error).__name__}: {error}")
    return failed


def must_see(compare, wanted, found):
    """A comparison that lets a wrong number pass proves nothing."""
    try:
        compare("a wrong number", wanted, found, False)
    except Failure:
        return 0
    print("FAILED: a wrong number passed")
    return 1


def main():
    vtk.vtkObject.GlobalWarningDisplayOff()
    line = command_line()
    batch = line.batch
    triangle_files, zone_files, grid_files = (
        known(cases, "CGNS", ".cgns", line.without) for cases in (TRIANGLE_FILES, ZONE_FILES, GRID_FILES)
    )
    zones, grids = "run file.import file=zones.obj", "open grids.apt"
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        write_sources(folder)
        failed = check(batch, folder, zones, triangle_files + zone_files, triangles_of_zones(), compare_triangles)
        failed += check(batch, folder, grids, triangle_files, triangles_of_grids(), compare_triangles)
        failed += check(batch, folder, grids, grid_files, GRIDS, compare_grids)
    wrong = numpy.array(triangles_of_zones())
    wrong[0][0][2] = numpy.nextafter(wrong[0][0][2], 1.0)
    failed += must_see(compare_triangles, triangles_of_zones(), wrong)
    backwards = numpy.array(triangles_of_zones())[:, ::-1]
    failed += must_see(compare_triangles, triangles_of_zones(), backwards)
    print(f"{failed} of the files failed" if failed else "All exported files were read back")
    return 1 if failed else SKIPPED if "CGNS" in line.without else 0


if __name__ == "__main__":
    sys.exit(main())

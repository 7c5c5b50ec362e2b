"""Every file of a folder, read by the program's Import and by others: the geometry must be the same.

The folder is tests/data, or any other one that is named. STL goes to VTK, meshio and the command `assimp`, VRML and
Inventor to VTK and to Coin, which coin_triangles lets make its own triangles of it, Tecplot to VTK; each of these readers
works in a process of its own, as some files make it crash. Triangles with an area are compared corner by corner in their
sense, grids point by point in their order, volumes by the points of their outside, within the digits of single precision.
A polygon may be split in another way: then points, number and area must be the same. What another reader does not read,
or reads otherwise, stands with its reason in OTHERS; an entry that is not true any more fails too.

Usage: read_real.py VELMORA_BATCH COIN_TRIANGLES [FOLDER...] [--without KIND]. Ends with 77, which CTest shows as skipped,
where one of the others is not installed or the program was built without VRML.
"""

import math
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import read_alike
import read_back
from read_alike import SINGLE, by_assimp, read_by_velmora
from read_back import Failure, by_meshio, by_vtk, by_vtk_vrml, corners_of_poly_data, leaves_by_vtk_tecplot, numpy, stl_reader
from read_back import vtk, vtk_to_numpy

DATA = Path(__file__).resolve().parent.parent / "data"

# What another reader makes of a file that is not what the file holds: file, reader, how it shows, why.
NOTHING = "gives nothing"
CRASHES = "crashes or refuses"
OTHER = "gives other geometry"
OTHERS = {
    ("block.wrl", "VTK of VRML"): (CRASHES, "at the commas"),
    ("pa10_base_no_header.wrl", "VTK of VRML"): (CRASHES, "without the first line"),
    ("pa10_base_no_header.wrl", "Coin"): (CRASHES, "without the first line"),
    ("vrml1_indexedfaceset.wrl", "VTK of VRML"): (CRASHES, "at VRML 1"),
    ("vrml1_indexedfaceset.wrl", "Coin"): (OTHER, "without turning the faces that run clockwise"),
    ("comma_points.wrl", "VTK of VRML"): (OTHER, "a ball of more triangles"),
    ("tank.wrl", "VTK of VRML"): (OTHER, "cylinders of more triangles"),
    ("half_donut.stl", "meshio"): (CRASHES, "at the keywords in capitals"),
    ("half_donut.stl", "assimp"): (OTHER, "without the last facet, where the end is in capitals"),
    ("m100_wingbody_block.dat", "VTK of Tecplot"): (OTHER, "blocks of numbers taken point by point"),
    ("nemoh_cylinder.dat", "VTK of Tecplot"): (OTHER, "without the quadrilaterals of three corners"),
    ("nemoh_cylinder_zone1.dat", "VTK of Tecplot"): (OTHER, "without the quadrilaterals of three corners"),
    ("unquoted_panels.dat", "VTK of Tecplot"): (NOTHING, "of names without quotes"),
    ("wamit_cyl_pan.dat", "VTK of Tecplot"): (NOTHING, "without a list of variables"),
    # Files that are no part of the project: they are walked where their folder is named.
    ("f16_aero_unquoted.dat", "VTK of Tecplot"): (NOTHING, "of names without quotes"),
    ("pyramid_sphere.wrl", "VTK of VRML"): (OTHER, "a ball of more triangles"),
    ("bot2.wrl", "VTK of VRML"): (OTHER, "without the scales of its nested nodes"),
}


# ---- Others: each writes arrays to a file ---------------------------------------------------------------------------


def parts_by_vtk_tecplot(path):
    """Of each zone what it is and its points: a grid of i x j, the outside of a volume, or triangles."""
    parts = []
    surface = vtk.vtkDataSetSurfaceFilter()
    for leaf in leaves_by_vtk_tecplot(path):
        if leaf is None or leaf.GetNumberOfPoints() == 0:
            continue
        surface.SetInputData(leaf)
        surface.Update()
        if isinstance(leaf, vtk.vtkStructuredGrid):
            extent = [0, 0, 0]
            leaf.GetDimensions(extent)
            if min(extent) > 1:
                parts.append(("outside", vtk_to_numpy(surface.GetOutput().GetPoints().GetData())))
            else:
                kind = "line" if sorted(extent)[1] == 1 else "grid"
                parts.append((kind, vtk_to_numpy(leaf.GetPoints().GetData())))
        else:
            parts.append(("triangles", corners_of_poly_data(surface.GetOutput()).reshape(-1, 3)))
    return parts


def triangles_alone(read):
    return lambda path: [("triangles", read(path).reshape(-1, 3))]


READERS = {
    "VTK of STL": triangles_alone(by_vtk(stl_reader)),
    "meshio": triangles_alone(by_meshio),
    "VTK of VRML": triangles_alone(by_vtk_vrml),
    "VTK of Tecplot": parts_by_vtk_tecplot,
}
READERS_OF = {
    ".stl": ["VTK of STL", "meshio", "assimp"],
    ".wrl": ["VTK of VRML", "Coin"],
    ".dat": ["VTK of Tecplot"],
}


def read_for_parent(reader, path, out):
    vtk.vtkObject.GlobalWarningDisplayOff()
    parts = [(kind, points) for kind, points in READERS[reader](path) if len(points)]
    numpy.savez(out, *[points for _, points in parts], kinds=numpy.array([kind for kind, _ in parts]))


def by_coin(program, path):
    result = subprocess.run([str(program), str(path)], capture_output=True, text=True, timeout=120, check=True)
    return numpy.array(result.stdout.split(), dtype=float).reshape(-1, 3, 3)


def read_by_other(reader, path, folder, coin):
    """None where the reader crashes or refuses the file."""
    programs = {"assimp": lambda: by_assimp(path, folder), "Coin": lambda: by_coin(coin, path)}
    if reader in programs:
        try:
            triangles = programs[reader]()
        except subprocess.CalledProcessError:
            return None
        return [("triangles", triangles.reshape(-1, 3))] if len(triangles) else []
    out = folder / "other.npz"
    out.unlink(missing_ok=True)
    command = [sys.executable, __file__, "--read", reader, str(path), str(out)]
    if subprocess.run(command, capture_output=True, timeout=120, check=False).returncode != 0 or not out.exists():
        return None
    arrays = numpy.load(out)
    return [(str(kind), arrays[f"arr_{i}"]) for i, kind in enumerate(arrays["kinds"])]


# ---- Comparing ------------------------------------------------------------------------------------------------------


def demand(same, what):
    if not same:
        raise Failure(what)


def alike(ours, theirs):
    """Two arrays of points, in the digits of single precision."""
    ours, theirs = ours.reshape(-1, 3), theirs.reshape(-1, 3)
    return ours.shape == theirs.shape and numpy.allclose(ours, theirs, rtol=0, atol=SINGLE * numpy.abs(ours).max())


def alike_as_sets(ours, theirs):
    """The same places, however often and in whatever order: each has one of the others close by."""
    return all(
        numpy.all(distances_to(a.reshape(-1, 3), b.reshape(-1, 3)) <= 2 * SINGLE * numpy.abs(ours).max())
        for a, b in ((ours, theirs), (theirs, ours))
    )


def distances_to(points, others):
    """Of each point how far the nearest of the others is."""
    cloud = vtk.vtkPoints()
    for point in others.tolist():
        cloud.InsertNextPoint(point)
    data = vtk.vtkPolyData()
    data.SetPoints(cloud)
    locator = vtk.vtkPointLocator()
    locator.SetDataSet(data)
    locator.BuildLocator()
    nearest = [others[locator.FindClosestPoint(point)] for point in points.tolist()]
    return numpy.linalg.norm(points - numpy.array(nearest), axis=1)


def with_area(points):
    """Triangles without two equal corners, as some readers leave these out."""
    corners = points.astype(numpy.float32).reshape(-1, 3, 3)
    equal = [numpy.all(corners[:, i] == corners[:, (i + 1) % 3], axis=1) for i in range(3)]
    return points.reshape(-1, 3, 3)[~(equal[0] | equal[1] | equal[2])]


def area_of(triangles):
    across = numpy.cross(triangles[:, 1] - triangles[:, 0], triangles[:, 2] - triangles[:, 0])
    return 0.5 * numpy.linalg.norm(across, axis=1).sum()


def compare_triangles(ours, theirs):
    ours, theirs = with_area(ours), with_area(theirs.astype(numpy.float64))
    demand(len(ours) == len(theirs), f"{len(theirs)} triangles, not {len(ours)}")
    try:
        read_alike.compare("triangles", ours, theirs)
    except Failure as failure:
        split = alike_as_sets(ours, theirs) and math.isclose(area_of(ours), area_of(theirs), rel_tol=1e-4)
        size = numpy.ptp(ours.reshape(-1, 3), axis=0).max()
        apex = ours.reshape(-1, 3).min(axis=0) - size
        sense = abs(volume_of(ours, apex) - volume_of(theirs, apex)) <= 1e-4 * size**3
        if not split or not sense:
            raise Failure("triangles") from failure


def volume_of(triangles, apex):
    """What triangles enclose with a point; those that are turned have another sign."""
    a, b, c = (triangles[:, i] - apex for i in range(3))
    return numpy.einsum("ij,ij->i", a, numpy.cross(b, c)).sum() / 6.0


def compare(ours, theirs):
    triangles, patches = ours
    if triangles is None:
        compare_grids(patches, theirs)
        return
    parts = [points for kind, points in theirs if kind != "line"]  # a line has no surface
    if all(kind in ("triangles", "line") for kind, _ in theirs):
        compare_triangles(triangles, numpy.concatenate(parts))
    else:  # grids beside triangles have become triangles
        demand(alike_as_sets(triangles, numpy.concatenate(parts)), "points")


def compare_grids(patches, theirs):
    outsides = [points for kind, points in theirs if kind == "outside"]
    if outsides:  # six patches for each volume
        demand(len(patches) == 6 * len(outsides), f"{len(outsides)} volumes, {len(patches)} faces")
        for volume, outside in enumerate(outsides):
            faces = numpy.concatenate([p.reshape(-1, 3) for p in patches[6 * volume : 6 * volume + 6]])
            demand(alike_as_sets(faces, outside), f"volume {volume + 1}")
        return
    demand(len(patches) == len(theirs), f"{len(theirs)} grids, not {len(patches)}")
    for number, (patch, (_, points)) in enumerate(zip(patches, theirs)):
        demand(alike(patch, points), f"patch {number + 1}")


def verdict(ours, theirs):
    """Empty for the same geometry; else what differs."""
    if not theirs:
        nothing = ours[0] is None and not ours[1]
        return "" if nothing else CRASHES if theirs is None else NOTHING
    try:
        compare(ours, theirs)
    except Failure as failure:
        return f"{OTHER}: {failure}"
    return ""


def check(batch, coin, path, folder):
    """Each reader of the file; how many failed."""
    failed = 0
    readers = READERS_OF.get(path.suffix, [])
    ours = read_by_velmora(batch, path) if readers else None
    for reader in readers:
        differs = verdict(ours, read_by_other(reader, path, folder, coin))
        known, why = OTHERS.get((path.name, reader), ("", ""))
        if bool(differs) == bool(known) and differs.startswith(known):
            print(f"{path.name}: {reader} {known + ', ' + why if known else 'reads the same'}")
        else:
            failed += 1
            print(f"FAILED: {path.name}: {reader}: {differs or 'reads the same'}, expected: {known or 'the same'}")
    return failed


def main():
    if shutil.which("assimp") is None:
        print("SKIPPED: real files were not read by any other program: there is no assimp (assimp-utils)")
        return read_back.SKIPPED
    line = read_back.command_line()
    folders = line.folders or [DATA, DATA.parent.parent / "examples"]
    failed = 0
    with tempfile.TemporaryDirectory() as name:
        for folder in folders:
            for path in sorted(folder.iterdir()):
                if path.suffix == ".wrl" and "VRML" in line.without:
                    print(f"SKIPPED: {path.name}: this build knows no VRML")
                else:
                    failed += check(line.batch, line.coin, path, Path(name))
    seen = must_see()
    print(f"{failed} files failed" if failed else "All files were read as others do")
    return 1 if failed or not seen else read_back.SKIPPED if "VRML" in line.without else 0


def must_see():
    """A comparison that lets a turned or a moved triangle pass proves nothing."""
    triangle = numpy.array([[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [0.0, 1.0, 0.0]])
    moved = triangle + numpy.array([0.0, 0.0, 0.01])
    for wrong in (triangle[::-1], moved):
        try:
            compare((wrong, []), [("triangles", triangle)])
        except Failure:
            continue
        print("FAILED: a wrong triangle passed")
        return False
    return True


if __name__ == "__main__":
    if sys.argv[1] == "--read":
        read_for_parent(sys.argv[2], Path(sys.argv[3]), sys.argv[4])
        sys.exit(0)
    read_back.vtk.vtkObject.GlobalWarningDisplayOff()
    sys.exit(main())

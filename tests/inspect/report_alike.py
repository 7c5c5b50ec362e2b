"""The numbers of the model report against those of other programs, on real models.

The files are read here, by a few lines of their own, and given to VTK (vtkMassProperties, vtkFeatureEdges,
vtkPolyDataEdgeConnectivityFilter, vtkMeshQuality, the normals of its triangles), to admesh and to gtscheck and gts2oogl of
GTS. admesh counts in single precision, gtscheck prints six digits. Aspect, skew and warp of cells stand against VTK
alone: no other program of the system tells them as they are defined here. Usage: report_alike.py VELMORA_BATCH. Ends
with 77, which CTest shows as skipped, where one of them is not installed.
"""

import json
import math
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

SKIPPED = 77
DATA = Path(__file__).resolve().parent.parent / "data"

try:
    import numpy
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy
except ImportError as missing:
    print(f"SKIPPED: {missing}: install python3-numpy and python3-vtk9, for the system's own interpreter")
    sys.exit(SKIPPED)
for program, package in (("admesh", "admesh"), ("gtscheck", "libgts-bin")):
    if shutil.which(program) is None:
        print(f"SKIPPED: install {package}")
        sys.exit(SKIPPED)

EXACT = 1e-12  # sums in another order
SINGLE = 2e-5  # of single precision, summed up
SIX_DIGITS = 1e-5

MODELS = ("iea15_blade.stl", "half_donut.stl", "propeller_upper.stl", "spider_ascii.stl", "even_sphere.apt",
          "m100_wingbody.apt", "tank.wrl")  # fmt: skip


class Mesh:
    """Points joined where their coordinates are equal, and faces of three or four of them."""

    def __init__(self):
        self.points = []
        self.numbers = {}
        self.faces = []
        self.patches = [0]  # where each one's faces begin, and the last one's end

    def number(self, point):
        key = tuple(value + 0.0 for value in point)  # no -0
        if key not in self.numbers:
            self.numbers[key] = len(self.points)
            self.points.append(key)
        return self.numbers[key]

    def add(self, corners):
        self.faces.append([self.number(point) for point in corners])

    def triangles(self):
        """Cells a, b, c, d as a, b, c and a, c, d; none with fewer than three different points."""
        parted = [[face] if len(face) == 3 else [face[:3], [face[0], face[2], face[3]]] for face in self.faces]
        return [triangle for parts in parted for triangle in parts if len(set(triangle)) == 3]

    def outlines(self):
        """The faces that have edges, each without a corner that repeats the one before it."""
        thinned = ([point for i, point in enumerate(face) if point != face[i - 1]] for face in self.faces)
        return [outline for outline in thinned if len(set(outline)) > 2]

    def is_whole(self):
        return all(len(set(face)) == len(face) for face in self.faces)

    def has_cells(self):
        return any(len(face) == 4 for face in self.faces)


def read_stl(path):
    mesh = Mesh()
    numbers = [float(word) for word in re.findall(r"vertex\s+(\S+)\s+(\S+)\s+(\S+)", path.read_text()) for word in word]
    points = numpy.array(numbers).reshape(-1, 3, 3)
    for facet in points.tolist():
        mesh.add(facet)
    return mesh


def read_apt(path):
    mesh = Mesh()
    words = iter(path.read_text().split())
    for first in words:
        sections, points = int(first), int(next(words))
        grid = [[tuple(float(next(words)) for _ in range(3)) for _ in range(points)] for _ in range(sections)]
        for i in range(sections - 1):
            for j in range(points - 1):
                mesh.add([grid[i][j], grid[i + 1][j], grid[i + 1][j + 1], grid[i][j + 1]])
        mesh.patches.append(len(mesh.faces))
    return mesh


def of_zones(zones):
    """Face sets have many forms: their triangles are those that the program read."""
    mesh = Mesh()
    for zone in zones:
        values = {each["name"].lower(): each["values"] for each in zone["variables"]}
        nodes = list(zip(values["x"], values["y"], values["z"]))
        for triangle in zone["triangles"]:
            mesh.add([nodes[corner] for corner in triangle])
    return mesh


def printed(batch, path):
    # Open has its own rules for a few facets, Import reads all of them.
    read = f'run file.import "file={path}"' if path.suffix == ".stl" else f'open "{path}"'
    lines = ["--json", "-c", read, "-c", "print report"]
    lines += ["-c", "print region"] if path.suffix == ".wrl" else []
    output = subprocess.run([batch, *lines], check=True, capture_output=True, text=True).stdout
    return [event["value"] for event in map(json.loads, output.splitlines()) if event["event"] == "print"]


# ---- The others -----------------------------------------------------------------------------------------------------


def poly_data(points, faces):
    coordinates = vtk.vtkPoints()
    coordinates.SetDataTypeToDouble()
    for point in points:
        coordinates.InsertNextPoint(point)
    cells = vtk.vtkCellArray()
    for face in faces:
        cells.InsertNextCell(len(face), face)
    data = vtk.vtkPolyData()
    data.SetPoints(coordinates)
    data.SetPolys(cells)
    return data


def edges_by_vtk(data, kind):
    """How many edges of the kind there are, and how long they are together."""
    edges = vtk.vtkFeatureEdges()
    edges.SetInputData(data)
    for each in ("BoundaryEdges", "NonManifoldEdges", "FeatureEdges", "ManifoldEdges"):
        getattr(edges, f"Set{each}")(each == kind)
    edges.Update()
    found = edges.GetOutput()
    points = vtk_to_numpy(found.GetPoints().GetData()) if found.GetNumberOfPoints() > 0 else numpy.zeros((0, 3))
    ends = vtk_to_numpy(found.GetLines().GetConnectivityArray()).reshape(-1, 2)
    lengths = numpy.linalg.norm(points[ends[:, 0]] - points[ends[:, 1]], axis=1)
    return len(ends), float(lengths.sum())


def mass_by_vtk(data):
    mass = vtk.vtkMassProperties()
    mass.SetInputData(data)
    mass.Update()
    return mass.GetSurfaceArea(), mass.GetVolume()


def components_by_vtk(data):
    regions = vtk.vtkPolyDataEdgeConnectivityFilter()
    regions.SetInputData(data)
    regions.SetExtractionModeToAllRegions()
    regions.Update()
    return regions.GetNumberOfExtractedRegions()


def quality_by_vtk(data, name):
    quality = vtk.vtkMeshQuality()
    quality.SetInputData(data)
    getattr(quality, f"SetQuadQualityMeasureTo{name}")()
    quality.Update()
    return vtk_to_numpy(quality.GetOutput().GetCellData().GetArray("Quality"))


def warp_by_vtk(points, cell):
    """The angle between the normals of a cell's two triangles."""
    normals = []
    for corners in (cell[:3], [cell[0], cell[2], cell[3]]):
        normal = [0.0, 0.0, 0.0]
        vtk.vtkTriangle.ComputeNormal(*(points[corner] for corner in corners), normal)
        normals.append(normal)
    return math.degrees(vtk.vtkMath.AngleBetweenVectors(*normals))


def gts_text(mesh, triangles, scale=1.0):
    """The surface as points, edges and faces; and how many edges there are."""
    edges = {}
    faces = []
    for triangle in triangles:
        sides = [tuple(sorted((triangle[i], triangle[(i + 1) % 3]))) for i in range(3)]
        faces.append([edges.setdefault(side, len(edges) + 1) for side in sides])
    text = f"{len(mesh.points)} {len(edges)} {len(faces)}\n"
    text += "".join("{!r} {!r} {!r}\n".format(*(scale * float(part) for part in point)) for point in mesh.points)
    text += "".join(f"{a + 1} {b + 1}\n" for a, b in edges)
    return text + "".join("{} {} {}\n".format(*face) for face in faces)


def by_gts(mesh, triangles):
    """Counts, and the area of mean by number."""
    text = gts_text(mesh, triangles)
    told = subprocess.run(["gtscheck", "-v"], input=text, capture_output=True, text=True).stderr
    count = lambda name: int(re.search(rf"{name}: (\d+)", told).group(1))  # noqa: E731
    area = float(re.search(r"face area *: min: \S+ mean: (\S+)", told).group(1)) * count("faces")
    return {"open": count("boundary edges"), "bad": count("non-manifold edges"), "area": area}


def border_by_gts(mesh, triangles):
    """The length of the border: gts2oogl prints its edges with six decimals, of a model as large as they can tell."""
    scale = 1e8 / max(abs(part) for point in mesh.points for part in point)
    told = subprocess.run(
        ["gts2oogl", "--boundary", "--nosurface"],
        input=gts_text(mesh, triangles, scale),
        capture_output=True,
        text=True,
        check=True,
    ).stdout
    edges = [[float(word) for word in line.split()[6:12]] for line in told.splitlines() if line.startswith("VECT")]
    return len(edges), math.fsum(math.dist(edge[:3], edge[3:]) for edge in edges) / scale


def by_admesh(mesh, triangles, folder):
    path = folder / "model.stl"
    facets = "".join(
        "facet normal 0 0 0\nouter loop\n"
        + "".join("vertex {!r} {!r} {!r}\n".format(*mesh.points[corner]) for corner in triangle)
        + "endloop\nendfacet\n"
        for triangle in triangles
    )
    path.write_text(f"solid model\n{facets}endsolid model\n")
    told = subprocess.run(["admesh", "-e", "-d", "-v", path], check=True, capture_output=True, text=True).stdout
    number = lambda name: float(re.search(rf"{name} *[:=] *(\S+?),?\s", told).group(1))  # noqa: E731
    return {
        "box": [[number(f"{end} {axis}") for axis in "XYZ"] for end in ("Min", "Max")],
        "open": sum(n * number(f"Facets with {n} disconnected edges?") for n in (1, 2, 3)),
        "parts": number("Number of parts"),
        "volume": number("Volume"),
    }


# ---- Comparing ------------------------------------------------------------------------------------------------------


class Comparer:
    def __init__(self, model):
        self.model = model
        self.numbers = 0
        self.wrong = []

    def alike(self, what, ours, theirs, tolerance=0.0, scale=None):
        self.numbers += 1
        scale = max(abs(ours), abs(theirs)) if scale is None else scale
        if not abs(ours - theirs) <= tolerance * scale:
            self.wrong.append(f"{self.model}: {what}: {ours!r} here, {theirs!r} there")


def compare_surface(check, report, mesh, folder):
    triangles = mesh.triangles()
    data = poly_data(mesh.points, triangles)
    outlines = poly_data(mesh.points, mesh.outlines())
    area, volume = mass_by_vtk(data)
    open_edges, border = edges_by_vtk(outlines, "BoundaryEdges")
    bounds = data.GetPoints().GetBounds()
    gts = by_gts(mesh, triangles)
    admesh = by_admesh(mesh, triangles, folder)
    size = max(abs(value) for value in bounds)
    for axis in range(3):
        for end in range(2):
            ours = report["box"][end][axis]
            check.alike("box, VTK", ours, bounds[2 * axis + end])
            if mesh.is_whole():  # else points without a facet of their own are missing there
                check.alike("box, admesh", ours, admesh["box"][end][axis], 1e-6, size)
    check.alike("area, VTK", report["area"], area, EXACT)
    check.alike("area, GTS", report["area"], gts["area"], SIX_DIGITS)
    check.alike("edges of more than two, VTK", report["badEdges"], edges_by_vtk(outlines, "NonManifoldEdges")[0])
    check.alike("open border, VTK", report["openBorder"], border, EXACT)
    check.alike("components, VTK", report["components"], components_by_vtk(data))
    if not mesh.has_cells():  # of triangles an edge is the same to all; the diagonals of cells are edges there alone
        check.alike("edges of more than two, GTS", report["badEdges"], gts["bad"])
    if report["badEdges"] == 0:  # there admesh pairs facets as they come
        check.alike("open edges, GTS and VTK", gts["open"], open_edges)
        gts_edges, gts_border = border_by_gts(mesh, triangles)
        check.alike("open edges as GTS lists them", gts_edges, open_edges)
        check.alike("open border, GTS", report["openBorder"], gts_border, 1e-9)
        check.alike("open edges, admesh and VTK", admesh["open"], open_edges)
        check.alike("whether it is open, admesh", report["openBorder"] > 0, admesh["open"] > 0)
        check.alike("components, admesh", report["components"], admesh["parts"])
    if report["volume"] is not None:
        check.alike("volume, VTK", report["volume"], volume, EXACT)
        check.alike("volume, admesh", report["volume"], abs(admesh["volume"]), SINGLE)


def compare_cells(check, report, mesh):
    """Patch by patch. Cells with repeated points have fewer edges here, and are left to the other tests."""
    for quality, first, last in zip(report["patch"], mesh.patches, mesh.patches[1:]):
        cells = mesh.faces[first:last]
        if not cells or any(len(set(cell)) < 4 for cell in cells):
            continue
        data = poly_data(mesh.points, cells)
        largest, smallest = quality_by_vtk(data, "MaxAngle").max(), quality_by_vtk(data, "MinAngle").min()
        check.alike("aspect, VTK", quality["aspect"], quality_by_vtk(data, "EdgeRatio").max(), EXACT)
        if largest <= 180:  # VTK goes round the outside of a corner that points inwards
            check.alike("skew, VTK", quality["skew"], max(largest - 90, 90 - smallest) / 90, 1e-9)
        check.alike("warp, VTK", quality["warp"], max(warp_by_vtk(mesh.points, cell) for cell in cells), 1e-6, 180)


def main():
    numbers = 0
    wrong = []
    with tempfile.TemporaryDirectory() as folder:
        for name in MODELS:
            path = DATA / name
            values = printed(sys.argv[1], path)
            report = values[0]
            if path.suffix == ".wrl":
                mesh = of_zones(values[1])
            else:
                mesh = (read_stl if path.suffix == ".stl" else read_apt)(path)
            check = Comparer(name)
            compare_surface(check, report, mesh, Path(folder))
            if path.suffix == ".apt":
                compare_cells(check, report, mesh)
            print(f"{name}: {check.numbers} numbers, {len(check.wrong)} differ")
            numbers += check.numbers
            wrong += check.wrong
    print("\n".join(wrong))
    return 1 if wrong or numbers == 0 else 0


if __name__ == "__main__":
    sys.exit(main())

"""Files of other programs, read by the program and by others: the triangles must be the same.

The samples are written here. What Import makes of them goes out as an OBJ file with all digits and is compared with
what VTK's readers and the command `assimp` (by its own way to OBJ) give, corner by corner, within the digits of single
precision, which both use. Usage: read_alike.py VELMORA_BATCH [--without KIND]. Ends with 77,
which CTest shows as skipped, where one of them is not installed or the program was built without a kind of file.
"""

import base64
import json
import math
import shutil
import struct
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

try:
    import h5py
except ImportError as missing:
    print(f"SKIPPED: {missing}: install python3-h5py")
    sys.exit(77)

import read_back
from read_back import SKIPPED, Failure, by_meshio, by_vtk, compare_grids, corners_of_leaves, grids_by_vtk_plot3d
from read_back import leaves_of, numpy, run, turned, vtk

SINGLE = 3e-6  # of the largest coordinate


# ---- Samples --------------------------------------------------------------------------------------------------------

CORNERS = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0.5), (0.25, 0.5, 2)]
TRIANGLES = [(0, 1, 2), (0, 2, 3), (0, 4, 1), (1, 4, 2)]


def write_gltf(path, nodes):
    binary = b"".join(struct.pack("<3f", *point) for point in CORNERS)
    start = len(binary)
    binary += b"".join(struct.pack("<3H", *triangle) for triangle in TRIANGLES)
    tree = {
        "asset": {"version": "2.0"},
        "buffers": [{"byteLength": len(binary)}],
        "bufferViews": [
            {"buffer": 0, "byteLength": start},
            {"buffer": 0, "byteOffset": start, "byteLength": len(binary) - start},
        ],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": len(CORNERS), "type": "VEC3",
             "min": [0, 0, 0], "max": [1, 1, 2]},
            {"bufferView": 1, "componentType": 5123, "count": 3 * len(TRIANGLES), "type": "SCALAR"},
        ],
        "meshes": [{"name": "plate", "primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "nodes": nodes,
        "scenes": [{"nodes": [0]}],
        "scene": 0,
    }  # fmt: skip
    if path.suffix == ".gltf":
        tree["buffers"][0]["uri"] = "data:application/octet-stream;base64," + base64.b64encode(binary).decode()
        path.write_text(json.dumps(tree), encoding="utf-8")
        return
    text = json.dumps(tree).encode()
    text += b" " * (-len(text) % 4)
    binary += b"\0" * (-len(binary) % 4)
    chunks = struct.pack("<I4s", len(text), b"JSON") + text + struct.pack("<I4s", len(binary), b"BIN\0") + binary
    path.write_bytes(struct.pack("<4sII", b"glTF", 2, 12 + len(chunks)) + chunks)


def write_3mf(path, resources, items):
    kinds = "http://schemas.openxmlformats.org/package/2006/content-types"
    relations = "http://schemas.openxmlformats.org/package/2006/relationships"
    core = "http://schemas.microsoft.com/3dmanufacturing"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr(
            "[Content_Types].xml",
            f"<Types xmlns='{kinds}'><Default Extension='rels' "
            "ContentType='application/vnd.openxmlformats-package.relationships+xml'/><Default Extension='model' "
            "ContentType='application/vnd.ms-package.3dmanufacturing-3dmodel+xml'/></Types>",
        )
        archive.writestr(
            "_rels/.rels",
            f"<Relationships xmlns='{relations}'><Relationship Id='a' Target='/3D/3dmodel.model' "
            f"Type='{core}/2013/01/3dmodel'/></Relationships>",
        )
        archive.writestr(
            "3D/3dmodel.model",
            f"<?xml version='1.0'?><model unit='inch' xmlns='{core}/core/2015/02'><resources>{resources}</resources>"
            f"<build>{items}</build></model>",
        )


def mesh_3mf():
    vertices = "".join(f"<vertex x='{x}' y='{y}' z='{z}'/>" for x, y, z in CORNERS)
    triangles = "".join(f"<triangle v1='{a}' v2='{b}' v3='{c}'/>" for a, b, c in TRIANGLES)
    return f"<mesh><vertices>{vertices}</vertices><triangles>{triangles}</triangles></mesh>"


def write_polygon_files(folder):
    """One body in the text and the binary forms that others write: numbers from 1 and from the end, groups, comments."""
    points = [f"{x} {y} {z}" for x, y, z in CORNERS]
    last = len(CORNERS)
    (folder / "body.obj").write_text(
        "# body\nmtllib none.mtl\n"
        + "".join(f"v {point}\n" for point in points)
        + "vt 0 0\nvn 0 0 1\ng left\n"
        + "".join(f"f {a + 1}/1/1 {b + 1}/1/1 {c + 1}/1/1\n" for a, b, c in TRIANGLES[:2])
        + "g right\ns 1\n"
        + "".join(f"f {a - last} {b - last} {c - last}\n" for a, b, c in TRIANGLES[2:]),
        encoding="utf-8",
    )
    (folder / "body.off").write_text(
        f"OFF\n# body\n{last} {len(TRIANGLES)} 0\n"
        + "".join(f"{point}\n" for point in points)
        + "".join(f"3 {a} {b} {c}\n" for a, b, c in TRIANGLES),
        encoding="utf-8",
    )
    for form, order in (("little", "<"), ("big", ">")):
        head = (
            f"ply\nformat binary_{form}_endian 1.0\ncomment body\nelement vertex {last}\nproperty float x\n"
            f"property float y\nproperty float z\nproperty uchar red\nelement face {len(TRIANGLES)}\n"
            "property list uchar int vertex_indices\nend_header\n"
        )
        vertices = b"".join(struct.pack(order + "3fB", *point, 7) for point in CORNERS)
        faces = b"".join(struct.pack(order + "B3i", 3, *triangle) for triangle in TRIANGLES)
        (folder / f"{form}.ply").write_bytes(head.encode() + vertices + faces)


# Sections of points: a twisted 3 x 4, and a 2 x 2.
GRIDS = [
    [[(i + j / 3, j - i * i / 7, i * j / 11) for i in range(4)] for j in range(3)],
    [[(5.0 + i, 1.0 * j, i + j / 9) for i in range(2)] for j in range(2)],
]


def write_plot3d(path, number):
    """Fortran's records, several grids; the numbers as that letter of struct has them."""

    def record(content):
        return struct.pack("<i", len(content)) + content + struct.pack("<i", len(content))

    content = record(struct.pack("<i", len(GRIDS)))
    content += record(b"".join(struct.pack("<3i", len(grid[0]), len(grid), 1) for grid in GRIDS))
    for grid in GRIDS:
        points = [point for section in grid for point in section]
        content += record(b"".join(struct.pack("<" + number, point[axis]) for axis in range(3) for point in points))
    path.write_bytes(content)


def write_samples(folder):
    write_polygon_files(folder)
    write_plot3d(folder / "double.p3d", "d")
    write_plot3d(folder / "single.p3d", "f")
    half = math.sqrt(0.5)
    tree = [
        {"name": "aircraft", "rotation": [0, 0, half, half], "scale": [2, 1, 3], "children": [1, 2]},
        {"name": "wing", "translation": [1, 2, 3], "mesh": 0},
        {"children": [3]},
        {"matrix": [1, 0, 0, 0, 2, 1, 0, 0, 0, 0.5, 1, 0, 10, 20, 30, 1], "mesh": 0},
    ]
    write_gltf(folder / "tree.gltf", tree)
    write_gltf(folder / "tree.glb", tree)
    part = "<component objectid='1' transform='{}'/>"
    write_3mf(
        folder / "parts.3mf",
        f"<object id='1' type='model' name='wing'>{mesh_3mf()}</object><object id='2' type='model'><components>"
        + part.format("2 1 0 0 3 0 0 0 1 10 20 30")
        + part.format("0 1 0 0 0 1 1 0 0 -4 0.5 0.25")
        + "</components></object>",
        "<item objectid='2' transform='0 0 1 1 0 0 0 1 0 0 0 7'/><item objectid='1'/>",
    )


# ---- Readers: each gives triangles x corners x coordinates ----------------------------------------------------------


def triangles_of_obj(path):
    points, triangles = [], []
    for line in path.read_text(encoding="utf-8").splitlines():
        words = line.split()
        if words[:1] == ["v"]:
            points.append([float(word) for word in words[1:4]])
        elif words[:1] == ["f"]:
            triangles.append([points[int(word.split("/")[0]) - 1] for word in words[1:]])
    return numpy.array(triangles)


def by_assimp(path, folder=None):
    """Writes between the two into the folder, else beside the file."""
    out = (folder or path.parent) / f"{path.stem}.assimp.obj"
    out.unlink(missing_ok=True)
    subprocess.run(["assimp", "export", path, out], capture_output=True, timeout=120, check=True)
    return triangles_of_obj(out)


def by_vtk_gltf(path):
    reader = vtk.vtkGLTFReader()
    reader.SetFileName(str(path))
    reader.ApplyDeformationsToGeometryOn()
    reader.Update()
    return corners_of_leaves(leaves_of(reader.GetOutput()))


def by_velmora(batch, path):
    out = path.with_suffix(".velmora.obj")
    out.unlink(missing_ok=True)
    run(batch, path.parent, [f"run file.import file={path.name}", f"run file.export file={out.name}"])
    return triangles_of_obj(out)


def read_by_velmora(batch, path):
    """The triangles and the patches that Import gives, and whether it took anything."""
    lines = [f'run file.import file="{path}" volumes=2', "print region", "print patches"]
    arguments = [str(batch), "--json", "--keep-going"]
    for line in lines:
        arguments += ["-c", line]
    result = subprocess.run(arguments, capture_output=True, text=True, timeout=120, check=False)
    printed = {}
    for line in result.stdout.splitlines():
        event = json.loads(line)
        if event["event"] == "print":
            printed[event["what"]] = event["value"]
    triangles = []
    for zone in printed.get("region", []):
        points = numpy.array([variable["values"] for variable in zone["variables"][:3]]).T
        triangles.append(points[numpy.array(zone["triangles"])])
    patches = [numpy.array(patch) for patch in printed.get("patches", [])]
    return numpy.concatenate(triangles) if triangles else None, patches


# ---- Comparing ------------------------------------------------------------------------------------------------------


def sorted_triangles(triangles, digits):
    """Each from its least corner on, its sense kept, in one order for both readers."""
    rounded = numpy.round(triangles, digits) + 0.0
    return sorted(turned([tuple(corner) for corner in triangle]) for triangle in rounded.tolist())


def compare(what, ours, theirs):
    size = numpy.abs(ours).max()
    digits = 3 - int(math.floor(math.log10(size)))
    if ours.shape != theirs.shape:
        raise Failure(f"{what}: {ours.shape} and {theirs.shape}")
    # Rounding only brings both into one order; the numbers are compared whole.
    order = [numpy.array(sorted_triangles(triangles, digits)) for triangles in (ours, theirs)]
    if not numpy.allclose(order[0], order[1], rtol=0, atol=max(SINGLE * size, 1.5 * 10.0**-digits)):
        raise Failure(f"{what}:\n ours   {order[0].tolist()}\n theirs {order[1].tolist()}")


def check_hidden_link(batch, folder):
    """A zone that a link of HDF5 itself, which the format does not know, puts into a file outside of the folder."""
    own = folder / "own"
    own.mkdir()
    for path in (folder / "secret.cgns", own / "part.cgns"):
        path.unlink(missing_ok=True)
        run(batch, path.parent, [f"run file.import file={folder / 'tree.glb'}", f"run file.export file={path}"])
    for target, allowed in (("part.cgns", True), ("../secret.cgns", False), (str(folder / "secret.cgns"), False)):
        linked = own / "linked.cgns"
        shutil.copy(own / "part.cgns", linked)
        with h5py.File(linked, "a") as file:
            zones = [name for name, node in file["Base"].items() if node.attrs.get("label", b"").startswith(b"Zone_t")]
            for zone in zones:
                del file["Base"][zone]
                file["Base"][zone] = h5py.ExternalLink(target, f"/Base/{zone}")
        try:
            run(batch, own, ["run file.import file=linked.cgns"])
            read = True
        except Failure:
            read = False
        if read != allowed:
            raise Failure(f"{target} was {'read' if read else 'not read'}")


CASES = [
    ("tree.gltf", by_assimp, "assimp"),
    ("tree.gltf", by_vtk_gltf, "VTK"),
    ("tree.glb", by_assimp, "assimp"),
    ("tree.glb", by_vtk_gltf, "VTK"),
    ("parts.3mf", by_assimp, "assimp"),
    ("body.obj", by_assimp, "assimp"),
    ("body.off", by_assimp, "assimp"),
    ("body.off", by_meshio, "meshio"),
    ("little.ply", by_assimp, "assimp"),
    ("little.ply", by_meshio, "meshio"),
    ("little.ply", by_vtk(vtk.vtkPLYReader), "VTK"),
    ("big.ply", by_assimp, "assimp"),
    ("big.ply", by_vtk(vtk.vtkPLYReader), "VTK"),
]
GRID_CASES = [
    ("double.p3d", grids_by_vtk_plot3d(True, True), "VTK"),
    ("single.p3d", grids_by_vtk_plot3d(True, False), "VTK"),
]


def check(what, compare_them):
    """Whether it failed."""
    try:
        compare_them()
    except Exception as error:  # pylint: disable=broad-except
        print(f"FAILED: {what}\n{type(error).__name__}: {error}")
        return True
    print("as it must be:", what)
    return False


def main():
    if shutil.which("assimp") is None:
        print("SKIPPED: imported files were not read by any other program: there is no assimp (assimp-utils)")
        return SKIPPED
    line = read_back.command_line()
    batch = line.batch
    failed = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        write_samples(folder)
        for file, read, reader in read_back.known(CASES, "3MF", ".3mf", line.without):
            what = f"{file} read by {reader}"
            failed += check(what, lambda: compare(what, by_velmora(batch, folder / file), read(folder / file)))
        for file, read, reader in GRID_CASES:
            what = f"{file} read by {reader}"
            failed += check(
                what,
                lambda: compare_grids(what, read_by_velmora(batch, folder / file)[1], read(folder / file), False),
            )
        if "CGNS" in line.without:
            print("SKIPPED: links in cgns: this build knows no CGNS")
        else:
            failed += check("links in cgns keep to the folder", lambda: check_hidden_link(batch, folder))
        ours = by_velmora(batch, folder / "tree.gltf")
        try:
            compare("turned round", ours, ours[:, ::-1])
            failed += 1
            print("FAILED: triangles that are turned round passed")
        except Failure:
            pass
    print(f"{failed} of the files failed" if failed else "All files were read alike")
    return 1 if failed else SKIPPED if {"3MF", "CGNS"} & set(line.without) else 0


if __name__ == "__main__":
    read_back.vtk.vtkObject.GlobalWarningDisplayOff()
    sys.exit(main())

"""The lines by which the page on Python hands a model to other libraries. A library that is not there is skipped, and CTest
says so."""

import pytest


@pytest.fixture
def surface(plate_model):
    vertices, triangles, *_ = plate_model.triangles()
    return vertices, triangles


def test_meshio(surface, own_folder):
    meshio = pytest.importorskip("meshio")
    vertices, triangles = surface
    meshio.Mesh(vertices, [("triangle", triangles)]).write("plate.vtk")
    back = meshio.read("plate.vtk")
    assert (back.points == vertices).all() and (back.cells_dict["triangle"] == triangles).all()


def test_trimesh(surface):
    trimesh = pytest.importorskip("trimesh")
    vertices, triangles = surface
    mesh = trimesh.Trimesh(vertices, triangles, process=False)
    assert (mesh.vertices == vertices).all() and (mesh.faces == triangles).all()
    assert mesh.area == pytest.approx(12.0)


def test_pyvista(surface):
    pyvista = pytest.importorskip("pyvista")
    vertices, triangles = surface
    mesh = pyvista.make_tri_mesh(vertices, triangles)
    assert (mesh.points == vertices).all() and mesh.n_cells == 24
    assert mesh.area == pytest.approx(12.0)

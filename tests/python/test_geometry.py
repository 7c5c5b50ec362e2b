"""Geometry out of a model and into it."""

import time

import numpy as np
import pytest

import velmora
from conftest import CUBE_TRIANGLES, CUBE_VERTICES, plate


def test_arrays_are_read_only_snapshots_and_the_same_while_the_model_stays(plate_model):
    before = plate_model.patches[0]
    assert before.dtype == np.float64 and not before.flags.writeable
    assert plate_model.patches[0] is before
    with pytest.raises(ValueError):
        before[0, 0, 0] = 1.0
    plate_model.run("model.move", deltaX=2.0)
    assert (before == plate(4, 5)).all()
    assert (plate_model.patches[0] == plate(4, 5) + [2.0, 0.0, 0.0]).all()


def test_the_list_is_the_callers_own(plate_model):
    plate_model.patches.clear()
    assert len(plate_model.patches) == 1


def test_arrays_outlive_their_model():
    def lines_of_a_model_that_goes():
        model = velmora.Model()
        model.set_patches([plate(3, 4)])
        return model.lines

    assert (np.array(lines_of_a_model_that_goes()[0]) == plate(3, 4)).all()


def test_setting_patches_is_one_edit_that_undo_takes_back(plate_model):
    plate_model.patches = [plate(2, 3), plate(3, 2, z=1.0)]
    assert [patch.shape for patch in plate_model.patches] == [(2, 3, 3), (3, 2, 3)]
    assert plate_model.state["documentModified"] is True
    plate_model.run("patch.undo")
    assert [patch.shape for patch in plate_model.patches] == [(4, 5, 3)]


def test_setting_patches_leaves_regimes_and_the_zblock(plate_model):
    plate_model.run("patch.inputAndAdd", number=1)
    plate_model.run("line.inputSection", patch=1, section=4)
    plate_model.patches = [plate(2, 2)]
    assert plate_model.state["blockCount"] == 0
    assert plate_model.commands["line.rebreak"] is False


def test_the_name_stays_and_the_kind_gives_the_extension(examples):
    model = velmora.open(examples / "wing.apt")
    model.patches = [plate(2, 2)]
    assert model.state["documentTitle"] == "wing.apt"
    model.lines = [[plate(1, 3)[0], plate(1, 2)[0]]]
    assert model.state["documentTitle"] == "wing.skl"
    model.set_zones([(CUBE_VERTICES, CUBE_TRIANGLES)])
    assert model.state["documentTitle"] == "wing.dat"
    assert model.patches == []


def test_sections_of_their_own_lengths_are_lines_and_no_grid():
    model = velmora.Model()
    model.lines = [[plate(1, 3)[0], plate(1, 5)[0]]]
    assert model.state["fileKind"] == "skl"
    assert [line.shape for line in model.lines[0]] == [(3, 3), (5, 3)]
    with pytest.raises(ValueError, match="patch 1 differ in length"):
        model.patches


def test_zones_go_in_and_out_with_titles_and_fields():
    model = velmora.Model()
    pressure = np.linspace(0.0, 7.0, 8)
    model.zones = [velmora.Zone(CUBE_VERTICES, CUBE_TRIANGLES, "cube", {"pressure": pressure})]
    (zone,) = model.zones
    assert zone.title == "cube"
    assert (zone.vertices == CUBE_VERTICES).all() and (zone.triangles == CUBE_TRIANGLES).all()
    assert list(zone.fields) == ["pressure"] and (zone.fields["pressure"] == pressure).all()
    report = model.report()
    assert report["area"] == 6.0 and report["volume"] == 1.0


@pytest.mark.parametrize(
    "patches, text",
    [
        ([], "there is no patch"),
        ([np.zeros((2, 3))], r"patch 1 has the shape \(2, 3\)"),
        ([plate(2, 2), np.zeros((0, 3, 3))], "patch 2"),
        ([np.full((2, 2, 3), np.nan)], "value 1 of 12 is not finite"),
        ([[np.zeros((2, 2))]], "patch 1, section 1 has the shape"),
        ([[]], "patch 1 has no sections"),
        ([[np.zeros((0, 3))]], "patch 1, section 1 has no points"),
    ],
)
def test_patches_that_no_reader_would_take_are_refused(plate_model, patches, text):
    with pytest.raises(ValueError, match=text):
        plate_model.set_patches(patches)
    assert (plate_model.patches[0] == plate(4, 5)).all()


@pytest.mark.parametrize(
    "zones, text",
    [
        ([], "there is no zone"),
        ([(CUBE_VERTICES, [[0, 1, 8]])], "zone 1: triangle 1 names vertex 8"),
        ([(CUBE_VERTICES, [[0, 1, 2], [0, -1, 2]])], "triangle 2 names vertex -1"),
        ([(CUBE_VERTICES[:, :2], CUBE_TRIANGLES)], r"zone 1: vertices has the shape \(8, 2\)"),
        ([(CUBE_VERTICES + np.inf, CUBE_TRIANGLES)], "not finite"),
        ([velmora.Zone(CUBE_VERTICES, CUBE_TRIANGLES, "", {"p": np.zeros(7)})], 'the field "p"'),
        ([velmora.Zone(CUBE_VERTICES, CUBE_TRIANGLES, "", {"X": np.zeros(8)})], "already"),
    ],
)
def test_zones_that_no_reader_would_take_are_refused(plate_model, zones, text):
    with pytest.raises(ValueError, match=text):
        plate_model.set_zones(zones)
    assert (plate_model.patches[0] == plate(4, 5)).all()


def test_the_line_buffer_holds_a_copied_section(plate_model):
    plate_model.run("line.inputSection", patch=1, section=3)
    plate_model.run("line.copy")
    assert (plate_model.line_buffer == plate(4, 5)[2]).all()


def test_triangles_of_patches_are_those_of_the_report(plate_model):
    zone = plate_model.triangles()
    assert zone.vertices.shape == (20, 3) and zone.triangles.shape == (24, 3)
    a, b, c = (zone.vertices[zone.triangles[:, i]] for i in range(3))
    assert 0.5 * np.linalg.norm(np.cross(b - a, c - a), axis=1).sum() == plate_model.report()["area"]
    assert zone.triangles[0].tolist() == [0, 5, 6] and zone.triangles[1].tolist() == [0, 6, 1]


def seconds_of_a_look(model):
    """The work of this thread alone: others that are busy too do not count."""
    begin = time.thread_time()
    (patch,) = model.patches
    seconds = time.thread_time() - begin
    assert patch.size == 600_000
    return seconds


def test_two_hundred_thousand_points_are_read_in_a_millisecond_and_again_in_much_less():
    model = velmora.Model()
    points = plate(400, 500)
    first, second = [], []
    for _ in range(12):
        model.set_patches([points])
        first.append(seconds_of_a_look(model))
        second.append(seconds_of_a_look(model))
    assert min(first) < 1e-3
    assert min(second) < 1e-4

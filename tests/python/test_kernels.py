"""Kernels on arrays, against what their rules say and against the commands."""

import numpy as np
import pytest

from conftest import CUBE_TRIANGLES, CUBE_VERTICES, plate
from velmora import kernels

STRAIGHT = np.array([[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [5.0, 0.0, 0.0], [6.0, 0.0, 0.0], [10.0, 0.0, 0.0]])


@pytest.mark.parametrize("spline", [False, True])
def test_equal_steps_along_a_straight_line(spline):
    points = kernels.rebreak(STRAIGHT, 11, spline=spline)
    assert np.allclose(points[:, 0], np.arange(11.0), atol=1e-9) and (points[:, 1:] == 0.0).all()


@pytest.mark.parametrize("compression", [0.1, 1.0, 4.0])
def test_steps_grow_by_one_factor_up_to_the_compression(compression):
    points = kernels.rebreak(STRAIGHT, 9, compression=compression, spline=False)
    steps = np.diff(points[:, 0])
    assert np.isclose(steps[-1] / steps[0], compression, rtol=1e-9)
    assert np.allclose(steps[1:] / steps[:-1], compression ** (1 / 7), rtol=1e-9)
    assert (points[0] == STRAIGHT[0]).all() and (points[-1] == STRAIGHT[-1]).all()


def test_a_law_gives_the_positions():
    points = kernels.rebreak_by_law(STRAIGHT, [0.0, 1.0, 4.0, 10.0, 20.0], spline=False)
    assert np.allclose(points[:, 0], [0.0, 0.5, 2.0, 5.0, 10.0], atol=1e-12)


@pytest.mark.parametrize("function, spline", [(1, True), (2, False)])
def test_the_kernel_does_what_the_command_does(plate_model, function, spline):
    section = np.array([[0, 0, 0], [1, 1, 0], [2, 1.5, 0], [3, 1, 0], [4, 0, 0]], dtype=float)
    plate_model.patches = [np.stack([section, section + [0, 0, 1]])]
    plate_model.run("line.inputSection", patch=1, section=1)
    fields = dict(firstPoint=1, lastPoint=5, newCount=12, compression=3.0)
    if spline:
        fields["exactness"] = 5
    plate_model.run("line.rebreak", regime=1, function=function, **fields)
    expected = kernels.rebreak(section, 12, compression=3.0, spline=spline, exactness=5 if spline else 0)
    assert (plate_model.lines[0][0] == expected).all()


def test_the_input_stays_and_any_numbers_will_do():
    points = [[0, 0, 0], [1, 0, 0], [2, 0, 0]]
    result = kernels.rebreak(points, 5, spline=False)
    assert points == [[0, 0, 0], [1, 0, 0], [2, 0, 0]]
    assert np.allclose(result[:, 0], [0, 0.5, 1, 1.5, 2])
    assert not result.flags.writeable


@pytest.mark.parametrize(
    "call",
    [
        lambda: kernels.rebreak(STRAIGHT, 1),
        lambda: kernels.rebreak(STRAIGHT[:1], 5),
        lambda: kernels.rebreak(STRAIGHT[:, :2], 5),
        lambda: kernels.rebreak(STRAIGHT, 5, compression=0.0),
        lambda: kernels.rebreak(STRAIGHT, 5, compression=np.nan),
        lambda: kernels.rebreak(STRAIGHT, 5, exactness=101),
        lambda: kernels.rebreak(STRAIGHT * np.nan, 5),
        lambda: kernels.rebreak_by_law(STRAIGHT, [0.0, 2.0, 1.0]),
        lambda: kernels.rebreak_by_law(STRAIGHT, [1.0, 2.0]),
        lambda: kernels.rebreak_by_law(STRAIGHT, [0.0, np.inf]),
        lambda: kernels.slice_surface(CUBE_VERTICES, CUBE_TRIANGLES, 3, 2, 0.0, 1.0),
        lambda: kernels.slice_surface(CUBE_VERTICES, CUBE_TRIANGLES, 2, 1, 0.0, 1.0),
        lambda: kernels.slice_surface(CUBE_VERTICES, CUBE_TRIANGLES, 2, 2, 1.0, 0.0),
        lambda: kernels.slice_surface(CUBE_VERTICES, [[0, 1, 9]], 2, 2, 0.0, 1.0),
        lambda: kernels.match(plate(2, 3), plate(2, 4) + 50.0),
    ],
)
def test_what_makes_no_sense_is_a_value_error(call):
    with pytest.raises(ValueError):
        call()


def test_planes_through_a_cube_give_its_outline():
    lines = kernels.slice_surface(CUBE_VERTICES, CUBE_TRIANGLES, 2, 3, 0.25, 0.75)
    assert len(lines) == 3
    for line, height in zip(lines, (0.25, 0.5, 0.75)):
        assert np.allclose(line[:, 2], height)
        assert np.allclose(line[0], line[-1])
        # Around the square: four sides of length 1, each point on one of them.
        assert np.isclose(np.linalg.norm(np.diff(line, axis=0), axis=1).sum(), 4.0)
        on_border = np.isclose(line[:, :2], 0.0) | np.isclose(line[:, :2], 1.0)
        assert on_border.any(axis=1).all()


def test_planes_beside_the_body_give_nothing():
    assert kernels.slice_surface(CUBE_VERTICES, CUBE_TRIANGLES, 2, 3, 2.0, 3.0) == []


def test_points_go_onto_the_target_across_their_patch_and_those_beside_it_stay():
    target = np.array([[-1.0, -1.0, 0.0], [2.5, -1.0, 0.0], [2.5, 9.0, 0.0], [-1.0, 9.0, 0.0]])
    projected = kernels.project(plate(3, 4, z=1.5), target, [[0, 1, 2], [0, 2, 3]])
    expected = plate(3, 4)
    expected[:, 3, 2] = 1.5
    assert np.allclose(projected.patch, expected, atol=1e-12)
    assert np.allclose(projected.missed, plate(3, 4, z=1.5)[:, 3])


def test_the_nearest_borders_are_brought_together():
    a, b = plate(3, 4), plate(3, 4) + [3.05, 0.0, 0.0]
    matched = kernels.match(a, b)
    assert (matched[:, 0] == a[:, -1]).all() and (matched[:, 1:] == b[:, 1:]).all()


def test_borders_out_of_reach_are_no_match():
    with pytest.raises(ValueError, match="near enough"):
        kernels.match(plate(3, 4), plate(3, 4) + [3.0 + 2 * kernels.BORDER_REACH, 0.0, 0.0])

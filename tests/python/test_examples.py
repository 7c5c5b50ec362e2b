"""The example scripts do what the scripts of the same names do."""

import os
import subprocess
import sys

import numpy as np

import velmora


def run(examples, name, *arguments):
    done = subprocess.run(
        [sys.executable, examples / "python" / name, *arguments], check=True, capture_output=True, text=True
    )
    return done.stdout


def test_the_finer_wing_has_twice_the_points_around(examples):
    assert run(examples, "finer_wing.py", examples / "wing.apt", "fine.apt") == "61 points a section have become 121\n"
    assert velmora.open("fine.apt").patches[0].shape == (25, 121, 3)


def test_the_grid_of_the_triangles_lies_on_them(examples):
    said = run(examples, "wing_from_triangles.py", examples / "c172_wing.stl", "grid.apt")
    grid = velmora.open("grid.apt").patches[0]
    assert grid.shape == (25, 61, 3)
    assert said.startswith("1525 points, at most ")
    assert float(said.split()[4]) < 0.05  # of a wing of a span of five
    assert np.allclose(np.diff(grid[:, 0, 2]), np.diff(grid[:, 0, 2])[0])


def test_the_wing_begins_where_the_body_ends(examples):
    run(examples, "wing_body_joint.py", examples / "wing.apt", examples / "body.apt", "joint.apt")
    body, wing = velmora.open("joint.apt").patches
    ends = body.reshape(-1, 3)
    for section in wing:
        nearest = min(np.linalg.norm(ends - end, axis=1).min() for end in (section[0], section[-1]))
        assert nearest < 1e-9


def test_the_program_is_driven_until_the_steps_are_short_enough(examples):
    said = run(examples, "drive_batch.py", os.environ["VELMORA_BATCH"], examples / "wing.apt", "0.03", "even.apt")
    counts = [int(line.split()[0]) for line in said.splitlines()]
    assert counts[0] == 121 and all(after == 2 * before - 1 for before, after in zip(counts, counts[1:]))
    grid = velmora.open("even.apt").patches[0]
    assert grid.shape == (25, counts[-1], 3)
    steps = np.linalg.norm(np.diff(grid[0], axis=0), axis=1)
    assert 0.03 / 2 < steps.max() <= 0.03 and np.allclose(steps, steps[0], rtol=0.02)

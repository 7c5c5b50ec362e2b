"""What the tests of the Python package share."""

import os
from pathlib import Path

import numpy as np
import pytest

import velmora

EXAMPLES = Path(os.environ["VELMORA_EXAMPLES"])


@pytest.fixture
def examples():
    """The folder of the example models."""
    return EXAMPLES


@pytest.fixture(autouse=True)
def own_folder(tmp_path, monkeypatch):
    """Each test works in a folder of its own."""
    monkeypatch.chdir(tmp_path)
    return tmp_path


def plate(sections, points, z=0.0):
    """A flat patch: point m of section n stands at (m, n, z)."""
    m, n = np.meshgrid(np.arange(points, dtype=float), np.arange(sections, dtype=float))
    return np.stack([m, n, np.full_like(m, z)], axis=-1)


def apt_patches(path):
    """The patches of an .apt file, read by nothing of the program."""
    words = Path(path).read_text().split()
    patches = []
    while words:
        sections, points = int(words[0]), int(words[1])
        count = 3 * sections * points
        patches.append(np.array([float(word) for word in words[2 : 2 + count]]).reshape(sections, points, 3))
        words = words[2 + count :]
    return patches


#: Eight corners of a cube from 0 to 1 and its twelve triangles.
CUBE_VERTICES = np.array([[x, y, z] for x in (0.0, 1.0) for y in (0.0, 1.0) for z in (0.0, 1.0)])
CUBE_TRIANGLES = np.array(
    [
        [0, 1, 3], [0, 3, 2], [4, 6, 7], [4, 7, 5], [0, 4, 5], [0, 5, 1],
        [2, 3, 7], [2, 7, 6], [0, 2, 6], [0, 6, 4], [1, 5, 7], [1, 7, 3],
    ]
)  # fmt: skip


@pytest.fixture
def plate_model(tmp_path):
    """A model of one plate of four sections of five points."""
    model = velmora.Model(folder=tmp_path)
    model.set_patches([plate(4, 5)])
    return model

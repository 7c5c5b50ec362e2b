"""Cuts the upper side of a wing and the middle of a body against each other, and looks whether they meet.

python3 examples/python/wing_body_joint.py WING.apt BODY.apt RESULT.apt
"""

import sys

import numpy as np

import velmora


def upper_side(path: str) -> np.ndarray:
    """The patch before the nose, moved aft to where it shall stand."""
    m = velmora.open(path)
    return m.patches[0][:, :31] + [5.0, 0.0, 0.0]


def main(wing: str, body: str, target: str) -> None:
    m = velmora.open(body)
    m.patches = [m.patches[1], upper_side(wing)]
    m.run("patch.inputAndAdd", number=2)
    m.run(
        "model.intersection",
        insideSide=2, insidePoints=30, outsideSide=1, outsidePoints=40, tolerance=0.0005,
    )  # fmt: skip
    # Sections and lines of the wing are exchanged now: the other way round its outside shows again.
    m.run("patch.inputAndAdd", number=2)
    m.run("model.lastFirstSwitch")
    m.run("patch.exit")
    shape, joint = (patch.shape for patch in m.patches)
    print(f"body {shape[0]} x {shape[1]}, wing {joint[0]} x {joint[1]}")
    m.save_as(target, overwrite=True)


if __name__ == "__main__":
    main(*sys.argv[1:])

"""Doubles the points around the wing, and puts them where the surface bends: each quarter of a section by itself.

python3 examples/python/finer_wing.py MODEL.apt RESULT.apt
"""

import sys

import velmora

QUARTERS = [(46, 61, 0.05), (31, 46, 20.0), (16, 31, 0.05), (1, 16, 20.0)]


def main(source: str, target: str) -> None:
    m = velmora.open(source)
    m.run("line.inputSection", patch=1, section=1)
    # The last quarter first: the points before it keep their numbers then.
    for first, last, compression in QUARTERS:
        m.run("line.rebreak", regime=2, firstPoint=first, lastPoint=last, newCount=31, compression=compression)
    m.run("line.exit")
    before = velmora.open(source).patches[0].shape[1]
    print(f"{before} points a section have become {m.patches[0].shape[1]}")
    m.save_as(target, overwrite=True)


if __name__ == "__main__":
    main(*sys.argv[1:])

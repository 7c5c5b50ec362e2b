"""Makes a grid of a wing that is given as triangles, and tells how far the grid is from them.

python3 examples/python/wing_from_triangles.py TRIANGLES.stl RESULT.apt
"""

import sys

import velmora


def main(source: str, target: str) -> None:
    m = velmora.open(source)
    m.run("convert.toSkl", number=25, planeAxis=3, borderApproach=2, yourMin=0.01, yourMax=5.2)
    m.run("convert.toApt", pointCount=61, approximation=2)
    m.run("model.compare", target=3, file=source)
    found = m.value("comparison")
    print(f"{found['points']} points, at most {found['largest']:.4f} from the triangles")
    m.save_as(target, overwrite=True)


if __name__ == "__main__":
    main(*sys.argv[1:])

"""Kernels on arrays: what the commands do with curves and surfaces, without a model.

Lengths are in the model's unit, which is yours. Every function takes anything that numpy makes an array of float64 of,
leaves it as it is, and gives new arrays, which are read-only: take a ``copy()`` to change one. Wrong shapes, numbers
that are not finite and triangles that name vertices that do not exist raise ``ValueError``.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, List, NamedTuple

from . import _core

if TYPE_CHECKING:
    import numpy.typing as npt

    from ._types import Floats

__all__ = ["BORDER_REACH", "Projected", "match", "project", "rebreak", "rebreak_by_law", "slice_surface"]

#: The largest mean distance of two borders that `match` closes, in model units.
BORDER_REACH: float = _core.border_reach


class Projected(NamedTuple):
    """What `project` gives."""

    #: The patch, (N, M, 3), its points on the surface.
    patch: Floats
    #: The points that stayed, as their lines meet nothing: (k, 3).
    missed: Floats


def rebreak(
    points: npt.ArrayLike, count: int, *, compression: float = 1.0, spline: bool = True, exactness: int = 0
) -> Floats:
    """Re-spaces a curve by steps in geometric progression.

    :param points: the curve, (n, 3) with n of 2 or more.
    :param count: points of the result, 2 or more.
    :param compression: last step divided by the first; 1 for equal steps. Taken between 0.0001 and 10000.
    :param spline: along a spline through the points; else along the chords. With fewer than four points, or a `count`
        below four, the chords are taken, with equal steps.
    :param exactness: percent of the length by which the result may leave the chords, 0 to 100; spline only.
    :returns: (count, 3). The first and the last point are those of the curve.

    Neighbours that coincide are left out first, where there are more than three points.
    """
    return _core.rebreak(points, count, compression, spline, exactness)


def rebreak_by_law(
    points: npt.ArrayLike, positions: npt.ArrayLike, *, spline: bool = True, exactness: int = 0
) -> Floats:
    """Re-spaces a curve to given positions along it.

    :param points: the curve, (n, 3) with n of 2 or more.
    :param positions: (m,), rising from 0, in any unit: position k goes to the part positions[k] / positions[-1] of the
        length. The running length of another curve gives its spacing.
    :param spline: as for `rebreak`.
    :param exactness: as for `rebreak`.
    :returns: (m, 3).
    """
    return _core.rebreak_by_law(points, positions, spline, exactness)


def slice_surface(
    vertices: npt.ArrayLike,
    triangles: npt.ArrayLike,
    axis: int,
    planes: int,
    lower: float,
    upper: float,
    *,
    precision: float = 1e-4,
) -> List[Floats]:
    """Cuts triangles by planes across an axis.

    :param vertices: (V, 3).
    :param triangles: (T, 3), vertex numbers from 0.
    :param axis: 0 x, 1 y, 2 z.
    :param planes: how many, 2 or more, at equal steps.
    :param lower: where the first plane stands.
    :param upper: where the last plane stands.
    :param precision: line ends of one plane join up to this distance.
    :returns: the lines, (n, 3) each, in the order of the planes, those of one plane next to each other; a plane beside
        the body gives none.
    """
    return _core.slice(vertices, triangles, axis, planes, lower, upper, precision)


def project(patch: npt.ArrayLike, vertices: npt.ArrayLike, triangles: npt.ArrayLike) -> Projected:
    """Moves the points of a patch onto triangles, each along the line through it across the patch, to the nearest hit.

    :param patch: (N, M, 3): N sections of M points.
    :param vertices: (V, 3) of the target.
    :param triangles: (T, 3), vertex numbers from 0.
    """
    return Projected(*_core.project(patch, vertices, triangles))


def match(a: npt.ArrayLike, b: npt.ArrayLike, *, grid: bool = False) -> Floats:
    """Closes the gap between the borders of two patches that lie nearest to each other.

    :param a: (N, M, 3), which stays.
    :param b: (N, M, 3), whose border takes the points of a's.
    :param grid: the rest of b takes the border's spacing too.
    :returns: the new b.
    :raises ValueError: no borders of equally many points lie within `BORDER_REACH` of each other.
    """
    matched = _core.match(a, b, grid)
    if matched is None:
        raise ValueError("no two borders of the patches have as many points and are near enough")
    return matched

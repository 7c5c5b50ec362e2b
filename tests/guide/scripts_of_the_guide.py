"""scripts_of_the_guide.py PROGRAM GUIDE EXAMPLES

Runs every script of the pages howto.md and batch.md by `PROGRAM --strict` in a copy of EXAMPLES, and looks at what came
out. What must come out is worked out from the files that went in.
"""

import json
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np


def sections_of(path):
    """The patches of an .apt or .skl file as lists of sections."""
    words = path.read_text().split()
    patches = []
    if path.suffix == ".apt":
        while words:
            sections, points = int(words[0]), int(words[1])
            count = 3 * sections * points
            patches.append(np.array(words[2 : 2 + count], dtype=float).reshape(sections, points, 3))
            words = words[2 + count :]
    return patches


def facets_of(path):
    """Corners (T, 3, 3) of an .stl file, text or binary."""
    data = path.read_bytes()
    if data.startswith(b"solid"):
        numbers = re.findall(rb"vertex\s+(\S+)\s+(\S+)\s+(\S+)", data)
        return np.array(numbers, dtype=float).reshape(-1, 3, 3)
    facets = np.frombuffer(data, offset=84, dtype=np.dtype([("n", "<f4", 3), ("c", "<f4", (3, 3)), ("a", "<u2")]))
    return facets["c"].astype(float)


def value(events, what):
    return next(event["value"] for event in events if event["event"] == "print" and event["what"] == what)


def steps_of(curve):
    return np.linalg.norm(np.diff(curve, axis=0), axis=1)


class Checks:
    """One method for each script, named by the heading over it."""

    def __init__(self, folder):
        self.folder = folder
        self.wing = sections_of(folder / "wing.apt")
        self.body = sections_of(folder / "body.apt")
        self.triangles = facets_of(folder / "c172_wing.stl")

    def patches(self, name):
        return sections_of(self.folder / name)

    def make_a_grid_of_triangles(self, events):
        (grid,) = self.patches("grid.apt")
        assert grid.shape == (25, 61, 3)
        assert np.allclose(grid[:, :, 2], np.linspace(0.01, 5.2, 25)[:, None])

    def get_the_sections_at_stations_of_my_own(self, events):
        numbers = [line.split() for line in (self.folder / "stations.skl").read_text().splitlines()]
        heights = {round(float(words[2]), 9) for words in numbers if len(words) == 3}
        assert heights == {1.0, 2.0, 3.0}

    def lay_a_grid_back_onto_the_triangles_after_its_points_were_moved(self, events):
        (before,), (after,) = self.patches("respaced.apt"), self.patches("projected.apt")
        assert before.shape == after.shape == (25, 61, 3)
        moved = np.linalg.norm(after - before, axis=-1)
        assert 0.0 < np.median(moved) < 0.01
        # What moved stands in the plane of some triangle, within its box.
        corners = self.triangles
        normals = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
        lengths = np.linalg.norm(normals, axis=1)
        corners, normals = corners[lengths > 0], (normals.T[:, lengths > 0] / lengths[lengths > 0]).T
        low, high = corners.min(axis=1) - 1e-4, corners.max(axis=1) + 1e-4
        for point in after[moved > 1e-9][:200]:
            near = ((low <= point) & (point <= high)).all(axis=1)
            distances = np.abs(((point - corners[near, 0]) * normals[near]).sum(axis=1))
            assert distances.min() < 1e-5

    def clean_an_stl_file(self, events):
        report = value(events, "report")
        assert report["nodes"] == len({tuple(corner) for facet in self.triangles for corner in facet})
        assert report["triangles"] == len(self.triangles)
        assert np.allclose(facets_of(self.folder / "clean.stl"), self.triangles, atol=1e-6)

    def turn_the_outside_of_a_surface_out(self, events):
        turned = facets_of(self.folder / "turned.stl")
        assert np.allclose(turned, self.triangles[:, [0, 2, 1]], atol=1e-6)

    def cut_a_body_by_a_plane_and_keep_one_side(self, events):
        root = facets_of(self.folder / "root.stl")
        assert root[:, :, 2].max() <= 2.0 + 1e-6 and root[:, :, 2].min() == self.triangles[:, :, 2].min()
        assert np.isclose(root[:, :, 2].max(), 2.0, atol=1e-6)

    def give_every_section_another_number_of_points(self, events):
        finer = self.patches("finer.apt")
        assert [patch.shape for patch in finer] == [(25, 121, 3), (13, 31, 3)]
        assert np.allclose(finer[0][:, [0, -1]], self.wing[0][:, [0, -1]])

    def get_points_close_together_at_one_end(self, events):
        crowded = self.patches("crowded.apt")[1]
        assert crowded.shape == (21, 41, 3)
        for section in crowded:
            steps = steps_of(section)
            assert 0.08 < steps[-1] / steps[0] < 0.12 and steps.argmin() > 35

    def get_more_sections_along_the_body(self, events):
        longer = self.patches("longer.apt")[1]
        assert longer.shape == (41, 49, 3)
        assert np.allclose(longer[[0, -1]], self.body[1][[0, -1]])

    def give_a_patch_the_spacing_of_its_neighbour(self, events):
        nose, middle = self.patches("matched.apt")[:2]
        assert (middle[0] == nose[-1]).all() and (nose == self.body[0]).all()

    def close_a_gap_between_two_patches(self, events):
        nose, middle = self.patches("closed.apt")[:2]
        assert (middle[0] == nose[-1]).all() and (nose == self.body[0]).all()

    def join_a_wing_to_a_body_and_cut_away_what_lies_inside(self, events):
        body, wing = self.patches("joint.apt")
        # The middle of the body is an ellipse of 48 chords, which lie inside of it by a 230th at most.
        (upper,) = self.patches("upper.apt")
        sides = self.body[1].max(axis=(0, 1))[1:]
        inside, left = (((patch[..., 1:] / sides) ** 2).sum(axis=-1).min() for patch in (upper, wing))
        assert inside < 0.5 and left > 1 - 1 / 230
        ends = body.reshape(-1, 3)
        for section in wing:
            assert min(np.linalg.norm(ends - end, axis=1).min() for end in (section[0], section[-1])) < 1e-9

    def split_a_patch_in_two(self, events):
        parts = self.patches("split.apt")
        assert sorted(patch.shape for patch in parts) == [(13, 31, 3), (25, 31, 3), (25, 31, 3)]

    def make_one_patch_of_several(self, events):
        (whole,) = self.patches("whole.apt")
        assert (whole == np.concatenate([self.body[0], self.body[1][1:], self.body[2][1:]])).all()

    def save_one_patch_as_a_file_of_its_own(self, events):
        (tip,) = self.patches("tip.apt")
        assert (tip == self.wing[1]).all()

    def put_several_files_into_one_model(self, events):
        both = self.patches("both.apt")
        assert all((a == b).all() for a, b in zip(both, self.wing + self.body, strict=True))

    def change_the_unit(self, events):
        scaled = self.patches("millimetres.apt")
        assert all(np.allclose(a, 1000.0 * b, rtol=1e-12) for a, b in zip(scaled, self.wing, strict=True))

    def make_the_other_half_of_a_symmetric_body(self, events):
        patches = self.patches("both-sides.apt")
        assert len(patches) == 4
        for original, image in zip(self.wing, patches[2:]):
            mirrored = original * [1.0, 1.0, -1.0]
            assert np.allclose(image, mirrored[::-1]) or np.allclose(image, mirrored[:, ::-1])

    def see_how_far_two_surfaces_are_apart(self, events):
        found = value(events, "comparison")
        assert found["points"] == sum(patch.shape[0] * patch.shape[1] for patch in self.wing)
        assert 0.009 < found["largest"] <= 0.01 + 1e-12
        head, *rows = (self.folder / "far.csv").read_text().splitlines()
        assert head == "patch,section,point,x,y,z,distance"
        places = [f"{k + 1},{n + 1},{m + 1}" for k, patch in enumerate(self.wing) for n, m in np.ndindex(patch.shape[:2])]
        assert [row.rsplit(",", 4)[0] for row in rows] == places
        numbers = np.array([row.split(",")[3:] for row in rows], dtype=float)
        moved = np.concatenate([patch.reshape(-1, 3) for patch in self.wing]) + [0.0, 0.01, 0.0]
        assert np.allclose(numbers[:, :3], moved, atol=1e-15)
        assert numbers[:, 3].tolist() == found["values"]
        field = (self.folder / "far.dat").read_text().splitlines()
        assert field[1] == 'VARIABLES = "X", "Y", "Z", "distance"'

    def hand_the_grid_to_a_program_that_wants_another_format(self, events):
        cells = sum((patch.shape[0] - 1) * (patch.shape[1] - 1) for patch in self.wing)
        assert len(facets_of(self.folder / "wing.stl")) == 2 * cells
        assert (self.folder / "wing.p3d").stat().st_size > 8 * 3 * 1928
        points = [line for line in (self.folder / "wing.obj").read_text().splitlines() if line.startswith("v ")]
        assert len(points) > 0

    def a_finer_grid_for_the_solver(self, events):
        fine = self.patches("fine.apt")
        assert [patch.shape for patch in fine] == [(25, 121, 3), (13, 31, 3)]
        assert value(events, "report")["points"] == 25 * 121 + 13 * 31
        assert (self.folder / "fine.p3d").stat().st_size > 0

    def from_triangles_to_a_grid(self, events):
        (grid,) = self.patches("grid.apt")
        assert grid.shape == (25, 61, 3)
        assert value(events, "comparison")["largest"] < 0.05


def scripts_of(page):
    """(heading, script) of each script of a page."""
    return re.findall(r"^### ([^\n]*)\n(?:(?!^### ).)*?^```velmora\n(.*?)^```$", page.read_text(), re.M | re.S)


def run(program, script, folder):
    done = subprocess.run(
        [Path(program).resolve(), "--json", "--strict", "-"], cwd=folder, input=script, capture_output=True, text=True
    )
    events = [json.loads(line) for line in done.stdout.splitlines()]
    if done.returncode != 0:
        told = [event for event in events if event["event"] in ("error", "message")]
        raise AssertionError(f"status {done.returncode}: {told[-1:]}")
    return events


def main(program, guide, examples):
    pages = [Path(guide) / name for name in ("howto.md", "batch.md")]
    scripts = [script for page in pages for script in scripts_of(page)]
    faults, left = [], {name for name in vars(Checks) if not name.startswith("_")} - {"patches"}
    for heading, script in scripts:
        name = re.sub(r"\W+", "_", heading.lower()).strip("_")
        with tempfile.TemporaryDirectory() as work:
            folder = Path(work) / "examples"
            shutil.copytree(examples, folder)
            try:
                events = run(program, script, folder)
                check = getattr(Checks(folder), name, None)
                assert check is not None, "nothing is checked of it"
                left.discard(name)
                check(events)
            except (AssertionError, OSError, ValueError) as fault:
                line = fault.__traceback__.tb_next.tb_lineno if fault.__traceback__.tb_next else 0
                faults.append(f"{heading} {fault or 'fails'} (line {line})")
    faults += [f"no script has the heading of {name}" for name in sorted(left)]
    blocks = sum(page.read_text().count("```velmora") for page in pages)
    if blocks != len(scripts):
        faults.append(f"{blocks} scripts stand on the pages, {len(scripts)} under a heading of their own")
    print("\n".join(faults) or f"{len(scripts)} scripts do what the guide says")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

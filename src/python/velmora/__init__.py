"""Velmora from Python: the commands of the editor, without its window, and geometry as numpy arrays.

    >>> import velmora
    >>> m = velmora.open("wing.apt")
    >>> m.run("line.inputSection", patch=1, section=1)
    >>> m.run("line.rebreak", regime=2, newCount=81, compression=1.5)
    >>> m.patches[0].shape
    (25, 81, 3)
    >>> m.run("file.saveAs", file="wing-fine.apt")

A `Model` is what a script of ``velmora-batch`` works on: `Model.run` takes the commands, fields, answers and files of the
line ``run``, and `Model.line` any other line. What a script is told as events is in the `Report` that each call gives; what
would end a script is an exception with the text that the script would show.

Arrays that a model gives are snapshots: they hold what the model held then, and can be neither changed nor changed under
you. Reading them again while the model stays costs nothing. Arrays given to a model are copied and checked as a reader
checks a file. Numbers of patches, sections and points count from 1 in commands and from 0 in arrays.

A model is worked by one thread at a time.
"""

from __future__ import annotations

import os
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any, Callable, Dict, Iterable, List, Mapping, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np

from . import _core, kernels

if TYPE_CHECKING:
    import numpy.typing as npt

    from ._types import Event, FieldValue, Floats, Indices

__all__ = [
    "Error",
    "FileFailed",
    "LineFailed",
    "Message",
    "Model",
    "Question",
    "Refused",
    "Report",
    "Stopped",
    "Zone",
    "command_help",
    "kernels",
    "open",
]

__version__: str = _core.version

_Path = Union[str, "os.PathLike[str]"]
_Answers = Union[None, bool, str, Sequence[Union[bool, str]]]
_Files = Union[None, _Path, Sequence[_Path]]


class Message(NamedTuple):
    """What a box with OK would say."""

    text: str
    #: "info", "warning" (done, with a loss or a limit) or "error" (not done).
    severity: str


class Question(NamedTuple):
    """A question that was asked, and how it was answered."""

    text: str
    answer: bool


class Zone(NamedTuple):
    """Triangles over shared vertices."""

    #: (V, 3), in model units.
    vertices: Floats
    #: (T, 3), vertex numbers from 0.
    triangles: Indices
    title: str = ""
    #: Values for each vertex by their names, (V,) each.
    fields: Mapping[str, Floats] = {}


@dataclass(frozen=True)
class Report:
    """What a call came to."""

    #: "ok", "cancelled", "partial" (done, but a file holds geometry that is not in the model), "refused" or "failed";
    #: "error" for a call that could not be carried out.
    outcome: str
    #: All that happened, in its order: the events of ``velmora-batch --json``.
    events: List[Event] = field(repr=False)

    def _of(self, kind: str) -> List[Event]:
        return [event for event in self.events if event["event"] == kind]

    @property
    def messages(self) -> List[Message]:
        """The boxes with OK."""
        return [Message(event["text"], event["severity"]) for event in self._of("message")]

    @property
    def questions(self) -> List[Question]:
        """The questions with their answers."""
        return [Question(event["text"], event["answer"] == "yes") for event in self._of("question")]

    @property
    def read(self) -> List[Event]:
        """Of each file that was read, what was found, kept, changed and lost."""
        return self._of("read")

    @property
    def written(self) -> List[Event]:
        """Of each file that was written, its path, size and counts."""
        return self._of("written")

    @property
    def dialogs(self) -> List[Event]:
        """The dialogs with the values that were taken."""
        return self._of("dialog")

    @property
    def status(self) -> Optional[str]:
        """What the status line said last."""
        said = self._of("status")
        return said[-1]["text"] if said else None

    @property
    def values(self) -> List[Any]:
        """What was printed."""
        return [event["value"] for event in self._of("print")]


class Error(RuntimeError):
    """A call did not do what it says. The text is that of a script; `report` tells all that happened."""

    def __init__(self, text: str, report: Report) -> None:
        super().__init__(text)
        self.report = report


class LineFailed(Error):
    """The call could not be carried out: there is no such command, it is off, a field is out of its range, a question has
    no answer, ..."""


class Refused(Error):
    """A command refused to work; the model is as before."""


class FileFailed(Error):
    """A file could not be opened, read or written, or gave no model."""


class Stopped(Exception):
    """The function that hears of progress ended the work; the model is as before."""


def _words_of_answers(answers: _Answers) -> List[str]:
    if answers is None:
        return []
    if isinstance(answers, (bool, str)):
        answers = [answers]
    return ["answer=" + (a if isinstance(a, str) else "yes" if a else "no") for a in answers]


def _words_of_files(files: _Files) -> List[str]:
    if files is None:
        return []
    if isinstance(files, (str, os.PathLike)):
        files = [files]
    return ["file=" + os.fspath(path) for path in files]


def _text_of(value: FieldValue) -> str:
    if isinstance(value, (bool, np.bool_)):
        return "1" if value else "0"
    if isinstance(value, (int, np.integer)):
        return str(int(value))
    if isinstance(value, (float, np.floating)):
        return repr(float(value))
    return str(value)


def _words_of_field(name: str, value: Union[FieldValue, Sequence[FieldValue]]) -> List[str]:
    values = value if isinstance(value, (list, tuple)) else [value]
    return [f"{name}={_text_of(each)}" for each in values]


def _zone_tuple(zone: Any) -> Tuple[str, npt.ArrayLike, npt.ArrayLike, Dict[str, npt.ArrayLike]]:
    vertices, triangles, *rest = zone
    title = rest[0] if rest else ""
    fields = dict(rest[1]) if len(rest) > 1 else {}
    return title, vertices, triangles, fields


class Model:
    """A model with its captures, buffers, zBlock and Undo, as a script of ``velmora-batch`` has one.

    :param on_message: called with each `Message` as it is said.
    :param on_question: called with the text of a question that the call gives no answer to; true for Yes. Without it such
        a question raises `LineFailed`.
    :param on_progress: called with the part that is done, 0 to 1, while long work goes on. When it gives False, or
        raises, the work stops and the model is as before. Ctrl-C stops work with and without it.
    :param folder: where untitled models go; None for the folder of the user's documents.
    :param size: width and height of the view that pixels count in.
    """

    def __init__(
        self,
        *,
        on_message: Optional[Callable[[Message], object]] = None,
        on_question: Optional[Callable[[str], bool]] = None,
        on_progress: Optional[Callable[[float], Optional[bool]]] = None,
        folder: Optional[_Path] = None,
        size: Tuple[int, int] = (800, 600),
    ) -> None:
        width, height = size
        if not (1 <= width <= _core.largest_pixel and 1 <= height <= _core.largest_pixel):
            raise ValueError(f"the size of the view is 1 to {_core.largest_pixel} pixels each way")
        self.on_message = on_message
        self.on_question = on_question
        self.on_progress = on_progress
        self._core = _core.Model(
            _core.documents_folder() if folder is None else folder,
            width,
            height,
            self._hear,
            self._answer if on_question is not None else None,
            self._follow,
        )

    # ---- What the session calls

    def _hear(self, event: Event) -> None:
        if self.on_message is not None:
            self.on_message(Message(event["text"], event["severity"]))

    def _answer(self, text: str) -> bool:
        assert self.on_question is not None
        return bool(self.on_question(text))

    def _follow(self, fraction: float) -> None:
        if self.on_progress is not None and self.on_progress(fraction) is False:
            raise Stopped("the work was stopped")

    # ---- Lines and commands

    @staticmethod
    def _judged(events: List[Event]) -> Report:
        """The report of a call, or the exception that it ends in."""
        last = events[-1] if events else {"event": "done", "outcome": "ok"}
        if last["event"] == "error":
            raise LineFailed(last["text"], Report("error", events))
        report = Report(last["outcome"], events)
        if report.outcome in ("refused", "failed"):
            texts = [message.text for message in report.messages if message.severity == "error"]
            texts += [reason for read in report.read for reason in read["reasons"]]
            error = Refused if report.outcome == "refused" else FileFailed
            raise error("; ".join(texts) or report.outcome, report)
        return report

    def line(self, *words: FieldValue) -> Report:
        """Runs a line of a script, given word by word: ``m.line("measure", "1/1/1", "1/1/2")``.

        :raises LineFailed, Refused, FileFailed: as `run`.
        """
        return self._judged(self._core.run([_text_of(word) for word in words]))

    def run(
        self,
        command: str,
        /,
        *,
        answer: _Answers = None,
        file: _Files = None,
        cancel: Union[None, str, Sequence[str]] = None,
        **fields: Union[FieldValue, Sequence[FieldValue]],
    ) -> Report:
        """Runs a command: ``m.run("line.rebreak", newCount=81, compression=1.5)``.

        :param command: its id, see `commands` and `command_help`.
        :param answer: to its questions, in their order: True, False, "yes", "no", or a list of them.
        :param file: what its file choosers return, a path or a list.
        :param cancel: "file" or "dialog", or a list: what is cancelled.
        :param fields: of its dialog, set in the order given; a list sets a field again and again.
        :raises LineFailed: it cannot be carried out so, see the text.
        :raises Refused: the command says that it cannot be done.
        :raises FileFailed: a file could not be opened, read or written.
        """
        words = ["run", command] + _words_of_answers(answer) + _words_of_files(file)
        for what in [cancel] if isinstance(cancel, str) else cancel or []:
            words.append("cancel=" + what)
        for name, value in fields.items():
            words += _words_of_field(name, value)
        return self._judged(self._core.run(words))

    def open(self, path: _Path) -> Report:
        """Opens a file in the place of the model, without a question.

        :raises FileFailed: it gave no model; the one that was there stays.
        :raises Refused: its type is not one that Open takes.
        """
        return self.line("open", os.fspath(path))

    def save_as(self, path: _Path, *, overwrite: bool = False) -> Report:
        """Saves the model to a file by its extension; `overwrite` answers the question about a file that is there."""
        try:
            return self.run("file.saveAs", file=path)
        except LineFailed:
            if not overwrite:
                raise
            return self.run("file.saveAs", file=path, answer=True)

    # ---- What the model is

    def value(self, *what: FieldValue) -> Any:
        """What a line ``print`` shows: ``m.value("state")``, ``m.value("dialog", "CRebreak")``."""
        return self.line("print", *what).values[0]

    @property
    def commands(self) -> Dict[str, bool]:
        """Of each command, by its id, whether it is on in this state of the model."""
        return self._core.commands()

    @property
    def state(self) -> Dict[str, Any]:
        """Kinds, paths, captures, flags and counts."""
        return dict(self.value("state"))

    def report(self) -> Dict[str, Any]:
        """Counts, sizes and quality of the model, as ``print report``."""
        return dict(self.value("report"))

    def measure(self, a: str, b: str, c: Optional[str] = None) -> Dict[str, Any]:
        """Distance, length along a curve and angle of two or three places: "K/N/M", "ZONE/NODE" or "X,Y,Z"."""
        return dict(self.line("measure", *([a, b] if c is None else [a, b, c])).values[0])

    # ---- Geometry

    @property
    def patches(self) -> List[Floats]:
        """The patches of a grid, (N, M, 3) each: N sections of M points, in model units, read-only.

        Setting takes arrays, or anything that numpy makes one of, as `set_patches`.

        :raises ValueError: when the sections of a patch differ in length; `lines` has them.
        """
        return self._core.patches()

    @patches.setter
    def patches(self, patches: Iterable[Any]) -> None:
        self.set_patches(patches)

    @property
    def lines(self) -> List[List[Floats]]:
        """Of each patch its sections, (n, 3) each, in model units, read-only. Setting takes the same."""
        return self._core.lines()

    @lines.setter
    def lines(self, lines: Iterable[Iterable[npt.ArrayLike]]) -> None:
        self.set_patches([list(patch) for patch in lines])

    @property
    def zones(self) -> List[Zone]:
        """The zones of an unstructured model, read-only. Setting takes the same, or tuples (vertices, triangles)."""
        return [Zone(vertices, triangles, title, fields) for title, vertices, triangles, fields in self._core.zones()]

    @zones.setter
    def zones(self, zones: Iterable[Any]) -> None:
        self.set_zones(zones)

    @property
    def line_buffer(self) -> Floats:
        """The line buffer, (n, 3), read-only."""
        return self._core.line_buffer()

    def set_patches(self, patches: Iterable[Any]) -> Report:
        """Puts patches in the place of the model, as one edit: Undo of patches brings the old one back.

        :param patches: of each patch an array (N, M, 3), or a list of sections (n, 3) of their own lengths.
        :raises ValueError: a shape is wrong, a number not finite, or there is nothing.
        """
        return self._judged(self._core.take_patches(list(patches)))

    def set_zones(self, zones: Iterable[Any]) -> Report:
        """Puts zones in the place of the model, as one edit: Undo of patches brings the old one back.

        :param zones: `Zone`, or tuples (vertices (V, 3), triangles (T, 3)) with numbers from 0, and a title and fields
            behind them if there are any.
        :raises ValueError: a shape is wrong, a number not finite, a triangle names a vertex that is not there, or there
            is nothing.
        """
        return self._judged(self._core.take_zones([_zone_tuple(zone) for zone in zones]))

    def triangles(self) -> Zone:
        """The surface of the model as one set of triangles: zones behind each other, cells of patches as two each.

        The corners of cell (i, j) are a (i, j), b (i + 1, j), c (i + 1, j + 1), d (i, j + 1), its triangles (a, b, c)
        and (a, c, d). Vertices are not shared between patches or zones.
        """
        vertices: List[Floats] = [np.empty((0, 3))]
        triangles: List[Indices] = [np.empty((0, 3), dtype=np.int32)]
        count = 0
        for some, corners in [_cells(patch) for patch in self.patches] + [(z.vertices, z.triangles) for z in self.zones]:
            vertices.append(some)
            triangles.append(corners + np.int32(count))
            count += len(some)
        return Zone(np.concatenate(vertices), np.concatenate(triangles))

    def __repr__(self) -> str:
        state = self.state
        return f"<velmora.Model {state['documentTitle']!r}: {state['structureKind']}, {state['fileKind']}>"


def _cells(patch: Floats) -> Tuple[Floats, Indices]:
    """Vertices and triangles of a grid (N, M, 3)."""
    sections, points, _ = patch.shape
    numbers = np.arange(sections * points, dtype=np.int32).reshape(sections, points)
    a, b, c, d = numbers[:-1, :-1], numbers[1:, :-1], numbers[1:, 1:], numbers[:-1, 1:]
    corners = np.stack([a, b, c, a, c, d], axis=-1).reshape(-1, 3)
    return patch.reshape(-1, 3), corners


def open(path: _Path, **options: Any) -> Model:
    """A model with a file opened. `options` are those of `Model`.

    :raises FileFailed: the file gave no model.
    """
    model = Model(**options)
    model.open(path)
    return model


def command_help(command: str) -> Dict[str, Any]:
    """The dialog of a command: its fields in order with kind, limits, start value and choices.

    :raises KeyError: there is no such command.
    """
    told = _core.help(command)
    if told is None:
        raise KeyError(command)
    return told

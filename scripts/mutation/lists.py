"""Lists of mutants: which text of which file is replaced by what."""

import dataclasses
import hashlib
import pathlib
import re


class ListError(Exception):
    pass


@dataclasses.dataclass
class Mutant:
    place: str  # where it stands in its list
    file: str
    old: str
    new: str
    reason: str  # why it is right to survive, or empty
    number: int = 0
    start: int = 0  # of the old text in the file
    end: int = 0

    @property
    def folder(self):
        return self.file.split("/")[1]

    @property
    def key(self):
        return hashlib.sha256("\0".join((self.file, self.old, self.new)).encode()).hexdigest()[:16]

    def __str__(self):
        sides = [("-", self.old), ("+", self.new)]
        lines = [f"    {sign} {line}" for sign, text in sides if text for line in text.split("\n")]
        return "\n".join([f"{self.number}: {self.place} @ {self.file}"] + lines)


def entry(lines, place, file):
    """One mutant of its lines; None where they only name the file."""
    parts = {"-": [], "+": [], "=": []}
    for line in lines:
        sign, text = line[0], line[2:]
        if sign == "@":
            file = text.strip()
        elif sign in parts and line[1:2] in ("", " "):
            parts[sign].append(text)
        else:
            raise ListError(f"{place}: no line of a mutant: {line}")
    old, new, reason = ("\n".join(parts[sign]) for sign in "-+=")
    if not (old or new or reason):
        return None, file
    if not old.strip() or not file.startswith("src/"):
        raise ListError(f"{place}: a mutant needs a file of src and its old text")
    return Mutant(place, file, old, new, reason), file


def read_list(path):
    """The mutants of a list and what is wrong in it."""
    mutants, errors, lines, file, first = [], [], [], "", 0
    for number, line in enumerate(pathlib.Path(path).read_text().split("\n") + [""], 1):
        if line.startswith("#"):
            continue
        if line.strip():
            first = number if not lines else first
            lines.append(line)
        elif lines:
            try:
                mutant, file = entry(lines, f"{pathlib.Path(path).name}:{first}", file)
                mutants += [mutant] if mutant else []
            except ListError as error:
                errors.append(str(error))
            lines = []
    return mutants, errors


def locate(mutant, text):
    """Finds the old text, whatever its white space; what is wrong, or empty."""
    words = r"\s+".join(re.escape(word) for word in mutant.old.split())
    found = list(re.finditer(words, text))
    if len(found) != 1:
        times = "is not in the file" if not found else f"stands {len(found)} times in the file"
        return f"the old text {times}: the list moves with the code\n{mutant}"
    mutant.start, mutant.end = found[0].span()
    return ""


def without_overlaps(mutants):
    """The mutants, of those that overlap the first alone, and what is wrong."""
    apart, errors = [], []
    for mutant in sorted(mutants, key=lambda mutant: (mutant.file, mutant.start)):
        before = apart[-1] if apart else None
        if before and before.file == mutant.file and mutant.start < before.end:
            errors.append(f"two mutants overlap\n{before}\n{mutant}")
        else:
            apart.append(mutant)
    return apart, errors


def read_lists(paths, root):
    """All mutants of the lists, numbered and found in their files, and what is wrong."""
    mutants, errors = [], []
    for path in paths:
        of_list, wrong = read_list(path)
        mutants += of_list
        errors += wrong
    found = []
    for number, mutant in enumerate(mutants, 1):
        mutant.number = number
        path = pathlib.Path(root, mutant.file)
        wrong = locate(mutant, path.read_text()) if path.is_file() else f"no such file\n{mutant}"
        errors += [wrong] if wrong else []
        found += [] if wrong else [mutant]
    apart, wrong = without_overlaps(found)
    return sorted(apart, key=lambda mutant: mutant.number), errors + wrong

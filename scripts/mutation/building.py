"""One build with all mutants: a copy of the repository's files, switched, and what its compiler says."""

import dataclasses
import hashlib
import os
import pathlib
import re
import shutil
import subprocess

from mutation import switching

HEADER = "velmora_mutant.h"
PLACE = re.compile(r"^(\S[^:\n]*):(\d+):(?:\d+:)? *(.*)$", re.MULTILINE)


class BuildError(Exception):
    pass


@dataclasses.dataclass
class Switched:
    """A mutant and the ways to switch it that are left; without any it has to be built alone."""

    mutant: object
    forms: list


class Build:
    def __init__(self, root, folder, mutants):
        self.root, self.source, self.build = root, folder / "source", folder / "build"
        self.texts = {file: (root / file).read_text() for file in {mutant.file for mutant in mutants}}
        self.switched = [Switched(mutant, switching.forms_of(mutant, self.texts[mutant.file])) for mutant in mutants]
        self.places = {}
        self.written = {}

    # ---- The files

    def copy(self):
        """Copies the repository's files; writes only what differs, so that little is built again."""
        listed = subprocess.run(["git", "ls-files", "-z"], cwd=self.root, check=True, capture_output=True, text=True)
        files = [file for file in listed.stdout.split("\0") if file and (self.root / file).is_file()]
        for file in files:
            if file not in self.texts:
                self.write(file, (self.root / file).read_bytes(), (self.root / file).stat().st_mode)
        self.write(HEADER, (pathlib.Path(__file__).parent / HEADER).read_bytes())
        known = {*files, HEADER}
        for path in [path for path in self.source.rglob("*") if path.is_file()]:
            if str(path.relative_to(self.source)) not in known:
                path.unlink()

    def write(self, file, content, mode=0o644):
        path = self.source / file
        self.written[path] = hashlib.sha256(content).digest()
        if not path.is_file() or path.read_bytes() != content:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
            path.chmod(mode)

    def write_switched(self, alone=None):
        """Writes the files of mutants: all behind the switch, or one of them without it."""
        self.places = {}
        for file, text in self.texts.items():
            edits = switching.literal_form(alone) if alone and alone.file == file else []
            for switched in [s for s in self.switched if s.mutant.file == file and s.mutant is not alone]:
                while switched.forms and not alone and switching.clash(switched.forms[0], edits):
                    switched.forms.pop(0)
                if switched.forms and not switching.clash(switched.forms[0], edits):
                    edits = edits + switched.forms[0]
            content, self.places[file] = switching.switched_text(text, edits, self.source / HEADER)
            self.write(file, content.encode())

    # ---- The compiler

    def configure(self):
        flags, launcher = "-w", []
        if shutil.which("ccache"):
            flags += " -fpch-preprocess"
            launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"]
        linker = next((name for name in ("mold", "lld") if shutil.which(f"ld.{name}") or shutil.which(name)), None)
        if linker:
            launcher.append(f"-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld={linker}")
        command = ["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
        command += [f"-DCMAKE_CXX_FLAGS={flags}", "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG", *launcher]
        done = subprocess.run(command, capture_output=True, text=True)
        if done.returncode != 0:
            raise BuildError(done.stdout + done.stderr)

    def make(self):
        """Builds; what was said where it failed, or empty."""
        environment = {"CCACHE_SLOPPINESS": "pch_defines,time_macros"} | os.environ
        command = ["ninja", "-C", self.build, "-k", "0"]
        done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return "" if done.returncode == 0 else done.stdout

    def make_switched(self):
        """Builds with every mutant that compiles behind the switch; the others are those without a form."""
        self.copy()
        self.write_switched()
        self.configure()
        while said := self.make():
            blamed = self.blamed(said)
            if not blamed:
                raise BuildError("FAILED: ".join(said.split("FAILED: ")[1:4])[:8000])
            for switched in self.switched:
                if switched.mutant.number in blamed and switched.forms:
                    switched.forms.pop(0)
            print(f"  other forms for {', '.join(map(str, sorted(blamed)))}", flush=True)
            self.write_switched()

    def blamed(self, said):
        """The numbers of the mutants at which the compiler failed: each block of a failed file names at least one."""
        numbers = set()
        for block in said.split("FAILED: ")[1:]:
            places = [(self.file_of(path), int(line), words) for path, line, words in PLACE.findall(block)]
            places = [place for place in places if place[0] in self.places]
            errors = [(file, line) for file, line, words in places if "error:" in words]
            inside = self.inside(errors) or self.inside([(file, line) for file, line, words in places])
            numbers |= inside or self.before(errors)
        return numbers

    def file_of(self, path):
        return os.path.relpath(self.build / path, self.source)

    def inside(self, lines):
        return {
            number
            for file, line in lines
            for number, first, last in self.places[file]
            if first <= line <= last and number
        }

    def before(self, lines):
        """The mutant above the first line at fault: a name that it declared is not known behind it."""
        for file, line in lines:
            above = [number for number, first, last in self.places[file] if first <= line and number]
            if above:
                return {above[-1]}
        return set()

    @property
    def behind_switch(self):
        return [switched.mutant for switched in self.switched if switched.forms]

    @property
    def to_build_alone(self):
        return [switched.mutant for switched in self.switched if not switched.forms]

    def changed_files(self):
        """Files of the copy that a mutant wrote over or left while it ran."""
        paths = [path for path in self.source.rglob("*") if path.is_file()]
        return [str(path) for path in paths if self.written.get(path) != hashlib.sha256(path.read_bytes()).digest()]

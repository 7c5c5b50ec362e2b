"""The test programs as ctest knows them: what each of their tests reaches, and whether a mutant is seen."""

import concurrent.futures
import dataclasses
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time

SLOW = 1.0  # seconds from which the tests of a program are looked at one by one
PATIENCE, MARGIN = 5, 15  # a mutant may take so many times as long, and so many seconds more


@dataclasses.dataclass
class Test:
    """A part of a program that can be run by itself, or all of it where the name is empty."""

    name: str
    seconds: float
    reached: list


@dataclasses.dataclass
class Program:
    name: str
    command: list
    folder: str
    environment: dict
    expected: str
    window: bool
    tests: list = dataclasses.field(default_factory=list)

    @property
    def by_framework(self):
        return any(word.startswith("--gtest") for word in self.command)

    @property
    def seconds(self):
        return sum(test.seconds for test in self.tests)

    def tests_reaching(self, number):
        """Those that can see a mutant; of one that was built alone nothing is known."""
        return [test for test in self.tests if number is None or number in test.reached]


def programs_of(build):
    listed = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, capture_output=True, text=True)
    programs = []
    for test in json.loads(listed.stdout)["tests"]:
        facts = {fact["name"]: fact["value"] for fact in test["properties"]}
        environment = dict(pair.split("=", 1) for pair in facts.get("ENVIRONMENT", []))
        command = [word for word in test["command"] if word != "--gtest_shuffle"]
        expected = "|".join(facts.get("PASS_REGULAR_EXPRESSION", []))
        window = "window" in facts.get("LABELS", [])
        programs.append(Program(test["name"], command, facts["WORKING_DIRECTORY"], environment, expected, window))
    return programs


# ---- One run


def end(process):
    """Ends a program and all that it started: kindly, then for certain."""
    for sign, patience in ((signal.SIGTERM, 3), (signal.SIGKILL, None)):
        try:
            os.killpg(process.pid, sign)
        except ProcessLookupError:
            pass
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            continue


def run(program, arguments=(), environment=None, allowed=None):
    """Runs a program in temporary folders of its own: how it failed, or empty, and what it said."""
    own = tempfile.mkdtemp(prefix="mutant")
    variables = os.environ | program.environment | {"TMPDIR": own} | (environment or {})
    with tempfile.TemporaryFile("w+", errors="replace") as output:
        process = subprocess.Popen(
            [*program.command, *arguments], cwd=program.folder, env=variables, stdin=subprocess.DEVNULL,
            stdout=output, stderr=subprocess.STDOUT, start_new_session=True,
        )
        try:
            status = process.wait(allowed)
        except subprocess.TimeoutExpired:
            status = None
            end(process)
        output.seek(0)
        said = output.read(1 << 20)
    shutil.rmtree(own, ignore_errors=True)
    if status is None:
        return "time-out", said
    if program.expected:
        return "" if re.search(program.expected, said) else "other output", said
    return "" if status == 0 else f"crash {-status}" if status < 0 else f"status {status}", said


def failed_test(said):
    found = re.search(r"^\[  FAILED  \] (\S+?)[,.]?(?: \(|$)|^(\S+: Failure)", said, re.MULTILINE)
    return f" {found.group(1) or found.group(2)}" if found else ""


def sees(program, number, alone=False):
    """How a program sees a mutant, or empty. What a window says counts when it says it again."""
    tests = program.tests_reaching(None if alone else number)
    if not tests:
        return ""
    arguments = ["--gtest_fail_fast"] if program.by_framework else []
    if len(tests) < len(program.tests):
        arguments.append("--gtest_filter=" + ":".join(test.name for test in tests))
    allowed = PATIENCE * sum(test.seconds for test in tests) + MARGIN
    for _ in range(2 if program.window else 1):
        failure, said = run(program, arguments, {"VELMORA_MUTANT": str(number)}, allowed)
        if not failure:
            return ""
    return f"{program.name}: {failure}{failed_test(said)}"


# ---- What is reached


def traced(program, count, name=""):
    """Runs a program, or one test of it, without a mutant; what it reaches, or how it failed."""
    with tempfile.NamedTemporaryFile() as trace:
        trace.truncate(count + 1)
        arguments = [f"--gtest_filter={name}"] if name else []
        begin = time.monotonic()
        failure, said = run(program, arguments, {"VELMORA_MUTANT_TRACE": trace.name})
        seconds = time.monotonic() - begin
        reached = [number for number, byte in enumerate(pathlib.Path(trace.name).read_bytes()) if byte]
    return Test(name, seconds, reached), f"{program.name} {name}: {failure}\n{said[-4000:]}" if failure else ""


def traced_green(program, count, name=""):
    """The same; a window on a busy machine may be late, and is asked again."""
    for _ in range(3 if program.window else 1):
        test, failure = traced(program, count, name)
        if not failure:
            break
    return test, failure


def test_names(program):
    names, suite = [], ""
    for line in run(program, ["--gtest_list_tests"])[1].split("\n"):
        line = line.split("#")[0].rstrip()
        if re.fullmatch(r"\S+\.", line):
            suite = line
        elif line.startswith("  ") and suite:
            names.append(suite + line.strip())
    return [name for name in names if "DISABLED_" not in name]


def look(programs, count, workers):
    """Runs everything without a mutant and notes what is reached; what failed."""
    failures = []
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        for program, (test, failure) in zip(programs, pool.map(lambda p: traced_green(p, count), programs)):
            program.tests = [test]
            failures += [failure] if failure else []
        slow = [program for program in programs if program.by_framework and program.seconds > SLOW and not failures]
        names = {program.name: test_names(program) for program in slow}
        runs = [(program, name) for program in slow for name in names[program.name]]
        for program in slow:
            program.tests = []
        for (program, _), (test, failure) in zip(runs, pool.map(lambda r: traced_green(r[0], count, r[1]), runs)):
            program.tests.append(test)
            failures += [failure] if failure else []
    return failures

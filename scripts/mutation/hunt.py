"""Runs each mutant against the programs that can see it, and keeps what came out."""

import concurrent.futures
import dataclasses
import hashlib
import json
import pathlib

from mutation import programs as testing

KILLED, SURVIVED, BROKEN, RIGHT = "killed", "survived", "does not compile", "right to survive"


class Results:
    """What came out for each mutant, by what it is and not by its number; kept in a file as it comes."""

    def __init__(self, path, report):
        self.path, self.report = path, report
        self.all = json.loads(path.read_text()) if path.is_file() else {}
        report.write_text("")

    def of(self, mutant):
        return self.all.get(mutant.key, {}).get("outcome", "not run")

    def note(self, mutant, outcome, by):
        self.all[mutant.key] = {"outcome": outcome, "by": by, "file": mutant.file, "place": mutant.place}
        self.path.write_text(json.dumps(self.all, indent=1))
        if outcome in (SURVIVED, BROKEN):
            text = f"{mutant}\n    {outcome}: {by}\n"
            print(text, flush=True)
            with self.report.open("a") as report:
                report.write(text + "\n")


def order(programs, mutant):
    """Nearest first, then by time; windows last."""
    near = f"/tests/{mutant.folder}"
    return sorted(programs, key=lambda p: (p.window, not p.folder.endswith(near), p.seconds))


def hunt(programs, mutant, alone=False):
    """The program that sees the mutant first, or empty."""
    return next(filter(None, (testing.sees(program, mutant.number, alone) for program in order(programs, mutant))), "")


def look_once(programs, build, mutants, kept, workers):
    """What is reached, unmutated: kept as long as the built programs, tests and mutants are the same."""
    digest = hashlib.sha256(repr([(m.number, m.key) for m in mutants] + [p.command for p in programs]).encode())
    for path in sorted((build.build / "bin").iterdir()) + sorted((build.source / "tests").rglob("*")):
        if path.is_file():
            digest.update(path.read_bytes())
    if kept.is_file() and (found := json.loads(kept.read_text()))["digest"] == digest.hexdigest():
        for program in programs:
            program.tests = [testing.Test(**test) for test in found["tests"][program.name]]
        return []
    failures = testing.look(programs, max(m.number for m in mutants), workers)
    if not failures:
        tests = {program.name: [dataclasses.asdict(test) for test in program.tests] for program in programs}
        kept.write_text(json.dumps({"digest": digest.hexdigest(), "tests": tests}))
    return failures


def survivors_of(programs, mutants, results, workers):
    """Runs the mutants at once; those that no program sees."""
    left = []
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        for mutant, seen in zip(mutants, pool.map(lambda m: hunt(programs, m), mutants)):
            if seen:
                results.note(mutant, KILLED, seen)
            else:
                left.append(mutant)
    return left


def run_switched(programs, mutants, results, jobs, displays):
    """First without windows, which take long and mostly wait; then what is left in more displays than cores."""
    reached = {number for program in programs for test in program.tests for number in test.reached}
    for mutant in [m for m in mutants if m.number not in reached]:
        results.note(mutant, SURVIVED, "reached by no test")
    mutants = [m for m in mutants if m.number in reached]
    mutants = survivors_of([p for p in programs if not p.window], mutants, results, jobs)
    windows = [p for p in programs if p.window]
    print(f"== {len(mutants)} left" + (" for the windows" if windows else ""), flush=True)
    by_number = {m.number: m for m in mutants}
    with concurrent.futures.ThreadPoolExecutor(displays if windows else jobs) as pool:
        runs = {pool.submit(hunt, windows, mutant): number for number, mutant in by_number.items()}
        for done in concurrent.futures.as_completed(runs):
            seen = done.result()
            results.note(by_number[runs[done]], KILLED if seen else SURVIVED, seen or "seen by no test that reaches it")


def run_alone(programs, build, mutants, results):
    """Builds those that no switch can hold, one after the other, and lets the programs see them."""
    for mutant in mutants:
        build.write_switched(alone=mutant)
        if build.make():
            results.note(mutant, BROKEN, "neither behind the switch nor alone")
            continue
        seen = hunt(programs, mutant, alone=True)
        results.note(mutant, KILLED if seen else SURVIVED, seen or "seen by no test, built alone")
    if mutants:
        build.write_switched()

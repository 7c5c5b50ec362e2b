"""Drives velmora-batch from outside, as a program in any language can: it writes a line, and reads events up to the line's end.

Spaces the sections of the first patch evenly, with more and more points, until no step of the first is longer than LIMIT.

python3 examples/python/drive_batch.py velmora-batch MODEL.apt LIMIT RESULT.apt
"""

import json
import subprocess
import sys


class Driver:
    """A running velmora-batch."""

    def __init__(self, program: str) -> None:
        self.program = subprocess.Popen(
            [program, "--json", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8"
        )

    def ask(self, line: str) -> list:
        """The events of a line; a line that cannot be carried out, or does not do what it says, is an exception."""
        self.program.stdin.write(line + "\n")
        self.program.stdin.flush()
        events = []
        for text in self.program.stdout:
            events.append(json.loads(text))
            if events[-1]["event"] in ("done", "error"):
                break
        if not events or events[-1].get("outcome") != "ok":
            raise RuntimeError(f"{line}: {events[-1:]}")
        return events

    def value(self, what: str):
        """What a line "print" tells."""
        return next(event["value"] for event in self.ask(f"print {what}") if event["event"] == "print")

    def end(self) -> None:
        self.program.stdin.close()
        self.program.wait()


def main(program: str, source: str, limit: str, target: str) -> None:
    driver = Driver(program)
    driver.ask(f'open "{source}"')
    driver.ask("run line.inputSection patch=1 section=1")
    steps = driver.value("curve")["steps"]
    while max(steps) > float(limit):
        driver.ask(f"run line.rebreak regime=2 newCount={2 * len(steps) + 1} compression=1")
        steps = driver.value("curve")["steps"]
        print(f"{len(steps) + 1} points, the longest step {max(steps):.4f}")
    driver.ask(f'run file.saveAs file="{target}"')
    driver.end()


if __name__ == "__main__":
    main(*sys.argv[1:])

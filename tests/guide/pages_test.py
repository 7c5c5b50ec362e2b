"""pages_test.py PROGRAM ROOT: the reference page names each kind of line, printed value, event and exit status that there is,
CHANGELOG.md begins with the version that the program has, and the scripts of pictures run and make pictures that are shown."""

import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path


def error_of(program, line):
    done = subprocess.run([program, "--json", "-c", line], capture_output=True, text=True, check=False)
    return json.loads(done.stdout.splitlines()[-1])["text"]


def picture_faults(program, root):
    names = ["README.md", "docs/gallery.md", *(page.relative_to(root) for page in (root / "docs/guide").glob("*.md"))]
    pages = [(root / name).read_text() for name in names]
    scripts = sorted((root / "scripts/pictures").glob("*.script"))
    assert scripts
    for script in scripts:
        picture = root / script.read_text().split(maxsplit=2)[1]
        if not picture.is_file():
            yield f"{script.name} names {picture}, which is not there"
        if not any(re.search(rf"[/(]{re.escape(picture.name)}\)", page) for page in pages):
            yield f"no page shows {picture.name}"
        with tempfile.TemporaryDirectory() as folder:
            # Lines of the model need no OpenGL; those that are drawn have a folder of their own.
            lines = re.sub(r"FOLDER/(\d)\.png", r"FOLDER/\1.svg", script.read_text()).replace("FOLDER", folder)
            done = subprocess.run(
                [program, "-"], input=lines, cwd=root, capture_output=True, text=True, check=False
            )
        if done.returncode != 0:
            yield f"{script.name}: {done.stdout.splitlines()[-1:]}"


def main(program, root):
    page = (Path(root) / "docs/guide/batch.md").read_text()
    faults = []

    lines = error_of(program, "unknown").split("one of:", 1)[1].split()
    assert "open" in lines and "run" in lines
    faults += [f'the line "{word}"' for word in lines if not re.search(rf"^\| (.*, )?`{word}[ `]", page, re.M)]

    known = error_of(program, "print unknown").split("print one of:", 1)[1].split(", or a list")[0]
    values = [value.split()[0] for value in known.split(",")]
    assert "state" in values and "report" in values
    faults += [f"the value {value}" for value in values if not re.search(rf"^\| .*`{value}[ `]", page, re.M)]

    schema = json.loads((Path(root) / "docs/events.schema.json").read_text())
    for choice in schema["oneOf"]:
        kind = choice["$ref"].rsplit("/", 1)[1]
        row = re.search(rf"^\| `{kind}` \|(.*)$", page, re.M)
        members = set(schema["$defs"][kind]["required"]) - {"event"}
        told = set(re.findall(r"[A-Za-z]+", row[1])) if row else set()
        faults += [f"the member {member} of the event {kind}" for member in sorted(members - told)]

    codes = re.findall(r"^\| (\d) \|", page.split("## Exit codes", 1)[1], re.M)
    if codes != ["0", "1", "2", "3", "4", "5"]:
        faults.append("the exit codes 0 to 5")
    faults = [f"docs/guide/batch.md does not tell of {fault}" for fault in faults]

    version = subprocess.run([program, "--version"], capture_output=True, text=True, check=True).stdout.split()[-1]
    newest = re.search(r"^## (\S+)", (Path(root) / "CHANGELOG.md").read_text(), re.M)[1]
    if newest != version:
        faults.append(f"CHANGELOG.md begins with {newest}, and the program is {version}")
    faults += picture_faults(program, Path(root))
    print("\n".join(faults) or "the page tells of all")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

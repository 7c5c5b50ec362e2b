"""events_schema_test.py PROGRAM SCHEMA SCRIPTS MODELS...

Runs every scenario by `PROGRAM --json --echo` in a fresh folder, as the scenario tests do, and holds each line that it
writes against the schema. Each kind of event that the schema knows must have come up.
"""

import json
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import jsonschema


def events_of(program, script, folders):
    text = script.read_text()
    with tempfile.TemporaryDirectory() as run:
        for folder in folders:
            for file in folder.iterdir():
                if file.is_file() and file.name in text:
                    shutil.copy(file, run)
        done = subprocess.run([Path(program).resolve(), "--json", "--echo", script.resolve()], cwd=run, capture_output=True, check=False)
    return [json.loads(line) for line in done.stdout.decode().splitlines()]


def main(program, schema_path, scripts, *folders):
    schema = json.loads(Path(schema_path).read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    # By its kind each event is held against one definition alone, which tells best what is wrong.
    definitions = schema["$defs"]
    validators = {
        choice["$ref"].rsplit("/", 1)[1]: jsonschema.Draft202012Validator({**choice, "$defs": definitions})
        for choice in schema["oneOf"]
    }
    seen = set()
    faults = []
    if validators["done"].is_valid({"event": "done", "line": 1, "outcome": "ok", "surplus": 1}):
        faults.append("the schema takes an event with a member that it does not know")
    for script in sorted(Path(scripts).glob("*.script")):
        for event in events_of(program, script, [Path(folder) for folder in folders]):
            kind = event.get("event")
            seen.add(kind)
            if kind not in validators:
                faults.append(f"{script.name}: an event of no known kind: {event}")
                continue
            for error in validators[kind].iter_errors(event):
                faults.append(f"{script.name}: {kind}: {error.json_path}: {error.message[:300]}")
    faults += [f"no scenario shows the event {kind}" for kind in sorted(validators.keys() - seen)]
    print("\n".join(faults[:40]) or f"{len(seen)} kinds of events are as the schema says")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

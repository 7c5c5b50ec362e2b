#!/usr/bin/env python3
"""Makes what the program's own tables say: man pages, shell completions, and two pages of the guide.

    make_manual.py guide --batch PROGRAM [--check]
    make_manual.py install --batch PROGRAM [--window PROGRAM] --version VERSION --homepage URL --output FOLDER

Options come from --help of the programs, commands from --help-commands, fields from the line "help", the description from
docs/guide/batch.md, versions from CHANGELOG.md. With --check the pages are compared and not written.
"""

import argparse
import datetime
import json
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
GUIDE = ROOT / "docs" / "guide"

# The page of the guide that tells of the commands of a kind.
PAGES = {
    "file": "file.md", "patch": "patches.md", "block": "patches.md", "line": "lines.md", "buffer": "lines.md",
    "point": "point.md", "model": "transformations.md", "convert": "convert.md", "view": "view.md",
    "options": "options.md", "help": "help.md",
}  # fmt: skip
KINDS = {
    "file": "File", "patch": "Patches", "block": "zBlock", "line": "Lines", "buffer": "Line buffer", "point": "Point",
    "model": "Transformations", "convert": "Convert to", "view": "View", "options": "Options", "help": "Help",
}  # fmt: skip


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


# ---- What the programs say of themselves


def commands_of(batch):
    """(id, menu text, status text) of each command."""
    lines = output_of(batch, "--help-commands").splitlines()
    return [(line[:28].strip(), line[28:60].strip(), line[60:].strip()) for line in lines]


def dialogs_of(batch, ids):
    """What "help" says of each command."""
    lines = [word for each in ids for word in ("-c", f"help {each}")]
    events = [json.loads(line) for line in output_of(batch, "--json", *lines).splitlines()]
    return [event["value"] for event in events if event["event"] == "print"]


def options_of(program):
    """(option as written, what it does) of each option that --help lists."""
    options = []
    text = output_of(program, "--help").split("Options:", 1)[1].split("\nArguments:")[0]
    for line in text.splitlines():
        begin = re.match(r"  (-\S.*?)(?:\s{2,}(\S.*)|=\d\S* (\S.*)|\s*)$", line)
        if begin:
            options.append([begin[1], begin[2] or begin[3] or ""])
        elif line.strip() and options:
            options[-1][1] = (options[-1][1] + " " + line.strip()).strip()
    return [(re.sub(r" Excludes:.*", "", option), text) for option, text in options]


def flags_of(option):
    """The words of an option: "-h,--help" is two."""
    return re.findall(r"(?<![\w-])(--?[a-z][\w-]*)", option)


# ---- Pages of the guide


def anchor_of(heading):
    return re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def place_of(command, text):
    """Page and anchor of a command: its menu text is a heading on the page of its kind, else on that of the options."""
    for page in (PAGES[command.split(".")[0]], "options.md"):
        headings = re.findall(r"^#+ (.*)$", (GUIDE / page).read_text(), re.M)
        if text in [heading.strip() for heading in headings]:
            return f"{page}#{anchor_of(text)}"
    raise SystemExit(f'the guide has no heading "{text}" for {command}')


def index_page(commands, dialogs):
    lines = [
        "# Commands",
        "",
        "All commands by their names in scripts. The menu text leads to what the guide tells of each, the dialog to the",
        "fields that it takes.",
    ]
    kind = None
    for (command, text, _), told in zip(commands, dialogs):
        if command.split(".")[0] != kind:
            kind = command.split(".")[0]
            if f"## {KINDS[kind]}" not in lines:
                lines += ["", f"## {KINDS[kind]}", "", "| Command | In the menus | Dialog |", "|---|---|---|"]
        dialog = f"[{told['dialog']}](fields.md#{anchor_of(told['dialog'])})" if told["dialog"] else ""
        lines.append(f"| `{command}` | [{text}]({place_of(command, text)}) | {dialog} |")
    return "\n".join(lines) + "\n"


def by_kind(commands, dialogs):
    """Commands of a kind stand together, the kinds in the order of their first commands."""
    kinds = list(dict.fromkeys(command.split(".")[0] for command, _, _ in commands))
    order = sorted(range(len(commands)), key=lambda i: kinds.index(commands[i][0].split(".")[0]))
    return [commands[i] for i in order], [dialogs[i] for i in order]


def number_text(value):
    return format(value, "g") if isinstance(value, float) else str(value)


def range_text(field):
    if field["choices"]:
        return ", ".join(f"{i} {choice.replace('&&', '&')}" for i, choice in enumerate(field["choices"], 1))
    if field["kind"] == "check":
        return "0, 1"
    low, high = field["minimum"], field["maximum"]
    if low is None and high is None:
        return "any" if field["kind"] != "text" else "an action"
    if high is None:
        return f"{number_text(low)} or more"
    return f"{number_text(low)} to {number_text(high)}" if low is not None else f"up to {number_text(high)}"


def fields_page(commands, dialogs):
    used = {}
    for (command, _, _), told in zip(commands, dialogs):
        if told["dialog"]:
            used.setdefault(told["dialog"], ([], told["fields"]))[0].append(command)
    lines = [
        "# Fields of the dialogs",
        "",
        "What each dialog takes in scripts, with the ranges and starts of a program that has just begun. The model may narrow",
        "a range or turn a field on or off; a dialog shows again what was taken last. `help COMMAND` tells the same.",
    ]
    for name in sorted(used, key=str.lower):
        users, fields = used[name]
        lines += ["", f"## {name}", "", "Of " + ", ".join(f"`{user}`" for user in users) + ".", ""]
        lines += ["| Field | Kind | Values | Start | |", "|---|---|---|---|---|"]
        for field in fields:
            start = number_text(field["start"]) if field["kind"] != "text" else ""
            note = "" if field["on"] else "off, or only shown, at first"
            lines.append(f"| `{field['name']}` | {field['kind']} | {range_text(field)} | {start} | {note} |")
    return "\n".join(lines) + "\n"


def make_guide(arguments):
    commands = commands_of(arguments.batch)
    dialogs = dialogs_of(arguments.batch, [command for command, _, _ in commands])
    commands, dialogs = by_kind(commands, dialogs)
    status = 0
    for name, text in (("commands.md", index_page(commands, dialogs)), ("fields.md", fields_page(commands, dialogs))):
        page = GUIDE / name
        if not arguments.check:
            page.write_text(text)
        elif not page.exists() or page.read_text() != text:
            print(f"docs/guide/{name} is not what the program says: run scripts/make_manual.py guide --batch PROGRAM")
            status = 1
    return status


# ---- Man pages


def roff(text):
    """A line of the guide as a line of a man page."""
    text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", text)
    text = text.replace("\\", "\\e").replace("-", "\\-")
    text = re.sub(r"`([^`]*)`", r"\\fB\1\\fR", text)
    text = re.sub(r"\*\*([^*]*)\*\*", r"\\fB\1\\fR", text)
    return "\\&" + text if text[:1] in (".", "'") else text


def cells_of(row):
    return [cell.strip() for cell in row.strip().strip("|").split("|")]


def roff_of_table(rows):
    """Each row a term with what it means."""
    out = []
    for row in rows[2:]:
        first, *others = cells_of(row)
        out += [".TP", roff(first), roff("; ".join(cell for cell in others if cell)) or "\\&"]
    return out


def roff_of_page(text):
    """The part of the guide's markdown that its reference page uses."""
    out, table, code = [], [], False
    for line in text.splitlines() + [""]:
        if table and not line.startswith("|"):
            out += roff_of_table(table) + [".PP"]
            table = []
        if line.startswith("```"):
            out += [".fi", ".RE"] if code else [".RS 4", ".nf"]
            code = not code
        elif code:
            out.append(line.replace("\\", "\\e").replace("-", "\\-"))
        elif line.startswith("|"):
            table.append(line)
        elif line.startswith("### "):
            out.append(f".SS {roff(line[4:])}")
        elif line.startswith("## "):
            out.append(f".SH {roff(line[3:]).upper()}")
        elif line.startswith("- "):
            out += [".IP \\(bu 2", roff(line[2:])]
        elif line.startswith("  ") and line.strip():
            out.append(roff(line.strip()))
        elif line.strip():
            out.append(roff(line))
        elif out and out[-1] not in (".PP", ".fi", ".RE") and not out[-1].startswith((".SH", ".SS")):
            out.append(".PP")
    while out and out[-1] == ".PP":
        out.pop()
    # A paragraph before a heading is none.
    return [line for i, line in enumerate(out) if line != ".PP" or not out[i + 1].startswith((".SH", ".SS", ".TP", ".IP"))]


def man_header(name, version, date, what):
    return [f'.TH {name.upper()} 1 "{date}" "Velmora {version}" "User Commands"', ".SH NAME", f"{name} \\- {what}"]


def man_options(program):
    out = [".SH OPTIONS"]
    for option, text in options_of(program):
        out += [".TP", "\\fB" + roff(option).replace(",", "\\fR, \\fB") + "\\fR", roff(text)]
    return out


def batch_man(batch, version, date):
    introduction, reference = (GUIDE / "batch.md").read_text().split("\n## ", 1)
    description = introduction.split("\n\n", 2)[2]
    commands = commands_of(batch)
    out = man_header("velmora-batch", version, date, "run scripts on surface geometry")
    out += [".SH SYNOPSIS", ".B velmora\\-batch", "[\\fIOPTIONS\\fR] [\\fB\\-c\\fR \\fILINE\\fR]... [\\fISCRIPT\\fR | \\fB\\-\\fR]"]
    out += [".SH DESCRIPTION", *roff_of_page(description), *man_options(batch), *roff_of_page("## " + reference)]
    out.append(".SH COMMANDS")
    for command, text, what in commands:
        out += [".TP", f"\\fB{roff(command)}\\fR", roff(f"{text}: {what}.")]
    out.append(".SH FIELDS")
    out.append("The fields of the dialogs, with their values and starts. Those that are off at first are marked by a star.")
    seen = set()
    for told in dialogs_of(batch, [command for command, _, _ in commands]):
        if not told["dialog"] or told["dialog"] in seen:
            continue
        seen.add(told["dialog"])
        out.append(f".SS {told['dialog']}")
        for field in told["fields"]:
            out += [".TP", f"\\fB{field['name']}\\fR" + ("" if field["on"] else " *")]
            start = f"; begins with {number_text(field['start'])}" if field["kind"] != "text" else ""
            out.append(roff(f"{field['kind']}: {range_text(field)}{start}"))
    out += [".SH SEE ALSO", ".BR velmora (1)"]
    return "\n".join(out) + "\n"


def window_man(window, version, date):
    out = man_header("velmora", version, date, "edit the surface geometry of bodies")
    out += [".SH SYNOPSIS", ".B velmora", "[\\fIOPTIONS\\fR] [\\fIFILE\\fR]", ".SH DESCRIPTION"]
    out += [
        "Edits surface geometry: grids of patches, section by section and point by point, and surfaces of triangles.",
        ".I FILE",
        "is opened at the start.",
        "The guide is shown by F1.",
    ]
    out += man_options(window)
    out += [".SH EXIT STATUS", "0, or 1 when the file gave no model, or 2 when the program was called wrongly."]
    out += [".SH SEE ALSO", ".BR velmora\\-batch (1)"]
    return "\n".join(out) + "\n"


# ---- Completions


def bash_completion(batch, window):
    words = " ".join(flag for option, _ in options_of(batch) for flag in flags_of(option))
    ids = " ".join(command for command, _, _ in commands_of(batch))
    text = f"""# bash completion of velmora-batch and velmora

_velmora_batch() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD - 1]}}
    case $before in
        --help-commands) COMPREPLY=($(compgen -W "{ids}" -- "$word")) && return ;;
        --size) COMPREPLY=() && return ;;
    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "{words}" -- "$word"))
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}}
complete -F _velmora_batch velmora-batch
"""
    if window:
        words = " ".join(flag for option, _ in options_of(window) for flag in flags_of(option))
        text += f"""
_velmora() {{
    local word=${{COMP_WORDS[COMP_CWORD]}}
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "{words}" -- "$word"))
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}}
complete -F _velmora velmora
"""
    return text


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def zsh_completion(program, name, batch):
    out = [f"#compdef {name}", "", "_arguments -s \\"]
    for option, what in options_of(program):
        what = re.sub(r"[][:]", " ", what)
        for flag in flags_of(option):
            action = ""
            if flag == "--help-commands":
                action = "::command:(" + " ".join(command for command, _, _ in commands_of(batch)) + ")"
            elif flag in ("-c", "--size"):
                action = ":value:"
            star = "*" if flag == "-c" else ""
            out.append("    " + quoted(f"{star}{flag}[{what}]{action}") + " \\")
    out.append("    '*:file:_files'")
    return "\n".join(out) + "\n"


def fish_completion(program, name, batch):
    out = [f"# fish completion of {name}"]
    for option, what in options_of(program):
        switches = "".join(f" -l {f[2:]}" if f.startswith("--") else f" -s {f[1:]}" for f in flags_of(option))
        value = " -x" if any(flag in ("-c", "--size") for flag in flags_of(option)) else ""
        if "--help-commands" in option:
            value = " -x -a " + quoted(" ".join(command for command, _, _ in commands_of(batch)))
        out.append(f"complete -c {name}{switches}{value} -d {quoted(what)}")
    return "\n".join(out) + "\n"


# ---- Versions


def releases():
    """(version, date, lines) of each release that CHANGELOG.md tells of, the newest first."""
    parts = re.split(r"^## (\d+\.\d+\.\d+) - (\d{4}-\d\d-\d\d)$", (ROOT / "CHANGELOG.md").read_text(), flags=re.M)[1:]
    found = []
    for version, date, body in zip(parts[::3], parts[1::3], parts[2::3]):
        items = [" ".join(item.split()) for item in re.split(r"^- ", body, flags=re.M)[1:]]
        found.append((version, date, items))
    return found


def plain(text):
    return re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", text).replace("`", "")


def debian_changelog(homepage):
    entries = []
    for version, date, items in releases():
        stamp = datetime.datetime.fromisoformat(date).strftime("%a, %d %b %Y 12:00:00 +0000")
        lines = [f"velmora ({version}) unstable; urgency=medium", ""]
        for item in items:
            words, line = plain(item).split(), "  *"
            for word in words:
                if len(line) + 1 + len(word) > 78:
                    lines.append(line)
                    line = "   "
                line += " " + word
            lines.append(line)
        lines += ["", f" -- The Velmora developers <velmora@{homepage.split('//')[1].rstrip('/')}>  {stamp}", ""]
        entries.append("\n".join(lines))
    return "\n".join(entries)


def release_list():
    return "\n".join(f'    <release version="{version}" date="{date}"/>' for version, date, _ in releases())


def make_installed(arguments):
    version, date = releases()[0][:2]
    if version != arguments.version:
        raise SystemExit(f"CHANGELOG.md begins with {version}, and the program is {arguments.version}")
    folder = Path(arguments.output)
    folder.mkdir(parents=True, exist_ok=True)
    files = {
        "velmora-batch.1": batch_man(arguments.batch, version, date),
        "velmora-batch.bash": bash_completion(arguments.batch, None),
        "_velmora-batch": zsh_completion(arguments.batch, "velmora-batch", arguments.batch),
        "velmora-batch.fish": fish_completion(arguments.batch, "velmora-batch", arguments.batch),
        "changelog": debian_changelog(arguments.homepage),
    }
    if arguments.window:
        metainfo = (ROOT / "packaging" / "org.velmora.Velmora.metainfo.xml.in").read_text()
        files |= {
            "velmora.1": window_man(arguments.window, version, date),
            "velmora.bash": bash_completion(arguments.batch, arguments.window),
            "_velmora": zsh_completion(arguments.window, "velmora", arguments.batch),
            "velmora.fish": fish_completion(arguments.window, "velmora", arguments.batch),
            "org.velmora.Velmora.metainfo.xml": metainfo.replace("@RELEASES@", release_list()).replace(
                "@HOMEPAGE@", arguments.homepage
            ),
        }
    for name, text in files.items():
        (folder / name).write_text(text)
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    works = parser.add_subparsers(required=True)
    guide = works.add_parser("guide")
    guide.add_argument("--batch", required=True)
    guide.add_argument("--check", action="store_true")
    guide.set_defaults(work=make_guide)
    install = works.add_parser("install")
    install.add_argument("--batch", required=True)
    install.add_argument("--window")
    install.add_argument("--version", required=True)
    install.add_argument("--homepage", required=True)
    install.add_argument("--output", required=True)
    install.set_defaults(work=make_installed)
    arguments = parser.parse_args()
    return arguments.work(arguments)


if __name__ == "__main__":
    sys.exit(main())

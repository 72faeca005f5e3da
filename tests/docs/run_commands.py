#!/usr/bin/env python3
"""run_commands.py PROGRAM ASSEMBLY ROOT WORK [NAME ...]: runs every command that README.md and docs/*.md show, or only
those of the documents with these names.

Indented blocks and those that are fenced as `sh` hold commands. Those of a document run in their order in one folder, which
holds the inputs that the documents name. Each must end with exit code 0 and leave the files that it names as outputs. The
comment before a block may say otherwise:

    <!-- not run: REASON -->      the commands of the block are counted and told, not run
    <!-- file: NAME -->           the block becomes the file NAME, for the commands that follow
    <!-- from: PROGRAM -->        the block stands literally in that program of the repository
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import textwrap

import inputs
import markdown

OUTPUT = re.compile(r"""(?:\s(?:-o|--output|--record|--save-animation)[ =]|>\s*)("[^"]+"|'[^']+'|[^\s|<>;&)]+)""")
COMMAND_LANGUAGES = {"", "sh"}


class Faults:
    def __init__(self):
        self.texts = []

    def add(self, document, line, text):
        self.texts.append(f"{document.name}:{line}: {text}")


def commands(block):
    """(line, command) of a block; a backslash joins lines, comments fall away."""
    joined, start = "", 0
    for number, line in enumerate(block.text.splitlines(), block.line):
        if not joined:
            start = number
        joined += line.split("  # ")[0].rstrip()
        if joined.endswith("\\"):
            joined = joined[:-1]
            continue
        if joined.strip() and not joined.startswith("#"):
            yield start, joined.strip()
        joined = ""


def outputs(command, folder):
    names = [name.strip("\"'") for name in OUTPUT.findall(" " + command)]
    return [folder / name for name in names if name != "-" and "{" not in name and not name.startswith(("/dev/", "&"))]


def run(command, folder, environment):
    """None, or what went wrong."""
    wanted = outputs(command, folder)
    for path in wanted:
        path.unlink(missing_ok=True)
    result = subprocess.run(["bash", "-o", "pipefail", "-c", command], cwd=folder, env=environment, text=True,
                            stdin=subprocess.DEVNULL, capture_output=True, timeout=300)
    if result.returncode != 0:
        return f"exit code {result.returncode}: {command}\n{result.stderr.strip()[:1000]}"
    missing = [path.name for path in wanted if not path.is_file() or path.stat().st_size == 0]
    return f"did not write {', '.join(missing)}: {command}" if missing else None


def stands_in(block, program):
    """Whether the block is a passage of the program, however deep it is indented there."""
    wanted = block.text.strip("\n").splitlines()
    lines = program.read_text(encoding="utf-8").splitlines()
    return any(textwrap.dedent("\n".join(lines[at:at + len(wanted)])) == "\n".join(wanted)
               for at in range(len(lines) - len(wanted) + 1))


def check_document(document, root, folder, environment, faults):
    """Returns how many commands were run, and how many not."""
    done = left = 0
    for block in markdown.blocks(document.read_text(encoding="utf-8")):
        kind, _, rest = block.mark.partition(": ")
        if kind == "file":
            (folder / rest).write_text(block.text + "\n", encoding="utf-8")
        elif kind == "from":
            if not stands_in(block, root / rest):
                faults.add(document, block.line, f"does not stand in {rest}")
        elif block.language in COMMAND_LANGUAGES:
            for line, command in commands(block):
                if kind == "not run":
                    left += 1
                    print(f"{document.name}:{line}: not run ({rest}): {command}")
                    continue
                done += 1
                fault = run(command, folder, environment)
                if fault:
                    faults.add(document, line, fault)
        elif block.language == "cpp":
            faults.add(document, block.line, "C++ that no program of the repository holds: name it with a comment `from`")
    return done, left


def main():
    program, assembly, root, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
    shutil.rmtree(work, ignore_errors=True)
    environment = os.environ | {"PATH": f"{program.parent}:{os.environ['PATH']}", "ORVELPRC": str(program)}
    made = inputs.make(program, assembly, root, work / "inputs")
    faults, done, left = Faults(), 0, 0
    documents = [root / "README.md", *sorted((root / "docs").glob("*.md"))]
    for document in [one for one in documents if one.name in sys.argv[5:] or len(sys.argv) == 5]:
        folder = work / document.stem
        shutil.copytree(made, folder, symlinks=True)
        environment["HOME"] = str(folder)
        run_here, left_here = check_document(document, root, folder, environment, faults)
        print(f"{document.name}: {run_here} commands run, {left_here} not run", flush=True)
        done, left = done + run_here, left + left_here
    print(f"{done} commands run, {left} not run, {len(faults.texts)} faults")
    print("\n".join(faults.texts))
    sys.exit(1 if faults.texts or done == 0 else 0)


if __name__ == "__main__":
    main()

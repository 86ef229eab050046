#!/usr/bin/env python3
"""Writes docs/notes.md from the table of the kinds of notes; --check compares instead.

The kinds are declared in src/components/note_kinds.h: name, severity, name in Chinese, meaning, what to do.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "src/components/note_kinds.h"
DOCUMENT = ROOT / "docs/notes.md"

SEVERITIES = {
    "kTold": "nothing lost or changed",
    "kMended": "changed, or taken by default",
    "kLost": "left out",
}
TEXT = r'"((?:[^"\\]|\\.)*)"'
ROW = re.compile(rf"\{{\s*{TEXT},\s*NoteSeverity::(\w+),\s*{TEXT},\s*{TEXT},\s*{TEXT}\s*\}},|^\s*// ([A-Z][^\n]*)\.$", re.MULTILINE)

HEAD = """# Notes

What the program skips, mends or has to tell about its input becomes a note: the file, the position, and what is there. The first ten
places of a kind are told, the rest is counted. In JSON a note is `{"file", "at", "kind", "what", "count"}`; `kind` is the name below.

This document is made by `tools/make_notes.py`.
"""


def document():
    parts = [HEAD]
    table = TABLE.read_text(encoding="utf-8").split("kNoteKinds[]", 1)[1].split("\n};", 1)[0]
    for name, severity, _, meaning, advice, heading in ROW.findall(table):
        if heading:
            parts.append(f"\n## {heading}\n\n| kind | input is | meaning | what to do |\n|---|---|---|---|\n")
        else:
            parts.append(f"| {name} | {SEVERITIES[severity]} | {meaning} | {advice} |\n")
    return "".join(parts)


def main():
    text = document()
    if sys.argv[1:] == ["--check"]:
        if DOCUMENT.read_text(encoding="utf-8") == text:
            return 0
        print(f"{DOCUMENT.relative_to(ROOT)} is not what tools/make_notes.py makes of the table")
        return 1
    DOCUMENT.write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())

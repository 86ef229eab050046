#!/usr/bin/env python3
"""Assembles the page of a report: make_report_page.py PAGE_FOLDER LIBRARY_FOLDER OUT.cpp

page.html takes in the style, the libraries and the modules: an element <style data-parts="a.css b.css"> or
<script data-parts="a.js b.js"> gets the content of these files, a name of the form leaflet/... or dygraphs/... that of the
library's file. Modules are joined into one script: their imports go, and an exported name has to be the only one of all
modules. The content security policy allows the scripts by their hashes. The page becomes a constant of a C++ source, empty
where a library is not installed."""

import base64
import hashlib
import pathlib
import re
import sys

IMPORT = re.compile(r"^import [^;]*;\n", re.MULTILINE)
EXPORT = re.compile(r"^export (?=(?:async )?(?:function|class|const|let) )", re.MULTILINE)
TOP_LEVEL = re.compile(r"^(?:async )?(?:function\*?|class|const|let) +(\w+)", re.MULTILINE)
PART = re.compile(r'<(style|script) data-parts="([^"]*)"></\1>')
LIBRARIES = ("leaflet", "dygraphs")
PIECE = 8000  # bytes of a string literal


def joined_modules(page, names):
    seen = {}
    texts = []
    for name in names:
        text = EXPORT.sub("", IMPORT.sub("", (page / name).read_text(encoding="utf-8")))
        for defined in TOP_LEVEL.findall(text):
            if defined in seen:
                sys.exit(f"{name}: {defined} is defined in {seen[defined]} already")
            seen[defined] = name
        texts.append(text)
    return '"use strict";\n(() => {\n' + "\n".join(texts) + "})();\n"


def part_text(page, libraries, kind, names):
    if names[0].split("/")[0] in LIBRARIES:
        text = "\n".join((libraries / name).read_text(encoding="utf-8") for name in names)
        text = re.sub(r"/[/*]# sourceMappingURL=.*", "", text)
    elif kind == "script":
        text = joined_modules(page, names)
    else:
        text = "\n".join((page / name).read_text(encoding="utf-8") for name in names)
    if f"</{kind}" in text.lower():
        sys.exit(f"{' '.join(names)}: holds the end of its element")
    return text


def assembled(page, libraries):
    hashes = []

    def fill(match):
        kind, names = match.group(1), match.group(2).split()
        text = part_text(page, libraries, kind, names)
        if kind == "script":
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            hashes.append(f"'sha256-{digest}'")
        return f"<{kind}>{text}</{kind}>"

    html = PART.sub(fill, (page / "page.html").read_text(encoding="utf-8"))
    return html.replace("@SCRIPTS@", " ".join(hashes))


def literal(data):
    lines = []
    for at in range(0, len(data), PIECE):
        escaped = "".join(chr(b) if 32 <= b < 127 and b not in b'"\\?' else f"\\{b:03o}" for b in data[at : at + PIECE])
        lines.append(f'"{escaped}"')
    return "\n".join(lines) or '""'


def main():
    page, libraries, out = map(pathlib.Path, sys.argv[1:4])
    wanted = re.findall(r"(?:leaflet|dygraphs)/[\w.-]+", (page / "page.html").read_text(encoding="utf-8"))
    is_complete = all((libraries / name).is_file() for name in wanted)
    data = assembled(page, libraries).encode() if is_complete else b""
    source = (
        f"extern const char kQloomReportPage[];\nextern const unsigned long kQloomReportPageBytes;\n"
        f"const char kQloomReportPage[] =\n{literal(data)};\n"
        f"const unsigned long kQloomReportPageBytes = {len(data)};\n"
    )
    out.write_text(source, encoding="ascii")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Writes the tables of docs/records.md from the record structures in src/components/records/.

    tools/make_records_doc.py            writes the document
    tools/make_records_doc.py --check    fails when the document is not what would be written

What stands in front of the tables is written by hand and kept. A structure's comment, its members with their comments
and the table of blocks give the rest: "// 12: IE 145" is the byte position and what the member becomes.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
RECORDS = ROOT / "src/components/records"
DOCUMENT = ROOT / "docs/records.md"
FIRST_TABLE = "## Header (tag 1)\n"
CHAPTERS = [
    ("TD-SCDMA handsets", "blocks_td.h"),
    ("TD-SCDMA handsets, further blocks", "blocks_td_more.h"),
    ("Handsets in GSM mode", "blocks_gsm.h"),
    ("LTE handsets", "blocks_lte.h"),
    ("Scanners", "blocks_scan.h"),
    ("Data services", "blocks_service.h"),
]
FORMS = {"float": "f32", "double": "f64", "sys_time": "f64", "RecordText": "text", "AUTOTEST::CAutoBuffer": "bytes",
         "std::span<const std::byte>": "bytes"}
ABSENT = {"kAbsent8": "255", "kAbsent16": "65535", "kAbsent32": "4294967295", "kAbsentGsm16": "32767",
          "kAbsentFloat": "-1.0", "kAbsentDouble": "-1.0", "kNetworkModeKeep": "0", "0x7F": "127"}

STRUCT = re.compile(r"((?:^// [^\n]*\n)*)(?:^template <[^\n]*\n)?^(?:struct|class) (\w+) \{ *(?:// ([^\n]*))?\n(.*?)^\};", re.M | re.S)
MEMBER = re.compile(r"^  ((?:[\w:]|<[^;=]*>)+) (\w+)(?: = ([^;]+)|(\{[^;]*\}))?;(?: *// *([^\n]*(?:\n *// [^\n]*)*))?$", re.M)
LISTED = re.compile(r"&B::(\w+)")


class Structure:
    def __init__(self, match, text):
        self.above, self.name, self.beside, body = match.groups()
        self.members = {m.group(2): m for m in MEMBER.finditer(body)}
        block = re.search(r"struct BlockFields<%s> \{(.*?)\n\};" % self.name, text, re.S)
        self.listed = LISTED.findall(block.group(1)) if block else []


def plain(comment):
    return " ".join(line.strip().removeprefix("//").strip() for line in (comment or "").splitlines())


def form(kind):
    if m := re.fullmatch(r"std::(u?)int(\d+)_t", kind):
        return ("u" if m.group(1) else "i") + m.group(2)
    if m := re.fullmatch(r"RecordList<(.*)>", kind):
        inner = form(m.group(1))
        return "list of " + inner
    if m := re.fullmatch(r"InlineList<(.*), (\w+)>", kind):
        return f"short list of {form(m.group(1))}, at most {m.group(2)}"
    if m := re.fullmatch(r"std::array<(.*), (\w+)>", kind):
        return f"{m.group(2)} {form(m.group(1))}"
    if m := re.fullmatch(r"std::optional<TdTableRun<(\d+)>>", kind):
        return f"part: {m.group(1)} i32"
    if m := re.fullmatch(r"std::optional<(.*)>", kind):
        return "part " + form(m.group(1))
    return FORMS.get(kind, f"`{kind}`")


def absent(kind, value, braces):
    if kind.startswith("std::optional"):
        return "missing"
    if kind.startswith(("RecordList", "InlineList", "RecordText", "AUTOTEST", "std::span")):
        return "empty"
    if kind.startswith("std::array"):
        return braces.strip("{}").split(",")[0] + " each" if braces and braces != "{}" else "0 each"
    return ABSENT.get(value, value or "0")


def row(structure, name, entry):
    kind, _, value, braces, comment = structure.members[name].groups()
    note = plain(comment)
    at = ""
    if m := re.match(r"(\d+)(?:: *|$)", note):
        at, note = m.group(1), note[m.end():]
    own = re.fullmatch(r"ie(\d+)", name)
    note = re.sub(r"(^|, |; )-(\d+)(?= dBm|[,;]|$)", r"\1value - \2", note)
    if own and not re.search(rf"\bIEs? {own.group(1)}\b", note):
        becomes = f"IE {own.group(1)}" + (" + n" if entry else "")
        note = becomes + ("; " + note if note else "")
    return f"| `{name}` | {at} | {form(kind)} | {absent(kind, value, braces)} | {note} |"


def table(structure, entry=False):
    if not structure.listed:
        return ["No fields: the block is there or not.", ""]
    lines = ["| field | at | form | absent | becomes |", "|---|---|---|---|---|"]
    return lines + [row(structure, name, entry) for name in structure.listed] + [""]


def parts(structure, structures, seen):
    """The entries and parts of a structure that nothing in front has shown, depth first."""
    lines = []
    for name in structure.listed:
        kind = structure.members[name].group(1)
        if not (inner := re.fullmatch(r"(RecordList|InlineList|std::optional)<(\w+)(?:, \w+)?>", kind)):
            continue
        part = structures.get(inner.group(2))
        if part is None or part.name in seen or not part.listed:
            continue
        seen.add(part.name)
        word = "Part" if inner.group(1) == "std::optional" else "Entry"
        beside = f" ({part.beside})" if part.beside else ""
        lines += [f"{word} `{part.name}`{beside}:", ""] + table(part, word == "Entry") + parts(part, structures, seen)
    return lines


def tables():
    lines = [FIRST_TABLE]
    text = (RECORDS / "testdata.h").read_text(encoding="utf-8")
    header = next(Structure(m, text) for m in STRUCT.finditer(text) if m.group(2) == "CTestdataBase")
    lines += table(header)
    rows = (RECORDS / "block_table.h").read_text(encoding="utf-8")
    tags = {name: int(tag) for name, tag in re.findall(r"BlockRow<&CTestdataBase::(\w+)>\((\d+)", rows)}
    types = dict(re.findall(r"const (\w+)\* (\w+) = nullptr;", text))
    structures, chapters, seen = {}, [], set()
    for title, file in CHAPTERS:
        content = (RECORDS / file).read_text(encoding="utf-8")
        found = {m.group(2): Structure(m, content) for m in STRUCT.finditer(content)}
        structures |= found
        chapters.append((title, [(tags[types[name]], name) for name in found if name in types]))
    for title, blocks in chapters:
        lines += [f"## {title}", ""]
        for tag, name in sorted(blocks):
            block = structures[name]
            lines += [f"### `{types[name]}` (tag {tag}, `{name}`)", ""]
            said = re.sub(r"^Record position \d+[.:]? ?", "", plain(block.above) or block.beside or "")
            if said:
                lines += [said[0].upper() + said[1:].rstrip(".") + ".", ""]
            lines += table(block) + parts(block, structures, seen)
    return "\n".join(lines).rstrip("\n") + "\n"


def main():
    now = DOCUMENT.read_text(encoding="utf-8")
    written = now[: now.index(FIRST_TABLE)] + tables()
    if sys.argv[1:] == ["--check"]:
        if now != written:
            print("docs/records.md is not what the structures say; run tools/make_records_doc.py")
            return 1
        return 0
    DOCUMENT.write_text(written, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Prints what a workbook (.xlsx) holds as JSON, by the standard library alone or by another reader.

{"active": 0, "sheets": [{"name", "pane" (top left cell of the frozen part), "cells": {"A1": value},
 "align": vertical alignment of A1, "widths": {"A": width}}]}; a text cell is a string, others are what they are.
"""

import argparse
import json
import posixpath
import re
import xml.etree.ElementTree as tree
import zipfile

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
RELATION_ID = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}id"


def unescape(text):
    return re.sub(r"_x([0-9A-Fa-f]{4})_", lambda found: chr(int(found[1], 16)), text)


def cell_value(cell):
    kind = cell.get("t", "n")
    if kind == "inlineStr":
        return unescape("".join(part.text or "" for part in cell.iter(MAIN + "t")))
    value = cell.findtext(MAIN + "v")
    return value == "1" if kind == "b" else float(value)


def read_sheet(root, name, aligns):
    sheet = {"name": name, "pane": None, "align": None, "cells": {}, "widths": {}, "rows": []}
    pane = root.find(f"{MAIN}sheetViews/{MAIN}sheetView/{MAIN}pane")
    if pane is not None:
        sheet["pane"] = pane.get("topLeftCell")
    for column in root.iter(MAIN + "col"):
        sheet["widths"][column.get("min") + ":" + column.get("max")] = float(column.get("width"))
    for row in root.iter(MAIN + "row"):
        sheet["rows"].append(int(row.get("r")))
        for cell in row.iter(MAIN + "c"):
            assert cell.get("r") not in sheet["cells"], cell.get("r")
            assert re.fullmatch("[A-Z]+" + row.get("r"), cell.get("r")), cell.get("r")
            sheet["cells"][cell.get("r")] = cell_value(cell)
            if cell.get("r") == "A1":
                sheet["align"] = aligns[int(cell.get("s", "0"))]
    return sheet


def read_plain(path):
    with zipfile.ZipFile(path) as archive:
        assert archive.testzip() is None
        assert len(set(archive.namelist())) == len(archive.namelist())
        types = tree.fromstring(archive.read("[Content_Types].xml"))
        declared = {part.get("PartName") for part in types if part.get("PartName")}
        targets = {
            relation.get("Id"): posixpath.join("xl", relation.get("Target"))
            for relation in tree.fromstring(archive.read("xl/_rels/workbook.xml.rels"))
        }
        assert declared == {"/" + name for name in targets.values()} | {"/xl/workbook.xml"}
        styles = tree.fromstring(archive.read("xl/styles.xml"))
        aligns = []
        for style in styles.find(MAIN + "cellXfs"):
            alignment = style.find(MAIN + "alignment")
            aligns.append(None if alignment is None else alignment.get("vertical"))
        book = tree.fromstring(archive.read("xl/workbook.xml"))
        sheets = [
            read_sheet(tree.fromstring(archive.read(targets[sheet.get(RELATION_ID)])), unescape(sheet.get("name")), aligns)
            for sheet in book.find(MAIN + "sheets")
        ]
        active = int(book.find(f"{MAIN}bookViews/{MAIN}workbookView").get("activeTab"))
        return {"active": active, "sheets": sheets}


def read_openpyxl(path):
    import openpyxl

    book = openpyxl.load_workbook(path)
    sheets = []
    for sheet in book:
        cells = {cell.coordinate: cell.value for row in sheet.iter_rows() for cell in row if cell.value is not None}
        align = sheet["A1"].alignment.vertical
        sheets.append({"name": sheet.title, "pane": sheet.freeze_panes, "align": align, "cells": cells})
    return {"active": book.worksheets.index(book.active), "sheets": sheets}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--openpyxl", action="store_true")
    parser.add_argument("path")
    options = parser.parse_args()
    print(json.dumps(read_openpyxl(options.path) if options.openpyxl else read_plain(options.path), default=str))


if __name__ == "__main__":
    main()

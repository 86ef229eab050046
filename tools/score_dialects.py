#!/usr/bin/env python3
"""Share of text files whose dialect `qloom text inspect` finds as answers.jsonl says, by kind of answer.

    tools/score_dialects.py QLOOM FOLDER_OF_ANSWERS [--verbose]

A line of answers.jsonl: file, encoding, separator, quote, header_rows, preamble_rows, footer_rows, rows, kinds, and for time,
latitude and longitude null or columns with first, last, earliest, latest or min, max. A missing key is not scored.
"""
import argparse
import datetime
import json
import os
import pathlib
import subprocess
import sys

TIME_TOLERANCE_S = 0.002
DEGREE_TOLERANCE = 1e-6


def encoding_name(name, bom=False):
    name = name.lower().replace("_", "-").replace("cp", "windows-")
    name = {"utf-8-bom": "utf-8", "gb18030": "gbk", "gb2312": "gbk", "utf-16-le": "utf-16le", "utf-16-be": "utf-16be",
            "utf-16": "utf-16le"}.get(name, name)
    return name


def seconds(text):
    if text is None:
        return None
    if "T" not in text:
        hours, minutes, rest = text.split(":")
        return int(hours) * 3600 + int(minutes) * 60 + float(rest)
    whole, _, fraction = text[:-1].partition(".")
    moment = datetime.datetime.strptime(whole, "%Y-%m-%dT%H:%M:%S").replace(tzinfo=datetime.timezone.utc)
    return moment.timestamp() + float("0." + (fraction or "0"))


def same_time_columns(answer, found):
    right, got = answer["time"], found["time"]
    if right is None or got is None:
        return right is None and got is None
    columns = set(got["columns"])
    return columns == set(right["columns"]) or (len(columns) == 1 and columns <= set(right.get("also", [])))


def same_time_values(answer, found):
    right, got = answer["time"], found["time"]
    if right is None or got is None:
        return right is None and got is None
    def near(key):
        return right.get(key) is None or (got[key] is not None and abs(seconds(got[key]) - right[key]) < TIME_TOLERANCE_S)
    return all(near(key) for key in ("first", "last", "earliest", "latest")) and right.get("valid", got["valid"]) == got["valid"]


def same_position(answer, found):
    for key in ("latitude", "longitude"):
        right, got = answer[key], found[key]
        if (right is None) != (got is None):
            return False
        if right is None:
            continue
        if got["columns"] != right["columns"] or got["valid"] != right.get("valid", got["valid"]):
            return False
        if got["min"] is None or any(abs(got[end] - right[end]) > DEGREE_TOLERANCE for end in ("min", "max")):
            return False
    return True


CHECKS = {
    "encoding": lambda a, f: encoding_name(a["encoding"]) == encoding_name(f["encoding"]),
    "separator": lambda a, f: a["separator"] == f["separator"],
    "quote": lambda a, f: a["quote"] == f["quote"],
    "header": lambda a, f: a["header_rows"] == f["header_rows"] and a.get("preamble_rows", f["preamble_rows"]) == f["preamble_rows"],
    "names": lambda a, f: "names" not in a or not a["header_rows"] or a["names"] == [c["name"] for c in f["columns"]],
    "rows": lambda a, f: a["rows"] == f["rows"],
    "time column": same_time_columns,
    "time value": same_time_values,
    "position": same_position,
    "all kinds": lambda a, f: "kinds" not in a or a["kinds"] == [c["kind"] for c in f["columns"]],
}


def inspect(qloom, path):
    run = subprocess.run([qloom, "text", "inspect", str(path), "--json"], capture_output=True, check=False, timeout=120,
                         env={**os.environ, "TZ": "UTC"})
    if run.returncode != 0:
        return None, run.stderr.decode(errors="replace").strip()
    return json.loads(run.stdout), ""


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("qloom")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--verbose", action="store_true")
    arguments = parser.parse_args()
    right, scored, whole, sure, sure_wrong, files = {}, {}, 0, 0, [], 0
    for line in (arguments.folder / "answers.jsonl").read_text(encoding="utf-8").splitlines():
        answer = json.loads(line)
        files += 1
        found, error = inspect(arguments.qloom, arguments.folder / answer["file"])
        if found is None:
            print(f"{answer['file']}: {error}")
            continue
        wrong = []
        for name, check in CHECKS.items():
            scored[name] = scored.get(name, 0) + 1
            if check(answer, found):
                right[name] = right.get(name, 0) + 1
            else:
                wrong.append(name)
        whole += not wrong
        sure += found["confidence"] >= 0.9
        if wrong and found["confidence"] >= 0.9:
            sure_wrong.append(answer["file"])
        if wrong and arguments.verbose:
            print(f"{answer['file']} ({found['confidence']}): {', '.join(wrong)}")
            for name in wrong:
                key = {"header": ["preamble_rows", "header_rows"], "time column": ["time"], "time value": ["time"],
                       "position": ["latitude", "longitude"], "all kinds": ["kinds"]}.get(name, [name])
                for one in key:
                    got = found.get(one)
                    expected = answer.get(one)
                    if one in ("kinds", "names"):
                        got = [c["kind" if one == "kinds" else "name"] for c in found["columns"]]
                        pairs = [(i, e, g) for i, (e, g) in enumerate(zip(expected, got)) if e != g]
                        got, expected = f"{len(got)} columns", f"{len(expected)} columns, differ: {pairs[:6]}"
                    print(f"    {one}: {str(got)[:300]}  instead of  {str(expected)[:300]}")
    for name in CHECKS:
        print(f"{name:12} {right.get(name, 0)} of {scored.get(name, 0)}")
    print(f"everything   {whole} of {files}; sure {sure}, sure but wrong {len(sure_wrong)} {sure_wrong}")
    return 1 if sure_wrong else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Every figure of a report's tables beside an independent computation from `qloom rows`: figures_test.py QLOOM"""

import json
import math
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest

QLOOM = sys.argv.pop(1)
CLASSES = pathlib.Path(QLOOM).parent.parent / "Config" / "classes.tsv"
HANDSETS = "td,gsm,lte"


def qloom(folder, *words):
    return subprocess.run([QLOOM, *words], cwd=folder, capture_output=True, text=True, env={"TZ": "Asia/Shanghai", "PATH": "/usr/bin:/bin"})


def document_of(path):
    text = path.read_text(encoding="utf-8")
    return json.loads(re.search(r'<script type="application/json" id="document">(.*?)</script>', text, re.S).group(1))


def as_float(value):
    """Values of rows are 32 bits wide."""
    return struct.unpack("f", struct.pack("f", value))[0]


def limits_of(name):
    for line in CLASSES.read_text(encoding="utf-8").splitlines():
        if line.startswith("#"):
            continue
        names, limits, _ = line.split("\t")
        if any(name == one or (one.endswith("*") and name.startswith(one[:-1])) for one in names.split()):
            return [float(limit) for limit in limits.split()]
    return None


class Rows:
    """What `qloom rows` tells of a stream."""

    def __init__(self, folder, log, stream, types):
        lines = qloom(folder, "rows", log, "--stream", stream).stdout.splitlines()
        self.rows = []
        for line in lines:
            row = json.loads(line)
            fields = {}
            for element, value in row["fields"]:
                number = as_float(value) if types.get(element) == "float" and not isinstance(value, str) else value
                fields.setdefault(element, number)
            place = fields.get(2379, -255), fields.get(2380, -255)
            is_place = abs(place[0]) <= 180 and abs(place[1]) <= 90 and place not in ((0, 0), (-1, -1))
            self.rows.append((row["time"], place if is_place else None, fields))

    def samples(self, element):
        return [(at, fields[element]) for at, (_, _, fields) in enumerate(self.rows) if element in fields]


def is_valid(value):
    return not isinstance(value, str) and value != -255


def sphere_point(place):
    """On the WGS-84 ellipsoid, metres from the centre of the earth."""
    longitude, latitude = (math.radians(degrees) for degrees in place)
    e2 = 0.00669437999014
    n = 6378137.0 / math.sqrt(1 - e2 * math.sin(latitude) ** 2)
    return n * math.cos(latitude) * math.cos(longitude), n * math.cos(latitude) * math.sin(longitude), n * (1 - e2) * math.sin(latitude)


def bins_of(rows, weighting, sizes):
    if weighting == "time":
        return [math.floor(time / sizes["time"]) for time, _, _ in rows]
    bins, start, number = [], None, -1
    latitudes = [place[1] for _, place, _ in rows if place]
    middle = math.radians((min(latitudes) + max(latitudes)) / 2)
    e2 = 0.00669437999014
    w = math.sqrt(1 - e2 * math.sin(middle) ** 2)
    east = math.radians(1) * 6378137.0 / w * math.cos(middle)
    north = math.radians(1) * 6378137.0 * (1 - e2) / w**3
    for _, place, _ in rows:
        if place is None:
            bins.append(None)
        elif weighting == "grid":
            bins.append((math.floor(place[0] * east / sizes["grid"]), math.floor(place[1] * north / sizes["grid"])))
        else:
            if start is None or math.dist(sphere_point(start), sphere_point(place)) >= sizes["distance"]:
                start, number = place, number + 1
            bins.append(number)
    return bins


def weighted_values(samples, rows, weighting, sizes):
    valid = [(at, value) for at, value in samples if is_valid(value)]
    if weighting == "sample":
        return [value for _, value in valid]
    bins = bins_of(rows, weighting, sizes)
    held = {}
    for at, value in valid:
        if bins[at] is not None:
            held.setdefault(bins[at], []).append(value)
    return [math.fsum(values) / len(values) for values in held.values()]


def percentile(values, share):
    rank = share * (len(values) - 1)
    low = math.floor(rank)
    return values[low] + (rank - low) * (values[min(low + 1, len(values) - 1)] - values[low])


class FiguresTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.scratch.name)
        made = qloom(cls.folder, "log", "simulate", "drive.log", "--minutes", "12", "--handsets", HANDSETS, "--scanner", "--cells", "cells")
        assert made.returncode == 0, made.stderr
        cls.reported = qloom(cls.folder, "report", "drive.log", "--out", "drive.html", "--bin-seconds", "2", "--bin-metres", "15",
                             "--bin-grid", "40", "--json")
        assert cls.reported.returncode == 0, cls.reported.stderr
        cls.page = document_of(cls.folder / "drive.html")
        ies = json.loads(qloom(cls.folder, "ies", "--json").stdout)["ies"]
        cls.ids = {ie["name"]: ie["id"] for ie in ies}
        types = {ie["id"]: ie["type"] for ie in ies}
        cls.rows = {stream["name"]: Rows(cls.folder, "drive.log", stream["name"], types) for stream in cls.page["streams"]}

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def near(self, expected, got, what):
        self.assertLessEqual(abs(expected - got), 1e-9 * max(1.0, abs(expected)), what)

    def check_statistics(self, values, figures, limits, what):
        values = sorted(values)
        self.assertEqual(len(values), figures["count"], what)
        expected = {"min": values[0], "max": values[-1], "mean": math.fsum(values) / len(values), "p5": percentile(values, 0.05),
                    "p50": percentile(values, 0.5), "p95": percentile(values, 0.95)}
        for name, value in expected.items():
            self.near(value, figures[name], (what, name))
        classes = [0] * (len(limits) + 1)
        for value in values:
            classes[sum(value >= limit for limit in limits)] += 1
        self.assertEqual(classes, figures["classes"], what)
        self.assertEqual(len(values), sum(figures["bars"]), what)
        for bar, count in enumerate(figures["bars"]):
            low = figures["first"] + bar * figures["step"]
            near = 1e-9 * figures["step"]
            inside = sum(low - near <= value < low + figures["step"] - near for value in values)
            self.assertEqual(inside, count, (what, "bar", bar))

    def test_every_figure_of_every_stream_element_and_weighting(self):
        checked = 0
        for stream in self.page["streams"]:
            rows = self.rows[stream["name"]]
            self.assertEqual(len(rows.rows), stream["rows"])
            for series in stream["series"]:
                element = self.page["elements"][series["element"]]
                limits = limits_of(element["name"])
                self.assertEqual(limits, element["limits"])
                samples = rows.samples(self.ids[element["name"]])
                invalid = sum(not is_valid(value) for _, value in samples)
                self.assertEqual(invalid, series["statistics"]["sample"]["invalid"], element)
                for weighting, figures in series["statistics"].items():
                    values = weighted_values(samples, rows.rows, weighting, self.page["bins"])
                    self.check_statistics(values, figures, limits, (stream["name"], element["name"], weighting))
                    checked += 1
        self.assertGreater(checked, 100)

    def test_the_way_is_as_long_as_its_stretches(self):
        for stream in self.page["streams"]:
            length, start = 0.0, None
            for _, place, _ in self.rows[stream["name"]].rows:
                if place is None:
                    continue
                way = 0 if start is None else math.dist(sphere_point(start), sphere_point(place))
                if start is None or way >= self.page["bins"]["distance"]:
                    length, start = length + way, place
            self.assertAlmostEqual(length, stream["length"], delta=1e-5 * length)

    def test_cells_have_their_samples_level_and_time(self):
        identities = {"TD-SCDMA": (146, None, 499), "GSM": (31700, 31706, 31703), "LTE": (33363, None, 33364)}
        for stream in self.page["streams"]:
            first, second, level = identities[stream["protocol"]]
            cells, changes, serving, since = {}, 0, None, None
            for time, _, fields in self.rows[stream["name"]].rows:
                held = serving if since is not None and time - since <= 10 else None
                if fields.get(first, -1) >= 0 and (second is None or fields.get(second, -1) >= 0):
                    named = (fields[first], fields.get(second))
                    if held is not None:
                        cells[held][2] += time - since
                        changes += held != named
                    serving, since = named, time
                    cells.setdefault(named, [0, 0.0, 0.0])
                else:
                    serving = held
                if serving is not None and is_valid(fields.get(level, -255)):
                    cells[serving][0] += 1
                    cells[serving][1] += fields[level]
            shown = stream["cells"]["list"]
            self.assertEqual(len(cells), len(shown), stream["name"])
            self.assertEqual(changes, stream["handovers"]["time"]["count"], stream["name"])
            for (samples, level_sum, time), cell in zip(cells.values(), shown):
                self.assertEqual(samples, cell["samples"])
                self.assertAlmostEqual(time, cell["time"], places=6)
                if samples:
                    self.near(level_sum / samples, cell["level"], cell)

    def test_the_command_tells_what_it_wrote_and_refuses_what_it_cannot(self):
        told = json.loads(self.reported.stdout)
        self.assertEqual(1, told["result"])
        self.assertEqual((self.folder / "drive.html").stat().st_size, told["bytes"])
        self.assertEqual(sum(stream["rows"] for stream in self.page["streams"]), told["rows"])
        before = (self.folder / "drive.html").read_bytes()
        cases = [
            (["drive.log", "--stream", "nobody"], 1, "no stream"),
            (["drive.log", "--ie", "Nothing"], 1, "no information element"),
            (["drive.log", "--no"], 1, ""),
            (["drive.log", "--tiles", "ftp://tiles/{z}"], 2, "tiles have an address like"),
            (["drive.log", "--classes", "missing.tsv"], 1, "missing.tsv"),
            (["missing.log"], 1, "missing.log"),
        ]
        for words, code, text in cases:
            run = qloom(self.folder, "report", *words, "--out", "drive.html")
            self.assertEqual(code, run.returncode, (words, run.stderr))
            self.assertIn(text, run.stderr)
            self.assertEqual(before, (self.folder / "drive.html").read_bytes(), words)

    def test_sources_of_every_kind_go_into_one_page_and_chosen_elements_lead(self):
        self.assertEqual(0, qloom(self.folder, "log", "to-intermediate", "drive.log", "again.mid").returncode)
        lines = ["time,lat,lon,rsrp,pci"] + [f"2024-05-17 09:00:{s:02},39.9{s:02},116.4,{-80 - s},{7 + s // 30}" for s in range(60)]
        (self.folder / "walk.csv").write_text("\n".join(lines) + "\n", encoding="utf-8")
        (self.folder / "empty.log").write_bytes(b"")
        run = qloom(self.folder, "report", "drive.log", "again.mid", "walk.csv", "empty.log", "--ie", "PBCH_RSRQ", "PBCH_RSRP", "--out", "all.html")
        self.assertEqual(3, run.returncode, run.stderr)
        page = document_of(self.folder / "all.html")
        self.assertEqual(["drive.log", "again.mid", "walk.csv", "empty.log"], page["files"])
        lte = [stream for stream in page["streams"] if stream["protocol"] == "LTE" and not stream["scanner"]]
        self.assertEqual([2, 2, 1], [len(stream["series"]) for stream in lte])
        self.assertEqual("PBCH_RSRQ", page["elements"][lte[0]["series"][0]["element"]]["name"])
        self.assertEqual(["PCI 7", "PCI 8"], [cell["label"] for cell in lte[2]["cells"]["list"]])
        self.assertIn("log refused", [note["name"] for note in page["notes"]])

    def test_a_thinned_stream_keeps_its_extremes_and_says_so(self):
        run = qloom(self.folder, "report", "drive.log", "--max-points", "100", "--out", "thin.html")
        self.assertEqual(0, run.returncode, run.stderr)
        for stream, whole in zip(document_of(self.folder / "thin.html")["streams"], self.page["streams"]):
            self.assertLess(stream["kept"], stream["rows"])
            self.assertEqual([series["statistics"]["sample"] for series in whole["series"]],
                             [series["statistics"]["sample"] for series in stream["series"]])


class ColoursTest(unittest.TestCase):
    """Neighbouring classes stay apart for eyes without one kind of cones (Machado, Oliveira, Fernandes 2009)."""

    EYES = {
        "all cones": [[1, 0, 0], [0, 1, 0], [0, 0, 1]],
        "no long-wave cones": [[0.152286, 1.052583, -0.204868], [0.114503, 0.786281, 0.099216], [-0.003882, -0.048116, 1.051998]],
        "no middle-wave cones": [[0.367322, 0.860646, -0.227968], [0.280085, 0.672501, 0.047413], [-0.011820, 0.042940, 0.968881]],
        "no short-wave cones": [[1.255528, -0.076749, -0.178779], [-0.078411, 0.930809, 0.147602], [0.004733, 0.691367, 0.303900]],
    }

    @staticmethod
    def lab(rgb):
        x, y, z = (sum(a * b for a, b in zip(row, rgb)) for row in
                   ([0.4124, 0.3576, 0.1805], [0.2126, 0.7152, 0.0722], [0.0193, 0.1192, 0.9505]))
        f = [v ** (1 / 3) if v > 0.008856 else 7.787 * v + 16 / 116 for v in (x / 0.9505, y, z / 1.089)]
        return 116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])

    def seen(self, colour, eye):
        parts = [int(colour[at : at + 2], 16) / 255 for at in (1, 3, 5)]
        linear = [p / 12.92 if p <= 0.04045 else ((p + 0.055) / 1.055) ** 2.4 for p in parts]
        return self.lab([min(max(sum(a * b for a, b in zip(row, linear)), 0), 1) for row in self.EYES[eye]])

    def test_classes_stay_apart(self):
        for line in CLASSES.read_text(encoding="utf-8").splitlines():
            if line.startswith("#"):
                continue
            colours = line.split("\t")[2].split()
            for eye in self.EYES:
                seen = [self.seen(colour, eye) for colour in colours]
                for at in range(len(seen)):
                    for other in range(at):
                        self.assertGreater(math.dist(seen[at], seen[other]), 12, (line, eye, colours[at], colours[other]))


if __name__ == "__main__":
    unittest.main(verbosity=2)

#!/usr/bin/env python3
"""A report's page in a browser without a display: page_test.py QLOOM [PICTURES]

Ends with 77 where Selenium or Chromium is missing. Pictures go into the folder PICTURES where it is given."""

import base64
import contextlib
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.by import By
except ImportError:
    sys.exit(77)

QLOOM = sys.argv.pop(1)
PICTURES = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
CHROMIUM, DRIVER = shutil.which("chromium"), shutil.which("chromedriver")
if not CHROMIUM or not DRIVER:
    sys.exit(77)

EVIL = '<script>window.pwned = 1</script><img src=x onerror="window.pwned = 2">'


def qloom(folder, *words):
    run = subprocess.run([QLOOM, *words], cwd=folder, capture_output=True, text=True, env={"TZ": "UTC", "PATH": "/usr/bin:/bin"})
    assert run.returncode in (0, 3), run.stderr
    return run.stdout


@contextlib.contextmanager
def browser(language="en", size=(1440, 1000)):
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--force-device-scale-factor=1", f"--lang={language}",
                     f"--window-size={size[0]},{size[1]}"):
        options.add_argument(argument)
    options.add_experimental_option("prefs", {"intl.accept_languages": language})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    driver = webdriver.Chrome(options=options, service=Service(DRIVER))
    try:
        yield driver
    finally:
        driver.quit()


class Page:
    def __init__(self, driver, path):
        self.driver = driver
        driver.get(path.as_uri())
        until = time.monotonic() + 60
        while not self.js("return document.body.dataset.ready"):
            if time.monotonic() > until:
                raise AssertionError(f"{path.name} did not start: {driver.get_log('browser')}")
            time.sleep(0.05)

    def js(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def settle(self):
        """Until what waits for the next frame is drawn."""
        self.driver.execute_async_script("requestAnimationFrame(() => requestAnimationFrame(arguments[0]))")

    def element(self, css):
        return self.driver.find_element(By.CSS_SELECTOR, css)

    def texts(self, css):
        return self.js("return [...document.querySelectorAll(arguments[0])].map((one) => one.textContent)", css)

    def picture(self, name):
        if PICTURES:
            self.driver.save_screenshot(str(PICTURES / f"{name}.png"))


# Of each class the pixels of its colour on the map.
COUNT_COLOURS = """
const canvas = document.querySelector(".route-canvas");
const pixels = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data;
return arguments[0].map((colour) => {
  const [r, g, b] = [1, 3, 5].map((at) => parseInt(colour.slice(at, at + 2), 16));
  let count = 0;
  for (let i = 0; i < pixels.length; i += 4) count += pixels[i] === r && pixels[i + 1] === g && pixels[i + 2] === b;
  return count;
});
"""

# Samples with no other class near them, and whether the pixel in their middle has the colour of their class.
CHECK_POINTS = """
const {state, map} = qloomReport;
const stream = state.page.streams[state.active];
const series = state.seriesOf(state.active);
const {scale, origin, width, height} = map.layer.view;
const context = document.querySelector(".route-canvas").getContext("2d");
const points = [];
stream.x.forEach((x, i) => {
  const value = series.values[i];
  if (Number.isNaN(value) || Number.isNaN(x)) return;
  points.push({x: x * scale - origin.x, y: stream.y[i] * scale - origin.y,
               colour: series.colours[series.limits.filter((limit) => value >= limit).length]});
});
const hex = (pixel) => "#" + [0, 1, 2].map((at) => pixel[at].toString(16).padStart(2, "0")).join("");
const result = {right: 0, wrong: 0};
points.forEach((point, at) => {
  if (at % 7 !== 0 || point.x < 5 || point.y < 5 || point.x > width - 5 || point.y > height - 5) return;
  if (points.some((other) => other.colour !== point.colour && Math.hypot(other.x - point.x, other.y - point.y) < 7)) return;
  const pixel = context.getImageData(Math.floor(point.x), Math.floor(point.y), 1, 1).data;
  result[hex(pixel) === point.colour ? "right" : "wrong"]++;
});
return result;
"""


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.scratch.name)
        qloom(cls.folder, "log", "simulate", "plain.log", "--minutes", "12", "--handsets", "lte,td", "--cells", "cells")
        for table in ("tbl_Cell", "tbl_Cell_LTE"):
            qloom(cls.folder, "net", "put", table, f"cells.{table}.jsonl", "--project", "drive.qlp")
        records = [json.loads(line) for line in qloom(cls.folder, "log", "dump", "plain.log").splitlines()]
        next(one for one in records if one.get("kind") == 6)["raw_message"] = EVIL.encode().hex()  # a mark
        next(one for one in records if one.get("layer3_name"))["layer3_name"] = EVIL
        (cls.folder / "records.jsonl").write_text("\n".join(map(json.dumps, records)) + "\n", encoding="utf-8")
        qloom(cls.folder, "log", "make", "records.jsonl", "drive&<b>.log")
        cls.page = cls.folder / "drive.html"
        qloom(cls.folder, "report", "drive&<b>.log", "--project", "drive.qlp", "--title", f"Drive {EVIL}</script>", "--out", "drive.html")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    @contextlib.contextmanager
    def opened(self, path=None, **how):
        """A page that leaves no error in the console and asks for nothing but itself."""
        with browser(**how) as driver:
            page = Page(driver, path or self.page)
            yield page
            errors = [entry["message"] for entry in driver.get_log("browser") if entry["level"] in ("SEVERE", "WARNING")]
            self.assertEqual([], [error for error in errors if "willReadFrequently" not in error])  # the tests' own reading
            messages = [json.loads(entry["message"])["message"] for entry in driver.get_log("performance")]
            asked = [one["params"]["request"]["url"] for one in messages if one["method"] == "Network.requestWillBeSent"]
            self.assertEqual([], [url for url in asked if not url.startswith(("file://" + str(self.folder), "data:", "blob:"))])

    def test_the_route_has_the_colours_of_its_classes(self):
        with self.opened() as page:
            page.js("qloomReport.state.showEvents = qloomReport.state.showCells = false; qloomReport.map.layer.redraw()")
            series = page.js("const s = qloomReport.state.seriesOf(qloomReport.state.active); return {name: s.name, colours: s.colours, classes: s.statistics.sample.classes}")
            self.assertEqual("PBCH_RSRP", series["name"])
            counts = page.js(COUNT_COLOURS, series["colours"])
            for samples, pixels in zip(series["classes"], counts):
                self.assertTrue(pixels > 20 if samples > 20 else pixels >= 0, (series["classes"], counts))
                self.assertTrue(samples > 0 or pixels == 0, (series["classes"], counts))
            checked = page.js(CHECK_POINTS)
            self.assertGreater(checked["right"], 20)
            self.assertEqual(0, checked["wrong"])
            page.js("const select = document.querySelector('.legend select'); select.value = 1; select.dispatchEvent(new Event('change'))")
            other = page.js("const s = qloomReport.state.seriesOf(qloomReport.state.active); return {name: s.name, colours: s.colours, classes: s.statistics.sample.classes}")
            self.assertNotEqual(series["name"], other["name"])
            self.assertNotEqual(counts, page.js(COUNT_COLOURS, other["colours"]))
            self.assertEqual(0, page.js(CHECK_POINTS)["wrong"])

    def test_streams_can_be_switched_and_cells_are_drawn(self):
        with self.opened() as page:
            page.picture("wide-en")
            fill = "return qloomReport.map.layer.shownStreams().length"
            self.assertEqual(1, page.js(fill))
            with_cells = page.js("return document.querySelector('.route-canvas').toDataURL()")
            page.js("document.querySelectorAll('.switches input')[1].click()")
            self.assertNotEqual(with_cells, page.js("return document.querySelector('.route-canvas').toDataURL()"))
            for chip in page.driver.find_elements(By.CSS_SELECTOR, ".chip"):
                if not chip.find_element(By.TAG_NAME, "input").is_selected():
                    chip.click()
            page.settle()
            self.assertEqual(len(page.texts(".chip")), page.js(fill))
            self.assertEqual(len(page.texts(".chip")), len(page.texts(".legend select")))
            page.picture("all-streams")

    def test_charts_draw_their_lines_with_gaps_and_zoom(self):
        with self.opened() as page:
            count = page.js("""
                const canvas = document.querySelector(".plot canvas");
                const pixels = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data;
                let count = 0;
                for (let i = 0; i < pixels.length; i += 4) count += pixels[i + 3] > 200 && pixels[i] < 40 && pixels[i + 2] > 140;
                return count;""")
            self.assertGreater(count, 300)
            plot = page.element(".plot")
            page.driver.execute_script("arguments[0].scrollIntoView({block: 'center'})", plot)
            windows = []
            for keys, offset in ((None, 120), ("\ue008", 60)):  # zooms; with Shift moves
                actions = ActionChains(page.driver)
                if keys:
                    actions.key_down(keys)
                actions.move_to_element_with_offset(plot, -100, 0).click_and_hold().move_by_offset(offset, 0).release()
                if keys:
                    actions.key_up(keys)
                actions.perform()
                page.settle()
                window = page.js("return qloomReport.state.window")
                windows.append(window)
                ranges = page.js("return qloomReport.charts.charts.map((chart) => chart.graph.xAxisRange())")
                self.assertGreater(len(ranges), 1)
                for low, high in ranges:
                    self.assertAlmostEqual(window[0], low, delta=2)
                    self.assertAlmostEqual(window[1], high, delta=2)
            self.assertLess(windows[1][0], windows[0][0])
            self.assertAlmostEqual(windows[0][1] - windows[0][0], windows[1][1] - windows[1][0], delta=2)
            page.element("#whole").click()
            self.assertIsNone(page.js("return qloomReport.state.window"))
            breaks = page.js("""
                const rows = qloomReport.charts.charts[0].rows(qloomReport.state.wholeWindow());
                const {stream} = qloomReport.charts.charts[0];
                return [rows.filter((row) => Number.isNaN(row[1])).length, stream.series[0].starts.length];""")
            self.assertEqual(max(breaks[1] - 1, 0), breaks[0])
            invalid = page.js("return qloomReport.state.page.streams.some((s) => s.series.some((one) => one.values.some((v) => v === -255)))")
            self.assertFalse(invalid)

    def test_one_cursor_links_map_charts_and_lists(self):
        with self.opened() as page:
            place = page.js("""
                const {state, map} = qloomReport;
                const stream = state.page.streams[state.active];
                const at = stream.x.findIndex((x, i) => i > stream.x.length / 2 && !Number.isNaN(x) && !Number.isNaN(stream.cell[i]));
                const point = map.map.latLngToContainerPoint([stream.latitude[at], stream.longitude[at]]);
                const box = document.getElementById("map").getBoundingClientRect();
                return [point.x - box.width / 2, point.y - box.height / 2];""")
            target = page.element("#map")
            ActionChains(page.driver).move_to_element_with_offset(target, round(place[0]), round(place[1])).perform()
            page.settle()
            hover = page.element("#hover")
            self.assertTrue(hover.is_displayed())
            self.assertIn("PBCH_RSRP", hover.text)
            self.assertIn("served by", hover.text)
            self.assertEqual(2, page.js("return qloomReport.map.line.getLatLngs().length"))
            page.picture("hover")
            ActionChains(page.driver).move_to_element_with_offset(target, round(place[0]), round(place[1])).click().perform()
            page.settle()
            cursor = page.js("return qloomReport.state.cursor")
            self.assertIsNotNone(cursor)
            self.assertFalse(page.js("return document.querySelector('.cursor-line').hidden"))
            chosen = page.js("const {lists} = qloomReport; return [lists.rows[lists.chosen].time, lists.rows[lists.chosen + 1]?.time]")
            self.assertLessEqual(chosen[0], cursor)
            self.assertTrue(chosen[1] is None or chosen[1] > cursor)
            page.js("document.querySelectorAll('.entry')[3].click()")
            page.settle()
            linked = page.js("""
                const {state, map, lists} = qloomReport;
                const row = lists.rows[lists.chosen];
                const marker = map.marker.getLatLng();
                return [state.cursor - row.time, marker.lat - row.stream.entries.latitude[row.at], marker.lng - row.stream.entries.longitude[row.at],
                        document.getElementById("cursor-time").textContent];""")
            self.assertEqual(0, linked[0])
            self.assertLess(abs(linked[1]) + abs(linked[2]), 1e-5)
            self.assertRegex(linked[3], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}$")

    def test_lists_are_searched_and_a_message_shows_its_bytes(self):
        with self.opened() as page:
            page.driver.find_elements(By.CSS_SELECTOR, "#list-tabs button")[1].click()
            everything = page.js("return qloomReport.lists.rows.length")
            page.element("#search").send_keys("measurement")
            found = page.js("return qloomReport.lists.rows.map((row) => qloomReport.lists.nameOf(row))")
            self.assertTrue(0 < len(found) < everything)
            self.assertEqual([], [name for name in found if "measurement" not in name.lower()])
            page.driver.find_elements(By.CSS_SELECTOR, ".entry")[0].click()
            dump = page.element("#detail pre").get_attribute("textContent")
            row = page.js("const {lists} = qloomReport; const row = lists.rows[lists.chosen]; return [row.stream.name, row.stream.entries.row[row.at], row.stream.entries.length[row.at]]")
            told = json.loads(qloom(self.folder, "rows", "drive&<b>.log", "--stream", row[0], "--from", str(int(row[1])), "--count", "1", "--show", "MsgRawData"))
            bytes_shown = "".join(line[6:53].replace(" ", "") for line in dump.splitlines())
            self.assertEqual(int(row[2]) * 2, len(bytes_shown))
            if re.fullmatch("[0-9A-Fa-f]*", told["fields"][0][1]):
                self.assertEqual(told["fields"][0][1].upper(), bytes_shown)
            page.picture("message")
            page.element("#search").send_keys(" no such thing")
            self.assertEqual("Nothing found.", page.element("#list-count").text)

    def test_texts_of_logs_stay_texts(self):
        with self.opened() as page:
            page.element("#search").send_keys("pwned")
            for tab in (0, 1):
                page.driver.find_elements(By.CSS_SELECTOR, "#list-tabs button")[tab].click()
                self.assertIn(EVIL, page.texts(".entry-name"))
                page.driver.find_elements(By.CSS_SELECTOR, ".entry")[0].click()
                self.assertEqual(EVIL, page.element("#detail strong").text)
            self.assertEqual(f"Drive {EVIL}</script>", page.element("h1").text)
            self.assertEqual(f"Drive {EVIL}</script>", page.driver.title)
            self.assertIn("drive&<b>.log", page.element("#files").text)
            self.assertIsNone(page.js("return window.pwned ?? null"))
            self.assertEqual(0, page.js("return document.querySelectorAll('img:not(.leaflet-tile)').length"))

    def test_figures_show_what_the_document_holds_by_every_weighting(self):
        with self.opened() as page:
            seen = set()
            for weighting in ("sample", "time", "distance", "grid"):
                page.element(f'#weightings button[value="{weighting}"]').click()
                counts = page.js("return [...document.querySelectorAll('#figures tr.choice')].map((row) => Number(row.cells[1].textContent.replace(/,/g, '')))")
                expected = page.js("return qloomReport.figures.rows.map((row) => row.series.statistics[arguments[0]].count)", weighting)
                self.assertEqual(expected, counts)
                seen.add(tuple(counts))
            self.assertEqual(4, len(seen))
            page.driver.find_elements(By.CSS_SELECTOR, "#figures tr.choice")[2].click()
            self.assertIn(page.js("return qloomReport.figures.rows[2].series.name"), page.element("#distribution-title").text)

    def test_the_page_speaks_the_language_of_the_browser_and_the_other_one(self):
        for language, heading, other in (("en", "Route", "路线"), ("zh-CN", "路线", "Route")):
            with self.opened(language=language) as page:
                self.assertEqual(heading, page.element("#map-card h2").text)
                page.picture(f"wide-{language}")
                page.element("#language").click()
                self.assertEqual(other, page.element("#map-card h2").text)
                self.assertEqual([], [text for text in page.texts("h2, th, button, p") if "undefined" in text or "{" in text])

    def test_it_prints_and_fits_a_narrow_window(self):
        with self.opened(size=(520, 900)) as page:
            for width in (520, 1280):
                page.driver.set_window_size(width, 900)
                page.settle()
                self.assertLessEqual(page.js("return document.documentElement.scrollWidth"), page.js("return window.innerWidth"))
                page.picture(f"width-{width}")
            pdf = base64.b64decode(page.driver.execute_cdp_cmd("Page.printToPDF", {"preferCSSPageSize": True, "printBackground": True})["data"])
            self.assertTrue(2 <= len(re.findall(rb"/Type\s*/Page\b(?!s)", pdf)) <= 14)
            if PICTURES:
                (PICTURES / "print.pdf").write_bytes(pdf)

    def test_tiles_are_asked_of_the_named_source_alone(self):
        qloom(self.folder, "report", "plain.log", "--tiles", "http://127.0.0.1:9/{z}/{x}/{y}.png", "--out", "tiles.html")
        with browser() as driver:
            page = Page(driver, self.folder / "tiles.html")
            page.settle()
            sources = page.js("return [...document.querySelectorAll('img.leaflet-tile')].map((tile) => tile.src)")
            self.assertTrue(sources and all(re.match(r"http://127\.0\.0\.1:9/\d+/\d+/\d+\.png", source) for source in sources))
            self.assertEqual([], [entry for entry in driver.get_log("browser") if "Content Security Policy" in entry["message"]])

    def test_what_is_not_there_is_said(self):
        head = "time,lat,lon,rsrp"
        cases = {
            "nowhere": ["time,rsrp"] + [f"2024-05-17 09:00:{s:02},{-80 - s}" for s in range(30)],
            "point": [head, "2024-05-17 09:00:00,39.9,116.4,-80"],
            "invalid": [head] + [f"2024-05-17 09:00:{s:02},39.9,116.4,-255" for s in range(5)],
            "standing": [head] + [f"2024-05-17 09:00:{s:02},39.9,116.4,-90" for s in range(30)],
        }
        for name, lines in cases.items():
            (self.folder / f"{name}.csv").write_text("\n".join(lines) + "\n", encoding="utf-8")
            qloom(self.folder, "report", f"{name}.csv", "--out", f"{name}.html")
            with self.subTest(name), self.opened(self.folder / f"{name}.html") as page:
                page.settle()
                self.assertEqual(name == "nowhere", page.element("#no-map").is_displayed())
                self.assertEqual(name == "invalid", page.element("#no-figures").is_displayed())
                self.assertTrue(page.element("#no-cells").is_displayed())
                self.assertEqual("There is nothing of this kind.", page.element("#list-count").text)
                page.picture(f"empty-{name}")

    def test_thinning_is_said(self):
        qloom(self.folder, "report", "plain.log", "--max-points", "200", "--out", "thin.html")
        with self.opened(self.folder / "thin.html") as page:
            self.assertRegex(page.element("#alerts").text, r"of [\d,]+ rows are drawn")


if __name__ == "__main__":
    unittest.main(verbosity=2, testRunner=unittest.TextTestRunner(stream=sys.stdout, verbosity=2))

#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Pages of `--report` in a real browser. Status 77 (skipped) where there is none."""
import json
import pathlib
import random
import subprocess
import sys
import tempfile
import time
import unittest

from browser import Browser, Missing
from png_rows import grey_rows

TOOL, EXAMPLES, NAMED_ALPHABET, DATA, PICTURES = (pathlib.Path(a) for a in sys.argv[1:6])
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"
SKIPPED = 77

# Where the corners of a path lie, in pels of the picture that the browser drew it over.
CORNERS = """
  const image = document.querySelector("#stage image").getBoundingClientRect();
  const {width, x, y} = document.querySelector("#stage image");
  const pels = image.width / width.baseVal.value;
  return [...document.querySelectorAll(`#stage [data-kind="${arguments[0]}"] path:not(.halo)`)]
    .map((path) => [...path.getAttribute("d").matchAll(/[ML](\\S+) ([^MLZh]+)/g)].map(([, px, py]) => {
      const p = new DOMPoint(px, py).matrixTransform(path.getScreenCTM());
      return [(p.x - image.left) / pels + x.baseVal.value, (p.y - image.top) / pels + y.baseVal.value];
    }));
"""
TREE = """
  const read = (list) => [...list.children].map((item) => {
    const below = item.querySelector(":scope > ul");
    return [item.querySelector("a span").textContent, below ? read(below) : []];
  });
  return read(document.querySelector("#tree > ul"));
"""


def run(*arguments):
    return subprocess.run([str(a) for a in arguments], capture_output=True, timeout=240)


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.folder = pathlib.Path(cls.scratch.name)
        cls.browser = Browser(cls.folder / "profile")
        cls.addClassCleanup(cls.browser.close)
        cls.label = EXAMPLES / "label.png"
        cls.text = (EXAMPLES / "label.txt").read_text(encoding="utf-8").rstrip("\n")
        cls.alphabet = cls.folder / "label.oca"
        cls.page = cls.folder / "label.html"
        run(TOOL, "train", "--font", FONT, "--size", 32, "--chars", "A-Z0-9 -", "-o", cls.alphabet)
        cls.report = cls.arrange(cls.page, cls.text, cls.label)
        PICTURES.mkdir(parents=True, exist_ok=True)

    @classmethod
    def arrange(cls, page, text, picture, alphabet=None):
        done = run(TOOL, "arrange", "--alphabet", alphabet or cls.alphabet, "--text", text, "--json",
                   "--report", page, picture)
        assert done.returncode in (0, 1), done.stderr
        return json.loads(done.stdout)

    def setUp(self):
        self.browser.show_as(1280, 900)
        self.browser.open(self.page)
        self.addCleanup(lambda: self.assertEqual(self.browser.complaints(), []))

    def choose(self, *titles):
        """Clicks down to a record, unfolding what is folded."""
        item = "#tree"
        for title in titles:
            index = self.browser.run("""
              return [...document.querySelectorAll(arguments[0] + " > ul > li")]
                .findIndex((li) => li.querySelector("a span").textContent === arguments[1]);
            """, item, title)
            self.assertGreaterEqual(index, 0, title)
            item += f" > ul > li:nth-child({index + 1})"
            self.browser.click(item + " > .row a")
            self.assert_shown(title)
            if title != titles[-1]:
                self.browser.run("""
                  const li = document.querySelector(arguments[0]);
                  if (li.classList.contains("folded")) li.querySelector(".toggle").click();
                """, item)

    def assert_shown(self, title):
        """A new address takes effect a moment after the click."""
        for _ in range(100):
            if self.said("h2") == title:
                return
            time.sleep(0.02)
        self.assertEqual(self.said("h2"), title)

    def said(self, css):
        return self.browser.run("return document.querySelector(arguments[0]).textContent", css)

    def test_the_tree_nests_as_the_records_do(self):
        tree = self.browser.run(TREE)
        self.assertEqual([title for title, _ in tree], [
            "OC Arranger: Input", "OC Arranger: Intermediate", "OC Arranger: Output"])
        self.assertEqual([title for title, _ in tree[0][1]], ["Alphabet details"])
        details = tree[0][1][0][1]
        self.assertEqual(len(details), 38)
        self.assertIn("Character #36: ' '", [title for title, _ in details])
        self.assertEqual([title for title, _ in tree[1][1]],
                         ["Search for characters", "Build arrangement"])
        self.assertEqual([title for title, _ in tree[2][1]], [
            f"Details for line #{i}" for i in range(len(self.report["lines"]))])

    def test_a_click_shows_the_record(self):
        self.choose("OC Arranger: Input", "Alphabet details", "Character #0: 'A'")
        self.assertEqual(self.said("#path"), "OC Arranger: Input  ›  Alphabet details")
        self.assertIn("  key = 0x00000041\n", self.said("pre"))
        self.browser.run("history.back()")
        self.assert_shown("Alphabet details")
        self.assertEqual(self.browser.run("return document.querySelectorAll('#sheet a').length"), 37)

    def test_tabs_are_aligned(self):
        lines = self.said("pre").split("\n")
        start = next(i for i, line in enumerate(lines) if line.startswith("Index"))
        table = lines[start:start + len(self.text) + 1]
        for word, values in (("Score", "0123456789"), ("Key", "0"), ("Name", "'"), ("Type", "e")):
            for line in table[1:]:
                self.assertIn(line[table[0].index(word)], values, line)
        self.choose("OC Arranger: Intermediate", "Build arrangement")
        lines = self.said("pre").split("\n")
        start = next(i for i, line in enumerate(lines) if line.startswith("Index"))
        head, row, total = lines[start], lines[start + 1], lines[-1]
        for line in row, total:  # each column starts where its head does
            for word in ("Match", "Tan", "Norm", "Rot", "Scale"):
                at = head.index(word)
                self.assertEqual((line[at - 1], line[at] != " "), (" ", True), line)

    def assert_boxes(self, report):
        # A character that comes more than once is drawn with the status of its first position.
        first = {p["char"]: p["status"] for p in reversed(report["positions"])}
        for kind, status in (("green box", "matched"), ("orange box", "inferred")):
            boxes = [p["box"] for p in report["positions"]
                     if p["status"] != "unknown" and first[p["char"]] == status]
            corners = self.browser.run(CORNERS, kind)
            self.assertEqual(len(corners), len(boxes))
            for box in boxes:
                off = min(max(abs(a - b) for p, q in zip(box, drawn) for a, b in zip(p, q))
                          for drawn in corners)
                self.assertLess(off, 0.01, box)

    def test_boxes_of_real_prints_lie_where_the_results_say(self):
        if not DATA.exists():
            self.skipTest("no pictures of real print here")
        for name in ("plaque-ring", "ticket-two-lines-17"):
            folder = DATA / "real" / name
            case = json.loads((folder / "case.json").read_text(encoding="utf-8"))
            alphabet, page = self.folder / f"{name}.oca", self.folder / f"{name}.html"
            done = run(TOOL, "train", "--image", folder / case["train"]["image"], "--boxes",
                       folder / case["train"]["boxes"], "--blank",
                       case["train"].get("blank", 8), "-o", alphabet)
            self.assertEqual(done.returncode, 0, done.stderr)
            report = self.arrange(page, case["text"], folder / case["image"], alphabet)
            self.browser.open(page)
            self.assert_boxes(report)
            self.choose("OC Arranger: Intermediate", "Build arrangement")
            self.browser.screenshot(PICTURES / f"{name}.png")

    def test_boxes_lie_where_the_results_say(self):
        self.assert_boxes(self.report)
        self.choose("OC Arranger: Input", "Alphabet details", "Character #0: 'A'")
        (ul, *_, ll), = self.browser.run(CORNERS, "green outline")
        self.assertLess(max(map(abs, ul)), 1e-3)
        (_, origin, y_end), = self.browser.run(CORNERS, "blue axes")
        self.assertGreater(y_end[1], origin[1])
        self.assertLess(abs(y_end[0] - origin[0]), 1e-3)

    def test_layers_switch_one_by_one_and_together(self):
        seen = """return [...document.querySelectorAll("#stage g[data-kind]")]
          .filter((g) => getComputedStyle(g.querySelector("path")).visibility === "visible")
          .map((g) => g.dataset.kind);"""
        all_kinds = self.browser.run(seen)
        self.assertIn("yellow point", all_kinds)
        legend = self.browser.run("""return [...document.querySelectorAll("#legend label")]
          .map((l) => [l.title, Number(l.querySelector(".count").textContent)]);""")
        self.assertEqual(legend[0][1], sum(n for _, n in legend[1:]))
        self.browser.click('#legend label[title="yellow point"] input')
        self.assertEqual(self.browser.run(seen), [k for k in all_kinds if k != "yellow point"])
        self.assertTrue(self.browser.run(
            "return document.querySelector('#legend .layer input').indeterminate"))
        for expected in ([], all_kinds):
            self.browser.click("#legend .layer input")
            self.assertEqual(self.browser.run(seen), expected)

    def place_of(self, x, y):
        """The point of the window at which a point of the picture is drawn."""
        left, top, scale = self.browser.run("""
          const image = document.querySelector("#stage image");
          const box = image.getBoundingClientRect();
          return [box.left, box.top, box.width / image.width.baseVal.value];""")
        return {"x": round(left + scale * x), "y": round(top + scale * y)}

    def test_pels_are_told_and_stay_under_the_pointer_while_it_zooms(self):
        rows = list(grey_rows(self.label.read_bytes()))
        for x, y in ((100.5, 60.5), (230.5, 110.5), (300.5, 150.5)):
            point = self.place_of(x, y)
            self.browser.act({"type": "pointerMove", **point, "duration": 0})
            before = self.said("#pointer")
            told = [float(word) for word in before.replace("x ", "").replace("y ", " ")
                    .replace("value ", " ").split()]
            self.assertAlmostEqual(told[0], x, delta=1)
            self.assertAlmostEqual(told[1], y, delta=1)
            self.assertEqual(told[2], rows[int(told[1])][int(told[0])])
            self.browser.act({"type": "scroll", **point, "deltaX": 0, "deltaY": -1500,
                              "duration": 0, "origin": "viewport"}, kind="wheel")
            self.assertEqual(self.said("#pointer"), before)
            self.assertEqual(
                self.browser.run("return document.querySelectorAll('#stage .pel').length"), 1)
            self.browser.click("#fit")

    def test_the_picture_follows_the_mouse(self):
        start, end = self.place_of(100, 50), self.place_of(160, 90)
        self.browser.act({"type": "pointerMove", **start, "duration": 0},
                         {"type": "pointerDown", "button": 0},
                         {"type": "pointerMove", **end, "duration": 0},
                         {"type": "pointerUp", "button": 0})
        moved = self.place_of(100, 50)
        self.assertAlmostEqual(moved["x"], end["x"], delta=1)
        self.assertAlmostEqual(moved["y"], end["y"], delta=1)

    def test_two_fingers_zoom_about_the_one_that_stays(self):
        self.browser.show_as(390, 844, 2, mobile=True)
        self.browser.open(self.page)
        middle = self.place_of(230, 110)
        touches = [[(0, 0)], [(0, 0), (40, 0)], [(0, 0), (80, 0)], []]
        kinds = ["touchStart", "touchStart", "touchMove", "touchEnd"]
        before = self.browser.run("return document.querySelector('#stage image')"
                                  ".getBoundingClientRect().width")
        for kind, points in zip(kinds, touches):
            self.browser.devtools("Input.dispatchTouchEvent", type=kind, touchPoints=[
                {"x": middle["x"] + dx, "y": middle["y"] + dy, "id": i}
                for i, (dx, dy) in enumerate(points)])
        after = self.browser.run("return document.querySelector('#stage image')"
                                 ".getBoundingClientRect().width")
        self.assertAlmostEqual(after / before, 2, delta=0.05)
        for axis in "xy":
            self.assertAlmostEqual(self.place_of(230, 110)[axis], middle[axis], delta=1)

    def test_names_are_shown_and_never_run(self):
        hostile = "<script>document.title='run'</script><img src=x onerror=\"document.title='run'\">"
        named, page = self.folder / "named.oca", self.folder / "named.html"
        self.assertEqual(run(NAMED_ALPHABET, named, hostile).returncode, 0)
        done = run(TOOL, "show", named, "--report", page)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.browser.open(page)
        self.choose(hostile, f"Character #0: '{hostile}'")
        self.assertEqual(self.said("h1"), hostile)
        self.assertIn(hostile, self.said("pre"))
        self.assertEqual(self.browser.run("return document.title"), hostile)
        self.assertEqual(self.browser.run(
            "return [document.scripts.length, document.images.length]"), [2, 0])

    def test_nothing_comes_from_a_network(self):
        loaded = self.browser.run(
            "return performance.getEntriesByType('resource').map((entry) => entry.name)")
        self.assertEqual([name for name in loaded if not name.startswith(("data:", "blob:"))], [])
        for word in ("src=", "@import", "fetch(", "https://"):
            self.assertNotIn(word, self.page.read_text(encoding="utf-8"))

    def test_it_fits_desktop_and_phone_by_day_and_night(self):
        grounds = set()
        for name, size, dark in (("desktop", (1280, 900, 1), False), ("dark", (1280, 900, 1), True),
                                 ("phone", (390, 844, 2), False)):
            self.browser.show_as(*size, dark=dark, mobile=name == "phone")
            self.browser.open(self.page)
            grounds.add(self.browser.run("return getComputedStyle(document.body).backgroundColor"))
            wide = "return document.documentElement.scrollWidth - innerWidth"
            self.assertLessEqual(self.browser.run(wide), 0, name)
            self.browser.screenshot(PICTURES / f"{name}.png")
            self.assertGreater((PICTURES / f"{name}.png").stat().st_size, 20000)
        self.assertEqual(len(grounds), 2)
        self.browser.click("#fold")
        self.choose("OC Arranger: Input")

    def test_a_large_picture_of_a_long_text_stays_small_and_opens_at_once(self):
        # The label in eight places under noise, which no compression takes away.
        rows = list(grey_rows(self.label.read_bytes()))
        width, height, randoms = 1280, 960, random.Random(7)
        pels = bytearray()
        for y in range(height):
            row = rows[y % 240] if y % 240 < len(rows) else bytes([rows[0][0]]) * len(rows[0])
            row = (row + bytes([rows[0][0]]) * 180) * 2
            noise = randoms.randbytes(width)
            pels += bytes(min(255, max(0, v + n % 13 - 6)) for v, n in zip(row, noise))
        picture, page = self.folder / "large.pgm", self.folder / "large.html"
        picture.write_bytes(b"P5 %d %d 255\n" % (width, height) + pels)
        report = self.arrange(page, (self.text + " ") * 3, picture)
        self.assertGreaterEqual(len(report["positions"]), 60)
        size = page.stat().st_size
        times = []
        for _ in range(3):
            self.browser.open(page)
            times.append(self.browser.run(
                "return performance.getEntriesByType('navigation')[0].loadEventEnd"))
        print(f"{len(report['positions'])} positions: {size / 1e6:.2f} MB, open in "
              f"{min(times):.0f} ms", file=sys.stderr)
        self.assertLess(size, 5e6)
        self.assertLess(min(times), 1000)


if __name__ == "__main__":
    try:
        with tempfile.TemporaryDirectory() as folder:
            Browser(folder).close()
    except Missing as reason:
        print(f"skipped: {reason}")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])

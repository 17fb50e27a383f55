#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The command from outside: what it prints, how it ends, and what it leaves behind."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

from png_rows import grey_rows

TOOL, EXAMPLES, VERIFY = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"


def run(*arguments, stdin=None):
    call = [a if isinstance(a, bytes) else str(a) for a in (TOOL, *arguments)]
    return subprocess.run(call, capture_output=True, stdin=stdin, timeout=120)


class Command(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.scratch.name)
        cls.alphabet = cls.folder / "label.oca"
        done = run("train", "--font", FONT, "--size", 32, "--chars", "A-Z0-9 -", "-o", cls.alphabet)
        assert done.returncode == 0, done.stderr
        cls.label = EXAMPLES / "label.png"
        cls.overwritten = cls.folder / "mine.png"
        cls.overwritten.write_bytes(cls.label.read_bytes())
        cls.text = (EXAMPLES / "label.txt").read_text(encoding="utf-8").rstrip("\n")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def arrange(self, *more, text=None, image=None, alphabet=None):
        return run("arrange", "--alphabet", alphabet or self.alphabet, "--text",
                   self.text if text is None else text, *more, image or self.label)

    def assert_bad(self, done, *words):
        """Status 2, one line that holds the words, nothing on standard output."""
        message = done.stderr.decode()
        self.assertEqual(done.returncode, 2, message)
        self.assertEqual(message.count("\n"), 1, message)
        for word in words:
            self.assertIn(str(word), message)
        self.assertEqual(done.stdout, b"")

    def test_every_character_of_the_label_is_matched(self):
        done = self.arrange("--json")
        self.assertEqual(done.returncode, 0, done.stderr)
        report = json.loads(done.stdout)
        self.assertEqual(report["verdict"], "pass")
        self.assertEqual(report["matched"], report["expected"])
        self.assertEqual(len(report["positions"]), len(self.text))
        self.assertEqual([p["char"] for p in report["positions"]], list(self.text))
        self.assertEqual([i for line in report["lines"] for i in line["positions"]],
                         list(range(len(self.text))))

    def test_the_example_program_says_the_same(self):
        rows = list(grey_rows(self.label.read_bytes()))
        picture = self.folder / "label.pgm"
        picture.write_bytes(b"P5\n%d %d\n255\n" % (len(rows[0]), len(rows)) + b"".join(rows))
        done = subprocess.run([VERIFY, self.alphabet, picture, self.text], capture_output=True,
                              timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr)
        said = [line.split()[-2] == "matched" for line in done.stdout.decode().splitlines()]
        positions = json.loads(self.arrange("--json").stdout)["positions"]
        self.assertEqual(said, [p["status"] == "matched" for p in positions])

    def test_boxes_lie_round_their_centre_and_turn_with_the_angle(self):
        for p in json.loads(self.arrange("--json").stdout)["positions"]:
            if p["status"] != "matched":
                continue
            (ax, ay), _, (cx, cy), _ = p["box"]
            self.assertAlmostEqual((ax + cx) / 2, p["center"][0], delta=0.001)
            self.assertAlmostEqual((ay + cy) / 2, p["center"][1], delta=0.001)

    def test_a_text_file_has_one_text_for_each_picture(self):
        texts = self.folder / "texts.txt"
        texts.write_bytes(b"LOT\r\nEXP\n")
        call = ["arrange", "--alphabet", self.alphabet, "--json", "--text-file"]
        done = run(*call, texts, self.label, self.label)
        self.assertEqual(done.returncode, 0, done.stderr)
        read = ["".join(p["char"] for p in json.loads(line)["positions"])
                for line in done.stdout.splitlines()]
        self.assertEqual(read, ["LOT", "EXP"])
        self.assert_bad(run(*call, texts, self.label), texts, "--text-file", "2 texts for 1")
        with open(texts, "rb") as stdin:
            self.assertEqual(run(*call, "-", self.label, self.label, stdin=stdin).returncode, 0)

    def test_uncertainties_come_on_demand(self):
        for options, wanted in (([], False), (["--uncertainties"], True)):
            position = json.loads(self.arrange("--json", *options).stdout)["positions"][0]
            self.assertEqual("uncertainty" in position, wanted)

    def test_a_mask_hides_what_it_does_not_cover(self):
        for name, value, status in (("black", 0, 1), ("white", 255, 0)):
            mask = self.folder / f"{name}.pgm"
            mask.write_bytes(b"P5 460 220 255\n" + bytes([value]) * (460 * 220))
            self.assertEqual(self.arrange("--mask", mask).returncode, status)
        mask.write_bytes(b"P5 46 22 255\n" + bytes([255]) * (46 * 22))
        self.assert_bad(self.arrange("--mask", mask), mask, "--mask", "46x22", "460x220")

    def test_a_font_and_boxes_round_its_print_train_the_same_places(self):
        # The label's first line, boxed where the font alphabet finds it, reads the label again.
        found = json.loads(self.arrange("--json").stdout)["positions"]
        boxes = self.folder / "label.box"
        height = 220
        lines = []
        for p in found:
            if p["char"] == " ":
                continue
            xs, ys = zip(*p["box"])
            lines.append(f"{p['char']} {int(min(xs))} {height - int(max(ys)) - 1} "
                         f"{int(max(xs)) + 1} {height - int(min(ys))} 0")
        boxes.write_text("\n".join(lines) + "\n", encoding="utf-8")
        alphabet = self.folder / "boxed.oca"
        done = run("train", "--image", self.label, "--boxes", boxes, "--blank", 11, "-o", alphabet)
        self.assertEqual(done.returncode, 0, done.stderr)
        again = json.loads(self.arrange("--json", alphabet=alphabet).stdout)["positions"]
        for p, q in zip(found, again):
            if p["char"] == " " or q["status"] != "matched":
                continue
            # The slanted print is boxed upright, which moves the middle of the ink a little.
            self.assertAlmostEqual(p["center"][0], q["center"][0], delta=1.5)
            self.assertAlmostEqual(p["center"][1], q["center"][1], delta=1.5)
        self.assertGreater(sum(q["status"] == "matched" for q in again), 12)

    def test_a_picture_and_its_text_train_what_reads_the_picture(self):
        alphabet, print_alone = self.folder / "shown.oca", self.folder / "print.pgm"
        rows = list(grey_rows(self.label.read_bytes()))[50:165]
        print_alone.write_bytes(b"P5 240 115 255\n" + b"".join(bytes(r[110:350]) for r in rows))
        done = run("train", "--image", print_alone, "--text", self.text, "-o", alphabet)
        self.assertEqual(done.returncode, 0, done.stderr)
        marks = done.stdout.decode().splitlines()[2:]
        bases = [float(m.split()[-1]) for m in marks]
        self.assertEqual(sorted(bases), bases)  # the print sinks to the right, line below line
        self.assertTrue(30 < bases[0] and bases[7] < 55 and 85 < bases[8] and bases[-1] < 115, bases)
        self.assertEqual([m.split()[0] for m in marks], list(self.text.replace(" ", "")))
        again = self.arrange("--json", alphabet=alphabet)
        self.assertEqual(json.loads(again.stdout)["verdict"], "pass")

    def test_an_alphabet_grows_and_keeps_a_character_that_comes_twice_only_once(self):
        small, grown = self.folder / "small.oca", self.folder / "grown.oca"
        run("train", "--font", FONT, "--size", 32, "--chars", "ABBA", "--name", "first", "-o", small)
        done = run("train", "--font", FONT, "--size", 32, "--chars", "C", "--add", small, "-o", grown)
        self.assertEqual(done.returncode, 0, done.stderr)
        shown = json.loads(run("show", grown, "--json").stdout)
        self.assertEqual([c["char"] for c in shown["characters"]], list("ABC"))
        self.assertEqual(shown["name"], "first")
        self.assertEqual(shown["characters"][0]["source"], pathlib.Path(FONT).name)

    def test_training_warns_of_characters_that_are_never_searched(self):
        out = self.folder / "i.oca"
        done = run("train", "--font", FONT, "--size", 32, "--chars", "AI", "-o", out)
        self.assertIn(b'warning: "I"', done.stderr)
        self.assertNotIn(b'"A"', done.stderr)
        quiet = run("train", "--font", FONT, "--size", 32, "--chars", "AI", "--quiet", "-o", out)
        self.assertEqual(quiet.stderr, b"")

    def test_a_wrong_text_fails_with_status_1(self):
        done = self.arrange("--json", text="WXYZ")
        self.assertEqual(done.returncode, 1, done.stderr)
        report = json.loads(done.stdout)
        self.assertTrue(report["found"])
        self.assertEqual(report["verdict"], "fail")
        for p in report["positions"]:
            self.assertEqual(p["box"] is None, p["status"] == "unknown")

    def test_jobs_and_repeats_give_the_same_answers(self):
        answers = set()
        for jobs in (1, 2, 8):
            done = run("arrange", "--alphabet", self.alphabet, "--text", self.text, "--json",
                       "--jobs", jobs, *[self.label] * 4)
            lines = [json.loads(line) for line in done.stdout.splitlines()]
            for line in lines:
                del line["time_ms"]
            answers.update(json.dumps(line) for line in lines)
            self.assertEqual(len(lines), 4)
        self.assertEqual(len(answers), 1)

    def test_overlays_are_written_in_three_formats(self):
        for ending, magic in ((".png", b"\x89PNG"), (".svg", b"<?xml"), (".pdf", b"%PDF")):
            path = self.folder / ("seen" + ending)
            self.assertEqual(self.arrange("--quiet", "--overlay", path).returncode, 0)
            self.assertTrue(path.read_bytes().startswith(magic), ending)

    def test_a_report_is_one_page_and_changes_no_result(self):
        answers = []
        for text, options in ((self.text, []), ("WXYZ", []), (self.text, ["--uncertainties"])):
            for report in ([], ["--report", self.folder / "page-%.html"]):
                done = self.arrange("--json", *options, *report, text=text)
                answers.append(json.loads(done.stdout))
                del answers[-1]["time_ms"]
            self.assertEqual(answers[-1], answers[-2])
        page = (self.folder / "page-label.html").read_bytes()
        self.assertTrue(page.startswith(b"<!doctype html>") and page.endswith(b"</html>\n"))
        shown = run("show", self.alphabet, "--json")
        again = run("show", self.alphabet, "--json", "--report", self.folder / "alphabet.html")
        self.assertEqual(again.stdout, shown.stdout)
        self.assertIn(b"DejaVuSans-Bold.ttf", (self.folder / "alphabet.html").read_bytes())

    def test_a_picture_comes_from_standard_input(self):
        with open(self.label, "rb") as stdin:
            done = run("arrange", "--alphabet", self.alphabet, "--text", self.text, "-",
                       stdin=stdin)
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_one_bad_picture_does_not_stop_the_rest(self):
        done = run("arrange", "--alphabet", self.alphabet, "--text", self.text, "--json",
                   self.folder / "none.png", self.label)
        self.assertEqual(done.returncode, 2)
        first, second = (json.loads(line) for line in done.stdout.splitlines())
        self.assertIn("error", first)
        self.assertEqual(second["verdict"], "pass")

    def test_bad_alphabets_are_refused_at_every_length(self):
        whole = self.alphabet.read_bytes()
        broken = self.folder / "broken.oca"
        for length in [*range(0, 40), len(whole) // 2, len(whole) - 1]:
            broken.write_bytes(whole[:length])
            self.assert_bad(self.arrange(alphabet=broken), broken)
        middle = len(whole) // 2
        broken.write_bytes(whole[:middle] + bytes([whole[middle] ^ 1]) + whole[middle + 1:])
        self.assert_bad(self.arrange(alphabet=broken), broken)

    def test_bad_calls_say_what_and_where(self):
        text = self.folder / "note.txt"
        text.write_text("no picture", encoding="utf-8")
        out = self.folder / "never.oca"
        short = self.folder / "short.png"
        short.write_bytes(self.label.read_bytes()[:5000])
        boxes = self.folder / "outside.box"
        boxes.write_text("A 10 10 99999 20 0\n", encoding="utf-8")
        cases = [
            (self.arrange(image=text), [text, "not a picture"]),
            (self.arrange(image=short), [short, "damaged"]),
            (self.arrange(image=self.folder / "none.png"), ["none.png"]),
            (self.arrange(text="a"), [self.alphabet, "--text", '"a"']),
            (self.arrange("--scale", "1.1:0.9"), ["--scale"]),
            (self.arrange("--scale", "0:1"), ["--scale", "Invalid scale range"]),
            (self.arrange("--min-score", "2"), ["--min-score", "Invalid min match score"]),
            (self.arrange("--max-lines", "0"), ["--max-lines", "Invalid max lines"]),
            (self.arrange("--overlay", "x.gif"), ["x.gif", "--overlay"]),
            (self.arrange("--mask", text), [text, "--mask"]),
            (self.arrange(image=self.folder), [self.folder]),
            (self.arrange(alphabet=self.folder / "no.oca"), ["no.oca", "--alphabet"]),
            (self.arrange("--orientation", "sideways"), ["--orientation", "sideways"]),
            (self.arrange("--direction", "up"), ["--direction", "up"]),
            (self.arrange("--timeout", "-1"), ["--timeout", "Invalid timeout"]),
            (self.arrange("--jobs", "0"), ["--jobs"]),
            (self.arrange("--overlay", "x.png", self.label), ["x.png", "--overlay", "%"]),
            (self.arrange("--overlay", self.folder / "no" / "x.png"), ["x.png"]),
            (self.arrange("--report", "x.html", self.label), ["x.html", "--report", "%"]),
            (self.arrange("--report", self.folder / "no" / "x.html"), ["x.html", "No such file"]),
            (run("show", self.alphabet, "--report", self.folder), [self.folder]),
            (self.arrange(text=b"\xff"), ["--text", "UTF-8"]),
            (run("find", "--alphabet", self.alphabet, "--chars", "a", self.label), ["--chars", '"a"']),
            (run("find", "--alphabet", self.alphabet, "--chars", "A", "--scale", "0:1", self.label),
             ["--scale"]),
            (run("edit", self.alphabet, "--remove", "a", "-o", out), ["--remove", '"a"']),
            (run("train", "--font", FONT, "--size", 30, "--chars", "C-A", "-o", out), ["--chars"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "A",
                 "-o", self.folder / "no" / "x.oca"), ["x.oca"]),
            (run("train", "--image", self.label, "-o", out), ["--boxes"]),
            (run("arrange", "--alphabet", self.alphabet, self.label), ["--text"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "\u4e00", "-o", out), [FONT, "--chars", "\u4e00"]),
            (run("train", "--font", text, "--size", 30, "--chars", "A", "-o", out),
             [text, "--font"]),
            (run("train", "--image", self.label, "--boxes", boxes, "-o", out),
             [f"{boxes}:1", "--boxes", "leaves the picture"]),
            (run("train", "--image", self.label, "--text", self.text + "X", "-o", out),
             [self.label, "--text", "marks for the"]),
            (run("train", "--image", self.label, "--text", "A", "--boxes", boxes, "-o", out),
             ["--boxes", "--text"]),
            (run("train", "--image", self.label, "--text", "A", "--text", "B", "-o", out),
             ["--image", "--text"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "A", "--add", self.alphabet,
                 "-o", out), ["--add", '"A"']),
            (run("train", "-o", out), ["--font", "--image"]),
            (run("train", "--font", FONT, "--size", "nan", "--chars", "A", "-o", out), ["--size"]),
            (self.arrange("--overlay", self.overwritten, image=self.overwritten),
             ["--overlay", "overwrite"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "A", "-o", self.folder),
             [self.folder, "not a regular file"]),
            (run("nonsense"), []),
        ]
        for done, words in cases:
            with self.subTest(words=words):
                self.assert_bad(done, *words)
        self.assertFalse(out.exists())
        self.assertEqual([p.name for p in self.folder.iterdir() if ".part" in p.name], [])

    def test_find_lists_instances_and_says_why_a_character_is_not_searched(self):
        done = run("find", "--alphabet", self.alphabet, "--chars", "EI", "--json", self.label)
        self.assertEqual(done.returncode, 1)
        found = {c["char"]: c for c in json.loads(done.stdout)["characters"]}
        self.assertGreater(found["E"]["instances"][0]["score"], 0.7)
        self.assertIn("reason", found["I"])

    def test_edit_removes_and_show_tells(self):
        smaller = self.folder / "smaller.oca"
        done = run("edit", self.alphabet, "--remove", "B-Z", "-o", smaller)
        self.assertEqual(done.returncode, 0, done.stderr)
        shown = json.loads(run("show", smaller, "--json").stdout)
        self.assertEqual({c["char"] for c in shown["characters"]}, set("A0123456789 -"))

    def test_compile_stores_the_confusing_pairs(self):
        compiled = self.folder / "compiled.oca"
        done = run("train", "--font", FONT, "--size", 24, "--chars", "OQX ", "--compile", "-o",
                   compiled)
        self.assertEqual(done.returncode, 0, done.stderr)
        shown = json.loads(run("show", compiled, "--json").stdout)
        self.assertTrue(shown["compiled"])
        pairs = {(p["char"], p["with"]) for p in shown["confusing"]}
        self.assertIn(("O", "Q"), pairs)
        self.assertNotIn(("O", "X"), pairs)
        names = [c["char"] for c in shown["characters"]]
        for pair in shown["confusing"]:
            row = shown["confusions"][names.index(pair["char"])]
            self.assertEqual(row[names.index(pair["with"])], pair["confusion"])
        again = compiled.read_bytes()
        self.assertEqual(run("compile", compiled).returncode, 0)
        self.assertEqual(compiled.read_bytes(), again)

    def test_show_prints_every_confusion_in_lines_that_fit_a_terminal(self):
        compiled = self.folder / "wide.oca"
        done = run("train", "--font", FONT, "--size", 16, "--chars", "A-X ", "--compile", "-o",
                   compiled)
        self.assertEqual(done.returncode, 0, done.stderr)
        shown = json.loads(run("show", compiled, "--json").stdout)
        names = [c["char"].replace(" ", "␣") for c in shown["characters"]]
        text = run("show", compiled).stdout.decode()
        cells, head = {}, []
        for line in text.split("column's):\n")[1].split(" can pass for ")[0].splitlines()[:-1]:
            self.assertLessEqual(len(line), 80)
            words = line.split()
            if line.startswith("    "):
                head = words
            else:
                cells.update({(words[0], h): cell for h, cell in zip(head, words[1:])})
        percents = {(a, b): int(100 * value + 0.5)
                    for a, row in zip(names, shown["confusions"]) for b, value in zip(names, row)}
        self.assertEqual(cells, {(a, b): "-" if a == b else str(p or ".")
                                 for (a, b), p in percents.items()})
        self.assertNotIn("confusions", run("show", self.alphabet).stdout.decode())

    def test_help_names_an_example(self):
        for command in ([], ["train"], ["arrange"], ["find"], ["compile"],
                        ["show"], ["edit"]):
            done = run(*command, "--help")
            self.assertEqual(done.returncode, 0)
            self.assertIn(b"Example", done.stdout)
        self.assertIn(b"glyphline 0.", run("--version").stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

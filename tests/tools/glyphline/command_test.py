#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The command from outside: what it prints, how it ends, and what it leaves behind."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL, EXAMPLES = sys.argv[1], pathlib.Path(sys.argv[2])
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"


def run(*arguments, stdin=None):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, stdin=stdin, timeout=120)


class Command(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.scratch.name)
        cls.alphabet = cls.folder / "label.oca"
        done = run("train", "--font", FONT, "--size", 32, "--chars", "A-Z0-9 -", "-o", cls.alphabet)
        assert done.returncode == 0, done.stderr
        cls.label = EXAMPLES / "label.png"
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

    def test_boxes_lie_round_their_centre_and_turn_with_the_angle(self):
        for p in json.loads(self.arrange("--json").stdout)["positions"]:
            if p["status"] != "matched":
                continue
            (ax, ay), _, (cx, cy), _ = p["box"]
            self.assertAlmostEqual((ax + cx) / 2, p["center"][0], delta=0.001)
            self.assertAlmostEqual((ay + cy) / 2, p["center"][1], delta=0.001)

    def test_a_wrong_text_fails_with_status_1(self):
        done = self.arrange("--json", text="WXYZ")
        self.assertEqual(done.returncode, 1, done.stderr)
        report = json.loads(done.stdout)
        self.assertTrue(report["found"])
        self.assertEqual(report["verdict"], "fail")

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
        boxes = self.folder / "outside.box"
        boxes.write_text("A 10 10 99999 20 0\n", encoding="utf-8")
        cases = [
            (self.arrange(image=text), [text, "not a picture"]),
            (self.arrange(image=self.folder / "none.png"), ["none.png"]),
            (self.arrange(text="a"), [self.alphabet, "--text", '"a"']),
            (self.arrange("--scale", "1.1:0.9"), ["--scale"]),
            (self.arrange("--scale", "0:1"), ["--scale", "Invalid scale range"]),
            (self.arrange("--min-score", "2"), ["--min-score", "Invalid min match score"]),
            (self.arrange("--max-lines", "0"), ["--max-lines", "Invalid max lines"]),
            (self.arrange("--overlay", "x.gif"), ["x.gif", "--overlay"]),
            (self.arrange("--mask", self.label, image=text), [text]),
            (run("arrange", "--alphabet", self.alphabet, self.label), ["--text"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "\u4e00", "-o", out), [FONT, "\u4e00"]),
            (run("train", "--font", text, "--size", 30, "--chars", "A", "-o", out), [text]),
            (run("train", "--image", self.label, "--boxes", boxes, "-o", out),
             [f"{boxes}:1", "leaves the picture"]),
            (run("train", "--font", FONT, "--size", 30, "--chars", "A", "--add", self.alphabet,
                 "-o", out), ["--add", '"A"']),
            (run("train", "-o", out), ["--font", "--image"]),
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
        again = compiled.read_bytes()
        self.assertEqual(run("compile", compiled).returncode, 0)
        self.assertEqual(compiled.read_bytes(), again)

    def test_help_names_an_example(self):
        for command in ([], ["train"], ["arrange"], ["find"], ["compile"],
                        ["show"], ["edit"]):
            done = run(*command, "--help")
            self.assertEqual(done.returncode, 0)
            self.assertIn(b"Example", done.stdout)
        self.assertIn(b"glyphline 0.", run("--version").stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

#!/usr/bin/env python3
"""Plots as a user does, and lets other programs measure the pages: plot_test.py QVDRAW"""

import filecmp
import os
import re
import subprocess
import sys
import tempfile
import unittest

QVDRAW = sys.argv.pop(1)
POINT = 25.4 / 72


def run(*words):
    return subprocess.run([str(word) for word in words], capture_output=True, timeout=120)


def drawing(path, entities, header=""):
    """A drawing of pairs of groups."""
    with open(path, "w", encoding="ascii") as file:
        file.write(f"{header}0\nSECTION\n2\nENTITIES\n")
        for entity in entities:
            file.write("".join(f"{code}\n{value}\n" for code, value in entity))
        file.write("0\nENDSEC\n0\nEOF\n")
    return path


def line(x1, y1, x2, y2, *more):
    return [(0, "LINE"), (8, "0"), (10, x1), (20, y1), (11, x2), (21, y2), *more]


def text(x, y, words):
    return [(0, "TEXT"), (8, "0"), (10, x), (20, y), (40, 100), (1, words)]


def content_of(pdf):
    """The drawing commands, and the matrix that they are in."""
    data = run("qpdf", "--qdf", "--object-streams=disable", pdf, "-").stdout.decode("latin-1")
    content = re.search(r"stream\n(2\.83.*?)endstream", data, re.S)[1]
    return content, float(content.split()[0]) * POINT


def segments(pdf):
    """The straight pieces on the page, in mm."""
    content, scale = content_of(pdf)
    at, found = None, []
    for words in (row.split() for row in content.splitlines()):
        if words and words[-1] in "ml" and len(words) == 3:
            p = tuple(float(v) * scale for v in words[:2])
            if words[-1] == "l":
                found.append((at, p))
            at = p
    return found


class Plot(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.at = lambda self, name: os.path.join(cls.folder.name, name)
        assert run(QVDRAW, "demo", "--out", cls.folder.name).returncode == 0

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def plot(self, *words):
        result = run(QVDRAW, "plot", *words)
        self.assertEqual(result.returncode, 0, result.stderr.decode())
        return result.stdout.decode(), result.stderr.decode()

    def test_sheets_become_pages_of_their_size(self):
        sheets = {"beam": ((594, 420), "A2 at 1:50", ["KL-1", "配筋图", "1050", "2Φ25"]),
                  "plan": ((841, 594), "A1 at 1:100", ["二层结构平面", "300x700", "h=120"]),
                  "calc": ((420, 297), "A3 at 1:1", ["内力计算"])}
        for name, (paper, told, words) in sheets.items():
            pdf = self.at("one-" + name + ".pdf")
            self.assertIn(told, self.plot(self.at(name + ".dxf"), "-o", pdf)[0])
            size = re.search(r"Page size: +([\d.]+) x ([\d.]+)", run("pdfinfo", pdf).stdout.decode())
            for side, mm in zip(size.groups(), paper):
                self.assertAlmostEqual(float(side) * POINT, mm, delta=0.01)
            found = run("pdftotext", pdf, "-").stdout.decode()
            for word in words:
                self.assertIn(word, found)

    def test_many_sheets_and_drawings_become_one_file(self):
        pdf = self.at("set.pdf")
        told, _ = self.plot(self.at("sheets.dxf"), self.at("beam.dxf"), "-o", pdf)
        self.assertEqual(told.count(" at 1:"), 9)
        sizes = re.findall(r"size: +([\d.]+) x", run("pdfinfo", "-f", 1, "-l", 9, pdf).stdout.decode())
        self.assertEqual(sorted(round(float(v) * POINT) for v in sizes), [420] + 6 * [594] + 2 * [841])
        outline = run("qpdf", "--json", "--json-key=outlines", pdf).stdout.decode()
        self.assertEqual(outline.count('"title"'), 11)  # two files and nine sheets
        again = self.at("again.pdf")
        self.plot(self.at("sheets.dxf"), self.at("beam.dxf"), "-o", again)
        self.assertTrue(filecmp.cmp(pdf, again, shallow=False))

    def test_scale_is_true(self):
        for paper, scale, length, header in (("A3", 50, 10000, ""), ("A0", 100, 110000, ""),
                                             ("A3", 50, 10, "0\nSECTION\n2\nHEADER\n9\n$INSUNITS\n70\n6\n0\nENDSEC\n")):
            source = drawing(self.at("line.dxf"), [line(0, 0, length, 0), line(0, 0, 0, length / 4)], header)
            pdf = self.at("line.pdf")
            self.plot(source, "-o", pdf, "--paper", paper, "--scale", f"1:{scale}")
            mm = length / scale * (1000 if header else 1)
            (a, b), = [s for s in segments(pdf) if s[0][1] == s[1][1]]
            self.assertAlmostEqual(abs(b[0] - a[0]), mm, delta=0.02)
            # Another reader counts the pixels, ten to a millimetre; the round ends are half a pen each.
            ppm = run("pdftoppm", "-r", 254, "-gray", pdf).stdout
            width, height = (int(v) for v in re.match(rb"P5\s+(\d+)\s+(\d+)\s", ppm).groups())
            data = ppm[-width * height:]
            widest = max((len(row.strip(b"\xff")) for row in (data[i * width:(i + 1) * width] for i in range(height))))
            self.assertAlmostEqual((widest - 3.5) / 10, mm, delta=0.11)

    def test_nothing_outside_of_the_window_is_in_the_file(self):
        source = drawing(self.at("w.dxf"), [line(-5000, 500, 5000, 500), line(2000, 0, 2000, 900), text(100, 100, "INSIDE"),
                                            text(5000, 100, "SECRET"), text(700, 300, "HALFOUTSIDE")])
        pdf = self.at("w.pdf")
        self.plot(source, "-o", pdf, "--window", "0,0,1000,1000", "--scale", "1:10", "--paper", "A4")
        found = run("pdftotext", pdf, "-").stdout.decode()
        self.assertIn("INSIDE", found)
        self.assertNotIn("SECRET", found)
        self.assertNotIn("OUTSIDE", found)
        for a, b in segments(pdf):
            for x, y in (a, b):
                self.assertTrue(98.4 <= x <= 198.6 and 54.9 <= y <= 155.1, (x, y))

    def test_dashes_are_those_of_the_line_type(self):
        pdf = self.at("dashes.pdf")
        self.plot(self.at("beam.dxf"), "-o", pdf)
        # The axes: dashes of 10 mm, gaps of 1.5, dots between.
        upright = [s for s in segments(pdf) if s[0][0] == s[1][0]]
        lengths = [round(abs(s[1][1] - s[0][1]), 2) for s in upright]
        self.assertGreaterEqual(sum(abs(v - 10) < 0.011 for v in lengths), 6)

    def test_pens_come_from_tables(self):
        from ezdxf.addons import acadctb

        table = acadctb.new_ctb()
        table[1].set_lineweight(0.5)
        table[2].set_lineweight(1.0)
        table.save(self.at("pens.ctb"))
        with open(self.at("office.pens"), "w") as file:
            file.write("color 1 -> 0.5\ncolor 2 -> 1 #ff8000\nany -> 0 ; the thinnest\n")
        source = drawing(self.at("p.dxf"), [line(0, 0, 900, 0, (62, 1)), line(0, 50, 900, 50, (62, 2)),
                                            line(0, 99, 900, 99, (62, 3), (370, 70))])
        pdf = self.at("p.pdf")
        for words, widths in ((["--pens", self.at("pens.ctb")], {0.5, 1, 0.7}), (["--pens", self.at("office.pens")], {0.5, 1, 0.05}),
                              (["--pens", "object"], {0.25, 0.7}), (["--pens", "GB b=1.0"], {0.25, 0.5, 0.7})):
            self.plot(source, "-o", pdf, *words)
            content, _ = content_of(pdf)
            self.assertEqual({float(v) for v in re.findall(r"([\d.]+) w\b", content)}, widths, words)
            self.assertNotRegex(content, r"\brg?\b|\bRG\b")
        self.plot(source, "-o", pdf, "--pens", self.at("office.pens"), "--color")
        self.assertRegex(content_of(pdf)[0], r"1 \.50?\d* 0 RG")

    def test_bad_input_is_told_in_a_line_and_leaves_no_file(self):
        beam = self.at("beam.dxf")
        empty = drawing(self.at("empty.dxf"), [])
        os.mkdir(self.at("folder.pdf"))
        for words, code in (([beam, "-o", "x.txt"], 1), ([beam, "-o", "x.pdf", "--paper", "A9"], 2),
                            ([beam, "-o", "x.pdf", "--scale", "1:0"], 2), ([beam, "-o", "x.pdf", "--scale", "50"], 2),
                            ([beam, "-o", "x.pdf", "--window", "1,1,1,5"], 2), ([empty, "-o", "x.pdf"], 1),
                            ([beam, "-o", "x.pdf", "--pens", "no.pens"], 1), ([beam, "-o", "x.pdf", "--pens", beam], 1),
                            ([beam, "-o", "folder.pdf"], 1), ([self.at("no.dxf"), "-o", "x.pdf"], 1)):
            words = [self.at(w) if w.startswith(("x.", "folder.")) else w for w in words]
            result = run(QVDRAW, "plot", *words)
            self.assertEqual(result.returncode, code, words)
            self.assertLessEqual(len(result.stderr.decode().strip().splitlines()), 2, result.stderr)
            self.assertFalse(os.path.exists(self.at("x.pdf")))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""Lets other programs judge the files of plots: files_test.py WRITE_PLOTS. The marks are those of write_plots.cpp."""

import math
import os
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

WRITE_PLOTS = sys.argv.pop(1)
POINT = 25.4 / 72
TEXTS = ["梁配筋 3Φ25@200 C30", "KL-3(2A)", "𠮷<&>\"x"]


def run(*words):
    return subprocess.run(words, check=True, capture_output=True, timeout=120).stdout


def pixels(command):
    """Width, height and bytes of a PPM picture that a program writes."""
    data = run(*command)
    head = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
    return int(head[1]), int(head[2]), data[head.end():]


class Files(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        run(WRITE_PLOTS, cls.folder.name)
        cls.pdf = cls.path("plot.pdf")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder.name, name)

    def test_two_runs_write_the_same_bytes(self):
        with tempfile.TemporaryDirectory() as other:
            run(WRITE_PLOTS, other)
            for name in os.listdir(other):
                with open(self.path(name), "rb") as a, open(os.path.join(other, name), "rb") as b:
                    self.assertEqual(a.read(), b.read(), name)

    def test_pdf_is_sound_and_has_its_papers(self):
        run("qpdf", "--check", self.pdf)
        told = run("pdfinfo", "-f", "1", "-l", "2", "-box", self.pdf).decode()
        self.assertIn("梁 (1)", told)
        self.assertNotIn("Date", told)
        for kind in ("MediaBox", "CropBox", "TrimBox"):
            boxes = re.findall(rf"{kind}: +0.00 +0.00 +([\d.]+) +([\d.]+)", told)
            self.assertEqual([[round(float(v) * POINT, 2) for v in box] for box in boxes], [[1189, 841], [210, 297]])
        self.assertRegex(run("pdffonts", self.pdf).decode(), r"CID TrueType +Identity-H +yes +no +yes")

    def test_pdf_measures_true_for_one_reader(self):
        text = run("qpdf", "--qdf", "--object-streams=disable", self.pdf, "-").decode("latin-1")
        self.assertRegex(text, r"/OFF \[\s*\d+ 0 R\s*\]")
        self.assertEqual(text.count("/Type /OCG\n"), 3)
        for title in ("(a.dxf)", "(S-1)", "(b.dxf)"):
            self.assertIn(title, text)
        content = re.search(r"stream\n(2\.83.*?)endstream", text, re.S)[1]
        scale = float(content.split()[0]) * POINT
        self.assertAlmostEqual(scale * 1189, 1189, delta=0.001)
        numbers = lambda line: [float(v) * scale for v in line.split()[:-1]]
        path = re.search(r"(.* m)\n(.* l)\n(.* l)\nS\n", content)  # two strokes in one
        for drawn, meant in zip(path.groups(), [(50, 100), (1150.005, 100), (1150, 800)]):
            self.assertLess(math.dist(numbers(drawn), meant), 0.01)
        self.assertEqual(content.count(".7 w"), 1)
        # The curves lie on the circle, rounding apart.
        at = (1000, 400)
        for curve in re.findall(r".* c\n", content):
            a, b, c, d, e, f = numbers(curve)
            p = [(at[i] + 3 * (a, b)[i] + 3 * (c, d)[i] + (e, f)[i]) / 8 for i in (0, 1)]
            self.assertAlmostEqual(math.dist(p, (600, 400)), 400, delta=0.009)
            at = (e, f)
        self.assertLess(math.dist(at, (1000, 400)), 0.01)

    def test_pdf_measures_true_for_another_reader(self):
        def window(x, y, size, resolution):
            """The grey values of a square of paper whose upper left corner is (x, y) in mm."""
            k = resolution / 25.4
            box = {"-x": x * k, "-y": (841 - y) * k, "-W": size * k, "-H": size * k}
            words = [str(v) for pair in box.items() for v in (pair[0], round(pair[1]))]
            width, _, data = pixels(["pdftoppm", "-r", str(resolution), "-f", "1", "-l", "1", *words, self.pdf])
            return [data[3 * i * width:3 * (i + 1) * width:3] for i in range(len(data) // 3 // width)]

        # At 100 pixels a mm: the line's left end, its width, and its right end; its round ends are half a width longer.
        left = window(49, 100.05, 2, 2540)[4]
        self.assertAlmostEqual(49 + left.index(0) / 100, 50 - 0.35, delta=0.02)
        right = window(1149, 100.05, 2, 2540)[4]
        self.assertAlmostEqual(1149 + right.rindex(0) / 100, 1150 + 0.35, delta=0.02)
        self.assertEqual(sum(row[100] < 128 for row in window(600, 101, 2, 2540)), 70)
        # A layer that is off is not drawn; the hole of a fill is none of it; a kept figure stands where it was placed.
        self.assertEqual(set(window(15, 25, 10, 254)[50]), {255})
        row = window(300, 220, 40, 254)[0]
        self.assertEqual([row[v] for v in (50, 150, 250, 350)], [0, 255, 255, 0])
        row = window(399, 205, 12, 2540)[0]
        self.assertAlmostEqual(399 + row.index(0) / 100, 400.005 - 0.25, delta=0.02)

    def test_texts_are_found_on_their_strokes(self):
        self.assertEqual(sorted(run("pdftotext", "-raw", self.pdf, "-").decode().split("\n")[:3]), sorted(TEXTS))
        words = re.findall(r'<word xMin="(.*)" yMin="(.*)" xMax="(.*)" yMax="(.*)">(.*)</word>',
                           run("pdftotext", "-bbox", self.pdf, "-").decode())
        boxes = {w[4]: [float(v) * POINT for v in w[:4]] for w in words}
        for text, box in {"梁配筋": (200, 436, None, 441), "C30": (None, 436, 262.5, 441),
                          "KL-3(2A)": (96.5, 521, 100, 541)}.items():
            for found, meant in zip(boxes[text], box):
                if meant is not None:
                    self.assertAlmostEqual(found, meant, delta=0.5, msg=f"{text}: {boxes[text]}")

    def test_svg_is_in_millimetres_and_layers(self):
        name = lambda tag: "{http://www.w3.org/2000/svg}" + tag
        label = "{http://www.inkscape.org/namespaces/inkscape}label"
        root = xml.parse(self.path("plot.svg")).getroot()
        self.assertEqual([root.get(k) for k in ("width", "height", "viewBox")], ["1189mm", "841mm", "0 0 1189 841"])
        layers = {g.get(label): g for g in root.findall(name("g"))}
        self.assertEqual(list(layers), ["AXIS", "梁 <\"&\">", "hidden"])
        self.assertEqual(layers["hidden"].get("style"), "display:none")
        self.assertEqual([p.get("d") for p in layers["AXIS"]], ["M50 741l1100.01 0-.01-700"])
        self.assertEqual([t.text for t in root.iter(name("text"))], TEXTS)
        self.assertEqual([u.get("x") for u in root.iter(name("use"))], ["400.005"])

    def test_png_measures_true(self):
        for file, low, high in (("plot.png", 1, 1), ("smooth.png", 1.2, 1.6)):
            width, height, data = pixels(["convert", self.path(file), "ppm:-"])
            self.assertEqual((width, height), (2378, 1682))
            told = run("identify", "-units", "PixelsPerCentimeter", "-format", "%x", self.path(file)).decode()
            self.assertAlmostEqual(float(re.match(r"[\d.]+", told)[0]), 20, delta=0.01)

            def ink(x, y):  # of the pixel to the upper right of a point
                at = 3 * (int((841 - y) * 2 - 1) * width + int(x * 2))
                return tuple(data[at:at + 3])

            # The width of 0.7 mm is 1.4 pixels; a butt end is where the line ends; holes and hidden layers are white.
            drawn = sum(255 - ink(600, 99 + i / 2)[0] for i in range(5)) / 255
            self.assertTrue(low <= drawn <= high, drawn)
            self.assertEqual([ink(x, 150) for x in (299.5, 300, 309.5, 310)],
                             [(255,) * 3, (0,) * 3, (0,) * 3, (255,) * 3])
            self.assertEqual([ink(x, 220) for x in (305, 320, 335)], [(0, 0, 255), (255,) * 3, (0, 0, 255)])
            self.assertEqual(ink(20, 20), (255,) * 3)


if __name__ == "__main__":
    unittest.main()

"""Drawings of another writer through qvdraw convert: import_test.py QVDRAW

Extents and counts are compared with those of the other program's own reader; every result must pass its auditor, be
read by GDAL, and show the same picture. The drawings of the folder that QV_DRAWINGS names, if it is set, are converted
and compared too; what differs is listed.
"""

import glob
import json
import logging
import os
import subprocess
import sys
import tempfile
import unittest

import ezdxf
from ezdxf import bbox, disassemble, recover

QVDRAW = sys.argv.pop(1)
RELEASES = ("R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018")
LETTERS = ("TEXT", "MTEXT", "ATTRIB", "ATTDEF", "XLINE", "RAY", "VIEWPORT")
logging.disable(logging.ERROR)


def compose(release):
    """A drawing of the kinds that the release knows."""
    doc = ezdxf.new(release, setup=True)
    space = doc.modelspace()
    part = doc.blocks.new("PART")
    part.add_line((0, 0), (8, 0), dxfattribs={"color": 0})
    part.add_circle((4, 4), 3)
    part.add_arc((4, 4), 2, 30, 200)
    group = doc.blocks.new("GROUP")
    group.add_blockref("PART", (5, 0), dxfattribs={"rotation": 30, "xscale": -1})
    group.add_blockref("PART", (0, 9), dxfattribs={"xscale": 2, "yscale": 0.5})
    space.add_blockref("PART", (100, 0), dxfattribs={"rotation": 45, "xscale": 3, "yscale": 3})
    space.add_blockref("GROUP", (150, 0), dxfattribs={"yscale": -2, "column_count": 3, "column_spacing": 30})
    space.add_polyline2d([(0, 0, 0, 0, 1), (20, 0), (20, 20, 0, 0, -0.4), (0, 20)], format="xyseb", close=True)
    space.add_arc((-40, 30), 12, 20, 250, dxfattribs={"extrusion": (0, 0, -1)})
    space.add_circle((60, 40), 9, dxfattribs={"extrusion": (0, 0.6, 0.8)})
    space.add_solid([(0, 40), (9, 40), (0, 50), (9, 50)])
    space.add_text("%%c20 @ 150", dxfattribs={"height": 3, "insert": (0, -20)})
    if release == "R12":
        return doc
    space.add_lwpolyline([(0, 60, 1, 2, 0.5), (30, 60, 2, 2, 0), (30, 80, 0, 0, 0)])
    space.add_ellipse((60, 70), (15, 5), 0.4, 0.5, 4)
    space.add_spline([(90, 60), (100, 85), (115, 50), (130, 80)])
    space.add_open_spline([(90, 90), (100, 120), (115, 80), (130, 110)])
    space.add_mtext("one {\\C1;two}\\P\\S1/2; three", dxfattribs={"char_height": 3, "insert": (0, 130), "width": 40})
    hatch = space.add_hatch(color=3)
    hatch.paths.add_polyline_path([(150, 60), (190, 60), (190, 90), (150, 90)], is_closed=True, flags=1)
    hatch.paths.add_edge_path(flags=16).add_ellipse((170, 75), (8, 3), 0.5, 0, 360)
    pattern = space.add_hatch()
    pattern.set_pattern_fill("ANSI31", scale=1)
    pattern.paths.add_polyline_path([(200, 60, 0.3), (240, 60), (240, 90), (200, 90)], is_closed=True)
    space.add_linear_dim(base=(0, 110), p1=(0, 95), p2=(40, 100)).render()
    space.add_mline([(0, 150), (30, 150), (30, 170)])
    return doc


def ink_of(*words):
    """The share of a picture that is not white, as ImageMagick makes it."""
    told = subprocess.run(["convert", *words, "-format", "%[fx:mean]", "info:"], capture_output=True, text=True, check=True)
    return float(told.stdout)


def extents(doc):
    """Of everything but texts, those in blocks left aside too."""
    return bbox.extents(e for e in disassemble.recursive_decompose(doc.modelspace()) if e.dxftype() not in LETTERS)


class Import(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def convert(self, path, *words):
        out = os.path.join(self.folder.name, "out.dxf")
        result = subprocess.run([QVDRAW, "convert", path, "-o", out, *words], capture_output=True, text=True, timeout=120)
        self.assertEqual(result.returncode, 0, result.stderr)
        doc = ezdxf.readfile(out)
        self.assertEqual(doc.audit().errors, [], path)
        read = subprocess.run(["ogrinfo", "-q", "-al", out], capture_output=True, text=True, timeout=120)
        self.assertEqual((read.returncode, "ERROR" in read.stderr), (0, False), path)
        return doc, result.stderr

    def lost_ink(self, path):
        """The share of what a drawing shows that its conversion does not show within a pixel, and the other way."""
        out = os.path.join(self.folder.name, "out.dxf")
        self.convert(path)
        info = [json.loads(subprocess.run([QVDRAW, "info", file, "--json"], capture_output=True, check=True).stdout) for file in (path, out)]
        old, new = (i["file"] for i in info)
        unit = {1: 25.4, 2: 304.8, 3: 1609344, 5: 10, 6: 1000, 7: 1000000}.get(old["unit"], 1)
        extent = info[0]["extent"]
        margin = 0.02 * max(extent[2] - extent[0], extent[3] - extent[1]) or 1
        extent = [v + side * margin for v, side in zip(extent, (-1, -1, 1, 1))]
        windows = extent, [(v + o) * unit - p for v, o, p in zip(extent, old["offset"] * 2, new["offset"] * 2)]
        pictures = [os.path.join(self.folder.name, name) for name in ("old.png", "new.png")]
        for file, window, picture in zip((path, out), windows, pictures):
            place = ",".join(f"{v:.9g}" for v in window)
            subprocess.run([QVDRAW, "render", file, "-o", picture, "--size", "700x700", f"--window={place}"], capture_output=True, check=True)
        grown = ["-morphology", "Erode", "Square:1"]
        return [ink_of(a, "(", b, *grown, ")", "-compose", "MinusDst", "-composite") / max(ink_of(a, "-negate"), 1e-9) for a, b in (pictures, pictures[::-1])]

    def compare(self, one, other, path):
        self.assertEqual(one.has_data, other.has_data, path)
        if not one.has_data:
            return
        slack = 0.001 * max(one.size.x, one.size.y) + 0.02  # and what two decimals lose
        for a, b in ((one.extmin, other.extmin), (one.extmax, other.extmax)):
            self.assertLess(max(abs(a.x - b.x), abs(a.y - b.y)), slack, f"{path}: {one} {other}")

    def test_drawings_of_every_release_keep_their_extents(self):
        for release in RELEASES:
            doc = compose(release)
            expected = extents(doc)
            for form in ("asc", "bin"):
                path = os.path.join(self.folder.name, f"{release}.{form}.dxf")
                doc.saveas(path, fmt=form)
                made, _ = self.convert(path, "--unit", "none")
                self.compare(expected, extents(made), path)
                exploded, _ = self.convert(path, "--unit", "none", "--explode")
                self.compare(expected, extents(exploded), path)
                self.assertEqual(len(exploded.modelspace().query("INSERT")), 0)
                self.assertEqual(len(exploded.modelspace().query("ARC CIRCLE")), 3, release)
                if release == "R12" or form == "bin":
                    self.assertLess(max(self.lost_ink(path)), 0.01, path)

    def test_units_texts_and_reports(self):
        doc = ezdxf.new("R2010")
        doc.header["$INSUNITS"] = 6
        doc.modelspace().add_line((0, 0), (1.5, 0))
        doc.modelspace().add_mtext("梁 %%c8", dxfattribs={"char_height": 0.0035})
        doc.modelspace().add_text("Φ8 %%130 ±0.000 m%%140", dxfattribs={"height": 0.003})
        doc.modelspace().add_text("±" * 40, dxfattribs={"height": 0.002})
        path = os.path.join(self.folder.name, "metres.dxf")
        doc.saveas(path)
        made, said = self.convert(path, "--portable")
        self.assertIn("1 MTEXT converted; lengths multiplied by 1000", said)
        self.assertEqual(made.modelspace().query("LINE").first.dxf.end.x, 1500)
        self.assertNotIn("two decimals", said)
        self.assertIn("two decimals are 0.67 % of the drawing's size", self.convert(path, "--unit", "none")[1])
        self.assertIn("keep the fonts' own signs, since their codes would not fit: 1", said)
        texts = {t.dxf.text: t.dxf.height for t in made.modelspace().query("TEXT")}
        self.assertEqual([len(text) for text, height in texts.items() if height == 2], [40])
        self.assertEqual({text: height for text, height in texts.items() if height != 2}, {"梁 %%c8": 3.5, "Φ8 %%130 %%p0.000 m\\U+00B2": 3})
        told = subprocess.run([QVDRAW, "info", path, "--json"], capture_output=True, text=True, timeout=60)
        file = json.loads(told.stdout)["file"]
        self.assertEqual((file["encoding"], file["unit"], file["complete"]), ("UTF-8", 6, True))
        self.assertEqual({k["kind"]: k["converted"] for k in file["kinds"]}, {"LINE": 0, "MTEXT": 1, "TEXT": 0})

    @unittest.skipUnless(os.environ.get("QV_DRAWINGS"), "QV_DRAWINGS names no folder of drawings")
    def test_drawings_of_a_folder(self):
        for path in sorted(glob.glob(os.path.join(os.environ["QV_DRAWINGS"], "**", "*.[dD][xX][fF]"), recursive=True)):
            lost = self.lost_ink(path)
            made, _ = self.convert(path, "--unit", "none")
            try:
                other = extents(recover.readfile(path)[0])
            except (ezdxf.DXFError, AttributeError):
                other = extents(made)  # what the other program cannot read
            mine = extents(made)
            off = 0
            if other.has_data and mine.has_data:
                apart = [abs(a - b) for p, q in ((mine.extmin, other.extmin), (mine.extmax, other.extmax)) for a, b in zip(p.xyz[:2], q.xyz[:2])]
                off = max(0, max(apart) - 0.005) / max(other.size.x, other.size.y, 1e-9)  # less what two decimals lose
            told = f"{os.path.basename(path)}: lost {lost[0]:.2%}, added {lost[1]:.2%}; extents differ by {off:.3%}"
            print(told + (" *" if max(lost) > 0.01 or off > 0.001 else ""))


unittest.main()

"""Runs qvdraw as a user would, and lets other programs judge its drawings: qvdraw_test.py [EMULATOR] QVDRAW"""

import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest

QVDRAW = sys.argv[1:]
del sys.argv[1:]
# The kinds of pictures, and how their files begin.
PICTURES = {".png": b"\x89PNG", ".svg": b"<?xml", ".pdf": b"%PDF"}
if QVDRAW[-1].endswith(".exe"):
    PICTURES = {".png": b"\x89PNG", ".emf": b"\x01\0\0\0"}


def run(*words, **environment):
    return subprocess.run([*QVDRAW, *words], capture_output=True, text=True, timeout=120, env={**os.environ, **environment})


class Demo(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        cls.out = os.path.join(cls.directory.name, "new", "out")
        cls.result = run("demo", "--out", cls.out)
        names = sorted(name for name in os.listdir(cls.out) if name.endswith(".dxf"))
        cls.drawings = [os.path.join(cls.out, name) for name in names]

    @classmethod
    def tearDownClass(cls):
        cls.directory.cleanup()

    def test_every_drawing_comes_in_every_form(self):
        self.assertEqual((self.result.returncode, self.result.stderr), (0, ""))
        self.assertTrue(self.drawings)
        for drawing in self.drawings:
            for ending, start in PICTURES.items():
                with open(drawing[:-4] + ending, "rb") as file:
                    self.assertEqual(file.read(len(start)), start)

    def test_lines_end_in_cr_lf_and_codes_are_padded(self):
        for drawing in self.drawings:
            with open(drawing, "rb") as file:
                lines = file.read().split(b"\r\n")
            self.assertEqual(lines.pop(), b"")
            self.assertFalse([line for line in lines if b"\n" in line or b"\r" in line])
            self.assertFalse([code for code in lines[::2] if not re.fullmatch(rb"  \d| \d\d", code)])

    def test_other_readers_open_the_drawings(self):
        import ezdxf

        for drawing in self.drawings:
            document = ezdxf.readfile(drawing)
            auditor = document.audit()
            self.assertEqual((auditor.errors, auditor.fixes), ([], []))
            info = json.loads(run("info", drawing, "--json").stdout)
            self.assertEqual(len(document.modelspace()), sum(info["entities"].values()))
            ogr = subprocess.run(["ogrinfo", "-so", drawing, "entities"], capture_output=True, text=True)
            self.assertEqual(ogr.returncode, 0)
            self.assertNotIn("ERROR", ogr.stdout + ogr.stderr)

    def test_a_loaded_drawing_is_shown_as_the_composed_one(self):
        for drawing in self.drawings:
            again = os.path.join(self.out, "again.png")
            picture = drawing[:-4] + ".png"
            with open(picture, "rb") as file:
                size = "%dx%d" % struct.unpack(">16x2I", file.read(24))
            self.assertEqual(run("render", drawing, "-o", again, "--size", size).returncode, 0)
            self.expect_same_picture(again, picture, 0.002)

    def test_render_takes_windows_views_and_backgrounds(self):
        drawing = self.drawings[0]
        for options in (
            ["--window", "0,-600,3000,600"],
            ["--view", "30,45"],
            ["--background", "black", "--size", "320x200"],
        ):
            for ending in (*PICTURES, ".PNG"):
                out = os.path.join(self.out, "view" + ending)
                result = run("render", drawing, "-o", out, *options)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertGreater(os.path.getsize(out), 100)
                os.remove(out)

    def test_diff_tells_and_draws_what_differs(self):
        old, new = self.drawings[0], os.path.join(self.out, "revised.dxf")
        with open(old, "rb") as file:
            content = file.read()
        circle = b"  0\r\nCIRCLE\r\n  8\r\n0\r\n 10\r\n500.00\r\n 20\r\n700.00\r\n 30\r\n0.00\r\n 40\r\n90.00\r\n"
        at = content.index(b"  0", content.index(b"ENTITIES"))
        with open(new, "wb") as file:
            file.write(content[:at] + circle + content[at:])
        same = run("diff", old, old)
        self.assertEqual((same.returncode, same.stdout), (0, ""))
        for ending in (*PICTURES, ".dxf"):
            out = os.path.join(self.out, "both" + ending)
            result = run("diff", old, new, "--json", "-o", out)
            self.assertEqual((result.returncode, result.stderr), (1, ""))
            self.assertGreater(os.path.getsize(out), 1000)
            os.remove(out)
        told = json.loads(result.stdout)
        self.assertEqual([(d["change"], d["new"]["kind"], d["box"]) for d in told["differences"]],
                         [("added", "CIRCLE", [410, 610, 590, 790])])
        self.assertIn("removed CIRCLE 1 on 0", run("diff", new, old).stdout)
        self.assertEqual(run("diff", old, "none.dxf").returncode, 2)
        os.remove(new)

    def test_slides_are_listed_shown_and_converted(self):
        library = os.path.join(self.out, "details.slb")
        listing = run("slides", library).stdout.splitlines()
        self.assertEqual(len(listing), 12)
        slides = os.path.join(self.out, "slides")
        sheet = os.path.join(self.out, "sheet.png")
        self.assertEqual(run("slides", library, "--extract", slides, "-o", sheet).returncode, 0)
        self.assertEqual(len(os.listdir(slides)), 12)
        self.assertGreater(os.path.getsize(sheet), 1000)
        import ezdxf

        for name in (os.path.join(slides, "DOOR.SLD"), library[:-4] + ".door"):
            for ending in (*PICTURES, ".dxf", ".scr"):
                out = os.path.join(self.out, "slide" + ending)
                result = run("slide", name, "-o", out)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertGreater(os.path.getsize(out), 100)
            drawing = os.path.join(self.out, "slide.dxf")
            self.assertEqual(ezdxf.readfile(drawing).audit().errors, [])
            ogr = subprocess.run(["ogrinfo", "-so", drawing, "entities"], capture_output=True, text=True)
            self.assertIn("Feature Count: 20", ogr.stdout)
            os.remove(drawing)

    def test_slides_keep_their_colours_and_empty_ones_are_told(self):
        header = b"AutoCAD Slide\r\n\x1a\0V\x02" + struct.pack("<HHIHH", 640, 480, 13327000, 0, 0x1234)
        for records, script, said in ((b"\xff\xff" + struct.pack("<4h", 100, 100, 200, 150), "color 7\nline 100.000", ""),
                                      (b"", "", "the slide is empty")):
            slide = os.path.join(self.out, "colour.sld")
            with open(slide, "wb") as file:
                file.write(header + records + b"\x00\xfc")
            result = run("slide", slide, "-o", slide + ".scr")
            self.assertEqual(result.returncode, 0)
            self.assertIn(said, result.stderr)
            with open(slide + ".scr", encoding="ascii") as file:
                self.assertTrue(file.read().startswith(script))

    def test_fonts_are_described_shown_made_plain_and_chosen(self):
        font = os.path.join(os.path.dirname(QVDRAW[-1]), "fonts", "txt.shx")
        with tempfile.TemporaryDirectory() as fonts:
            path = lambda name: os.path.join(fonts, name)
            self.assertIn("a text font", run("fonts", font).stdout)
            self.assertRegex(run("fonts", font, "-o", path("Mine.SHX")).stdout, "2[0-9][0-9] characters")
            run("fonts", font, "-o", path("shapes.png"))
            self.assertGreater(os.path.getsize(path("shapes.png")), 5000)
            # Made plain, it draws the same strokes; a drawing finds it by the name in its style.
            words = ("0 SECTION 2 TABLES 0 TABLE 2 STYLE 0 STYLE 2 S 70 0 3 mine 0 ENDTAB 0 ENDSEC 0 SECTION 2 ENTITIES "
                     "0 TEXT 8 0 10 0 20 0 40 5 1 Bar3%%c25 7 S 0 ENDSEC 0 EOF")
            with open(path("texts.dxf"), "w", encoding="ascii") as file:
                file.write(words.replace(" ", "\n"))
            said = [run("render", path("texts.dxf"), "-o", path(name), QVTOOLS_FONTS=folder).stderr
                    for name, folder in (("a.png", fonts), ("b.png", ""))]
            self.assertEqual(said, ["", f"qvdraw: {path('texts.dxf')}: its texts are drawn in other fonts than mine.shx -> txt.shx, hztxt.shx\n"])
            with open(path("a.png"), "rb") as a, open(path("b.png"), "rb") as b:
                self.assertEqual(a.read(), b.read())
            self.assertIn("it is no shape file", run("fonts", path("texts.dxf")).stderr)

    def test_a_font_that_cannot_be_used_is_told(self):
        with tempfile.TemporaryDirectory() as fonts:
            with open(os.path.join(fonts, "txt.shx"), "wb") as file:
                file.write(b"AutoCAD-86 unifont 1.0\r\n\x1a" + bytes(60))
            said = run("info", self.drawings[0], QVTOOLS_FONTS=fonts).stderr
        self.assertIn('it is no shape font where a text font is needed', said)

    def pixels_of(self, lines):
        words = " ".join(lines).split()
        drawing = os.path.join(self.out, "meant.dxf")
        with open(drawing, "w", encoding="ascii") as file:
            file.writelines(f"{code:>3}\n{value}\n" for code, value in zip(words[::2], words[1::2]))
        ppm = os.path.join(self.out, "meant.png")
        self.assertEqual(run("render", drawing, "--window", "-10,-10,110,60", "--size", "480x280", "-o", ppm).returncode, 0)
        return subprocess.run(["convert", ppm, "-depth", "8", "rgb:-"], capture_output=True, check=True, timeout=60).stdout

    def test_a_block_takes_layer_and_color_from_its_insert(self):
        lines = ["0 SECTION 2 TABLES 0 TABLE 2 LAYER 70 4 0 LAYER 2 0 70 64 62 7 0 LAYER 2 OFF 70 64 62 -6 0 LAYER 2 RED 70 64 62 1",
                 "0 LAYER 2 BLUE 70 64 62 5 0 ENDTAB 0 ENDSEC 0 SECTION 2 BLOCKS 0 BLOCK 8 0 2 B 10 0 20 0",
                 "0 LINE 8 0 10 0 20 0 11 100 21 0 0 LINE 8 RED 10 0 20 10 11 100 21 10 0 LINE 8 RED 62 0 10 0 20 20 11 100 21 20",
                 "0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES 0 INSERT 8 OFF 2 B 10 0 20 0 0 INSERT 8 BLUE 2 B 10 0 20 30 0 ENDSEC 0 EOF"]
        pixels = self.pixels_of(lines)
        width = len(pixels) // 3 // 280
        column = [pixels[3 * (y * width + 240):3 * (y * width + 240) + 3] for y in range(280)]
        shown = [color for color in reversed(column) if color != b"\xff\xff\xff"]
        red, blue, magenta = b"\xff\0\0", b"\0\0\xff", b"\xff\0\xff"
        self.assertEqual(shown, [red, magenta, blue, red, blue], "what lies on layer 0 of an insert that is off is not seen")

    def test_layers_and_widths_are_shown_as_they_are_meant(self):
        lines = ["0 SECTION 2 TABLES 0 TABLE 2 LTYPE 70 1 0 LTYPE 2 DASHED 70 64 3 d 72 65 73 2 40 2 49 1 49 -1 0 ENDTAB",
                 "0 TABLE 2 LAYER 70 2 0 LAYER 2 RED 70 64 62 1 6 DASHED 0 LAYER 2 ICE 70 65 62 5 6 CONTINUOUS 0 ENDTAB 0 ENDSEC",
                 "0 SECTION 2 ENTITIES 0 LINE 8 RED 62 256 10 0 20 0 11 100 21 0 0 CIRCLE 8 ICE 10 500 20 500 40 400",
                 "0 POLYLINE 8 RED 66 1 40 8 41 8 0 VERTEX 8 RED 10 0 20 50 0 VERTEX 8 RED 10 50 20 50 40 2 41 2",
                 "0 VERTEX 8 RED 10 100 20 50 0 SEQEND 0 ENDSEC 0 EOF"]
        pixels = self.pixels_of(lines)
        width = len(pixels) // 3 // 280
        colors = {pixels[i:i + 3] for i in range(0, len(pixels), 3)}
        self.assertIn(b"\xff\0\0", colors)
        self.assertNotIn(b"\0\0\xff", colors, "a frozen layer is not shown")
        column = [pixels[3 * (y * width + 140):3 * (y * width + 140) + 3] for y in range(280)]
        self.assertGreater(column.count(b"\xff\0\0"), 20, "a vertex without a width has the polyline's")

    def test_engineering_data_is_shown(self):
        field = os.path.join(self.out, "slab.field")
        with open(field, "rb") as file:
            self.assertRegex(file.readline(), rb"^\d+,\d{5}\r\n$")
        picture = os.path.join(self.out, "contour.png")
        self.assertEqual(run("contour", field, "-o", picture, "--value", "0").returncode, 0)
        self.expect_same_picture(picture, os.path.join(self.out, "slab.png"), 0.002)
        self.assertAlmostEqual(float(run("value", field, "3", "4").stdout), 9.021, delta=0.005)
        self.assertIn("outside", run("value", field, "-3", "4", "--value", "2").stdout)
        database = os.path.join(self.out, "beams.dat")
        body = b"[ Beam1 ]\r\nb = 250\r\nh = 50%%\r\n"
        with open(database, "wb") as file:
            file.write(body + b"[Index]\r\nBeam1 = 0 %d\r\nIndexPosition = %12d\r\n" % (len(body), len(body)))
        self.assertEqual(run("db", database).stdout, "Beam1\n")
        self.assertEqual(json.loads(run("db", database, "--json").stdout), ["Beam1"])
        self.assertEqual(json.loads(run("db", database, "Beam1", "--json").stdout), {"b": "250", "h": "50%"})
        self.assertEqual(run("db", database, "Beam1", "h").stdout, "50%\n")
        for words in ([field], [database, "Beam2"], [database, "Beam1", "x"]):
            self.assertEqual(run("db", *words).returncode, 1)
        options = os.path.join(self.out, "UserOpt.dat")
        with open(options, "wb") as file:
            file.write(b"t\r\n1,UC-1,31.5\r\n")
        self.assertRegex(run("materials").stdout, r"C60 .*\nUC-1  +10.00")
        self.assertRegex(run("materials", "--file", options).stdout, r"UC-1  +31.50")
        self.assertEqual(run("contour", field, "-o", picture, "--value", "5").returncode, 2)

    def expect_same_picture(self, a, b, share):
        """The pictures have one size, and at most a share of their pixels differs: coordinates are rounded in files."""
        told = subprocess.run(["compare", "-metric", "AE", a, b, "null:"], capture_output=True, text=True)
        self.assertLess(told.returncode, 2, told.stderr)
        with open(a, "rb") as file:
            width, height = struct.unpack(">16x2I", file.read(24))
        self.assertLess(float(told.stderr), share * width * height)


class Samples(unittest.TestCase):
    """Sheets of data that a user has changed."""

    def test_changed_data_changes_the_sheets_and_bad_data_is_told(self):
        samples = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../apps/qvdraw/samples")
        for old, new, told in ((b"office = ", b"office = XYZ", ""), (b"bay = 3600", b"bay = wide", '"wide" is no number'),
                               (b"spans = 7800", b"spans = 900000*7800", "too many numbers"), (b"heights = ", b"heights = 0*", "too few numbers"),
                               (b"stair bay = ", b"stair bay = 9", "there is no axis"), (b"[bars]", b"[rods]", "no section [bars]")):
            with tempfile.TemporaryDirectory() as folder:
                for name in os.listdir(samples):
                    with open(os.path.join(samples, name), "rb") as source, open(os.path.join(folder, name), "wb") as copy:
                        copy.write(source.read().replace(old, new))
                out = os.path.join(folder, "out")
                result = run("demo", "--samples", folder, "--out", out)
                self.assertIn(told, result.stderr)
                self.assertEqual(result.returncode, 1 if told else 0)
                if not told:
                    with open(os.path.join(out, "beam.dxf"), "rb") as drawing:
                        self.assertIn(b"XYZ", drawing.read())


class BadCalls(unittest.TestCase):
    def expect(self, code, words, message):
        result = run(*words)
        self.assertEqual(result.returncode, code, words)
        self.assertIn(message, result.stderr)
        self.assertEqual(result.stdout, "")

    def test_usage_errors_exit_with_2(self):
        for words, message in (
            ([], "a command is missing"),
            (["draw"], "not expected: draw"),
            (["demo"], "--out is required"),
            (["demo", "--out"], "1 required DIR missing"),
            (["demo", "--out", "a", "--fast"], "not expected: --fast"),
            (["render", "-o", "a.png"], "IN.dxf is required"),
            (["render", "a", "b", "-o", "c.png"], "not expected: b"),
            (["render", "a.dxf", "-o", "a.png", "--size", "9"], "--size wants 2 numbers"),
            (["render", "a.dxf", "-o", "a.png", "--size", "9,1e9"], "--size is 16 to 16000"),
            (["render", "a.dxf", "-o", "a.png", "--window", "1,1,1,2"], "--window is empty"),
        ):
            self.expect(2, words, message)

    def test_failures_exit_with_1_and_one_line(self):
        with tempfile.TemporaryDirectory() as directory:

            def write(name, content):
                path = os.path.join(directory, name)
                with open(path, "wb") as file:
                    file.write(content)
                return path

            empty = write("empty.dxf", b"")
            good = write("good.dxf", b"  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n")
            for words, message in (
                (["info", os.path.join(directory, "none.dxf")], "no such file"),
                (["info", directory], "is a directory"),
                (["info", empty], "is no DXF drawing"),
                (["slide", good, "-o", os.path.join(directory, "a.png")], "is no slide file"),
                (["slides", os.path.join(directory, "none.slb")], "no such file"),
                (["render", good, "-o", os.path.join(directory, "none", "a.png")], "cannot be written"),
                (["demo", "--out", os.path.join(good, "out")], "cannot be made a directory"),
                (["demo", "--out", directory, "--samples", directory], "project.txt: no such file"),
            ):
                self.expect(1, words, message)
                self.assertEqual(run(*words).stderr.count("\n"), 1)
            self.assertEqual(run("render", good, "-o", os.path.join(directory, "a.png")).returncode, 0)
            if not QVDRAW[-1].endswith(".exe"):
                os.mkfifo(os.path.join(directory, "pipe"))
                for endless in ("/dev/zero", os.path.join(directory, "pipe")):
                    for command in ("info", "fonts", "db", "slides", "value"):
                        self.expect(1, [command, endless] + ["1", "1"] * (command == "value"), "is a device or a pipe")

    def test_help_and_version(self):
        self.assertEqual(run("help").stdout, run("--help").stdout)
        commands = re.findall(r"^  (\w+) +\w", run("help").stdout.split("Subcommands:")[1], re.M)
        self.assertGreater(len(commands), 9)
        for command in commands:
            self.assertIn("qvdraw " + command, run(command, "--help").stdout)
        self.assertRegex(run("--version").stdout, r"^qvdraw \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    unittest.main()

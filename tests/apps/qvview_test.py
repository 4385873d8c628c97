"""Drives qvview on a virtual screen as a person would: mouse, wheel and keys go in, screenshots and the clipboard come
out. Exits with 77 (skipped) where the programs for that are missing. QVVIEW_SHOTS names a directory for pictures of
every step."""

import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

QVVIEW = sys.argv.pop(1)
TOOLS = ("Xvfb", "xdotool", "import", "xclip")
SHOTS = os.environ.get("QVVIEW_SHOTS")
PATIENCE = 30  # seconds; sanitized builds are slow

# In every drawing: a frame of four lines, a circle, a line across it, a text.
FRAME = [(0, 0, 8000, 0), (8000, 0, 8000, 6000), (8000, 6000, 0, 6000), (0, 6000, 0, 0)]


def groups(*pairs):
    return "".join("%3d\r\n%s\r\n" % pair for pair in pairs)


def line(x1, y1, x2, y2, layer):
    return groups((0, "LINE"), (8, layer), (10, x1), (20, y1), (11, x2), (21, y2))


def drawing(*more):
    layers = "".join(groups((0, "LAYER"), (2, n), (70, 64), (62, c), (6, "CONTINUOUS"))
                     for n, c in (("FRAME", 7), ("HOLE", 1), ("BAR", 5)))
    head = groups((0, "SECTION"), (2, "TABLES"), (0, "TABLE"), (2, "LAYER"), (70, 3)) + layers
    head += groups((0, "ENDTAB"), (0, "ENDSEC"), (0, "SECTION"), (2, "ENTITIES"))
    body = "".join(line(*ends, "FRAME") for ends in FRAME)
    body += groups((0, "CIRCLE"), (8, "HOLE"), (10, 2000), (20, 2000), (40, 500))
    body += line(1000, 2200, 7000, 2200, "BAR")
    body += groups((0, "TEXT"), (8, "FRAME"), (10, 5000), (20, 4000), (40, 300), (1, "KL-1 300x600"))
    return (head + body + "".join(more) + groups((0, "ENDSEC"), (0, "EOF"))).encode("gbk")


def png_rows(path):
    """Width, height and RGB rows of a PNG that Qt wrote: eight bits, RGB, not interlaced."""
    with open(path, "rb") as file:
        data = file.read()
    width, height, depth, kind = struct.unpack(">IIBB", data[16:26])
    channels = {2: 3, 6: 4}[kind]
    assert depth == 8
    packed, at = b"", 8
    while at < len(data):
        size, name = struct.unpack(">I4s", data[at : at + 8])
        packed += data[at + 8 : at + 8 + size] if name == b"IDAT" else b""
        at += size + 12
    raw, rows, before = zlib.decompress(packed), [], bytearray(width * channels)
    stride = width * channels + 1
    for y in range(height):
        kind, row = raw[y * stride], bytearray(raw[y * stride + 1 : (y + 1) * stride])
        for i in range(len(row)):
            a = row[i - channels] if i >= channels else 0
            b, c = before[i], before[i - channels] if i >= channels else 0
            if kind == 4:
                p = a + b - c
                guess = min((a, b, c), key=lambda v: abs(p - v))
            else:
                guess = (0, a, b, (a + b) // 2)[kind]
            row[i] = (row[i] + guess) & 255
        rows.append(b"".join(bytes(row[i : i + 3]) for i in range(0, len(row), channels)))
        before = row
    return rows


class Screen:
    """A virtual screen of its own, with the mouse and the keyboard at hand."""

    WIDTH, HEIGHT = 1300, 850

    def __init__(self):
        end, other = os.pipe()
        size = "%dx%dx24" % (self.WIDTH, self.HEIGHT)
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(other), "-screen", "0", size, "-nolisten", "tcp"],
                                       pass_fds=[other], stderr=subprocess.DEVNULL)
        os.close(other)
        with os.fdopen(end) as pipe:
            self.environment = {**os.environ, "DISPLAY": ":" + pipe.readline().strip(), "QT_QPA_PLATFORM": "xcb"}

    def close(self):
        self.server.terminate()
        self.server.wait()

    def run(self, *words, **options):
        return subprocess.run(words, env=self.environment, timeout=PATIENCE, **options)

    def do(self, *words):
        self.run("xdotool", *map(str, words), check=True, stdout=subprocess.DEVNULL)

    def titles(self):
        found = self.run("xdotool", "search", "--onlyvisible", "--name", ".", capture_output=True, text=True).stdout
        return [self.run("xdotool", "getwindowname", w, capture_output=True, text=True).stdout.strip()
                for w in found.split()]

    def picture(self):
        """The screen as rows of RGB bytes."""
        data = self.run("import", "-window", "root", "-depth", "8", "ppm:-", capture_output=True).stdout
        head = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        width, height = int(head[1]), int(head[2])
        return [data[head.end() + y * width * 3 : head.end() + (y + 1) * width * 3] for y in range(height)]


class Driven(unittest.TestCase):
    # Well inside the window of the drawing, whatever the fonts make of the rest.
    LEFT, TOP, RIGHT, BOTTOM = 20, 80, 780, 720
    AWAY = (1100, 600)

    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.screen.environment.update(XDG_CONFIG_HOME=self.path("config"), XDG_RUNTIME_DIR=self.path("run"))
        os.mkdir(self.path("run"), 0o700)
        self.write("plan.dxf", drawing())
        self.start("--language", "en", self.path("plan.dxf"))
        self.attend("plan.dxf - qvview")
        self.first = self.settled()

    def start(self, *words):
        program = subprocess.Popen([QVVIEW, *words], env=self.screen.environment)
        self.addCleanup(lambda: (program.terminate(), program.wait()))

    def path(self, name):
        return os.path.join(self.directory.name, name)

    def write(self, name, content):
        with open(self.path(name) + "~", "wb") as file:
            file.write(content)
        os.rename(self.path(name) + "~", self.path(name))

    def until(self, condition, what):
        end = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), end, "waited in vain until " + what)
            time.sleep(0.05)

    def attend(self, title):
        """Waits for a window and gives it the keyboard: there is no window manager to do so."""
        self.until(lambda: title in self.screen.titles(), "there is a window " + title)
        self.screen.do("search", "--onlyvisible", "--name", title, "windowfocus")
        time.sleep(0.3)

    def type_path(self, title, path):
        """Names a file in a file dialog."""
        self.attend(title)
        self.key("ctrl+a")
        self.screen.do("type", path)
        self.key("Return")

    def expect_same(self, a, b, message=None):
        differing = sum(row != other for row, other in zip(a, b))
        self.assertEqual((len(a), differing), (len(b), 0), message)

    def expect_other(self, a, b, message=None):
        self.assertTrue(a != b, message or "the picture has not changed")

    def shown(self):
        return [row[self.LEFT * 3 : self.RIGHT * 3] for row in self.screen.picture()[self.TOP : self.BOTTOM]]

    def settled(self):
        """What the drawing's window shows once it stays the same, without the pointer in it."""
        self.move(*self.AWAY)
        before, now = None, self.shown()
        while before != now:
            time.sleep(0.25)
            before, now = now, self.shown()
        self.shot(self.id().split(".")[-1])
        return now

    def shot(self, name):
        if SHOTS:
            path = os.path.join(SHOTS, "%s-%d.png" % (name, time.monotonic_ns() // 10**6))
            self.screen.run("import", "-window", "root", path)

    def move(self, x, y):
        self.screen.do("mousemove", x, y)

    def key(self, *keys):
        self.screen.do("key", *keys)

    def drag(self, button, start, end):
        middle = [(a + b) // 2 for a, b in zip(start, end)]
        self.screen.do("mousemove", *start, "mousedown", button, "mousemove", *middle, "sleep", 0.1,
                       "mousemove", *end, "sleep", 0.1, "mouseup", button)

    def copied(self, key):
        """What the key puts on the clipboard."""
        self.screen.run("xclip", "-selection", "clipboard", input=b"nothing yet", check=True)
        self.key(key)
        text = []

        def taken():
            out = self.screen.run("xclip", "-selection", "clipboard", "-o", capture_output=True)
            text[:] = [out.stdout.decode()]
            return out.returncode == 0 and text[0] != "nothing yet"

        self.until(taken, "something is copied")
        return text[0]

    def world(self, x, y):
        self.move(x, y)
        time.sleep(0.1)
        return tuple(map(float, self.copied("ctrl+shift+c").split(",")))

    def scale(self):
        """Pixels a unit, and the way from the world to pixels."""
        (x1, y1), (x2, y2) = self.world(100, 600), self.world(700, 200)
        scale = 600 / (x2 - x1)
        self.assertAlmostEqual(400 / (y2 - y1) / scale, 1, delta=0.01)
        return scale, lambda x, y: (round(100 + (x - x1) * scale), round(600 - (y - y1) * scale))

    def near(self, x, y, colour):
        """Whether a pixel beside (x, y) has the colour."""
        rows = self.screen.picture()
        return any(tuple(rows[y + j][3 * (x + i) : 3 * (x + i) + 3]) == colour for i in (-1, 0, 1) for j in (-1, 0, 1))

    def picks(self):
        """Kind and layer of each entity in the list of picks."""
        return [tuple(row.split("\t")[1:3]) for row in self.copied("ctrl+c").splitlines()]

    # ------------------------------------------------------------------ what a person does

    def test_the_drawing_opens_fitted(self):
        _, pixel = self.scale()
        for x, y in ((0, 3000), (4000, 6000), (8000, 1000)):
            self.assertTrue(self.near(*pixel(x, y), (0, 0, 0)), "the frame, black on white")
        self.assertTrue(self.near(*pixel(2000, 2500), (255, 0, 0)), "the circle")
        self.key("b")
        self.until(lambda: self.near(*pixel(4000, 6000), (255, 255, 255)), "the frame is white on black")
        self.key("b")
        self.expect_same(self.settled(), self.first)

    def test_the_wheel_zooms_about_the_pointer(self):
        scale, pixel = self.scale()
        at = pixel(2000, 2500)
        before = self.world(*at)
        self.screen.do("click", "--repeat", 4, "--delay", 30, 4)
        self.settled()
        after = self.world(*at)
        zoomed, _ = self.scale()
        self.assertAlmostEqual(zoomed / scale, 1.25**4, delta=0.05)
        self.assertLess(abs(after[0] - before[0]) + abs(after[1] - before[1]), 2 / zoomed)
        self.assertTrue(self.near(*at, (255, 0, 0)), "the circle's top stays under the pointer")
        self.key("BackSpace")
        self.expect_same(self.settled(), self.first)

    def test_dragging_pans_while_it_lasts_and_after(self):
        _, pixel = self.scale()
        start = pixel(8000, 3000)
        self.screen.do("mousemove", *start, "mousedown", 2, "mousemove", start[0] - 60, start[1] + 30)
        self.until(lambda: self.near(start[0] - 60, start[1] + 60, (0, 0, 0)), "the picture moves with the pointer")
        self.screen.do("mousemove", start[0] - 120, start[1] + 30, "mouseup", 2)
        self.settled()
        x, y = self.world(start[0] - 120, start[1] + 30)
        self.assertLess(abs(x - 8000) + abs(y - 3000), 60)
        self.key("BackSpace")
        self.expect_same(self.settled(), self.first)
        self.key("h")
        self.drag(1, (400, 400), (450, 420))
        self.expect_other(self.settled(), self.first, "the hand pans with the left button")

    def test_a_window_zoom_and_the_previous_view(self):
        scale, pixel = self.scale()
        self.key("z")
        self.drag(1, pixel(1400, 2600), pixel(2600, 1400))
        self.expect_other(self.settled(), self.first)
        zoomed, pixel = self.scale()
        self.assertGreater(zoomed / scale, 3)
        self.assertTrue(self.near(*pixel(2000, 2500), (255, 0, 0)))
        self.key("BackSpace")
        self.expect_same(self.settled(), self.first, "no trace of the rubber band or the cross hairs either")
        self.key("plus", "plus", "minus")
        self.settled()
        self.key("Home")
        self.expect_same(self.settled(), self.first)

    def test_a_window_picks_by_its_direction(self):
        _, pixel = self.scale()
        top, bottom = pixel(1400, 2600), pixel(2600, 1400)
        self.drag(1, top, bottom)
        self.assertEqual(self.picks(), [("Circle", "HOLE")])
        self.assertTrue(self.near(*pixel(2000, 2500), (255, 128, 0)), "what is picked stands out")
        self.drag(1, bottom, top)
        self.assertEqual(self.picks(), [("Circle", "HOLE"), ("Line", "BAR")])
        self.screen.do("mousemove", *pixel(4000, 2200), "click", 1)
        self.assertEqual(self.picks(), [("Line", "BAR")])
        self.key("Escape")
        self.expect_same(self.settled(), self.first)

    def test_views_from_the_side_and_back(self):
        self.key("6")
        self.expect_other(self.settled(), self.first)
        self.key("BackSpace")
        self.expect_same(self.settled(), self.first)

    def test_a_changed_file_is_read_again_in_the_same_view(self):
        self.screen.do("mousemove", 300, 300, "click", 4)
        zoomed = self.settled()
        self.write("plan.dxf", drawing(line(100, 100, 7900, 5900, "BAR")))
        self.until(lambda: self.shown() != zoomed, "the new line appears")
        self.settled()
        self.key("ctrl+a")
        self.assertEqual(self.picks().count(("Line", "BAR")), 2)
        self.key("Escape")
        self.write("plan.dxf", drawing())
        self.until(lambda: self.shown() == zoomed, "the line goes, and nothing else has moved")

    def test_a_bad_file_is_told_and_the_drawing_stays(self):
        self.write("bad.dxf", b"this is no drawing\n")
        self.key("ctrl+o")
        self.type_path("Open a drawing", self.path("bad.dxf"))
        time.sleep(0.5)
        self.attend("Open a drawing")
        self.shot("bad-file")
        self.key("Return")
        self.until(lambda: "Open a drawing" not in self.screen.titles(), "the box is gone")
        self.expect_same(self.settled(), self.first)
        self.assertIn("plan.dxf - qvview", self.screen.titles())

    def test_questions_about_the_program_need_no_display(self):
        alone = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        for question, answer in (("--help", "FILE.dxf"), ("-h", "--language"), ("--version", "qvview ")):
            told = subprocess.run([QVVIEW, question], env=alone, capture_output=True, text=True, timeout=60)
            self.assertEqual(told.returncode, 0, told.stderr)
            self.assertIn(answer, told.stdout)
        # Where the question is not all that is said, the program starts as ever.
        told = subprocess.run([QVVIEW, "-platform", "offscreen", "--version"], env=alone, capture_output=True,
                              text=True, timeout=60)
        self.assertEqual((told.returncode, told.stdout[:7]), (0, "qvview "), told.stderr)

    def test_what_is_seen_is_exported(self):
        self.screen.do("mousemove", 300, 300, "click", 4)
        seen = self.settled()
        for ending, start in (("png", b"\x89PNG"), ("svg", b"<?xml"), ("pdf", b"%PDF")):
            out = self.path("out." + ending)
            self.attend("plan.dxf - qvview")
            self.key("ctrl+e")
            self.type_path("Export what is seen", out)
            self.until(lambda: os.path.exists(out), "the picture is written")
            with open(out, "rb") as file:
                self.assertEqual(file.read(len(start)), start)
        # The picture holds what the screen showed, wherever the window of the drawing begins.
        rows = png_rows(self.path("out.png"))
        width = self.RIGHT - self.LEFT
        at = [(top, left) for top in range(self.TOP) for left in range(self.LEFT + 1)
              if all(rows[top + y][3 * left : 3 * (left + width)] == row for y, row in enumerate(seen))]
        self.assertEqual(len(at), 1)


if __name__ == "__main__":
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        sys.exit(77)
    if SHOTS:
        os.makedirs(SHOTS, exist_ok=True)
    unittest.main()

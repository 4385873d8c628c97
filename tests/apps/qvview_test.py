"""Drives qvview on a virtual screen as a person would: mouse, wheel and keys go in, screenshots and the clipboard come
out. QVVIEW_SHOTS names a directory for pictures of every step."""

import os
import re
import subprocess
import sys
import tempfile
import time
import unittest

QVVIEW = sys.argv.pop(1)
SHOTS = os.environ.get("QVVIEW_SHOTS")
PATIENCE = 30  # seconds; sanitized builds are slow
BLACK, WHITE, RED, PICKED = (0, 0, 0), (255, 255, 255), (255, 0, 0), (255, 128, 0)


def groups(*pairs):
    return "".join("%3d\r\n%s\r\n" % pair for pair in pairs)


def line(x1, y1, x2, y2, layer):
    return groups((0, "LINE"), (8, layer), (10, x1), (20, y1), (11, x2), (21, y2))


def drawing(*more):
    """A frame of four lines, a circle about (2000, 2000), a line across it, a text."""
    layers = "".join(groups((0, "LAYER"), (2, n), (70, 64), (62, c), (6, "CONTINUOUS"))
                     for n, c in (("FRAME", 7), ("HOLE", 1), ("BAR", 5)))
    head = groups((0, "SECTION"), (2, "TABLES"), (0, "TABLE"), (2, "LAYER"), (70, 3)) + layers
    head += groups((0, "ENDTAB"), (0, "ENDSEC"), (0, "SECTION"), (2, "ENTITIES"))
    frame = ((0, 0, 8000, 0), (8000, 0, 8000, 6000), (8000, 6000, 0, 6000), (0, 6000, 0, 0))
    body = "".join(line(*ends, "FRAME") for ends in frame)
    body += groups((0, "CIRCLE"), (8, "HOLE"), (10, 2000), (20, 2000), (40, 500))
    body += line(1000, 2200, 7000, 2200, "BAR")
    body += groups((0, "TEXT"), (8, "FRAME"), (10, 5000), (20, 4000), (40, 300), (1, "KL-1 300x600"))
    return (head + body + "".join(more) + groups((0, "ENDSEC"), (0, "EOF"))).encode("gbk")


class Journey(unittest.TestCase):
    # Well inside the window of the drawing, whatever the fonts make of the rest.
    LEFT, TOP, RIGHT, BOTTOM = 20, 80, 780, 720
    AWAY = (1100, 600)

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.path = lambda name: os.path.join(directory.name, name)
        end, other = os.pipe()
        # Without -noreset a screen whose last client has gone is made anew, and takes no other client meanwhile.
        server = subprocess.Popen(["Xvfb", "-displayfd", str(other), "-screen", "0", "1300x850x24", "-nolisten", "tcp",
                                   "-noreset"],
                                  pass_fds=[other], stderr=subprocess.DEVNULL)
        self.addCleanup(lambda: (server.terminate(), server.wait()))
        os.close(other)
        with os.fdopen(end) as pipe:
            display = ":" + pipe.readline().strip()
        os.mkdir(self.path("run"), 0o700)
        self.environment = {**os.environ, "HOME": directory.name, "DISPLAY": display, "QT_QPA_PLATFORM": "xcb",
                            "XDG_CONFIG_HOME": self.path("config"), "XDG_RUNTIME_DIR": self.path("run")}
        self.write("plan.dxf", drawing())
        viewer = subprocess.Popen([QVVIEW, "--language", "en", self.path("plan.dxf")], env=self.environment)
        self.addCleanup(lambda: (viewer.terminate(), viewer.wait()))
        self.attend("plan.dxf - qvview")
        self.first = self.settled()

    def write(self, name, content):
        with open(self.path(name) + "~", "wb") as file:
            file.write(content)
        os.rename(self.path(name) + "~", self.path(name))

    def run_tool(self, *words, **options):
        return subprocess.run(words, env=self.environment, timeout=PATIENCE, **options)

    def do(self, *words):
        self.run_tool("xdotool", *map(str, words), check=True, stdout=subprocess.DEVNULL)

    def titles(self):
        found = self.run_tool("xdotool", "search", "--onlyvisible", "--name", ".", capture_output=True, text=True)
        return [self.run_tool("xdotool", "getwindowname", w, capture_output=True, text=True).stdout.strip()
                for w in found.stdout.split()]

    def until(self, condition, what):
        end = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), end, "waited in vain until " + what)
            time.sleep(0.05)

    def attend(self, title):
        """Waits for a window and gives it the keyboard: there is no window manager to do so."""
        self.until(lambda: title in self.titles(), "there is a window " + title)
        self.do("search", "--onlyvisible", "--name", title, "windowfocus")
        time.sleep(0.3)

    def type_path(self, title, path):
        """Names a file in a file dialog."""
        self.attend(title)
        self.do("key", "ctrl+a")
        self.do("type", path)
        self.do("key", "Return")

    def screen(self):
        """The screen as rows of RGB bytes."""
        data = self.run_tool("import", "-window", "root", "-depth", "8", "ppm:-", capture_output=True).stdout
        head = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        width, height = int(head[1]), int(head[2])
        return [data[head.end() + y * width * 3 : head.end() + (y + 1) * width * 3] for y in range(height)]

    def shown(self):
        return [row[self.LEFT * 3 : self.RIGHT * 3] for row in self.screen()[self.TOP : self.BOTTOM]]

    def settled(self):
        """What the drawing's window shows once it stays the same, without the pointer in it."""
        self.do("mousemove", *self.AWAY)
        before, now = None, self.shown()
        while before != now:
            time.sleep(0.25)
            before, now = now, self.shown()
        if SHOTS:
            self.run_tool("import", "-window", "root", os.path.join(SHOTS, "%d.png" % (time.monotonic_ns() // 10**6)))
        return now

    def expect_back(self, *keys):
        """The keys bring back the first picture, to the last pixel."""
        self.do("key", *keys)
        self.assertTrue(self.settled() == self.first, keys)

    def near(self, at, colour):
        """Whether a pixel at or beside a place has the colour."""
        rows, (x, y) = self.screen(), at
        return any(tuple(rows[y + j][3 * (x + i) : 3 * (x + i) + 3]) == colour for i in (-1, 0, 1) for j in (-1, 0, 1))

    def copied(self, key):
        """What the key puts on the clipboard."""
        self.run_tool("xclip", "-selection", "clipboard", input=b"nothing yet", check=True)
        self.do("key", key)
        text = []

        def taken():
            out = self.run_tool("xclip", "-selection", "clipboard", "-o", capture_output=True)
            text[:] = [out.stdout.decode()]
            return out.returncode == 0 and text[0] != "nothing yet"

        self.until(taken, "something is copied")
        return text[0]

    def world(self, x, y):
        self.do("mousemove", x, y)
        time.sleep(0.1)
        return tuple(map(float, self.copied("ctrl+shift+c").split(",")))

    def scale(self):
        """Pixels a unit, and the way from the world to pixels."""
        (x1, y1), (x2, y2) = self.world(100, 600), self.world(700, 200)
        scale = 600 / (x2 - x1)
        self.assertAlmostEqual(400 / (y2 - y1) / scale, 1, delta=0.01)
        return scale, lambda x, y: (round(100 + (x - x1) * scale), round(600 - (y - y1) * scale))

    def picks(self):
        """Kind and layer of each entity in the list of picks."""
        return [tuple(row.split("\t")[1:3]) for row in self.copied("ctrl+c").splitlines()]

    def drag(self, start, end):
        middle = [(a + b) // 2 for a, b in zip(start, end)]
        self.do("mousemove", *start, "mousedown", 1, "mousemove", *middle, "sleep", 0.1,
                "mousemove", *end, "sleep", 0.1, "mouseup", 1)

    def test_a_drawing_is_looked_at(self):
        scale, pixel = self.scale()
        circle, edge = pixel(2000, 2500), pixel(8000, 3000)
        self.assertTrue(self.near(edge, BLACK) and self.near(circle, RED), "fitted, black on white")
        self.do("key", "b")
        self.until(lambda: self.near(edge, WHITE), "the frame is white on black")
        self.expect_back("b")
        # The wheel zooms about the pointer, and its turn is one step of the history.
        self.do("mousemove", *circle, "click", "--repeat", 4, "--delay", 30, 4)
        self.settled()
        self.assertAlmostEqual(self.scale()[0] / scale, 1.25**4, delta=0.05)
        self.assertTrue(self.near(circle, RED), "the circle's top stays under the pointer")
        self.expect_back("BackSpace")
        # The picture moves while it is dragged.
        self.do("mousemove", *edge, "mousedown", 2, "mousemove", edge[0] - 60, edge[1] + 30)
        self.until(lambda: self.near((edge[0] - 60, edge[1] + 60), BLACK), "the picture moves with the pointer")
        self.do("mouseup", 2)
        self.assertFalse(self.settled() == self.first)
        self.expect_back("BackSpace")
        # A window zoom leaves no trace of the rubber band or the cross hairs.
        top, bottom = pixel(1400, 2600), pixel(2600, 1400)
        self.do("key", "z")
        self.drag(top, bottom)
        self.settled()
        self.assertGreater(self.scale()[0] / scale, 3)
        self.expect_back("BackSpace")
        self.do("key", "plus", "6")
        self.assertFalse(self.settled() == self.first)
        self.expect_back("BackSpace", "Home")
        # A window picks by its direction.
        self.drag(top, bottom)
        self.assertEqual(self.picks(), [("Circle", "HOLE")])
        self.assertTrue(self.near(circle, PICKED), "what is picked stands out")
        self.drag(bottom, top)
        self.assertEqual(self.picks(), [("Circle", "HOLE"), ("Line", "BAR")])
        self.expect_back("Escape")

    def test_files_come_and_go(self):
        # A changed file is read again in the same view.
        self.do("mousemove", 300, 300, "click", 4)
        zoomed = self.settled()
        self.write("plan.dxf", drawing(line(100, 100, 7900, 5900, "BAR")))
        self.until(lambda: self.shown() != zoomed, "the new line appears")
        self.write("plan.dxf", drawing())
        self.until(lambda: self.shown() == zoomed, "the line goes, and nothing else has moved")
        # A bad file is told and the drawing stays.
        self.write("bad.dxf", b"this is no drawing\n")
        self.do("key", "ctrl+o")
        self.type_path("Open a drawing", self.path("bad.dxf"))
        time.sleep(0.5)
        self.attend("Open a drawing")
        self.do("key", "Return")
        self.until(lambda: "Open a drawing" not in self.titles(), "the box is gone")
        self.assertTrue(self.settled() == zoomed)
        for ending, start in (("png", b"\x89PNG"), ("svg", b"<?xml"), ("pdf", b"%PDF")):
            out = self.path("out." + ending)
            self.attend("plan.dxf - qvview")
            self.do("key", "ctrl+e")
            self.type_path("Export what is seen", out)
            self.until(lambda: os.path.exists(out), "the picture is written")
            with open(out, "rb") as file:
                self.assertEqual(file.read(len(start)), start)

    def page(self, path):
        """The size of a PDF's page in mm, once it is written."""
        self.until(lambda: os.path.exists(path) and self.pages(path), "there is " + path)
        return [round(float(side) * 25.4 / 72) for side in self.pages(path)[0]]

    def pages(self, path):
        told = self.run_tool("pdfinfo", "-l", "9", path, capture_output=True, text=True).stdout
        return re.findall(r"Page .*size: +([\d.]+) x ([\d.]+)", told)

    def test_it_is_plotted_and_printed_to_scale(self):
        self.do("key", "ctrl+shift+p")
        self.attend("Plot")
        self.do("key", "Tab", "ctrl+a")
        self.do("type", "A1")
        self.do("key", "Tab", "Tab", "ctrl+a")
        self.do("type", "1:20")
        self.do("key", "Return")
        self.type_path("Write a file", self.path("out.pdf"))
        self.assertEqual(self.page(self.path("out.pdf")), [841, 594])
        self.until(lambda: "Plot" not in self.titles(), "the dialog is done")
        # The frame of 8000 by 6000 is 400 by 300 on it, in the middle.
        self.run_tool("pdftoppm", "-r", "25.4", "-singlefile", self.path("out.pdf"), self.path("out"), check=True)
        with open(self.path("out.ppm"), "rb") as file:
            head, width, rows = file.readline(), *map(int, file.readline().split())
            file.readline()
            data = file.read()
        dark = [i // 3 for i in range(0, len(data), 3) if data[i] < 160]
        across, down = [i % width for i in dark], [i // width for i in dark]
        for value, wanted in ((min(across), 220.5), (max(across), 620.5), (min(down), 147), (max(down), 447)):
            self.assertAlmostEqual(value, wanted, delta=1.5)
        # The same set-up is offered for printing; without a printer the system's dialog offers a file.
        self.attend("plan.dxf - qvview")
        self.do("key", "ctrl+p")
        self.attend("Print")
        self.do("key", "Return")
        time.sleep(1)
        self.do("key", "Return")
        self.assertEqual(self.page(self.path("plan.pdf")), [841, 594])


class Questions(unittest.TestCase):
    def test_they_need_no_display(self):
        alone = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        for words, answer in ((["--help"], "FILE.dxf"), (["-h"], "--language"), (["--version"], "qvview "),
                              (["-platform", "offscreen", "--version"], "qvview ")):
            told = subprocess.run([QVVIEW, *words], env=alone, capture_output=True, text=True, timeout=60)
            self.assertEqual(told.returncode, 0, told.stderr)
            self.assertIn(answer, told.stdout)


if __name__ == "__main__":
    if SHOTS:
        os.makedirs(SHOTS, exist_ok=True)
    unittest.main()

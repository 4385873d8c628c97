"""Reads a file of each format by the pages of formats alone, and compares what it finds with what the library tells:
formats_test.py QVDRAW WRITE_SAMPLES FONT_FOLDER SHEETS, where SHEETS is what `qvdraw demo` has written. Files of what the
library does not write are made by the pages, and the library is asked what it sees."""

import collections
import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

QVDRAW, WRITE_SAMPLES, FONTS, SHEETS = sys.argv[1], sys.argv[2], *map(pathlib.Path, sys.argv[3:5])
del sys.argv[1:]


def told(*words):
    return subprocess.run([QVDRAW, *map(str, words)], capture_output=True, text=True, timeout=60, check=True).stdout


def drawing(path):
    """drawing.md: the names of each table, and how often each kind of entity is there."""
    lines = path.read_bytes().split(b"\r\n")
    groups = [(int(code), value.decode("gbk", "replace")) for code, value in zip(lines[::2], lines[1::2])]
    tables, counts, section, kind = collections.defaultdict(list), collections.Counter(), "", ""
    for i, (code, value) in enumerate(groups):
        if (code, value) == (0, "SECTION"):
            section = groups[i + 1][1]
        elif section == "TABLES" and code == 0:
            kind = value
        elif section == "TABLES" and code == 2 and kind != "TABLE":
            tables[kind].append(value)
        elif section == "TABLES" and code == 70 and kind == "TABLE":
            tables[groups[i - 1][1] + " declared"] = int(value)
        elif section == "ENTITIES" and code == 0 and value not in ("VERTEX", "SEQEND", "ENDSEC", "EOF"):
            counts[value] += 1
    return tables, counts


def database(data):
    """data.md 1: each segment's items, its index first."""
    assert data[-30:-14] == b"IndexPosition = " and data.endswith(b"\r\n")
    index = data[int(data[-14:]):-30].split(b"\r\n")
    assert index[0] == b"[Index]" and index[-1] == b""
    segments = {}
    for entry in index[1:-1]:
        name, offsets = entry.decode().rsplit(" = ", 1)
        start, end = map(int, offsets.split())
        header, *lines = data[start:end].decode().split("\r\n")
        assert header == f"[ {name} ]"
        items = (line.partition(" = ") for line in lines if " = " in line and not line.startswith("##"))
        segments[name] = {key: value.replace("%%", "%") for key, _, value in items}
    return segments


def slide_items(data):
    """slides.md 2, but for records by offsets: the number of items and the corners of the box of all lines and fills."""
    assert data[:17] == b"AutoCAD Slide\r\n\x1a\0" and data[18] == 2
    at, items, points = 31, 0, []
    while data[at + 1] != 0xFC:
        items += 1
        if data[at + 1] == 0xFF:
            at += 2
        elif data[at + 1] == 0xFD:
            count, mark = struct.unpack_from("<2h", data, at + 2)
            points += [struct.unpack_from("<2h", data, at + 8 + 6 * i) for i in range(count)]
            assert mark < 0 and struct.unpack_from("<3h", data, at + 6 + 6 * count) == (-0x300, count, -mark)
            at += 12 + 6 * count
        else:
            assert data[at + 1] <= 0x7F
            points += [struct.unpack_from("<2h", data, at), struct.unpack_from("<2h", data, at + 4)]
            at += 8
    return items, [f(p[k] for p in points) for f in (min, max) for k in (0, 1)]


def library(data):
    """slides.md 3: the bytes of each slide by its name."""
    assert data[:28] == b"AutoCAD Slide Library 1.0\r\n\x1a"
    entries = [struct.unpack_from("<32sI", data, at) for at in range(32, struct.unpack_from("<I", data, 64)[0], 36)]
    assert entries.pop()[0] == bytes(32)
    ends = [offset for _, offset in entries[1:]] + [len(data)]
    return {name.rstrip(b"\0").decode(): data[begin:end] for (name, begin), end in zip(entries, ends)}


def shapes(data):
    """fonts.md 2 and 3: the record of each code."""
    if b"bigfont" in data[:25]:
        size, count, ranges = struct.unpack_from("<3H", data, 25)
        assert size == 8 and ranges == 1
        entries = [struct.unpack_from(">H", data, 35 + 8 * i) + struct.unpack_from("<HI", data, 37 + 8 * i) for i in range(count)]
        return {code: data[begin:begin + length] for code, length, begin in entries}
    count, records = struct.unpack_from("<H", data, 28)[0], {}
    at = 30 + 4 * count
    for i in range(count):
        code, length = struct.unpack_from("<2H", data, 30 + 4 * i)
        records[code] = data[at:at + length]
        at += length
    assert at == len(data)
    return records


def end_of_shape(record):
    """fonts.md 5: where the instruction 0 of a plain shape stands."""
    at = record.index(0) + 1
    while record[at] != 0:
        instruction = record[at]
        while instruction == 9 and record[at + 1:at + 3] != b"\0\0":
            at += 2
        at += {3: 2, 4: 2, 8: 3, 9: 3}.get(instruction, 1)
    return at


class Formats(unittest.TestCase):
    def test_drawing(self):
        tables, counts = drawing(SHEETS / "sheets.dxf")
        info = json.loads(told("info", SHEETS / "sheets.dxf", "--json"))
        self.assertEqual(counts, info["entities"])
        for kind, names in (("LTYPE", info["ltypes"]), ("LAYER", list(info["layers"])), ("STYLE", list(info["styles"]))):
            self.assertEqual(sorted(tables[kind]), sorted(names))
            self.assertEqual(tables[kind + " declared"], len(names))

    def test_database_and_grades(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([WRITE_SAMPLES, folder], check=True)
            data, options = (pathlib.Path(folder, name) for name in ("values.dat", "UserOpt.dat"))
            segments = database(data.read_bytes())
            self.assertEqual(list(segments), told("db", data).split())
            for name in list(segments)[::400]:
                self.assertEqual(segments[name], json.loads(told("db", data, name, "--json")))
            lines = options.read_bytes().decode("gbk").split("\r\n")
            self.assertEqual((lines[0], lines[6], lines[12:]), ("用户定义混凝土", "用户定义钢筋", [""]))
            shown = {row[0]: row[1:] for row in map(str.split, told("materials", "--file", options).splitlines()) if row}
            for i, line in enumerate(lines[1:6] + lines[7:12]):
                slot, name, *values = line.split(",")
                self.assertEqual(int(slot), i % 5 + 1)
                self.assertEqual([float(v) for v in values], [float(v) for v in shown[name]])

    def test_field(self):
        nodes, triangles, *rows = (SHEETS / "slab.field").read_text().replace("\n", ",", 1).split(",", 2)
        lines = rows[0].splitlines()
        self.assertEqual(len(lines), int(nodes) + int(triangles))
        for line in lines[:int(nodes):20000]:
            x, y, *values = line.split(",")
            for i, value in enumerate(values):
                shown = float(told("value", SHEETS / "slab.field", x, y, "--value", i))
                self.assertAlmostEqual(shown / float(value), 1, 5)
        corners = [int(number) for line in lines[int(nodes):] for number in line.split(",")]
        self.assertEqual((min(corners), max(corners)), (1, int(nodes)))

    def test_slides(self):
        found = library((SHEETS / "details.slb").read_bytes())
        rows = [row.split() for row in told("slides", SHEETS / "details.slb").splitlines()]
        self.assertEqual([row[0] for row in rows], list(found))
        for row, data in zip(rows, found.values()):
            items, (x1, y1, x2, y2) = slide_items(data)
            self.assertEqual((row[1], row[3], row[5], row[7]), tuple(map(str, (len(data), items, x2 - x1, y2 - y1))))

    def test_fonts(self):
        fonts = sorted(FONTS.glob("*.shx"))  # without the package of strokes the build makes no big font
        self.assertIn(FONTS / "txt.shx", fonts)
        for font in fonts:
            records = shapes(font.read_bytes())
            title, head = records.pop(0).split(b"\0", 1)
            self.assertIn(f'"{title.decode()}"\n{len(records)} shapes; capitals {head[0]} high, letters reach {head[1]} below',
                          told("fonts", font))
            for record in records.values():
                self.assertEqual(end_of_shape(record), len(record) - 1)


class MadeByThePages(unittest.TestCase):
    """Files of formats that the library reads and does not write."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name, data=None):
        path = pathlib.Path(self.folder.name, name)
        if data is not None:
            path.write_bytes(data)
        return path

    def test_slides_of_both_levels(self):
        fill = b"".join(struct.pack("<3h", -0x300, x, y) for x, y in ((4, -2), (0, 0), (9, 0), (9, 5), (0, 5), (4, 2)))
        records = (struct.pack("<4h", 10, 20, 30, 40) + struct.pack("<bB3b", -1, 0xFB, 2, 3, -4) +
                   struct.pack("<bBb", 5, 0xFE, -6) + b"\3\xff" + fill + b"\0\xfc" + b"behind")
        lines = ("line 10.000,20.000 30.000,40.000 ", "line 9.000,22.000 13.000,16.000 ", "line 9.000,22.000 14.000,16.000 ",
                 "color 3", "solid 0.000,0.000 9.000,0.000 9.000,5.000 0.000,5.000 ")
        for head in (b"V\2" + struct.pack("<HHiHH", 99, 49, 20000000, 2, 0x1234), b"V\1" + struct.pack("<HH", 99, 49) + bytes(11)):
            slide = self.path("a.sld", b"AutoCAD Slide\r\n\x1a\0" + head + records)
            told("slide", slide, "-o", self.path("a.scr"))
            self.assertEqual(self.path("a.scr").read_text().splitlines(), list(lines))

    def test_unifont(self):
        shapes = ((0, b"Uni\0\x0a\2\0\0"), (65, b"a\0\x14\0"), (0x4E00, b"\0\x10\0"))
        font = b"AutoCAD-86 unifont 1.0\r\n\x1a" + struct.pack("<H", len(shapes))
        font += b"".join(struct.pack("<HH", code, len(record)) + record for code, record in shapes)
        self.assertIn('a Unifont, "Uni"\n2 shapes; capitals 10 high, letters reach 2 below',
                      told("fonts", self.path("u.shx", font)))

    def test_binary_drawings_of_both_forms(self):
        groups = [(0, "SECTION"), (2, "ENTITIES"), (0, "LINE"), (8, "WALL"), (62, 3), (10, 1.5), (20, 2.5), (11, 4.0), (21, 6.5),
                  (290, 1), (1071, 70000), (0, "ENDSEC"), (0, "EOF")]
        for wide in (False, True):
            data = b"AutoCAD Binary DXF\r\n\x1a\0"
            for code, value in groups:
                data += struct.pack("<H", code) if wide else bytes([code]) if code < 255 else b"\xff" + struct.pack("<H", code)
                form = "<b" if code == 290 and wide else "<i" if code == 1071 else "<h"
                packed = {str: lambda: value.encode() + b"\0", float: lambda: struct.pack("<d", value)}
                data += packed.get(type(value), lambda: struct.pack(form, value))()
            info = json.loads(told("info", self.path("b.dxf", data), "--json"))
            self.assertTrue(info["file"]["binary"] and info["file"]["complete"])
            self.assertEqual((info["entities_on_layers"], info["extent"]), ({"WALL": 1}, [1.5, 2.5, 4.0, 6.5]))

    def test_ctb(self):
        text = (f"plot_style{{\n 2{{\n  color={0xC2102030 - 2**32}\n  lineweight=2\n  screen=100\n }}\n}}\n"
                "custom_lineweight_table{\n 0=0\n 1=0.3\n 2=0.7\n}\n")
        for head in (60, 72):
            packed = b"PIAFILEVERSION_2.0,CTBVER1".ljust(head, b"\1") + zlib.compress(text.encode())
            groups = ["0", "LINE", "8", "0", "62", "3", "10", "0", "20", "0", "11", "9", "21", "9", ""]
            drawing = self.path("c.dxf", "\n".join(groups).encode())
            told("plot", drawing, "-o", self.path("c.svg"), "--color", "--pens", self.path("c.ctb", packed))
            self.assertIn('<path stroke="#102030" stroke-width=".7"', self.path("c.svg").read_text())


if __name__ == "__main__":
    unittest.main()

"""Reads a file of each format by the pages in docs/formats alone, and compares what it finds with what the library tells:
formats_test.py QVDRAW WRITE_SAMPLES FONT_FOLDER SHEETS, where SHEETS is what `qvdraw demo` has written."""

import collections
import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

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
    """slides.md 2: the number of items and the corners of the box of all lines and fills."""
    assert data[:17] == b"AutoCAD Slide\r\n\x1a\0" and data[18] == 2
    at, last, items, points = 31, (0, 0), 0, []
    while True:
        low, high = data[at], data[at + 1]
        if high == 0xFC:
            return items, [f(p[k] for p in points) for f in (min, max) for k in (0, 1)]
        items += 1
        if high <= 0x7F:
            x1, y1, x2, y2 = struct.unpack_from("<4h", data, at)
            points += [(x1, y1), (x2, y2)]
            last, at = (x1, y1), at + 8
        elif high == 0xFF:
            at += 2
        elif high == 0xFD:
            count, mark = struct.unpack_from("<2h", data, at + 2)
            points += [struct.unpack_from("<2h", data, at + 8 + 6 * i) for i in range(count)]
            assert mark < 0 and struct.unpack_from("<3h", data, at + 6 + 6 * count) == (-0x300, count, -mark)
            at += 12 + 6 * count
        else:
            dx, dy = struct.unpack_from("<bxb", data, at)
            start = (last[0] + dx, last[1] + dy)
            dx, dy = struct.unpack_from("<bb", data, at + 3) if high == 0xFB else (0, 0)
            points += [start, last if high == 0xFE else (last[0] + dx, last[1] + dy)]
            last, at = start, at + (5 if high == 0xFB else 3)


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


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""Makes hztxt.shx, the big font of GB2312: make_hztxt.py TXT.shp OUT-DIRECTORY SHPC...

Chinese characters come from the stroke centre lines of the npm package hanzi-writer-data (Arphic Public License), which is
fetched here and kept nowhere else; full-width ASCII from the shapes of the text font; the other signs are drawn below. Beside
the font go the licence and a notice of what was changed. Without the package there is no font: that is said, and is no
error.
"""

import io
import json
import math
import os
import re
import subprocess
import sys
import tarfile
import tempfile

PACKAGE = "hanzi-writer-data"
VERSION = "2.0.1"

CELL = 64  # the advance of every character
# Of a character that fills the height of a text. Four characters of a title block caption, 7 mm high and 0.75 wide, have
# to stay within their cell of 22.5 mm less 0.75 mm.
HEIGHT = 62
SINK = 4  # how far the cell reaches below the base line
TOLERANCE = 0.75

NOTICE = f"""hztxt.shx was made from the stroke centre lines ("medians") of {PACKAGE} {VERSION}, which derives from fonts
of Arphic Technology Co., Ltd. under the Arphic Public License (ARPHICPL.TXT, beside this file). Changed: only the centre
lines were taken, fitted to a grid of {CELL} units and simplified, and written as a shape font; full-width ASCII and signs were
added. The font is under the same licence.
"""


def fetch():
    """The package's archive, or None."""
    with tempfile.TemporaryDirectory() as directory:
        try:
            subprocess.run(
                ["npm", "pack", "--silent", "--prefer-offline", f"{PACKAGE}@{VERSION}"],
                cwd=directory, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=300,
            )
            with open(os.path.join(directory, f"{PACKAGE}-{VERSION}.tgz"), "rb") as file:
                return file.read()
        except (OSError, subprocess.SubprocessError):
            return None


def simplified(points):
    """The points that a Douglas-Peucker fit keeps."""
    if len(points) < 3:
        return points
    (x1, y1), (x2, y2) = points[0], points[-1]
    length = math.hypot(x2 - x1, y2 - y1)

    def distance(p):
        if length == 0:
            return math.hypot(p[0] - x1, p[1] - y1)
        return abs((x2 - x1) * (p[1] - y1) - (y2 - y1) * (p[0] - x1)) / length

    far = max(range(1, len(points) - 1), key=lambda i: distance(points[i]))
    if distance(points[far]) <= TOLERANCE:
        return [points[0], points[-1]]
    return simplified(points[: far + 1])[:-1] + simplified(points[far:])


def on_grid(stroke):
    """A stroke on whole units, without points that fall together."""
    grid = []
    for x, y in simplified(stroke):
        point = (round(x), round(y))
        if not grid or grid[-1] != point:
            grid.append(point)
    return grid


def shape_codes(strokes):
    """The codes of a shape that begins at (0, 0) and ends at the next cell; pen codes stand at its start."""
    codes, at = [2], (0, 0)

    def move(points):
        nonlocal at
        steps = []
        for x, y in points:
            dx, dy = x - at[0], y - at[1]
            # Displacements are signed bytes.
            for _ in range(max(1, -(-max(abs(dx), abs(dy)) // 120))):
                part = (max(-120, min(120, dx)), max(-120, min(120, dy)))
                dx, dy = dx - part[0], dy - part[1]
                steps.append(part)
            at = (x, y)
        steps = [step for step in steps if step != (0, 0)]
        if len(steps) == 1:
            codes.extend([8, *steps[0]])
        elif steps:
            codes.append(9)
            for step in steps:
                codes.extend(step)
            codes.extend([0, 0])

    for stroke in strokes:
        if len(stroke) < 2:
            continue
        move([stroke[0]])
        codes.append(1)
        move(stroke[1:])
        codes.append(2)
    move([(CELL, 0)])
    return codes + [0]


def text_font_strokes(source):
    """The strokes and the advance of each shape of the text font, and the height of its capitals."""
    shapes = {}
    for head, body in re.findall(r"^\*([^\n]*)\n(.*?)(?=^\*|\Z)", re.sub(r";[^\n]*", "", source), re.S | re.M):
        numbers = [int(n, 16 if len(n.lstrip("-")) > 1 and n.lstrip("-")[0] == "0" else 10)
                   for n in re.findall(r"-?[0-9A-Fa-f]+", body)]
        shapes[int(head.split(",")[0])] = numbers
    height = shapes[0][0]
    vectors = [(1, 0), (1, .5), (1, 1), (.5, 1), (0, 1), (-.5, 1), (-1, 1), (-1, .5), (-1, 0), (-1, -.5), (-1, -1),
               (-.5, -1), (0, -1), (.5, -1), (1, -1), (1, -.5)]
    result = {}
    for code, numbers in shapes.items():
        if code == 0:
            continue
        x = y = 0.0
        down, strokes, i, scale = True, [], 0, 1.0

        def step(dx, dy):
            nonlocal x, y
            if down and (not strokes or strokes[-1][-1] != (x, y)):
                strokes.append([(x, y)])
            x, y = x + dx * scale, y + dy * scale
            if down:
                strokes[-1].append((x, y))

        while i < len(numbers) and numbers[i] != 0:
            n = numbers[i]
            i += 1
            if n == 1 or n == 2:
                down = n == 1
            elif n == 3 or n == 4:
                scale = scale / numbers[i] if n == 3 else scale * numbers[i]
                i += 1
            elif n == 8:
                step(numbers[i], numbers[i + 1])
                i += 2
            elif n == 9:
                while numbers[i] or numbers[i + 1]:
                    step(numbers[i], numbers[i + 1])
                    i += 2
                i += 2
            else:
                step(vectors[n & 15][0] * (n >> 4), vectors[n & 15][1] * (n >> 4))
        result[code] = (strokes, x)
    return result, height


def placed(strokes, scale, dx, dy):
    return [[(x * scale + dx, y * scale + dy) for x, y in stroke] for stroke in strokes]


def ring(cx, cy, r, sides=20):
    return [(cx + r * math.cos(2 * math.pi * i / sides), cy + r * math.sin(2 * math.pi * i / sides))
            for i in range(sides + 1)]


def dot(cx, cy, r=2.5):
    return [ring(cx, cy, r, 8), [(cx - r, cy), (cx + r, cy)]]


# Signs, on the cell of 64 units whose base line lies at 0.
SIGNS = {
    "、": [[(6, 8), (16, -2)]],
    "。": [ring(12, 3, 6, 14)],
    "·": dot(32, 26),
    "—": [[(2, 26), (62, 26)]],
    "～": [[(6, 22), (14, 30), (24, 31), (40, 21), (50, 22), (58, 30)]],
    "…": dot(12, 4, 2) + dot(32, 4, 2) + dot(52, 4, 2),
    "‘": [[(54, 54), (48, 46), (50, 40), (54, 42)]],
    "’": [[(12, 42), (16, 48), (14, 54), (10, 52)]],
    "“": [[(44, 54), (38, 46), (40, 40), (44, 42)], [(58, 54), (52, 46), (54, 40), (58, 42)]],
    "”": [[(6, 42), (10, 48), (8, 54), (4, 52)], [(20, 42), (24, 48), (22, 54), (18, 52)]],
    "〔": [[(54, 56), (46, 48), (46, 0), (54, -8)]],
    "〕": [[(10, 56), (18, 48), (18, 0), (10, -8)]],
    "〈": [[(54, 56), (42, 24), (54, -8)]],
    "〉": [[(10, 56), (22, 24), (10, -8)]],
    "《": [[(50, 56), (38, 24), (50, -8)], [(60, 56), (48, 24), (60, -8)]],
    "》": [[(4, 56), (16, 24), (4, -8)], [(14, 56), (26, 24), (14, -8)]],
    "「": [[(60, 56), (44, 56), (44, 14)]],
    "」": [[(4, -8), (20, -8), (20, 34)]],
    "【": [[(58, 56), (42, 56), (42, -8), (58, -8), (50, 8), (50, 40), (58, 56)]],
    "】": [[(6, 56), (22, 56), (22, -8), (6, -8), (14, 8), (14, 40), (6, 56)]],
    "±": [[(12, 32), (52, 32)], [(32, 52), (32, 12)], [(12, 2), (52, 2)]],
    "×": [[(14, 42), (50, 6)], [(14, 6), (50, 42)]],
    "÷": [[(10, 24), (54, 24)]] + dot(32, 40) + dot(32, 8),
    "≤": [[(52, 50), (12, 32), (52, 14)], [(12, 2), (52, 2)]],
    "≥": [[(12, 50), (52, 32), (12, 14)], [(12, 2), (52, 2)]],
    "≠": [[(10, 32), (54, 32)], [(10, 16), (54, 16)], [(42, 46), (22, 2)]],
    "≈": [[(8, 30), (18, 36), (44, 28), (56, 34)], [(8, 14), (18, 20), (44, 12), (56, 18)]],
    "∠": [[(54, 46), (10, 4), (58, 4)]],
    "⊥": [[(32, 46), (32, 4)], [(8, 4), (56, 4)]],
    "∥": [[(26, 50), (26, 0)], [(38, 50), (38, 0)]],
    "√": [[(6, 22), (14, 26), (26, 0), (40, 52), (60, 52)]],
    "∑": [[(52, 52), (12, 52), (34, 24), (12, 0), (52, 0)]],
    "°": [ring(14, 44, 8, 14)],
    "′": [[(14, 54), (10, 40)]],
    "″": [[(14, 54), (10, 40)], [(24, 54), (20, 40)]],
    "℃": [ring(11, 45, 7, 14), [(58, 38), (52, 46), (42, 50), (32, 46), (26, 36), (26, 16), (32, 6), (42, 2), (52, 6), (58, 14)]],
    "Φ": [ring(32, 26, 19), [(32, 54), (32, -2)]],
    "φ": [ring(32, 16, 15), [(36, 44), (28, -12)]],
    "□": [[(10, 4), (54, 4), (54, 48), (10, 48), (10, 4)]],
    "○": [ring(32, 26, 24, 28)],
    "△": [[(32, 50), (8, 4), (56, 4), (32, 50)]],
    "→": [[(4, 24), (60, 24)], [(48, 34), (60, 24), (48, 14)]],
    "←": [[(60, 24), (4, 24)], [(16, 34), (4, 24), (16, 14)]],
    "↑": [[(32, -4), (32, 54)], [(22, 42), (32, 54), (42, 42)]],
    "↓": [[(32, 54), (32, -4)], [(22, 8), (32, -4), (42, 8)]],
}


def composed_signs(letters, capital):
    """Circled, bracketed and Roman numbers, put together from the text font's shapes."""

    def fitted(text, width, height, cx, cy):
        strokes, advance = [], 0.0
        for c in text:
            shape, step = letters[ord(c)]
            strokes += placed(shape, 1, advance, 0)
            advance += step
        scale = min(width / advance, height / capital)
        return placed(strokes, scale, cx - advance * scale / 2, cy - capital * scale / 2)

    signs = {}
    for i in range(10):
        signs[chr(0x2460 + i)] = [ring(32, 24, 29, 32)] + fitted(str(i + 1), 30, 32, 34, 24)
        signs[chr(0x2474 + i)] = fitted(f"({i + 1})", 60, 48, 32, 24)
    for i, roman in enumerate("I II III IV V VI VII VIII IX X XI XII".split()):
        signs[chr(0x2160 + i)] = fitted(roman, 60, 48, 32, 24)
    return signs


def gb2312(character):
    """The code of a character, as GBK has it; None outside GB2312."""
    try:
        code = character.encode("gbk")
    except UnicodeEncodeError:
        return None
    return code[0] << 8 | code[1] if len(code) == 2 and 0xA1 <= code[0] <= 0xF7 and code[1] >= 0xA1 else None


def compose(archive, text_source):
    """Each code's strokes."""
    letters, capital = text_font_strokes(text_source)
    shapes = {0xA1A1: []}
    for byte in range(0x21, 0x7F):
        strokes, advance = letters[byte]
        scale = 50 / capital
        # A bracket keeps to the side of the cell that its contents are on.
        free = CELL - advance * scale
        shift = free - 4 if chr(byte) in "([{" else 4 if chr(byte) in ")]},.;:!?" else free / 2
        shapes[0xA380 + byte] = placed(strokes, scale, shift, 0)
    for sign, strokes in {**SIGNS, **composed_signs(letters, capital)}.items():
        if gb2312(sign):
            shapes[gb2312(sign)] = strokes
    scale = CELL / 1024
    with tarfile.open(fileobj=io.BytesIO(archive)) as package:
        for member in package:
            name = os.path.basename(member.name)
            if len(name) != 6 or not name.endswith(".json") or not gb2312(name[0]):
                continue
            medians = json.load(package.extractfile(member))["medians"]
            # The centre lines' own base line lies 124 of 1024 above the foot of the cell.
            shapes[gb2312(name[0])] = [[(x * scale, (y + 124) * scale - SINK) for x, y in line] for line in medians]
        licence = package.extractfile("package/ARPHICPL.TXT").read()
    return shapes, licence


def write_source(shapes, path):
    lead = [code >> 8 for code in shapes]
    with open(path, "w", encoding="ascii") as file:
        file.write(f"*BIGFONT {len(shapes)},1,{min(lead):03X},{max(lead):03X}\n*0,4,hztxt\n{HEIGHT},8,0,0\n")
        for code in sorted(shapes):
            codes = shape_codes([on_grid(stroke) for stroke in shapes[code]])
            file.write(f"*0{code:X},{len(codes)},h\n")
            for i in range(0, len(codes), 24):
                end = "\n" if i + 24 >= len(codes) else ",\n"
                file.write(",".join(str(c) for c in codes[i : i + 24]) + end)


def main():
    text_font, directory, *shpc = sys.argv[1:]
    archive = fetch()
    if archive is None:
        print(f"hztxt.shx is not made: the package {PACKAGE} {VERSION} cannot be fetched (npm and a network are needed). "
              "Chinese texts will be blank.")
        return 0
    with open(text_font, encoding="ascii") as file:
        shapes, licence = compose(archive, file.read())
    os.makedirs(directory, exist_ok=True)
    source = os.path.join(directory, "hztxt.shp")
    write_source(shapes, source)
    result = subprocess.run([*shpc, source, os.path.join(directory, "hztxt.shx"), "--bigfont"])
    if result.returncode != 0:
        return 1
    with open(os.path.join(directory, "ARPHICPL.TXT"), "wb") as file:
        file.write(licence)
    with open(os.path.join(directory, "hztxt-NOTICE.txt"), "w", encoding="ascii") as file:
        file.write(NOTICE)
    return 0


if __name__ == "__main__":
    sys.exit(main())

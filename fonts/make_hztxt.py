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
import unicodedata

PACKAGE = "hanzi-writer-data"
VERSION = "2.0.1"

CELL = 64  # the advance of every character
# Of a character that fills the height of a text. Four characters of a title block caption, 7 mm high and 0.75 wide, have
# to stay within their cell of 22.5 mm less 0.75 mm.
HEIGHT = 62
# From the square of 1024 in which the centre lines lie: a character is as tall as the capitals beside it, or a little
# taller, and nearly fills its advance. The middle of most characters goes to the middle of a cell, a little above that
# of the capitals, since some reach below the base line and captions stand close on lines.
ACROSS = 0.0690
UP = 0.0816
LIFT = 2
MIDDLE = (512, 413)
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
        if "-" not in head:  # ranges are boxes
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


# Signs, on the cell of 64 units whose base line lies at 0; they are stretched upward by RISE, to the capitals' height.
RISE = 1.16
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
    "ˉ": [[(12, 50), (52, 50)]],
    "ˇ": [[(20, 54), (32, 42), (44, 54)]],
    "¨": dot(20, 50) + dot(44, 50),
    "々": [[(28, 52), (10, 24)], [(23, 44), (48, 44), (36, 20), (16, 2)], [(22, 28), (40, 14)]],
    "¤": [ring(32, 24, 14, 20)] + [[(32 + 10 * u, 24 + 10 * v), (32 + 19 * u, 24 + 19 * v)]
                                   for u in (-1, 1) for v in (-1, 1)],
    "〃": [[(24, 48), (18, 36)], [(40, 48), (34, 36)]],
    "‖": [[(26, 54), (26, -4)], [(38, 54), (38, -4)]],
    "『": [[(60, 56), (42, 56), (42, 14), (48, 14), (48, 50), (60, 50), (60, 56)]],
    "』": [[(4, -8), (22, -8), (22, 34), (16, 34), (16, -2), (4, -2), (4, -8)]],
    "〖": [[(58, 56), (42, 56), (42, -8), (58, -8)], [(50, 56), (50, -8)]],
    "〗": [[(6, 56), (22, 56), (22, -8), (6, -8)], [(14, 56), (14, -8)]],
    "∶": dot(32, 36) + dot(32, 12),
    "∷": dot(22, 36) + dot(22, 12) + dot(42, 36) + dot(42, 12),
    "∴": dot(32, 40) + dot(16, 10) + dot(48, 10),
    "∵": dot(32, 10) + dot(16, 40) + dot(48, 40),
    "∧": [[(10, 4), (32, 48), (54, 4)]],
    "∨": [[(10, 48), (32, 4), (54, 48)]],
    "∏": [[(8, 50), (56, 50)], [(18, 50), (18, 0)], [(46, 50), (46, 0)]],
    "∪": [[(12, 50), (12, 18), (20, 4), (32, 0), (44, 4), (52, 18), (52, 50)]],
    "∩": [[(12, 0), (12, 32), (20, 46), (32, 50), (44, 46), (52, 32), (52, 0)]],
    "∈": [[(54, 46), (28, 46), (14, 36), (12, 24), (14, 12), (28, 2), (54, 2)], [(12, 24), (50, 24)]],
    "⌒": [[(6, 14), (16, 28), (32, 34), (48, 28), (58, 14)]],
    "⊙": [ring(32, 24, 22)] + dot(32, 24, 3),
    "∫": [[(46, 52), (40, 54), (34, 48), (30, 0), (24, -6), (18, -4)]],
    "∮": [[(46, 52), (40, 54), (34, 48), (30, 0), (24, -6), (18, -4)], ring(32, 24, 10, 14)],
    "≡": [[(10, 38), (54, 38)], [(10, 24), (54, 24)], [(10, 10), (54, 10)]],
    "≌": [[(8, 44), (18, 50), (44, 40), (56, 46)], [(8, 26), (56, 26)], [(8, 10), (56, 10)]],
    "∽": [[(56, 18), (48, 10), (38, 18), (26, 34), (16, 38), (8, 30)]],
    "∝": [[(56, 38), (44, 36), (28, 12), (18, 10), (10, 18), (10, 30), (18, 38), (28, 36), (44, 12), (56, 10)]],
    "≮": [[(52, 44), (12, 24), (52, 4)], [(40, 52), (24, -4)]],
    "≯": [[(12, 44), (52, 24), (12, 4)], [(40, 52), (24, -4)]],
    "∞": [[(32, 24), (22, 36), (12, 36), (6, 24), (12, 12), (22, 12), (32, 24), (42, 36), (52, 36), (58, 24), (52, 12),
           (42, 12), (32, 24)]],
    "♂": [ring(24, 18, 18), [(38, 32), (56, 50)], [(44, 50), (56, 50), (56, 38)]],
    "♀": [ring(32, 34, 18), [(32, 16), (32, -8)], [(20, 4), (44, 4)]],
    "＄": [[(52, 42), (44, 48), (20, 48), (12, 42), (12, 30), (20, 25), (44, 23), (52, 17), (52, 6), (44, 0), (20, 0), (12, 6)],
          [(32, 54), (32, -6)]],
    "￥": [[(10, 50), (32, 24), (54, 50)], [(32, 24), (32, 0)], [(14, 24), (50, 24)], [(14, 12), (50, 12)]],
    "￠": [[(50, 36), (42, 42), (24, 42), (14, 34), (14, 14), (24, 6), (42, 6), (50, 12)], [(38, 52), (26, -4)]],
    "￡": [[(52, 40), (46, 50), (34, 50), (26, 40), (26, 14), (12, 0), (54, 0)], [(14, 24), (44, 24)]],
    "‰": [[(6, -2), (40, 50)], ring(12, 40, 8, 12), ring(30, 8, 8, 12), ring(52, 8, 8, 12)],
    "§": [[(46, 44), (38, 52), (26, 52), (20, 42), (44, 22), (46, 12)], [(18, 4), (26, -4), (38, -4), (44, 6), (20, 26), (18, 36)]],
    "№": [[(4, 0), (4, 50), (32, 0), (32, 50)], ring(50, 32, 10, 14), [(40, 10), (60, 10)]],
    "☆": [[(32 + r * math.sin(math.pi * i / 5), 24 + r * math.cos(math.pi * i / 5))
          for i in range(11) for r in [28 if i % 2 == 0 else 11]]],
    "◇": [[(32, 50), (8, 24), (32, -2), (56, 24), (32, 50)]],
    "◎": [ring(32, 24, 24, 28), ring(32, 24, 15)],
    "※": [[(10, 46), (54, 2)], [(10, 2), (54, 46)]] + dot(32, 46) + dot(32, 2) + dot(10, 24) + dot(54, 24),
    "〓": [[(8, 38), (56, 38), (56, 30), (8, 30), (8, 38)], [(8, 18), (56, 18), (56, 10), (8, 10), (8, 18)]],
}


def hatched(outline, step=3):
    """A filled sign: its outline, and lines across it."""
    strokes = [outline]
    low, high = min(y for _, y in outline), max(y for _, y in outline)
    y = low + step
    while y < high:
        cuts = sorted(a[0] + (y - a[1]) * (b[0] - a[0]) / (b[1] - a[1]) for a, b in zip(outline, outline[1:])
                      if (a[1] <= y) != (b[1] <= y))
        strokes += [[(x1, y), (x2, y)] for x1, x2 in zip(cuts[::2], cuts[1::2])]
        y += step
    return strokes


SIGNS.update({"●": hatched(ring(32, 24, 24, 28)), "★": hatched(SIGNS["☆"][0]), "◆": hatched(SIGNS["◇"][0]),
              "■": hatched(SIGNS["□"][0]), "▲": hatched(SIGNS["△"][0])})

# Greek letters on a cell of 64, base line 0, capitals 54 and small letters 36 high. The other capitals look as Latin ones.
GREEK = {
    "Γ": [[(16, 0), (16, 54), (52, 54)]],
    "Δ": [[(32, 54), (8, 0), (56, 0), (32, 54)]],
    "Θ": [ring(32, 27, 26, 24), [(20, 27), (44, 27)]],
    "Λ": [[(8, 0), (32, 54), (56, 0)]],
    "Ξ": [[(10, 54), (54, 54)], [(16, 27), (48, 27)], [(10, 0), (54, 0)]],
    "Π": [[(12, 0), (12, 54), (52, 54), (52, 0)]],
    "Σ": [[(52, 54), (12, 54), (34, 27), (12, 0), (52, 0)]],
    "Ψ": [[(10, 54), (10, 32), (18, 20), (46, 20), (54, 32), (54, 54)], [(32, 54), (32, 0)]],
    "Ω": [[(8, 0), (22, 0), (12, 18), (10, 32), (16, 46), (32, 54), (48, 46), (54, 32), (52, 18), (42, 0), (56, 0)]],
    "α": [[(52, 36), (44, 12), (32, 1), (20, 1), (11, 10), (11, 26), (20, 35), (32, 35), (42, 26), (52, 0)]],
    "β": [[(14, -14), (14, 40), (20, 52), (34, 54), (42, 46), (40, 34), (28, 29)], [(28, 29), (44, 24), (48, 12), (40, 1), (26, 0), (14, 6)]],
    "γ": [[(8, 34), (16, 36), (32, 4), (30, -12), (26, -14), (24, -8), (32, 4), (54, 36)]],
    "δ": [[(48, 52), (32, 54), (24, 46), (44, 28), (48, 14), (40, 1), (24, 0), (14, 10), (16, 26), (28, 35), (40, 32)]],
    "ε": [[(48, 32), (38, 36), (24, 36), (16, 28), (24, 20), (36, 19)], [(24, 20), (14, 10), (22, 1), (38, 0), (50, 6)]],
    "ζ": [[(20, 54), (46, 54), (22, 32), (16, 14), (24, 2), (42, -2), (46, -8), (36, -14)]],
    "η": [[(10, 34), (18, 36), (20, 0)], [(20, 24), (32, 36), (44, 34), (48, 22), (48, -14)]],
    "θ": [[(32, 54), (20, 46), (16, 27), (20, 8), (32, 0), (44, 8), (48, 27), (44, 46), (32, 54)], [(16, 27), (48, 27)]],
    "ι": [[(26, 36), (26, 8), (32, 0), (42, 2)]],
    "κ": [[(16, 36), (16, 0)], [(48, 36), (18, 18), (48, 0)]],
    "λ": [[(14, 54), (22, 52), (50, 0)], [(32, 32), (10, 0)]],
    "μ": [[(12, -14), (16, 36)], [(14, 10), (20, 1), (32, 0), (42, 10), (46, 36)], [(43, 12), (48, 0), (56, 2)]],
    "ν": [[(10, 36), (16, 36), (30, 0), (46, 16), (50, 36)]],
    "ξ": [[(46, 54), (26, 54), (18, 46), (26, 36), (42, 34)], [(26, 36), (14, 26), (18, 16), (40, 14)],
          [(18, 16), (12, 8), (18, 0), (42, -4), (44, -10), (34, -14)]],
    "ο": [ring(32, 18, 18)],
    "π": [[(8, 34), (16, 36), (56, 36)], [(22, 36), (20, 12), (14, 0)], [(44, 36), (44, 8), (50, 0), (56, 4)]],
    "ρ": [[(12, -14), (16, 24), (24, 35), (38, 36), (48, 26), (46, 10), (34, 0), (22, 2), (14, 12)]],
    "σ": [[(56, 36), (28, 36), (14, 27), (12, 12), (22, 1), (38, 1), (48, 12), (46, 27), (36, 36)]],
    "τ": [[(10, 32), (16, 36), (54, 36)], [(34, 36), (30, 8), (36, 0), (46, 2)]],
    "υ": [[(10, 34), (16, 36), (16, 10), (24, 0), (38, 1), (48, 14), (48, 30), (44, 36)]],
    "χ": [[(10, 36), (18, 34), (46, -12), (54, -14)], [(52, 36), (12, -14)]],
    "ψ": [[(8, 34), (14, 36), (16, 10), (26, 0), (40, 1), (52, 14), (54, 36)], [(36, 54), (28, -14)]],
    "ω": [[(16, 36), (8, 20), (12, 4), (24, 0), (32, 10), (32, 24)], [(32, 10), (40, 0), (52, 4), (56, 20), (48, 36)]],
}
LATIN_CAPITALS = dict(zip("ΑΒΕΖΗΙΚΜΝΟΡΤΥΧ", "ABEZHIKMNOPTYX"))


def box_lines():
    """The lines of boxes, U+2500 to U+254B, from their names: light lines, heavy ones as two, and dashes."""
    middle = (CELL / 2, HEIGHT / 2)
    ends = {"LEFT": (0, middle[1]), "RIGHT": (CELL, middle[1]), "UP": (middle[0], 68), "DOWN": (middle[0], -6)}
    both = {"HORIZONTAL": ("LEFT", "RIGHT"), "VERTICAL": ("UP", "DOWN")}
    signs = {}
    for code in range(0x2500, 0x254C):
        words = unicodedata.name(chr(code)).removeprefix("BOX DRAWINGS ").split()
        dashes = {"TRIPLE": 3, "QUADRUPLE": 4}.get(words[1] if len(words) > 1 else "", 1)
        # "LIGHT DOWN AND RIGHT", or "DOWN LIGHT AND RIGHT HEAVY".
        first = words[0] in ("LIGHT", "HEAVY")
        arms, named, weight = {}, [], words[0]
        for word in words:
            if word in ends or word in both:
                named += both.get(word, (word,))
            if word in ("LIGHT", "HEAVY"):
                weight = word
            if first or word == weight:
                arms.update((arm, weight) for arm in named)
                named = []
        strokes = []
        for arm, weight in arms.items():
            (x1, y1), (x2, y2) = middle, ends[arm]
            for k in range(dashes):
                a, b = k / dashes, (k + (0.6 if dashes > 1 else 1)) / dashes
                line = [(x1 + (x2 - x1) * t, y1 + (y2 - y1) * t) for t in (a, b)]
                across = (0, 1) if arm in ("LEFT", "RIGHT") else (1, 0)
                for side in ((-1.5, 1.5) if weight == "HEAVY" else (0,)):
                    strokes.append([(x + across[0] * side, y + across[1] * side) for x, y in line])
        signs[chr(code)] = strokes
    return signs


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

    signs = {latin: fitted(letters_of, 46, HEIGHT, 32, HEIGHT / 2) for latin, letters_of in LATIN_CAPITALS.items()}
    for i in range(20):
        signs[chr(0x2474 + i)] = fitted(f"({i + 1})", 60, HEIGHT, 32, HEIGHT / 2)
        signs[chr(0x2488 + i)] = fitted(f"{i + 1}.", 56, HEIGHT, 32, HEIGHT / 2)
    for i in range(10):
        signs[chr(0x2460 + i)] = [ring(32, 31, 31, 32)] + fitted(str(i + 1), 30, 36, 33, 31)
    for i, roman in enumerate("I II III IV V VI VII VIII IX X XI XII".split()):
        signs[chr(0x2160 + i)] = fitted(roman, 60, HEIGHT, 32, HEIGHT / 2)
    return signs


def bracketed(shapes):
    """The Chinese numbers in brackets."""
    signs = {}
    for i, number in enumerate("一二三四五六七八九十"):
        signs[chr(0x3220 + i)] = (placed(shapes[gb2312(number)], 0.6, 13, 13) +
                                  [[(10, 64), (2, 48), (2, 14), (10, -2)], [(54, 64), (62, 48), (62, 14), (54, -2)]])
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
        scale = min(HEIGHT / capital, (CELL - 8) / advance)
        # A bracket keeps to the side of the cell that its contents are on.
        free = CELL - advance * scale
        shift = free - 4 if chr(byte) in "([{" else 4 if chr(byte) in ")]},.;:!?" else free / 2
        shapes[0xA380 + byte] = placed(strokes, scale, shift, 0)
    risen = {sign: [[(x, y * RISE) for x, y in stroke] for stroke in strokes]
             for sign, strokes in {**SIGNS, **GREEK}.items()}

    def add(signs):
        shapes.update((gb2312(sign), strokes) for sign, strokes in signs.items() if gb2312(sign))

    add({**risen, **composed_signs(letters, capital), **box_lines()})
    with tarfile.open(fileobj=io.BytesIO(archive)) as package:
        for member in package:
            name = os.path.basename(member.name)
            if len(name) != 6 or not name.endswith(".json") or not gb2312(name[0]):
                continue
            medians = json.load(package.extractfile(member))["medians"]
            shapes[gb2312(name[0])] = [[((x - MIDDLE[0]) * ACROSS + CELL / 2, (y - MIDDLE[1]) * UP + HEIGHT / 2 + LIFT)
                                        for x, y in line] for line in medians]
        licence = package.extractfile("package/ARPHICPL.TXT").read()
    add(bracketed(shapes))
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

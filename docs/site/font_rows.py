#!/usr/bin/env python3
"""The rows of the Chinese font, as Markdown: FIGURES names the folder of the pictures."""

import os
import pathlib

FIRST_BYTE = 0xA0  # of row 0

pictures = sorted(pathlib.Path(os.environ["FIGURES"]).glob("font_hztxt_*.png"))
if not pictures:
    print("![The font is missing](../figures/font_hztxt.svg)")
for picture in pictures:
    row = int(picture.stem[-2:])
    print(f"## Row {row} 区: {FIRST_BYTE + row:02X} {{#row-{row}}}\n\n![Row {row}](../figures/{picture.name})\n")

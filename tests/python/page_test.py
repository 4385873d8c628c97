#!/usr/bin/env python3
"""Runs the examples of docs/python.md one after the other, and looks at the pictures that they make.

With QV_GOLDEN=1 the pictures go to where the page shows them.
"""

import os
import pathlib
import re
import shutil
import struct
import tempfile
import unittest

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
PICTURES = DOCS / "pictures/python"


def size_of(png):
    return struct.unpack(">II", png.read_bytes()[16:24])


class Page(unittest.TestCase):
    def test_examples_make_the_pictures_that_the_page_shows(self):
        page = (DOCS / "python.md").read_text(encoding="utf-8")
        shown = re.findall(r"!\[.*\]\(pictures/python/(.*)\)", page)
        before = os.getcwd()
        with tempfile.TemporaryDirectory() as folder:
            os.chdir(folder)
            try:
                names = {}
                for number, code in enumerate(re.findall(r"```python\n(.*?)```", page, re.S)):
                    exec(compile(code, f"docs/python.md, example {number}", "exec"), names)
                self.assertEqual(sorted(shown), sorted(path.name for path in pathlib.Path().glob("*.png")))
                for name in shown:
                    if os.environ.get("QV_GOLDEN"):
                        PICTURES.mkdir(exist_ok=True)
                        shutil.copy(name, PICTURES / name)
                    self.assertEqual(size_of(pathlib.Path(name)), size_of(PICTURES / name), name)
                self.assertGreater(len(names["wave"].entities), 1_000_000)
                self.assertEqual([row[-1] for row in names["rows"]], ["满足", "满足", "满足"])
            finally:
                os.chdir(before)


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""Holds the gallery to the composer: gallery_test.py SOURCE_FOLDER.

Every public call of the composer, of slides and of fields that draws, moves the pen or forms a label has a section in
docs/gallery that names it with its arguments, says of each argument what it does, and shows code that calls it. The helpers
for composing are all on their page.
"""

import pathlib
import re
import sys

CALL = re.compile(
    r"(?:static )?(?:void|int) ((?:Draw|ArrowTo|MoveTo|LineTo|PlineTo|FormString|Set_Para|Convert_XY)\w*)\(([^)]*)\)"
)


# Where the calls of a class stand.
CLASSES = [
    ("drawing/base_sgt.h", "CBase_SGT", {"primitives.md", "marks.md", "bars.md", "sheets.md", "charts.md"}),
    ("slides/slide.h", "CWxSlide", {"slides.md"}),
    ("engineering/field.h", "CChang", {"slides.md"}),
]


def arguments(text):
    """The names of the parameters of a declaration."""
    parts = re.sub(r"<[^<>]*>", "", text).split(",")
    return tuple(re.search(r"(\w+)$", part.strip())[1] for part in parts if part.strip())


def calls_of(header, name):
    """Every public call of a class: (name, its arguments)."""
    text = header.read_text(encoding="utf-8").split(f"class QV_API {name} ")[1].split("\n};")[0].split(" private:")[0]
    text = re.sub(r"//.*", "", text)
    # What stands in bodies is indented deeper, or follows a brace.
    text = re.sub(r"\{[^{}]*\}", ";", text)
    return [(name, arguments(" ".join(given.split()))) for name, given in CALL.findall(text)]


def sections_of(folder):
    """Every section of the gallery: its calls, the arguments that its table explains, and the code that it shows."""
    code = {}
    for source in folder.glob("*.cpp"):
        code.update(re.findall(r"^FIGURE\((\w+)\) \{\n(.*?)^\}", source.read_text(encoding="utf-8"), re.S | re.M))
    for page in sorted(folder.glob("*.md")):
        for section in page.read_text(encoding="utf-8").split("\n## ")[1:]:
            named = re.findall(r"`(\w+)\(([\w, ]*)\)`", section)
            calls = {(name, tuple(given.replace(" ", "").split(",")) if given else ()) for name, given in named}
            rows = re.findall(r"^\| (`[^|]*) \|", section, re.M)
            explained = {name for row in rows for name in re.findall(r"`(\w+)`", row)}
            shown = "".join(code.get(name, "") for name in re.findall(r"\{\{code (\w+)\}\}", section))
            yield page.name, calls, explained, shown


def check_class(root, header, name, pages, sections):
    """The number of calls, and what is missing or too much."""
    calls = calls_of(root / "src/qvtools" / header, name)
    sections = [section for section in sections if section[0] in pages]
    faults = [] if calls else [f"{header}: no calls of {name} were found"]
    for call, given in calls:
        written = f"{call}({', '.join(given)})"
        found = [section for section in sections if (call, given) in section[1]]
        if not found:
            faults.append(f"{', '.join(sorted(pages))}: no entry for {name}::{written}")
        for page, _, explained, shown in found[:1]:
            missing = [argument for argument in given if argument not in explained]
            if missing:
                faults.append(f"{page}: {written}: nothing is said of {', '.join(missing)}")
            if call + "(" not in shown:
                faults.append(f"{page}: {written}: no code calls it")
    return calls, faults


def helpers_of(folder):
    """The classes and drawing functions of the helpers for composing."""
    for header in sorted(folder.glob("*.h")):
        if header.name != "base_sgt.h":
            text = header.read_text(encoding="utf-8")
            yield from re.findall(r"^(?:class|struct) QV_API (\w+)", text, re.M)
            yield from re.findall(r"^QV_API \w+ (Draw\w+|Underlay)\(", text, re.M)


def main():
    root = pathlib.Path(sys.argv[1])
    sections = list(sections_of(root / "docs/gallery"))
    known = set()
    faults = []
    for header, name, pages in CLASSES:
        calls, wrong = check_class(root, header, name, pages, sections)
        known |= set(calls)
        faults += wrong
    for page, named, _, _ in sections:
        faults += [f"{page}: there is no {n}({', '.join(a)})" for n, a in sorted(named - known)]
    page = (root / "docs/gallery/helpers.md").read_text(encoding="utf-8")
    helpers = list(helpers_of(root / "src/qvtools/drawing"))
    faults += [f"helpers.md: nothing of {name}" for name in helpers if f"qv::{name}" not in page]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(known)} calls and {len(helpers)} helpers, each with its entry")


if __name__ == "__main__":
    main()

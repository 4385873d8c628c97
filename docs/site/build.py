#!/usr/bin/env python3
"""Builds the manual: build.py SOURCE_FOLDER FIGURES OUT

SOURCE_FOLDER is the project's, FIGURES the folder of the pictures that qvfigures has drawn, OUT the folder of the site,
which is made anew.
"""

import html
import json
import pathlib
import re
import shutil
import sys

import links
import pages
import reference


MOST_HEADINGS = 40  # of a page that the navigation shows


class Site:
    """Pages in one frame, and what the search knows of them."""

    def __init__(self, root, out, sections):
        self.out = out
        self.sections = sections
        self.frame = (root / "docs/theme/page.html").read_text(encoding="utf-8")
        self.index = []

    def navigation(self, here, headings):
        lines = []
        # What the contents do not list stands under the page that lists it.
        listed = {pages.output_of(path) for _, items in self.sections for _, path in items}
        place = here if here in listed else "reference/index.html" if here.startswith("reference/") else None
        for title, items in self.sections:
            lines.append(f"<h2>{html.escape(title)}</h2>\n<ul>")
            for name, path in items:
                target = pages.output_of(path)
                mark = ' class="here"' if target == place else ""
                line = f'<li><a href="{pages.relative(target, here)}"{mark}>{html.escape(name)}</a>'
                if target == place and 0 < len(headings) <= MOST_HEADINGS:
                    inner = "".join(f'<li><a href="#{a}">{html.escape(h)}</a></li>' for a, h in headings)
                    line += f"<ul>{inner}</ul>"
                lines.append(line + "</li>")
            lines.append("</ul>")
        return "\n".join(lines)

    def add(self, path, title, body, headings=()):
        """Writes a page of the site."""
        target = self.out / path
        target.parent.mkdir(parents=True, exist_ok=True)
        parts = {
            "TITLE": html.escape(title),
            "LANG": "zh-CN" if ".zh." in path else "en",
            "ROOT": "../" * path.count("/"),
            "NAV": self.navigation(path, headings),
            "CONTENT": body,
        }
        target.write_text(re.sub(r"@([A-Z]+)@", lambda m: parts.get(m[1], m[0]), self.frame), encoding="utf-8")

    def know(self, path, title, body):
        """Enters the sections of a page into the search."""
        for part in re.split(r"(?=<h[1-3][ >])", body):
            heading = re.match(r'<h[1-3](?: id="([^"]*)")?[^>]*>(.*?)</h[1-3]>', part, re.S)
            if not heading:
                continue
            text = plain(part[heading.end() :])
            anchor = f"#{heading[1]}" if heading[1] and not part.startswith("<h1") else ""
            self.index.append([plain(heading[2]), title, path + anchor, text])

    def write_index(self):
        rows = ",\n".join(json.dumps(row, ensure_ascii=False) for row in self.index)
        (self.out / "search-index.js").write_text(f"const SEARCH_INDEX = [\n{rows}\n];\n", encoding="utf-8")


def plain(body):
    """What a reader sees of a piece of HTML, in one line."""
    return " ".join(html.unescape(re.sub(r"<[^>]+>", " ", body)).split())


def build(root, figures, out):
    written = pages.Pages(root, figures)
    site = Site(root, out, written.sections)
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    converted = {path: written.convert(path) for path in written.listed if path.endswith(".md")}
    names = reference.build(root, site, written.entries())
    for path, (title, body, headings) in converted.items():
        target = pages.output_of(path)
        site.add(target, title, names.link(body, target, pages.scope_of(path)), headings)
        site.know(target, title, body)
    for target, file in written.sources.items():
        site.add(target, *written.source_page(file))
    for target, file in written.copies.items():
        (out / target).parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(file, out / target)
    for file in ("style.css", "site.js"):
        shutil.copyfile(root / "docs/theme" / file, out / file)
    site.write_index()
    faults = [f"the figure {name} is on no page" for name in written.unused()] + names.faults
    count, checked, broken = links.check(out)
    print(f"{count} pages, {checked} links, {len(site.index)} entries of the search")
    return faults + broken


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    try:
        faults = build(*(pathlib.Path(a).resolve() for a in sys.argv[1:]))
    except pages.Problem as problem:
        faults = [str(problem)]
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    main()

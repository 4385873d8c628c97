"""Whether every link of a site leads somewhere: pages, anchors, pictures, styles and scripts."""

import html.parser
import pathlib
import posixpath
import urllib.parse


class Page(html.parser.HTMLParser):
    """The links and the anchors of a page."""

    def __init__(self, text):
        super().__init__()
        self.anchors = set()
        self.twice = []
        self.links = []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src") and value is not None:
                self.links.append(value)
            if name == "id":
                if value in self.anchors:
                    self.twice.append(value)
                self.anchors.add(value)
            if name == "name" and tag == "a":
                self.anchors.add(value)


def check(site):
    """(number of pages, number of links, faults) of the site in a folder. Links to the network are not followed, only
    counted; a page may not load anything from there."""
    files = {p.relative_to(site).as_posix() for p in pathlib.Path(site).rglob("*") if p.is_file()}
    pages = {f: Page((site / f).read_text(encoding="utf-8")) for f in files if f.endswith(".html")}
    links = 0
    faults = []
    for name, page in sorted(pages.items()):
        faults += [f"{name}: the anchor {anchor} is there twice" for anchor in page.twice]
        for link in page.links:
            links += 1
            parts = urllib.parse.urlsplit(link)
            if parts.scheme in ("http", "https", "mailto"):
                continue
            path = urllib.parse.unquote(parts.path)
            target = posixpath.normpath(posixpath.join(posixpath.dirname(name), path)) if path else name
            anchor = urllib.parse.unquote(parts.fragment)
            if parts.scheme or target not in files:
                faults.append(f"{name}: {link} leads nowhere")
            elif anchor and target in pages and anchor not in pages[target].anchors:
                faults.append(f"{name}: {link} leads to no anchor of its page")
    return len(pages), links, faults

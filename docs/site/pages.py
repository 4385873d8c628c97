"""The hand-written pages: Markdown files to pages of the site."""

import html
import os
import posixpath
import re
import subprocess
import sys

import markdown
from pygments import highlight
from pygments.formatters import HtmlFormatter
from pygments.lexers import TextLexer, get_lexer_for_filename

CONTENTS = "docs/contents.md"
FIGURES = "docs/figures/"  # where pages say that the pictures of the snippets are
PIXELS_A_MM = 5.2  # of those pictures
DIRECTIVE = re.compile(r"\{\{(\w+) ([^}]+)\}\}\s*$")
SHOWN = re.compile(r"^ *//\[ *\n(.*?)^ *//\] *\n", re.S | re.M)


# Whose calls a page tells of, where it gives their names alone.
SCOPES = {"docs/gallery/slides.md": "CWxSlide", "docs/gallery/": "CBase_SGT", "docs/composing.md": "CBase_SGT"}


class Problem(Exception):
    """What is wrong with a page, with its name."""


def output_of(source):
    """Where a page goes: docs/import.md to import.html, ARCHITECTURE.md to architecture.html."""
    name = source.removeprefix("docs/")
    name = name if name != source else name.lower()
    return re.sub(r"\.md$", ".html", name)


def relative(address, page):
    """An address of the site, an anchor with it or not, as seen from a page."""
    path, mark, anchor = address.partition("#")
    return posixpath.relpath(path, posixpath.dirname(page) or ".") + mark + anchor


def link_to(address, page, text):
    return f'<a href="{relative(address, page)}">{text}</a>'


def read_contents(root):
    """The sections of the navigation: (title, [(title, path)]) in order. Paths are those of Markdown files from the
    project's folder, or of pages that are made (reference/…)."""
    sections = []
    for line in (root / CONTENTS).read_text(encoding="utf-8").splitlines():
        if heading := re.match(r"## (.*)", line):
            sections.append((heading[1], []))
        elif item := re.match(r"- \[(.*)\]\((.*)\)", line):
            path = item[2]
            made = path.endswith(".html")
            sections[-1][1].append((item[1], path if made else posixpath.normpath("docs/" + path)))
    return sections


def scope_of(source):
    """The class whose names a page may give alone; empty for none."""
    return next((scope for path, scope in SCOPES.items() if source.startswith(path)), "")


def snippets_of(root):
    """The code of every FIGURE in docs/, as pages show it, by name."""
    found = {}
    for source in sorted((root / "docs").rglob("*.cpp")):
        for name, body in re.findall(r"^FIGURE\((\w+)\) \{\n(.*?)^\}", source.read_text(encoding="utf-8"), re.S | re.M):
            if name in found:
                raise Problem(f"{source}: there is another figure {name}")
            parts = SHOWN.findall(body)
            found[name] = unindented("".join(parts) if parts else body)
    return found


def unindented(code):
    lines = code.rstrip().split("\n")
    margin = min(len(line) - len(line.lstrip()) for line in lines if line.strip())
    return "\n".join(line[margin:] for line in lines)


class Pages:
    """Converts pages; collects what they show of other files."""

    def __init__(self, root, figures):
        self.root = root
        self.figures = figures  # the folder of the pictures that were drawn
        self.snippets = snippets_of(root)
        self.sections = read_contents(root)
        self.listed = [path for _, items in self.sections for _, path in items]
        self.copies = {}  # output path: file
        self.sources = {}  # output path: file that is shown with its syntax
        self.shown = set()  # snippets whose code or picture some page has
        written = {p.relative_to(root).as_posix() for p in (root / "docs").rglob("*.md")} - {CONTENTS}
        if missing := sorted(written - set(self.listed)):
            raise Problem(f"{CONTENTS} does not list {', '.join(missing)}")

    def convert(self, source):
        """(title, HTML, [(anchor, heading)] of the second level) of a page."""
        text = (self.root / source).read_text(encoding="utf-8")
        text = self.expand(text, source)
        converter = markdown.Markdown(
            extensions=["tables", "fenced_code", "toc", "attr_list", "def_list", "sane_lists", "codehilite"],
            extension_configs={"codehilite": {"guess_lang": False}, "toc": {"slugify": slug, "toc_depth": "1-3"}},
            output_format="html",
        )
        body = converter.convert(text)
        body = re.sub(r'(href|src)="([^"]*)"', lambda m: f'{m[1]}="{self.target(m[2], source)}"', body)
        body = re.sub(r"<img [^>]*>", self.sized, body)
        body = body.replace("<table>", '<div class="table"><table>').replace("</table>", "</table></div>")
        title = re.search(r"<h1[^>]*>(.*?)</h1>", body, re.S)
        if not title:
            raise Problem(f"{source}: has no title")
        headings = [(h["id"], html.unescape(h["name"])) for one in converter.toc_tokens for h in one["children"]]
        return html.unescape(re.sub(r"<[^>]+>", "", title[1])), body, headings

    def expand(self, text, source):
        """Puts what the directives {{…}} ask for in their place; those within fences are left."""
        lines = []
        fence = None
        for line in text.split("\n"):
            mark = re.match(r" *(```+|~~~+)", line)
            if mark:
                fence = None if fence == mark[1] else fence or mark[1]
            directive = None if fence else DIRECTIVE.match(line)
            lines.append(self.made(directive[1], directive[2].strip(), source) if directive else line)
        return "\n".join(lines)

    def made(self, kind, what, source):
        if kind == "code":
            if what not in self.snippets:
                raise Problem(f"{source}: there is no FIGURE({what})")
            self.shown.add(what)
            return f"\n```cpp\n{self.snippets[what]}\n```\n"
        if kind == "source":
            path = self.root / what
            if not path.is_file():
                raise Problem(f"{source}: there is no file {what}")
            languages = {".cpp": "cpp", ".h": "cpp", ".py": "python", ".txt": "text", ".sh": "bash"}
            language = "cmake" if path.name == "CMakeLists.txt" else languages.get(path.suffix, "text")
            return f"\n```{language}\n{path.read_text(encoding='utf-8').rstrip()}\n```\n"
        if kind == "made":
            command = [sys.executable, "-B", self.root / what, self.root]
            environment = {**os.environ, "FIGURES": str(self.figures)}
            run = subprocess.run(command, capture_output=True, text=True, env=environment)
            if run.returncode:
                raise Problem(f"{source}: {what}: {run.stderr}")
            return run.stdout
        raise Problem(f"{source}: {{{{{kind} …}}}} is no directive")

    def target(self, link, source):
        """A link of a page as the site has it."""
        link = html.unescape(link)
        if re.match(r"[a-z]+:", link) or link.startswith("#"):
            return html.escape(link)
        path, _, anchor = link.partition("#")
        path = posixpath.normpath(posixpath.join(posixpath.dirname(source), path))
        if path in self.listed and path.endswith(".md"):
            made = output_of(path)
        elif path.startswith(FIGURES) and path.endswith((".svg", ".png")):
            name = posixpath.basename(path)
            if not (self.figures / name).is_file():
                raise Problem(f"{source}: there is no picture {name}: its snippet is missing, or failed")
            made = "figures/" + name
            self.copies[made] = self.figures / name
            self.shown.add(re.sub(r"(_\d+)?\.\w+$", "", name))
        elif path.startswith("docs/reference"):
            made = path.removeprefix("docs/")
        elif (self.root / path).is_file():
            if path.endswith((".png", ".svg", ".pdf", ".dxf")):
                made = path.removeprefix("docs/")
                self.copies[made] = self.root / path
            else:
                made = f"source/{path}.html"
                self.sources[made] = self.root / path
        else:
            raise Problem(f"{source}: links to {link}, which is not there")
        return html.escape(relative(made, output_of(source)) + ("#" + anchor if anchor else ""))

    def sized(self, image):
        """Pictures of snippets all have one scale."""
        name = re.search(r'src="[^"]*figures/([^"/]*\.svg)"', image[0])
        if not name:
            return image[0].replace("<img", '<img loading="lazy"')
        head = (self.figures / name[1]).read_text(encoding="utf-8")[:500]
        width = float(re.search(r'width="([\d.]+)mm"', head)[1]) * PIXELS_A_MM
        return image[0].replace("<img", f'<img class="figure" width="{width:.0f}"')

    def source_page(self, file):
        """A file of the project as HTML."""
        text = file.read_text(encoding="utf-8", errors="replace")
        try:
            lexer = get_lexer_for_filename(file.name)
        except ValueError:
            lexer = TextLexer()
        name = file.relative_to(self.root).as_posix()
        return name, f"<h1>{html.escape(name)}</h1>" + highlight(text, lexer, HtmlFormatter(cssclass="codehilite", linespans="L"))

    def entries(self):
        """The gallery's entries: the address of each call that a section names with its arguments."""
        found = {}
        for source in self.listed:
            if source.startswith("docs/gallery/") and source.endswith(".md"):
                text = (self.root / source).read_text(encoding="utf-8")
                for anchor, section in re.findall(r"^## .*\{#([\w-]+)\}\n(.*?)(?=^## |\Z)", text, re.S | re.M):
                    for call in re.findall(r"`(\w+)\([\w, ]*\)`", section):
                        found.setdefault(f"{scope_of(source)}::{call}", f"{output_of(source)}#{anchor}")
        return found

    def unused(self):
        """Snippets that no page shows."""
        return sorted(set(self.snippets) - self.shown)


def slug(text, separator):
    """Anchors as readers of plain Markdown make them: small letters, blanks to hyphens."""
    return re.sub(r"[\s]+", separator, re.sub(r"[^\w\s-]", "", text.strip().lower()))

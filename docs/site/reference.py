"""The reference: a page for each public header, in the header's own order, from what Doxygen reads of it."""

import html
import pathlib
import re
import subprocess
import sys
import tempfile
import textwrap
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field

import pages

# How descriptions come out in HTML; an element that is not here is a fault.
PLAIN = {"itemizedlist": "ul", "orderedlist": "ol", "listitem": "li", "emphasis": "em", "bold": "b", "computeroutput": "code",
         "table": "table", "row": "tr", "entry": "td", "subscript": "sub", "superscript": "sup", "linebreak": "br"}  # fmt: skip
THROUGH = {"detaileddescription", "briefdescription", "ref", "highlight", "sp", "ulink", "anchor", "zwj", "nonbreakablespace"}


@dataclass
class Member:
    """A function, variable, enumeration, alias or macro."""

    name: str
    qualified: str
    kind: str
    line: int
    declaration: str
    text: str  # the description as HTML
    values: list = field(default_factory=list)  # of an enumeration: (name, value, description)
    protected: bool = False
    anchor: str = ""


@dataclass
class Type:
    """A class, struct or union."""

    name: str
    kind: str
    line: int
    text: str
    template: str = ""
    bases: list = field(default_factory=list)
    members: list = field(default_factory=list)
    inner: list = field(default_factory=list)
    anchor: str = ""


@dataclass
class Header:
    """A public header."""

    path: str  # from src/
    text: str
    types: list = field(default_factory=list)
    members: list = field(default_factory=list)

    @property
    def page(self):
        return "reference/" + self.path.removeprefix("qvtools/").replace(".h", ".html")


class Names:
    """Where the names of the reference are, and links to them."""

    def __init__(self):
        self.faults = []
        self.places = {}  # a name, qualified or not: [(address, qualified name)]

    def add(self, qualified, address):
        parts = qualified.split("::")
        for i in range(len(parts)):
            self.places.setdefault("::".join(parts[i:]), []).append((address, qualified))

    def find(self, name, scope=""):
        """The address of a name as a text gives it, in the scope of a class; None when it is none or one of many."""
        found = self.places.get(name, [])
        inside = [place for place in found if scope and place[1] == f"{scope}::{name}"]
        exact = [place for place in found if place[1] in (name, "qv::" + name)]
        owners = {place[1] for place in found}
        chosen = inside or exact or (found if len(owners) == 1 else [])
        return chosen[0][0] if chosen else None

    def link(self, body, page, scope=""):
        """Makes links of the names that stand as code in a piece of HTML, outside of links and blocks of code."""
        parts = re.split(r"(<pre.*?</pre>|<a [^>]*>.*?</a>|<h[1-6].*?</h[1-6]>)", body, flags=re.S)
        for i in range(0, len(parts), 2):
            parts[i] = re.sub(r"<code>([^<]*)</code>", lambda m: self.linked(m, page, scope), parts[i])
        return "".join(parts)

    def linked(self, match, page, scope):
        text = html.unescape(match[1])
        name = re.match(r"(?:#include [\"<])?((?:\w+/)*\w+\.h|~?\w+(?:::~?\w+)*)", text)
        if not name or len(text) > len(name[0]) and text[len(name[0])] not in "(\"[":
            return match[0]
        if re.fullmatch(r"[a-z]+\d*", name[1]) and not text.endswith(")"):
            return match[0]  # words of the language, arguments
        address = self.find(name[1], scope)
        if not address:
            return match[0]
        return f'<a href="{pages.relative(address.split("#")[0], page)}{address[address.find("#"):] if "#" in address else ""}">{match[0]}</a>'

    def declared(self, text, page, name=None):
        """A declaration as HTML, with links at the names of types; the name that is declared stands out."""
        told = False

        def word(match):
            nonlocal told
            if match[0] == name and not told:
                told = True
                return f"<b>{name}</b>"
            address = self.types.get(match[0]) or self.types.get("qv::" + match[0])
            if not address:
                return match[0]
            path, anchor = address.split("#")
            return f'<a href="{pages.relative(path, page)}#{anchor}">{match[0]}</a>'

        return re.sub(r"[A-Za-z_]\w*(?:::\w+)*", word, html.escape(text, quote=False))


def run_doxygen(root, work):
    """The XML of the headers and the lines of warnings."""
    config = (root / "docs/site/Doxyfile").read_text(encoding="utf-8")
    config += f"""
INPUT           = {root}/src {root}/docs/site
STRIP_FROM_PATH = {root}/src
FILTER_PATTERNS = *.h="{sys.executable} -B {root}/docs/site/filter_header.py"
OUTPUT_DIRECTORY = {work}
WARN_LOGFILE    = {work}/warnings
"""
    subprocess.run(["doxygen", "-"], input=config, text=True, check=True)
    lines = (work / "warnings").read_text(encoding="utf-8").splitlines()
    return sorted({line.replace(f"{root}/", "").replace("warning: ", "") for line in lines})


class Reader:
    """Takes Doxygen's XML to headers."""

    def __init__(self, folder):
        self.faults = []
        self.headers = {}
        self.types = {}
        compounds = [ElementTree.parse(f).getroot().find("compounddef") for f in sorted(folder.glob("*.xml"))]
        compounds = [c for c in compounds if c is not None]
        for compound in compounds:
            if compound.get("kind") == "file" and compound.find("location").get("file").endswith(".h"):
                path = compound.find("location").get("file").removeprefix("src/")
                self.headers[path] = Header(path, self.described(compound))
        for compound in compounds:
            if compound.get("kind") in ("class", "struct", "union"):
                self.take_type(compound)
        seen = set()
        for compound in compounds:
            if compound.get("kind") in ("file", "namespace"):
                for element in compound.iter("memberdef"):
                    if element.get("id") not in seen:
                        seen.add(element.get("id"))
                        self.take_free(element)
        for name, entry in sorted(self.types.items()):
            outer = self.types.get(name.rpartition("::")[0])
            (outer[1].inner if outer else entry[0].types).append(entry[1])

    def take_type(self, compound):
        header = self.headers.get(compound.find("location").get("file").removeprefix("src/"))
        name = compound.findtext("compoundname")
        if header is None or "@" in name:
            return
        template = compound.find("templateparamlist")
        made = Type(name, compound.get("kind"), int(compound.find("location").get("line")), self.described(compound))
        if template is not None:
            made.template = template_text(template)
        made.bases = [base.text for base in compound.findall("basecompoundref") if base.get("prot") == "public"]
        for section in compound.findall("sectiondef"):
            for element in section.findall("memberdef"):
                if element.get("prot") != "private" and element.get("kind") != "friend":
                    made.members.append(self.member(element))
        made.members.sort(key=lambda m: m.line)
        self.types[name] = (header, made)

    def take_free(self, element):
        header = self.headers.get(element.find("location").get("file").removeprefix("src/"))
        if header:
            header.members.append(self.member(element))

    def member(self, element):
        location = element.find("location")
        line = int(location.get("declline") or location.get("line"))
        qualified = element.findtext("qualifiedname") or element.findtext("name")
        made = Member(element.findtext("name"), qualified, element.get("kind"), line, declaration(element), self.described(element))
        made.protected = element.get("prot") == "protected"
        for value in element.findall("enumvalue"):
            made.values.append((value.findtext("name"), value.findtext("initializer") or "", self.described(value)))
        return made

    def described(self, element):
        found = element.find("detaileddescription")
        text = self.content(found).strip() if found is not None else ""
        return text.replace("Quirk:", "<b>Quirk:</b>")

    def content(self, element):
        inner = html.escape(element.text or "", quote=False)
        for child in element:
            inner += self.content(child) + html.escape(child.tail or "", quote=False)
        tag = element.tag
        if tag == "para":
            # Lists and blocks of code stand outside of paragraphs.
            parts = re.split(r"(<(?:ul|ol|pre|table).*?</(?:ul|ol|pre|table)>)", inner.strip(), flags=re.S)
            return "".join(p if i % 2 else f"<p>{p.strip()}</p>" for i, p in enumerate(parts) if p.strip())
        if tag in ("verbatim", "programlisting"):
            # The first line has lost what it was set in by.
            first, _, rest = inner.strip("\n").partition("\n")
            return f"<pre>{first.strip()}\n{textwrap.dedent(rest)}</pre>"
        if tag == "codeline":
            return inner + "\n"
        if tag == "sp":
            return " "
        if tag == "linebreak":
            return "<br>"
        if tag in PLAIN:
            return f"<{PLAIN[tag]}>{inner}</{PLAIN[tag]}>"
        entities = {"ndash": "–", "mdash": "—", "times": "×", "deg": "°", "plusmn": "±", "rsquo": "’", "nonbreakablespace": " "}
        if tag in entities:
            return entities[tag]
        if tag not in THROUGH:
            self.faults.append(f"a comment has an element <{tag}> that the pages do not know: {inner[:80]}")
        return inner


def text_of(element):
    return "".join(element.itertext()) if element is not None else ""


def template_text(element):
    parameters = []
    for parameter in element.findall("param"):
        text = " ".join(filter(None, [text_of(parameter.find("type")), parameter.findtext("declname")]))
        default = text_of(parameter.find("defval"))
        parameters.append(text + (f" = {default}" if default else ""))
    return f"template <{', '.join(parameters)}>"


def declaration(element):
    """How a member is declared."""
    kind = element.get("kind")
    name = element.findtext("name")
    type_ = text_of(element.find("type")).strip()
    arguments = element.findtext("argsstring") or ""
    if kind == "define":
        parameters = [p.findtext("defname") or "" for p in element.findall("param")]
        return f"#define {name}" + (f"({', '.join(parameters)})" if parameters else "")
    if kind == "enum":
        return f"enum {'class ' if element.get('strong') == 'yes' else ''}{name}"
    if kind == "typedef":
        definition = element.findtext("definition") or ""
        return definition if definition.startswith("using") else f"typedef {type_} {name}{arguments}"
    template = element.find("templateparamlist")
    words = [template_text(template) if template is not None else ""]
    words += ["static" if element.get("static") == "yes" else "", "virtual" if element.get("virt") != "non-virtual" and kind == "function" and "override" not in arguments else ""]
    words += ["explicit" if element.get("explicit") == "yes" else "", type_]
    text = " ".join(filter(None, words + [name])) + arguments
    text = re.sub(r"=(0|default|delete)$", r" = \1", text).replace("< ", "<").replace(" >", ">").replace("* ", "*").replace("& ", "&")
    text = re.sub(r" ([*&]+)(?=\w)", r"\1 ", text)
    initial = text_of(element.find("initializer")).strip()
    if kind == "variable" and initial and len(initial) < 40 and "\n" not in initial:
        text += (" " if initial.startswith("=") else "") + initial
    return text


class Writer:
    """Makes the pages."""

    def __init__(self, site, names, headers, pictures):
        self.site = site
        self.pictures = pictures  # the entries of the gallery: a call and its address
        self.names = names
        self.headers = headers

    def anchors(self):
        """Gives every name its place; overloads are numbered."""
        self.names.types = {}
        for header in self.headers:
            used = {}

            def place(qualified, header=header, used=used):
                anchor = re.sub(r"[^\w.-]", "_", qualified.replace("::", "."))
                used[anchor] = used.get(anchor, 0) + 1
                anchor += f"-{used[anchor]}" if used[anchor] > 1 else ""
                self.names.add(qualified, f"{header.page}#{anchor}")
                return anchor

            self.names.add(header.path, header.page)
            for i in range(header.path.count("/")):
                self.names.places.setdefault(header.path.split("/", i + 1)[-1], []).append((header.page, header.path))
            for one in every_type(header.types):
                one.anchor = place(one.name)
                self.names.types[one.name] = f"{header.page}#{one.anchor}"
                for member in one.members:
                    member.anchor = place(f"{one.name}::{member.name}")
            for member in header.members:
                member.anchor = place(member.qualified)
                if member.kind in ("enum", "typedef"):
                    self.names.types[member.qualified] = f"{header.page}#{member.anchor}"

    def header(self, header):
        path = header.path
        body = [f"<h1>{html.escape(path.removeprefix('qvtools/'))}</h1>", f"<pre>#include \"{html.escape(path)}\"</pre>", header.text]
        for item in in_order(header.types + header.members):
            body.append(self.type(item, header, 2) if isinstance(item, Type) else self.group(item, header, ""))
        headings = [(t.anchor, t.name) for t in sorted(header.types, key=lambda t: t.line)]
        self.site.add(header.page, path, self.names.link("\n".join(body), header.page), headings)
        self.know(path, header.page, path, header.text, "")

    def type(self, one, header, level):
        text = f"{one.kind} {one.name}"
        if one.bases:
            text += " : " + ", ".join(one.bases)
        title = f'<h{level} id="{one.anchor}">{html.escape(one.name)}</h{level}>'
        template = html.escape(one.template) + "\n" if one.template else ""
        declared = f'<pre class="declared">{template}{self.names.declared(text, header.page, one.name)}</pre>'
        self.know(one.name, header.page, header.path, one.text, one.anchor)
        body = [title, declared, self.names.link(one.text, header.page, one.name)]
        protected = False
        for item in in_order(one.members + one.inner):
            if isinstance(item, Type):
                body.append(self.type(item, header, level + 1))
                continue
            if item[0].protected and not protected:
                body.append(f"<h{level + 1}>For derived classes</h{level + 1}>")
            protected = item[0].protected
            body.append(self.group(item, header, one.name, one.text))
        return f'<section class="type">{"".join(body)}</section>'

    def group(self, members, header, scope, known=""):
        """Members that share a comment."""
        lines = []
        for member in members:
            lines.append(f'<code id="{member.anchor}">{self.names.declared(member.declaration, header.page, member.name)}</code>')
            name = f"{scope}::{member.name}" if scope else member.qualified
            told = " ".join([html.escape(member.declaration)] + [f"{v[0]} {v[2]}" for v in member.values]) + " " + member.text
            self.know(name, header.page, header.path, told, member.anchor)
        text = members[0].text
        values = self.values(members[0]) + self.picture(members, header, scope)
        shown = "" if text == known else self.names.link(text, header.page, scope)
        short = all(m.kind == "variable" for m in members) and shown.count("<p>") == 1 and len(shown) < 400
        return f'<div class="member{" field" if short else ""}"><div class="declared">{"".join(lines)}</div>{shown}{values}</div>'

    def picture(self, members, header, scope):
        """A link to the gallery's entry of calls that have one."""
        found = [self.pictures[f"{scope}::{m.name}"] for m in members if f"{scope}::{m.name}" in self.pictures]
        if not found:
            return ""
        path, _, anchor = found[0].partition("#")
        return f'<p><a href="{pages.relative(path, header.page)}#{anchor}">In the gallery</a></p>'

    def values(self, member):
        if not member.values:
            return ""
        if not any(text and text != member.text for _, _, text in member.values):
            return "<p>" + ", ".join(f"<code>{html.escape(f'{n} {i}'.strip())}</code>" for n, i, _ in member.values) + "</p>"
        rows = "".join(
            f"<tr><td><code>{html.escape(f'{n} {i}'.strip())}</code></td><td>{'' if t == member.text else t}</td></tr>" for n, i, t in member.values
        )
        return f'<div class="table"><table>{rows}</table></div>'

    def know(self, name, page, path, text, anchor):
        plain = " ".join(html.unescape(re.sub(r"<[^>]+>", " ", text)).split())
        self.site.index.append([name, path, page + (f"#{anchor}" if anchor else ""), plain])

    def overview(self):
        """The list of headers by rooms."""
        rooms = {}
        for header in self.headers:
            rooms.setdefault(header.path.removeprefix("qvtools/").rpartition("/")[0], []).append(header)
        body = ["<h1>Reference</h1>", '<p>Every public header, in its own order. <code>#include "qvtools.h"</code> brings all of them but the adapters (<code>platform/qt</code>, <code>platform/win32</code>) and the widgets.</p>']
        headings = []
        for room, headers in sorted(rooms.items()):
            anchor = room.replace("/", "-")
            if room:
                headings.append((anchor, room))
                body.append(f'<h2 id="{anchor}">{room}</h2>')
            rows = []
            for header in sorted(headers, key=lambda h: h.path):
                place = pages.relative(header.page, "reference/index.html")
                first = re.match(r"<p>(.*?[.:](?= |</p>))", header.text, re.S)
                told = self.names.link(first[1].rstrip(":") if first else "", "reference/index.html")
                known = ", ".join(f'<a href="{place}#{anchor}">{html.escape(name)}</a>' for name, anchor in known_names(header))
                rows.append(f'<tr><td><a href="{place}">{header.path.rpartition("/")[2]}</a></td><td>{told}</td><td>{known}</td></tr>')
            body.append(f'<div class="table headers"><table>{"".join(rows)}</table></div>')
        self.site.add("reference/index.html", "Reference", "\n".join(body), headings)


def known_names(header):
    """The types and free names of a header, overloads once: (name, anchor)."""
    found = {}
    for item in sorted(header.types + header.members, key=lambda i: i.line):
        found.setdefault(item.qualified if isinstance(item, Member) else item.name, item.anchor)
    return found.items()


def every_type(types):
    for one in sorted(types, key=lambda t: t.line):
        yield one
        yield from every_type(one.inner)


def in_order(items):
    """Types one by one, members in the groups that share a comment, by their lines."""
    out = []
    for item in sorted(items, key=lambda i: i.line):
        if isinstance(item, Type):
            out.append(item)
        elif out and isinstance(out[-1], list) and out[-1][0].text == item.text and item.text and not item.values and out[-1][0].protected == item.protected:
            out[-1].append(item)
        else:
            out.append([item])
    return out


def build(root, site, pictures):
    """Adds the reference to the site; `pictures` has the gallery's address of each call that it shows."""
    names = Names()
    with tempfile.TemporaryDirectory() as work:
        names.faults = run_doxygen(root, pathlib.Path(work))
        reader = Reader(pathlib.Path(work) / "xml")
    names.faults += reader.faults
    headers = sorted(reader.headers.values(), key=lambda h: h.path)
    writer = Writer(site, names, headers, pictures)
    writer.anchors()
    for header in headers:
        writer.header(header)
    writer.overview()
    print(f"{len(headers)} headers, {sum(len(p) for p in names.places.values())} names, {len(names.faults)} remarks of Doxygen")
    return names

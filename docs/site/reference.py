"""The reference: a page for each public header, in the header's own order."""

import html
import pathlib
import re
import tempfile

import pages
from headers import Member, Reader, Type, run_doxygen

OVERVIEW = "reference/index.html"
ABOUT = """Every public header, in its own order. <code>#include "qvtools.h"</code> brings all of them but the adapters
(<code>platform/qt</code>, <code>platform/win32</code>) and the widgets."""
MOST_FIELD = 400  # letters of a comment that stands beside its variable


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
        return pages.link_to(address, page, match[0])

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
            return pages.link_to(address, page, match[0])

        return re.sub(r"[A-Za-z_]\w*(?:::\w+)*", word, html.escape(text, quote=False))


class Writer:
    """Makes the pages."""

    def __init__(self, site, names, headers, pictures):
        self.site = site
        self.pictures = pictures  # the entries of the gallery: a call and its address
        self.names = names
        self.headers = headers
        self.count = 0  # of the names that have a place

    def anchors(self):
        """Gives every name its place; overloads are numbered."""
        self.names.types = {}
        for header in self.headers:
            used = {}

            def place(qualified, header=header, used=used):
                self.count += 1
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
        body = [f"<h1>{path.removeprefix('qvtools/')}</h1>", f'<pre>#include "{path}"</pre>', header.text]
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
            declared = self.names.declared(member.declaration, header.page, member.name)
            lines.append(f'<code id="{member.anchor}">{declared}</code>')
            values = [f"{name} {told}" for name, _, told in member.values]
            told = " ".join([html.escape(member.declaration), *values, member.text])
            name = f"{scope}::{member.name}" if scope else member.qualified
            self.know(name, header.page, header.path, told, member.anchor)
        text = "" if members[0].text == known else self.names.link(members[0].text, header.page, scope)
        below = self.values(members[0]) + self.picture(members, header, scope)
        is_field = all(m.kind == "variable" for m in members) and text.count("<p>") == 1 and len(text) < MOST_FIELD
        style = "member field" if is_field else "member"
        return f'<div class="{style}"><div class="declared">{"".join(lines)}</div>{text}{below}</div>'

    def picture(self, members, header, scope):
        """A link to the gallery's entry of calls that have one."""
        found = [self.pictures[f"{scope}::{m.name}"] for m in members if f"{scope}::{m.name}" in self.pictures]
        return f"<p>{pages.link_to(found[0], header.page, 'In the gallery')}</p>" if found else ""

    def values(self, member):
        """The values of an enumeration: a table where they have comments of their own, else a list."""
        named = []
        for name, value, text in member.values:
            shown = html.escape(f"{name} {value}".strip())
            named.append((f"<code>{shown}</code>", "" if text == member.text else text))
        if not any(text for _, text in named):
            return f"<p>{', '.join(name for name, _ in named)}</p>" if named else ""
        rows = "".join(f"<tr><td>{name}</td><td>{text}</td></tr>" for name, text in named)
        return f'<div class="table"><table>{rows}</table></div>'

    def know(self, name, page, path, text, anchor):
        plain = " ".join(html.unescape(re.sub(r"<[^>]+>", " ", text)).split())
        self.site.index.append([name, path, page + (f"#{anchor}" if anchor else ""), plain])

    def overview(self):
        """The list of headers by rooms."""
        rooms = {}
        for header in self.headers:
            rooms.setdefault(header.path.removeprefix("qvtools/").rpartition("/")[0], []).append(header)
        body = ["<h1>Reference</h1>", f"<p>{ABOUT}</p>"]
        headings = []
        for room, headers in sorted(rooms.items()):
            if room:
                headings.append((room.replace("/", "-"), room))
                body.append(f'<h2 id="{headings[-1][0]}">{room}</h2>')
            rows = "".join(self.row(header) for header in headers)
            body.append(f'<div class="table headers"><table>{rows}</table></div>')
        self.site.add(OVERVIEW, "Reference", "\n".join(body), headings)

    def row(self, header):
        """A header's line in the list: its name, the first sentence of its comment, and what it declares."""
        first = re.match(r"<p>(.*?[.:])(?= |</p>)", header.text, re.S)
        told = self.names.link(first[1].rstrip(":") if first else "", OVERVIEW)
        known = known_names(header).items()
        links = ", ".join(pages.link_to(f"{header.page}#{anchor}", OVERVIEW, html.escape(name)) for name, anchor in known)
        itself = pages.link_to(header.page, OVERVIEW, header.path.rpartition("/")[2])
        return f"<tr><td>{itself}</td><td>{told}</td><td>{links}</td></tr>"


def known_names(header):
    """The types and free names of a header, overloads once, with their anchors."""
    found = {}
    for item in sorted(header.types + header.members, key=lambda i: i.line):
        found.setdefault(item.qualified if isinstance(item, Member) else item.name, item.anchor)
    return found


def every_type(types):
    for one in sorted(types, key=lambda t: t.line):
        yield one
        yield from every_type(one.inner)


def in_order(items):
    """Types one by one, members in the groups that share a comment, by their lines."""
    out = []
    for item in sorted(items, key=lambda i: i.line):
        before = out[-1][0] if out and isinstance(out[-1], list) else None
        if isinstance(item, Type):
            out.append(item)
        elif before and item.text and not item.values and (before.text, before.protected) == (item.text, item.protected):
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
    print(f"{len(headers)} headers, {writer.count} names, {len(names.faults)} remarks of Doxygen")
    return names

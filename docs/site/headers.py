"""The public headers as Doxygen reads them: types and names with their comments, in the order of the files."""

import html
import re
import subprocess
import sys
import textwrap
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field

# How descriptions come out in HTML; an element that is not here is a fault.
TAGS = {
    "itemizedlist": "ul",
    "orderedlist": "ol",
    "listitem": "li",
    "emphasis": "em",
    "bold": "b",
    "computeroutput": "code",
    "table": "table",
    "row": "tr",
    "entry": "td",
    "subscript": "sub",
    "superscript": "sup",
}
SIGNS = {
    "ndash": "–",
    "mdash": "—",
    "times": "×",
    "deg": "°",
    "plusmn": "±",
    "rsquo": "’",
    "nonbreakablespace": " ",
    "sp": " ",
    "linebreak": "<br>",
}
THROUGH = {"detaileddescription", "ref", "highlight", "ulink", "anchor"}
MOST_INITIAL = 40  # letters of a variable's first value that are shown


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
        made = Member(
            name=element.findtext("name"),
            qualified=qualified,
            kind=element.get("kind"),
            line=line,
            declaration=declaration(element),
            text=self.described(element),
            protected=element.get("prot") == "protected",
        )
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
        if tag in TAGS:
            return f"<{TAGS[tag]}>{inner}</{TAGS[tag]}>"
        if tag in SIGNS:
            return SIGNS[tag]
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


def set_as_usual(text):
    """A declaration with its blanks where the headers have them."""
    text = re.sub(r"=(0|default|delete)$", r" = \1", text)
    text = text.replace("< ", "<").replace(" >", ">").replace("* ", "*").replace("& ", "&")
    return re.sub(r" ([*&]+)(?=\w)", r"\1 ", text)


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
    virtual = kind == "function" and element.get("virt") != "non-virtual" and "override" not in arguments
    template = element.find("templateparamlist")
    words = [
        template_text(template) if template is not None else "",
        "static" if element.get("static") == "yes" else "",
        "virtual" if virtual else "",
        "explicit" if element.get("explicit") == "yes" else "",
        type_,
        name,
    ]
    text = set_as_usual(" ".join(filter(None, words)) + arguments)
    initial = text_of(element.find("initializer")).strip()
    if kind == "variable" and 0 < len(initial) < MOST_INITIAL and "\n" not in initial:
        text += (" " if initial.startswith("=") else "") + initial
    return text

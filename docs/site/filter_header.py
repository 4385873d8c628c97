#!/usr/bin/env python3
"""Makes a public header of the library readable for Doxygen: filter_header.py HEADER

The headers state things once: a comment stands for all declarations that follow it without an empty line or a comment of
their own, whether it stands before the first of them or behind it; the comment at the top of a file is the file's. Doxygen
wants a comment at each name, so each gets a copy. What stands behind a declaration holds for those that follow it
when their names are of its family (x and y, polarA and polarB, xmin and ymax). Lines stay where they are.
"""

import re
import sys

COMMENT = re.compile(r"( *)///(?!<) ?(.*)")
BEHIND = re.compile(r"(.*?) *///< (.*)")
NO_DECLARATION = re.compile(r" *(#|}|namespace\b|public:|protected:|private:|Q_OBJECT|signals:|public slots:|QV_FORMAT|//)")
NAME = re.compile(r"(\w+)(\[[^]]*\])?( = [^;]*|\{[^;]*\})?[;,]")
ENUMERATOR = re.compile(r" *\w+( = [^;{]*)?,?( *///<.*)?$")
CAPTION = re.compile(r"char k\w+\[\] =  // (.*)")
# What needs no words: forms of declarations, and what is said of them. Nothing is shown of those with an empty text.
UNDERSTOOD = [
    (re.compile(r".*\bconst \w+&\) = delete;"), "Objects are not copied."),
    (re.compile(r".*\boperator==\(.*= default;"), "Member by member."),
    (re.compile(r" *(virtual )?~\w+\(\)"), ""),
    (re.compile(r" *friend (class|struct|void \w*swap)"), ""),
    (re.compile(r" *(class|struct) (QV_API )?[\w:]+;"), ""),
]


def verbatim(lines):
    """Comment lines as Doxygen takes them: what is set in (tables, formulas) keeps its lines."""
    out = []
    inside = item = False
    for line in lines:
        item = bool(re.match(r"\s*(-|\d+\.) ", line)) or item and line.startswith("  ")
        deep = line.startswith("  ") and not item
        if deep and not inside:
            line = "@verbatim" + line
        elif inside and line and not deep:
            line = "@endverbatim " + line
        inside = deep or inside and not line
        out.append(line)
    if inside:
        out[-1] += " @endverbatim"
    return out


def as_block(lines):
    """A comment in one line of the source."""
    return "/** " + " ".join(line or "<p>" for line in lines) + " */ "


def stem(declaration):
    """What the names of a family have in common."""
    name = NAME.search(declaration)
    return re.sub(r"([xXyYzZaAbBcC\d]|[xyz]?(min|max))$", "", name[1]) if name else None


class Filter:
    """Reads a header from its top to its end and writes it anew, line by line."""

    def __init__(self, lines):
        self.lines = lines
        self.out = list(lines)
        self.shared = None  # the comment of the run of declarations that is being read
        self.family = None  # the stem of the names that a comment behind a declaration holds for
        self.at_top = True  # of the file: nothing has been declared

    def end_of_declaration(self, at):
        """The line behind the declaration that begins at a line: at its semicolon, or the brace that closes it."""
        if ENUMERATOR.match(self.lines[at]):
            return at + 1
        depth = 0
        for here in range(at, len(self.lines)):
            line = re.sub(r" *//.*", "", self.lines[here])
            if line.endswith("{") and depth == 0 and self.is_type(at, here):
                return here + 1  # its members are declarations of their own
            depth += line.count("{") - line.count("}")
            if depth == 0 and line.endswith((";", "}")):
                return here + 1
            if line.startswith("#") and not line.endswith("\\") and self.lines[at].startswith("#"):
                return here + 1
        return len(self.lines)

    def is_type(self, at, here):
        """Whether the lines begin a class, an enumeration and their kin."""
        text = " ".join(self.lines[at : here + 1])
        return re.match(r" *(template <.*?> *)?(class|struct|enum|union)\b", text) is not None

    def run(self):
        at = 0
        while at < len(self.lines):
            line = self.lines[at]
            if COMMENT.match(line):
                at = self.take_comment(at)
            elif line.strip() in ("private:", "private Q_SLOTS:"):
                at = self.end_of_private(at)
            elif not line.strip() or NO_DECLARATION.match(line):
                self.shared = self.family = None
                at += 1
            else:
                at = self.take_declaration(at)
        return self.out

    def take_comment(self, at):
        """A comment on lines of its own, with the declaration that follows it at once. Returns the line behind both."""
        end = at
        while end < len(self.lines) and COMMENT.match(self.lines[end]):
            end += 1
        text = [COMMENT.match(line)[2] for line in self.lines[at:end]]
        detached = end == len(self.lines) or not self.lines[end].strip()
        self.write_comment(at, text, self.at_top and detached)
        self.at_top = False
        self.shared = None if detached else text
        self.family = None
        return end if detached else self.end_of_declaration(end)

    def take_declaration(self, at):
        """A declaration without a comment in front of it. Returns the line behind it."""
        self.at_top = False
        line = self.lines[at]
        end = self.end_of_declaration(at)
        behind = [m[2] for other in self.lines[at:end] if (m := BEHIND.match(other))]
        while behind and end < len(self.lines) and (m := re.match(r" *///< (.*)", self.lines[end])):
            behind.append(m[1])
            end += 1
        if caption := CAPTION.search(line):
            behind = [f'"{caption[1]}"']
        if self.family and stem(line) != self.family:
            self.shared = self.family = None
        if behind:
            self.shared = behind
            self.family = stem(line)
            for i in range(at, end):
                self.out[i] = re.sub(r" *///<.*", "", self.lines[i])
        own = next((text for form, text in UNDERSTOOD if form.match(line)), None)
        if own == "" and not behind:
            self.out[at] = ""
        elif text := behind or ([own] if own else self.shared):
            self.out[at] = as_block(text) + self.out[at]
        if self.is_type(at, end - 1):
            self.shared = self.family = None
        return end

    def end_of_private(self, at):
        """The line behind the private part of a class."""
        margin = re.match(" *", self.lines[at])[0]
        ends = re.compile(margin[:-1] + r"(}|" + margin[-1:] + r"(public|protected|signals)\b)")
        while not ends.match(self.lines[at]):
            at += 1
        return at

    def write_comment(self, begin, text, of_file):
        if of_file:
            self.out[begin - 1] = "/** @file"
        lines = verbatim(text)
        lines[0] = lines[0] if of_file else "/** " + lines[0]
        lines[-1] += " */"
        self.out[begin : begin + len(lines)] = lines


def main():
    text = open(sys.argv[1], encoding="utf-8").read()
    read = Filter(text.split("\n"))
    print("\n".join(read.run()), end="")


if __name__ == "__main__":
    main()

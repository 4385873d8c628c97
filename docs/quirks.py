#!/usr/bin/env python3
"""Prints the deliberate behaviours of the library in Markdown, gathered from the "Quirk:" comments:

    docs/quirks.py [SOURCE_FOLDER] [--link PATTERN]

PATTERN is how a place in the sources is linked: {file} is the path in the repository, {line} the line in it. The default
is the page that shows the source, as seen from docs/.
"""

import argparse
import pathlib
import re

HERE = pathlib.Path(__file__).resolve().parent.parent


def rooms(source):
    """Names and subjects of the rooms, in their order, from ARCHITECTURE.md."""
    text = (source / "ARCHITECTURE.md").read_text(encoding="utf-8")
    return re.findall(r"^\| `([\w/]+)/`(?: \*)? \| (.*) \|", text, re.M)


def comment_of(line):
    """The text of a comment at a line's end; None where there is none."""
    found = re.search(r"//[/!]?<? ?(.*)$", line)
    return found[1].strip() if found else None


def name_in(code):
    """The name that a line of code declares; None where it declares none."""
    found = re.search(r"(?:class|struct)\s+(?:QV_API\s+)?(\w+)", code) or re.search(r"(operator\S+?|~?[\w:]+)\s*\(", code)
    found = found or re.search(r"(\w+)\s*(?:\[[^]]*\]\s*)*(?:=[^=].*|\{.*)?;", code)
    return found[1] if found else None


def declared(lines, at, scope):
    """The names that the lines from `at` on declare, up to a blank line or a comment."""
    names = []
    for code in lines[at:]:
        if not code.strip() or code.lstrip().startswith("//"):
            break
        if len(code) - len(code.lstrip()) == (2 if scope else 0) and (name := name_in(code)):
            names.append(scope + name)
        if code.endswith("{"):
            break
    return names


def quirks_of(file):
    """Yields of each quirk of a file its line, the names that it tells of, and its text."""
    lines = file.read_text(encoding="utf-8").splitlines()
    public = file.suffix == ".h" and "/internal/" not in file.as_posix()
    scope = function = ""
    for i, line in enumerate(lines):
        if found := re.match(r"(?:class|struct) (?:QV_API )?(\w+)[^;]*\{$", line):
            scope = found[1] + "::"
        if line.startswith("};"):
            scope = ""
        if re.match(r"[A-Za-z].*\w\(", line):
            function = name_in(line) or ""
        comment = comment_of(line)
        if not comment or "Quirk:" not in comment:
            continue
        words, end = [comment.split("Quirk:", 1)[1]], i + 1
        if own := name_in(line.split("//")[0]):  # a comment behind what it tells of
            yield i + 1, [scope + own], words[0].strip()
            continue
        while comment := comment_of(lines[end]):
            words.append(comment)
            end += 1
        while lines[end].lstrip().startswith("//"):
            end += 1
        yield i + 1, declared(lines, end, scope) if public else [function], " ".join(words).strip()


def main():
    parser = argparse.ArgumentParser(description="Prints the deliberate behaviours of the library.")
    parser.add_argument("source", nargs="?", type=pathlib.Path, default=HERE, help="the project's folder")
    parser.add_argument("--link", default="../{file}#L-{line}", help="how a place in the sources is linked")
    asked = parser.parse_args()
    source = asked.source.resolve()
    subjects = dict(rooms(source))
    found = {room: [] for room in subjects}
    told = set()  # names that a header has told of
    for file in sorted((source / "src/qvtools").rglob("*.[hc]*"), key=lambda f: (f.suffix != ".h", f)):
        path = file.relative_to(source / "src/qvtools").as_posix()
        room = max((room for room in subjects if path.startswith(room + "/")), key=len, default="")
        for line, names, text in quirks_of(file):
            if "see the header" in text or (file.suffix == ".cpp" and told.intersection(names)):
                continue
            told.update(names)
            # Of several members the first is meant, unless the text says otherwise.
            several = "::" not in names[0] or text.startswith("these two")
            shown = names if several else names[:1]
            public = file.suffix == ".h" and "/internal/" not in path
            found[room].append((file, line, [n for n in dict.fromkeys(shown) if public or "::" in n], text))
    for room, quirks in found.items():
        if not quirks:
            continue
        subject = re.split("[:;]", subjects[room])[0]
        print(f"## {subject[0].upper()}{subject[1:]}\n")
        for file, line, names, text in quirks:
            place = asked.link.format(file=file.relative_to(source).as_posix(), line=line)
            title = ", ".join(f"`{name}`" for name in names)
            text = (text if re.match("[b-z] ", text) else text[0].upper() + text[1:]).rstrip(".")
            print(f"- {title + ': ' if title else ''}{text}. [{file.name}, line {line}]({place})")
        print()


if __name__ == "__main__":
    main()

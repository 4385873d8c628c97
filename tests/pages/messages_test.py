#!/usr/bin/env python3
"""Holds the page of messages to the sources: messages_test.py SOURCE_FOLDER. Every text of a report, a refusal, a remark of an
import or a plot, and a failure of a program stands on docs/messages.md, as far as it is no number or name."""

import pathlib
import re
import sys

STRING = r'"(?:[^"\\\n]|\\.)*"'
# What is called with a text for people, and where such texts stand without a call.
CALLS = re.compile(r"\b(?:tell_\w+|fail|failure|left_out|loss|remark|runtime_error|UsageError|ShowBox|fprintf|choose)\(")
PLACES = re.compile(r"(?:return|problem =|error_ =|why =) *(?=\")|\{counts\.\w+, (?=\")|kReasons\[\] = \{")


def without_comments(text):
    return re.sub(rf"({STRING})|//[^\n]*|'\"'", lambda m: m[1] or "", text)


def end_of(text, at):
    """Where a call, a list or a statement that begins at `at` ends."""
    depth = 0
    for found in re.finditer(rf"{STRING}|'[^']+'|[(){{}};]", text[at:]):
        depth += {"(": 1, "{": 1, ")": -1, "}": -1}.get(found[0], 0)
        if depth < 0 or (depth == 0 and found[0] == ";"):
            return at + found.start()
    return len(text)


def texts_of(source):
    """Yields the texts with the files that hold them."""
    captions = dict(re.findall(r"char (k\w+)\[\] =  // (.*)", (source / "src/qvtools/services/captions.h").read_text("utf-8")))
    for file in sorted([*(source / "src/qvtools").rglob("*.[hc]*"), *(source / "apps").rglob("*.cpp")]):
        text = without_comments(file.read_text("utf-8"))
        for found in [*CALLS.finditer(text), *PLACES.finditer(text)]:
            stretch = text[found.end():end_of(text, found.end())]
            yield from ((file, literal[1:-1]) for literal in re.findall(STRING, stretch))
            yield from ((file, captions[name]) for name in re.findall(r"captions::(k\w+)", stretch))
        yield from ((file, literal[1:-1]) for literal in re.findall(STRING, text) if re.search(r'\w.*!"$', literal))
    header = (source / "src/qvtools/widgets/viewer/captions.h").read_text("utf-8")
    rows = (source / "src/qvtools/widgets/viewer/captions.cpp").read_text("utf-8")
    for name in re.findall(r"\w+", header.split("// failures")[1].split("// pages")[0]):
        row = re.search(rf"\{{Text::{name},(.*?)\}},\n", rows, re.S)
        yield from ((source / "viewers", literal[1:-1]) for literal in re.findall(STRING, row[1]))


def pieces_of(text):
    """What of a text must stand on the page: stretches between formats and escapes that are words."""
    for piece in re.split(r"%\d(?![a-z.])|%[-+#0-9.]*l*[a-zA-Z%]|\\.", text):
        piece = piece.strip(" :;,.()[]")
        if len(re.findall(r"\w", piece)) >= 6 and (" " in piece or not piece.isascii()):
            yield piece


def main():
    source = pathlib.Path(sys.argv[1])
    page = " ".join((source / "docs/messages.md").read_text("utf-8").split())
    wanted = {(piece, file) for file, text in texts_of(source) for piece in pieces_of(text)}
    if len(wanted) < 150:
        sys.exit(f"only {len(wanted)} texts were found in the sources")
    missing = sorted({f"{file.relative_to(source)}: {piece}" for piece, file in wanted if piece not in page})
    if missing:
        sys.exit("not on docs/messages.md:\n" + "\n".join(missing))
    print(f"{len({piece for piece, _ in wanted})} texts are on the page")


if __name__ == "__main__":
    main()

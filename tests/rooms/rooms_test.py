#!/usr/bin/env python3
"""Holds the order of the library's rooms: rooms_test.py SOURCE_FOLDER.

ARCHITECTURE.md lists the rooms, each on those before it. A source includes headers of its own room and of rooms before it;
no public header includes a private one (internal/); system headers and questions about the system stand only in the rooms
that the list marks with a star.
"""

import pathlib
import re
import sys

SYSTEM_HEADER = re.compile(r"<(windows|unistd|fcntl|io|direct|dirent|process|termios|locale|langinfo|iconv|sys/\w+|Qt\w*/.*|Q\w+)(\.h)?>")
SYSTEM_QUESTION = re.compile(r"^\s*#\s*(if|elif).*\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__)\b")


def rooms_of(architecture):
    """Room names in order, and those that belong to the system."""
    text = architecture.read_text(encoding="utf-8")
    rows = re.findall(r"^\| `([\w/]+)/`( \*)? \|", text.split("## The rooms")[1].split("\n## ")[0], re.M)
    return [name for name, _ in rows], {name for name, mark in rows if mark}


def room_of(path, rooms):
    """The innermost room of a path below src/qvtools; None for a file of the library's own folder."""
    holders = [room for room in rooms if path.startswith(room + "/")]
    return max(holders, key=len) if holders else None


def faults(source, rooms, of_system):
    for file in sorted((source / "src/qvtools").rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        name = file.relative_to(source / "src/qvtools").as_posix()
        room = room_of(name, rooms)
        if room is None and "/" in name:
            yield f"{name}: its folder is no room"
            continue
        rank = rooms.index(room) if room else -1
        for line in file.read_text(encoding="utf-8").splitlines():
            if room not in of_system and (SYSTEM_QUESTION.match(line) or
                                          line.startswith("#include") and SYSTEM_HEADER.search(line)):
                if name != "api.h":
                    yield f"{name}: asks for the system: {line.strip()}"
            included = re.match(r'#include "qvtools/(.*)"', line)
            if not included:
                continue
            other = room_of(included[1], rooms)
            if other and rooms.index(other) > rank:
                yield f"{name} ({room}) includes {included[1]}, which stands above it"
            if "/internal/" in included[1] and "/internal/" not in name and file.suffix == ".h":
                yield f"{name}: a public header includes the private {included[1]}"


def main():
    source = pathlib.Path(sys.argv[1])
    rooms, of_system = rooms_of(source / "ARCHITECTURE.md")
    if len(rooms) < 10:
        sys.exit("ARCHITECTURE.md lists no rooms")
    found = list(faults(source, rooms, of_system))
    if found:
        sys.exit("\n".join(found))
    print(f"{len(rooms)} rooms, each on those before it")


if __name__ == "__main__":
    main()

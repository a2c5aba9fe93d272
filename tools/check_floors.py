#!/usr/bin/env python3
"""Checks which folder includes which: a file may include files of its own folder and of the folders that the line of its
folder names, and no file may include itself, directly or through others. Prints a line for each fault, and exits 1 if there
is one."""

import pathlib
import re
import sys

# What each folder may include besides itself. A folder is one in src, in include/orv, or in both; "." means the headers in
# include/orv itself. orv.h, which includes all of them, is not checked.
FLOORS = {
    ".": "",
    "nt": "",
    "crt": "nt runtime",
    "runtime": ". nt crt",
    "text": ". nt crt runtime",
    "security": ". nt crt runtime text",
    "stream": ". nt crt runtime",
    "time": ". nt crt runtime text",
    "hash": ". nt crt runtime text",
    "compress": ". nt crt runtime stream",
    "xml": ". nt crt runtime text stream",
    "sync": ". nt crt runtime text security",
    "random": ". nt crt runtime text sync",
    "env": ". nt crt runtime text",
    "thread": ". nt crt runtime text security sync env",
    "fs": ". nt crt runtime text security sync time hash random",
    "shm": ". nt crt runtime text security sync",
    "registry": ". nt crt runtime text security sync env thread fs",
    "program": ". nt crt runtime text",
    "startup": ". nt crt runtime text sync env random thread",
}

INCLUDE = re.compile(r'^#\s*include "([^"]+)"', re.M)


def folder_of(path):
    parts = path.parts[1:] if path.parts[0] == "orv" else path.parts
    return parts[0] if len(parts) > 1 else "."


def read_includes(root):
    """Each of our files, by the name that an #include gives it, with the names that it includes."""
    includes = {}
    for base in (root / "src", root / "include"):
        for file in sorted(base.rglob("*")):
            name = file.relative_to(base)
            if file.suffix in (".h", ".cpp") and name.parts[:2] != ("crt", "include") and str(name) != "orv/orv.h":
                includes[str(name)] = INCLUDE.findall(file.read_text(encoding="utf-8"))
    return includes


def wrong_floors(includes):
    for name, included in includes.items():
        folder = folder_of(pathlib.PurePath(name))
        if folder not in FLOORS:
            yield f"{name}: the folder {folder} has no line in the table of floors"
            continue
        allowed = {folder, *FLOORS[folder].split()}
        for target in included:
            if target in includes and folder_of(pathlib.PurePath(target)) not in allowed:
                yield f"{name}: includes {target}, which is not below {folder}"


def circles(includes):
    finished, path = set(), []

    def visit(name):
        if name in path:
            yield "includes itself: " + " -> ".join(path[path.index(name):] + [name])
        elif name not in finished:
            path.append(name)
            for target in includes[name]:
                if target in includes:
                    yield from visit(target)
            path.pop()
            finished.add(name)

    for name in includes:
        yield from visit(name)


def main():
    includes = read_includes(pathlib.Path(__file__).resolve().parent.parent)
    faults = [*wrong_floors(includes), *circles(includes)]
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)


main()

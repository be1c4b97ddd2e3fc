#!/usr/bin/env python3
"""Fails where a folder of the sources includes one that it may not know, or names a class of a higher one.

    check_layers.py FOLDER_OF_THE_PROJECT
"""
import pathlib
import re
import sys

# From the bottom up. A folder knows itself and what is listed behind it, and nothing else.
KNOWS = {
    "foundation": [],
    "look": ["foundation"],
    "windows": ["foundation", "look"],
    "lists": ["foundation", "look", "windows"],
    "controls": ["foundation", "look", "windows", "lists"],
    "query": ["foundation"],
    "queryfile": ["foundation", "query"],
    "picker": ["foundation", "look", "windows", "lists", "controls"],
    "panel": ["foundation", "look", "windows", "lists", "controls", "query", "picker"],
    "dialog": ["foundation", "look", "windows", "lists", "controls", "query", "queryfile", "panel"],
    "browser": ["foundation", "look", "windows", "lists", "controls"],
}
# What sees the library through its installed face alone.
OUTSIDE = ["records", "host"]

INCLUDE = re.compile(r'^\s*#include "(\w+)/', re.M)
CLASS = re.compile(r"^(?:class|struct)\s+(\w+)(?:\s+final)?\s*(?::[^;]*)?\{", re.M)


def sources(folder):
    return sorted(path for path in folder.rglob("*") if path.suffix in (".h", ".cpp"))


def wrong_includes(root):
    for folder, known in KNOWS.items():
        for path in sources(root / "src" / folder):
            for named in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if named != folder and named not in known:
                    yield path, f"includes {named}/, which {folder}/ may not know"
    for folder in OUTSIDE:
        for path in sources(root / folder):
            for named in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if named in KNOWS:
                    yield path, f"includes {named}/, which is not installed"


def wrong_names(root):
    own = {folder: {name for path in sources(root / "src" / folder) if path.suffix == ".h"
                    for name in CLASS.findall(path.read_text(encoding="utf-8"))} for folder in KNOWS}
    for folder, known in KNOWS.items():
        foreign = {name: other for other, names in own.items() if other != folder and other not in known
                   for name in names}
        for path in sources(root / "src" / folder):
            for word in sorted(set(re.findall(r"\w+", path.read_text(encoding="utf-8"))) & foreign.keys()):
                yield path, f"names {word}, which is a class of {foreign[word]}/"


def main():
    root = pathlib.Path(sys.argv[1])
    folders = {path.name for path in (root / "src").iterdir() if path.is_dir()}
    faults = [(root / "src" / folder, "is not in the table of this check") for folder in folders - KNOWS.keys()]
    faults += [(root / "src" / folder, "is in the table of this check only") for folder in KNOWS.keys() - folders]
    if not faults:
        faults = [*wrong_includes(root), *wrong_names(root)]
    for path, fault in faults:
        print(f"{path.relative_to(root)}: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

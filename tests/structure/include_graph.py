#!/usr/bin/env python3
"""Checks the library's include graph: no circle among classes, and no room that includes a later one.

A class is its headers, private headers and sources merged: foo.h, foo_p.h and foo.cpp, and further sources of
the same private part (a source belongs to the class whose header it includes first).

usage: include_graph.py LIBRARY_DIRECTORY      exit status 1, with one line a fault, when something is wrong
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^#include "([^"/]+\.h)"', re.MULTILINE)


def rooms_of(library):
    lists = (library / "CMakeLists.txt").read_text()
    rooms = re.search(r"^set\(rooms ([^)]+)\)", lists, re.MULTILINE)
    return rooms.group(1).split() if rooms else ["."]  # a library without rooms is one


def class_of_header(name):
    return re.sub(r"(_p)?\.h$", "", name)


def read(library, rooms):
    """Returns the room of each class and the classes that each includes."""
    files = [path for room in rooms for path in sorted((library / room).iterdir())]
    room_of = {
        class_of_header(path.name): path.parent.relative_to(library).as_posix()
        for path in files
        if path.suffix == ".h"
    }
    uses = {name: set() for name in room_of}
    for path in files:
        if path.suffix not in (".h", ".cpp"):
            continue
        included = [class_of_header(name) for name in INCLUDE.findall(path.read_text())]
        included = [name for name in included if name in room_of]
        if path.suffix == ".h":
            owner = class_of_header(path.name)
        else:
            owner = path.stem if path.stem in room_of else included[0]
        uses[owner].update(name for name in included if name != owner)
    return room_of, uses


def circle(uses):
    """Returns the classes of one circle, in order, or nothing."""
    done, trail = set(), []

    def visit(name):
        if name in trail:
            return trail[trail.index(name):] + [name]
        if name in done:
            return None
        trail.append(name)
        for used in sorted(uses[name]):
            found = visit(used)
            if found:
                return found
        trail.pop()
        done.add(name)
        return None

    for name in sorted(uses):
        found = visit(name)
        if found:
            return found
    return None


def main():
    library = pathlib.Path(sys.argv[1])
    rooms = rooms_of(library)
    room_of, uses = read(library, rooms)
    faults = [
        f"{name} ({room_of[name]}) includes {used} of the later room {room_of[used]}"
        for name in sorted(uses)
        for used in sorted(uses[name])
        if rooms.index(room_of[used]) > rooms.index(room_of[name])
    ]
    found = circle(uses)
    if found:
        faults.append("circle: " + " -> ".join(found))
    print("\n".join(faults) or f"{len(uses)} classes in {len(rooms)} rooms: no circle, no include upwards")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Holds the #include lines of the tree to the rules of the house.

Usage: check_includes.py [ROOT]

- A folder of src/ includes itself and the floors below it, FLOORS being the one table of them;
  src/CMakeLists.txt builds them in the same order.
- No file includes itself by way of others.
- A header of the project is included in quotes by its path from src/. Tests include by the path from
  tests/ as well, and what stands beside them by its bare name.
- QML and Quick stay in the top floors; headers of GLib's family stay out of our headers, since
  their names collide with Qt's.
"""

import re
from typing import NamedTuple

from faults import report

FLOORS = (
    "base",
    "actions",
    "records",
    "store",
    "intake",
    "engines",
    "system_actions",
    "run",
    "ui",
    "entry",
)
FLOORS_WITH_QML = ("ui", "entry")

# The folders that are read, each with those that its quoted includes are looked up in.
SEARCHED = {"src": ("src",), "tests": ("src", "tests"), "bench": ("src", "tests", "bench")}

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
SUBDIRECTORY = re.compile(r"^\s*add_subdirectory\((\w+)")
MADE_BY_MOC = re.compile(r"\.moc$|^moc_.*\.cpp$")
QML = re.compile(r"^(QtQml|QtQuick|QQml|QQuick|QJS(Engine|Value)|QCoro(Qml|ImageProvider))", re.I)
GLIB = re.compile(
    r"^(glib|gio|gobject|gdk|libsecret|libecal|libedataserver|librsvg|cairo|pango|poppler)(-|/|\.|$)"
)


class Include(NamedTuple):
    line: int
    name: str
    quoted: bool


def includes_of(file):
    lines = file.read_text(encoding="utf-8").splitlines()
    matches = ((number, INCLUDE.match(line)) for number, line in enumerate(lines, 1))
    return [Include(number, m[1] or m[2], m[1] is not None) for number, m in matches if m]


class Checker:
    def __init__(self, root):
        self.root = root
        self.faults = []
        self.graph = {}  # a file to the files of the project that it includes

    def check(self):
        for top, search in SEARCHED.items():
            folder = self.root / top
            for file in sorted((*folder.rglob("*.h"), *folder.rglob("*.cpp"))):
                self.check_file(file, search)
        self.check_circles()
        self.check_build_order()
        return self.faults

    def report(self, file, line, text):
        self.faults.append(f"{file.relative_to(self.root)}:{line}: {text}")

    def check_file(self, file, search):
        self.graph[file] = []
        floor = self.floor_of(file)
        if search == SEARCHED["src"] and floor is None:
            self.report(file, 1, "stands on no floor; FLOORS in tools/check_includes.py names them")
        for include in includes_of(file):
            target = self.find(include, file, search)
            if target is not None:
                self.graph[file].append(target)
            self.check_spelling(file, include, target)
            self.check_floor(file, include, floor, target)
            self.check_families(file, include, floor)

    def find(self, include, file, search):
        candidates = [self.root / folder / include.name for folder in search]
        if include.quoted and search != SEARCHED["src"] and "/" not in include.name:
            candidates.append(file.parent / include.name)
        return next((file for file in candidates if file.is_file()), None)

    def floor_of(self, file):
        parts = file.relative_to(self.root).parts
        is_on_floor = parts[0] == "src" and len(parts) > 2 and parts[1] in FLOORS
        return parts[1] if is_on_floor else None

    def check_spelling(self, file, include, target):
        if include.quoted and target is None and not MADE_BY_MOC.search(include.name):
            self.report(file, include.line, f'"{include.name}" is no path from src/')
        if not include.quoted and target is not None:
            self.report(file, include.line, f"<{include.name}> is ours: include it in quotes")

    def check_floor(self, file, include, floor, target):
        above = self.floor_of(target) if target is not None else None
        if floor and above and FLOORS.index(above) > FLOORS.index(floor):
            self.report(
                file, include.line, f"{floor} must not include {include.name}: {above} stands above"
            )

    def check_families(self, file, include, floor):
        if floor and floor not in FLOORS_WITH_QML and QML.match(include.name):
            allowed = " and ".join(FLOORS_WITH_QML)
            self.report(file, include.line, f"<{include.name}>: QML stays in {allowed}")
        if file.suffix == ".h" and not include.quoted and GLIB.match(include.name):
            self.report(file, include.line, f"<{include.name}>: GLib's family stays in .cpp files")

    def check_circles(self):
        done = set()

        def walk(file, path):
            if file in path:
                circle = [*path[path.index(file) :], file]
                names = " -> ".join(str(step.relative_to(self.root)) for step in circle)
                self.faults.append(f"circle: {names}")
            elif file not in done:
                for target in self.graph.get(file, ()):
                    walk(target, [*path, file])
                done.add(file)

        for file in self.graph:
            walk(file, [])

    def check_build_order(self):
        file = self.root / "src" / "CMakeLists.txt"
        if not file.is_file():
            return
        lines = file.read_text(encoding="utf-8").splitlines()
        matches = ((number, SUBDIRECTORY.match(line)) for number, line in enumerate(lines, 1))
        highest = -1
        for number, match in matches:
            if match and match[1] in FLOORS:
                if FLOORS.index(match[1]) < highest:
                    self.report(file, number, f"{match[1]} stands below the floor before it")
                highest = max(highest, FLOORS.index(match[1]))


def check(root):
    return Checker(root).check()


if __name__ == "__main__":
    report(check)

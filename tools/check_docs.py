#!/usr/bin/env python3
"""Checks that what README.md, CONTRIBUTING.md and the pages of docs/ point at is there.

Usage: check_docs.py [ROOT]

A path is a word in backticks that holds a slash or has the ending of a source file; it may start at
the root or, as an include does, at src/, and may hold a pattern such as `src/*/CMakeLists.txt`.
Links to addresses, paths outside the tree (`/...`, `~...`, `$...`), what the build makes
(`build/...`) and media types are left alone. Relative links are checked likewise.
"""

import re

from faults import report

DOCUMENTS = ("README.md", "CONTRIBUTING.md")
ENDINGS = (".md", ".cpp", ".h", ".qml", ".py", ".sh", ".cmake", ".txt", ".json", ".svg")

FENCE = re.compile(r"^\s*(```|~~~)")
SPAN = re.compile(r"`([^`]+)`")
LINK = re.compile(r"\]\(([^)\s]+)\)")
ELSEWHERE = re.compile(r"^([/~$#-]|build/|(text|image|application)/|\.\.\.|[a-z][a-z+.-]*:)|[<>{}\"]")


def names_path(word):
    is_file = word.endswith(ENDINGS) and word not in ENDINGS
    return not ELSEWHERE.search(word) and ("/" in word or is_file)


def paths_of(line):
    words = (word.rstrip(",.;:") for span in SPAN.findall(line) for word in span.split())
    links = (target.split("#")[0] for target in LINK.findall(SPAN.sub("", line)))
    yield from (word for word in words if names_path(word))
    yield from (target for target in links if target and not ELSEWHERE.search(target))


def exists(own_folder, root, path):
    folders = (own_folder, root, root / "src")
    return any(next(folder.glob(path), None) is not None for folder in folders)


def documents_of(root):
    pages = sorted((root / "docs").glob("*.md"))
    return [root / name for name in DOCUMENTS] + pages


def check(root):
    faults = []
    for page in documents_of(root):
        document = page.relative_to(root)
        if not page.is_file():
            faults.append(f"there is no {document}")
            continue
        is_code = False
        for number, line in enumerate(page.read_text("utf-8").splitlines(), 1):
            if FENCE.match(line):
                is_code = not is_code
            elif not is_code:
                missing = (path for path in paths_of(line) if not exists(page.parent, root, path))
                faults += (f"{document}:{number}: there is no {path}" for path in missing)
    return faults


if __name__ == "__main__":
    report(check)

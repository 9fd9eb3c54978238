#!/usr/bin/env python3
"""Holds the files of src/ to the lengths of the house. A file that outgrows its limit is cut along
a seam, not squeezed.

Usage: check_sizes.py [ROOT]

Prints one line a file that is too long and ends with 1 if there is any.
"""

from faults import report

LIMITS = {".cpp": 400, ".h": 150, ".qml": 300}
EXEMPT = {"src/run/app_state.h"}  # the list of all published fields, in one place on purpose


def check(root):
    faults = []
    for file in sorted((root / "src").rglob("*")):
        name = file.relative_to(root).as_posix()
        limit = LIMITS.get(file.suffix)
        if limit is None or name in EXEMPT:
            continue
        lines = file.read_bytes().count(b"\n")
        if lines > limit:
            faults.append(f"{name}: {lines} lines, {limit} at most")
    return faults


if __name__ == "__main__":
    report(check)

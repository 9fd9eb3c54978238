#!/usr/bin/python3
"""Measures what a page costs in exports of 10 to 10,000 pages, which must not grow with their
number.

Usage: cost_of_pages.py [--helper FILE]
"""

import argparse
import os
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HELPER = ROOT / "build/dev/libexec/velarc/velarc-documents"
LINES_OF_PAGE = 49
GROWTH = 1.3

ENGLISH = "A line of plain words, about as long as the page is wide, with number {} in it.\n"
CHINESE = "\u8fd9\u662f\u7b2c {} \u884c\u4e2d\u6587\uff0c\u6709\u4e00\u4e9b\u5b57\u3002\n"


def measure(helper, line, pages):
    """Processor seconds of a page, and the most memory in MiB."""
    text = "".join(line.format(number) for number in range(pages * LINES_OF_PAGE)).encode()
    read_end, write_end = os.pipe()
    with open("/dev/null", "wb") as nowhere:
        process = subprocess.Popen([helper, "text-pdf", "--title", "Cost"], stdin=read_end,
                                   stdout=nowhere)
    os.close(read_end)
    while text:
        text = text[os.write(write_end, text):]
    os.close(write_end)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"the export of {pages} pages failed")
    return (usage.ru_utime + usage.ru_stime) / pages, usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--helper", default=HELPER)
    helper = parser.parse_args().helper
    is_constant = True
    for name, line in (("English", ENGLISH), ("Chinese", CHINESE)):
        of_page = {}
        for pages in (10, 100, 1000, 10000):
            seconds, memory = min(measure(helper, line, pages) for _ in range(3 if pages < 1000 else 1))
            of_page[pages] = seconds
            print(f"{name}: {pages:6} pages, {1000 * seconds:6.2f} ms a page, {memory:4.0f} MiB",
                  flush=True)
        is_constant = is_constant and of_page[10000] <= GROWTH * of_page[100]
    return 0 if is_constant else 1


if __name__ == "__main__":
    sys.exit(main())

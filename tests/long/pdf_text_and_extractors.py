#!/usr/bin/python3
"""Compares the text that velarc-documents reads in PDF files with that of two other extractors,
page by page.

Usage: pdf_text_and_extractors.py [--helper FILE] [PDF...]

Without a PDF, those of tests/fixtures/documents, and one of 1,000 pages. pdftotext, which rests on
the same library, must read the very same words; mutool, which rests on another, nearly all of them.
"""

import argparse
import shutil
import subprocess
import sys
import tempfile
import unicodedata
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HELPER = ROOT / "build/dev/libexec/velarc/velarc-documents"
OVERLAP = 0.95


def run(*command, text=b""):
    return subprocess.run(command, input=text, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False).stdout


def pages_of(output):
    """The words of each page, which a form feed ends."""
    return [page.split() for page in output.decode(errors="replace").split("\f")[:-1]]


def plain(words):
    """The words without accents, which some fonts set as signs of their own, and ligatures."""
    accents = dict.fromkeys(map(ord, "\u00a8\u00b4\u0060\u02c6\u02da\u00b8\u02dc"))
    text = unicodedata.normalize("NFKD", " ".join(words).translate(accents))
    return "".join(sign for sign in text if not unicodedata.combining(sign)).split()


def overlap(ours, theirs):
    if not ours and not theirs:
        return 1.0
    ours, theirs = plain(ours), plain(theirs)
    common = sum((Counter(ours) & Counter(theirs)).values())
    return 2 * common / (len(ours) + len(theirs))


def thousand_pages(helper):
    text = "\f".join(f"Page {number} of a long document, with a word or two in each of its lines.\n"
                     * 30 for number in range(1000))
    return run(helper, "text-pdf", "--title", "A thousand pages", text=text.encode())


def documents(arguments):
    if arguments.documents:
        yield from ((file.name, file.read_bytes()) for file in arguments.documents)
        return
    for file in sorted((ROOT / "tests/fixtures/documents").glob("*.pdf")):
        yield file.name, file.read_bytes()
    yield "a thousand pages", thousand_pages(arguments.helper)


def compare(name, pdf, arguments):
    ours = pages_of(run(arguments.helper, "pdf-text", text=pdf))
    same = pages_of(run("pdftotext", "-", "-", text=pdf))
    fault = "" if ours == same else "pdftotext reads other words"
    least = None
    if shutil.which("mutool") and ours:
        with tempfile.NamedTemporaryFile(suffix=".pdf") as file:
            file.write(pdf)
            file.flush()
            other = pages_of(run("mutool", "draw", "-q", "-F", "text", file.name))
        least = min((overlap(a, b) for a, b in zip(ours, other)), default=0)
        if len(ours) != len(other) or least < OVERLAP:
            fault = fault or "mutool reads other words"
    shown = "-" if least is None else f"{least:.3f}"
    print(f"{'!' if fault else ' '} {name:36} {len(ours):5} pages  overlap {shown}  {fault}")
    return not fault


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--helper", default=HELPER)
    parser.add_argument("documents", nargs="*", type=Path)
    arguments = parser.parse_args()
    if not shutil.which("pdftotext"):
        print("Skipped: pdftotext is not installed")
        return 77
    if not shutil.which("mutool"):
        print("mutool is not installed: compared with pdftotext alone")
    results = [compare(name, pdf, arguments) for name, pdf in documents(arguments)]
    return 0 if results and all(results) else 1


if __name__ == "__main__":
    sys.exit(main())

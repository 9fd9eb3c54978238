#!/usr/bin/python3
"""Compares the pictures that velarc-documents makes of drawings with those of a browser.

Usage: drawings_and_browser.py [--keep FOLDER] [--write-samples] [--helper FILE] [NAME...]

Each of tests/fixtures/drawings is drawn by both at 1024 by 1024. NAME picks some of them; --keep
leaves both pictures of each in a folder; --write-samples writes the browser's colours into
tests/fixtures/drawings/samples.txt, which the tests compare with where there is no browser.
The browser is shown each drawing in UTF-8, the only encoding in which it reads an image.

Two pictures are alike if no field of 32 by 32 pixels differs in its mean colour by more than
FIELD_LIMIT of 255 steps, and all of the picture by no more than MEAN_LIMIT: edges are smoothed and
letters hinted in different ways, but nothing is somewhere else, or of another size or colour.
"""

import argparse
import io
import re
import subprocess
import sys
from pathlib import Path

SIDE = 1024
FIELD = 32
SAMPLES = 8  # in each direction
MEAN_LIMIT = 2.5
FIELD_LIMIT = 16

# What the renderer draws otherwise than a browser, and nothing here mends. One of them that comes
# to be alike is a failure, too: it belongs no longer here.
KNOWN_GAPS = {
    "clip_within_a_clip": "a clip-path on a clipPath is left out",
    "css_variables": "var() is no colour",
    "filter_function_grayscale": "grays are reckoned in linear light",
    "filter_light_that_is_enlarged": "surfaceScale does not grow with the drawing",
    "filter_morphology_by_many_pixels": "the radius ends at ten pixels of the picture",
    "filter_on_text": "the box of a text is that of its ink",
    "foreign_object": "HTML within a drawing is left out",
    "stroke_that_does_not_scale": "vector-effect is not known",
    "text_decoration": "lines below and through letters are thinner",
    "text_fitted": "textLength is not known",
    "text_on_a_path": "textPath is left out",
    "text_word_spacing": "word-spacing is not known",
    "use_of_a_symbol_that_overflows": "a symbol is not clipped",
}

ROOT = Path(__file__).resolve().parents[2]
DRAWINGS = ROOT / "tests/fixtures/drawings"
HELPER = ROOT / "build/dev/libexec/velarc/velarc-documents"


def skip(reason):
    print(f"Skipped: {reason}")
    sys.exit(77)


try:
    import numpy
    from PIL import Image
except ImportError as error:
    skip(f"no {error.name} for Python")

import browser


def pixels_of(png):
    return numpy.asarray(Image.open(io.BytesIO(png)).convert("RGB"), dtype=numpy.float64)


def drawn_by_helper(helper, svg):
    command = [helper, "svg-png", "--width", str(SIDE), "--height", str(SIDE)]
    return subprocess.run(command, input=svg, stdout=subprocess.PIPE, check=True).stdout


def in_utf8(svg):
    declared = re.match(rb"""<\?xml[^>]*encoding=["']([\w.-]+)["'][^>]*>""", svg)
    if not declared or declared[1].upper() == b"UTF-8":
        return svg
    return svg[declared.end() :].decode(declared[1].decode()).encode()


def fields_of(pixels, side):
    """The mean colour of each field of `side` by `side` pixels."""
    count = SIDE // side
    return pixels.reshape(count, side, count, side, 3).mean(axis=(1, 3))


def difference(ours, theirs):
    """The mean difference, and that of the field that differs most."""
    by_field = numpy.abs(fields_of(ours, FIELD) - fields_of(theirs, FIELD))
    return numpy.abs(ours - theirs).mean(), by_field.max()


def sample_line(name, pixels):
    colours = fields_of(pixels, SIDE // SAMPLES).round().astype(int).reshape(-1, 3)
    return name + " " + "".join("%02x%02x%02x" % tuple(colour) for colour in colours)


def keep(folder, name, ours, theirs):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{name}.ours.png").write_bytes(ours)
    (folder / f"{name}.browser.png").write_bytes(theirs)


def compare(arguments, drawings):
    """The names of the drawings that are not as they should be, and the samples of those alike."""
    wrong, samples = [], []
    with browser.Browser(SIDE) as shown:
        for drawing in drawings:
            svg = drawing.read_bytes()
            ours, theirs = drawn_by_helper(arguments.helper, svg), shown.picture_of(in_utf8(svg))
            if arguments.keep:
                keep(arguments.keep, drawing.stem, ours, theirs)
            mean, field = difference(pixels_of(ours), pixels_of(theirs))
            is_alike = mean <= MEAN_LIMIT and field <= FIELD_LIMIT
            gap = KNOWN_GAPS.get(drawing.stem)
            if gap is None:
                samples.append(sample_line(drawing.stem, pixels_of(theirs)))
            wrong += [drawing.stem] if is_alike == bool(gap) else []
            mark = "!" if is_alike == bool(gap) else " "
            print(f"{mark} {drawing.stem:45} mean {mean:6.2f}  field {field:6.1f}  {gap or ''}")
    return wrong, samples


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--keep", type=Path)
    parser.add_argument("--write-samples", action="store_true")
    parser.add_argument("--helper", default=HELPER)
    parser.add_argument("names", nargs="*")
    arguments = parser.parse_args()
    if browser.program() is None:
        skip("no browser is installed")
    drawings = [file for file in sorted(DRAWINGS.glob("*.svg"))
                if not arguments.names or file.stem in arguments.names]
    wrong, samples = compare(arguments, drawings)
    if arguments.write_samples:
        (DRAWINGS / "samples.txt").write_text("\n".join(samples) + "\n")
    gaps = sum(drawing.stem in KNOWN_GAPS for drawing in drawings)
    print(f"{len(drawings)} drawings, {gaps} of them known gaps; wrong: {', '.join(wrong) or 'none'}")
    return 1 if wrong or not drawings else 0


if __name__ == "__main__":
    sys.exit(main())

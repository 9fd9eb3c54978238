#pragma once

// The libraries' own.
using cairo_t = struct _cairo;
using PangoLayout = struct _PangoLayout;
using PangoLayoutLine = struct _PangoLayoutLine;

namespace velarc {

// Draws a line of `layout` from the point (x, y), its left end on the baseline, so that who reads
// the page gets back what was written: letters that are drawn in several parts stay together, and
// what is drawn as a picture, as colour emoji are, has its text below it.
//
// The layout has one paragraph of text. The source of `cairo` is left as it is.
void writeLine(cairo_t *cairo, PangoLayout *layout, PangoLayoutLine *line, double x, double y);

} // namespace velarc

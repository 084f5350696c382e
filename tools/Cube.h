// The one-dimensional .cube text form:
//
//   TITLE "..."            ignored
//   LUT_1D_SIZE n          2 to 65536; before the values
//   DOMAIN_MIN a a a       the input of the first line of values, 0 unless told; 0 to 1 are all inputs
//   DOMAIN_MAX b b b       that of the last line, 1 unless told
//   LUT_1D_INPUT_RANGE a b the same in one line
//   v v v                  n lines; 0 is the output 0 and 1 the output 4095
//
// Blank lines and those that begin with # are comments.
#ifndef ORLUNE_TOOLS_CUBE_H
#define ORLUNE_TOOLS_CUBE_H

#include <QByteArray>
#include <QString>

#include "lut/LutImage.h"

namespace tools {

// Entry i is the curve at the input i / 4095, along straight lines between the values and level outside the
// domain, rounded to the nearest. With 4096 values and the plain domain that is value i.
//
// Throws Failure (kNoTable) with name and line for anything that a camera's one table can't say: three
// columns that differ, values outside 0 to 1, a table of three dimensions, an unknown keyword.
orlune::LutImage parseCube(const QByteArray& text, const QString& name);

// 4096 lines of three equal columns, with six decimals: enough that parseCube gives the entries back. A
// trailer's settings become a comment.
QByteArray cubeText(const orlune::LutImage& image);

} // namespace tools

#endif

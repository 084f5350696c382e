// The standard curves that are delivered with Orlune, and the example tables. One row each; the files, their
// page in docs/ and their plots are made from these rows while the project is built.
#ifndef ORLUNE_CURVES_STANDARDCURVES_H
#define ORLUNE_CURVES_STANDARDCURVES_H

#include <vector>

#include "lut/LutImage.h"

namespace orlune {

struct CurveSource
{
    const char* Name;    // at most 16 characters of Latin-1, none of them a dot: a file of that name with the
                         // suffix bin is listed under it, and a trailer holds it whole
    const char* Title;   // this and what follows is Markdown
    const char* Formula; // y of x, both 0 to 1
    const char* Origin;
    const char* Use;
    double (*Function)(double); // the formula
};

// A table that was made from a standard curve with the controls, delivered as a file to open.
struct ExampleSource
{
    const char* File; // its suffix, lut or csv, tells the format
    const char* Standard;
    LutSettings Settings;
    const char* Use;
};

const std::vector<CurveSource>& StandardCurves();
const std::vector<ExampleSource>& Examples();

// The row of that name, or null.
const CurveSource* FindStandardCurve(const char* name);

// Entry i is 4095 f(i / 4095), rounded to the nearest and limited to 0..4095. The trailer is zero.
LutImage TableOf(const CurveSource& curve);

} // namespace orlune

#endif

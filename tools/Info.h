// info: what a table is, in words or JSON.
#ifndef ORLUNE_TOOLS_INFO_H
#define ORLUNE_TOOLS_INFO_H

#include "lut/LutImage.h"
#include "tools/Command.h"

namespace tools {

extern const Command kInfoCommand;

struct TableFacts
{
    int minimum;
    int maximum;
    int rises;       // entries above the one before
    int falls;       // entries below the one before
    int firstFall;   // the first of them, 0 if none
    int lostCodes;   // outputs that no input reaches
    int clippedLow;  // inputs that give 0 besides one
    int clippedHigh; // inputs that give 4095 besides one
};

TableFacts examine(const orlune::LutImage& image);

} // namespace tools

#endif

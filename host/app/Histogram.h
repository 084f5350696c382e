// What a frame's pixels say of its exposure, and what a mapping took from it. Pure counting.
#ifndef ORLUNE_HOST_APP_HISTOGRAM_H
#define ORLUNE_HOST_APP_HISTOGRAM_H

#include <cstdint>
#include <vector>

#include "host/camera/Frame.h"

namespace host {

// counts[c] pixels have code c; 2 to the power bits codes. A pixel word above the last code counts as the
// last.
struct Histogram
{
    std::vector<std::uint32_t> counts;

    int usedCodes() const; // codes that at least one pixel has
};

// bits is 8, 10 or 12, and decides the width of a pixel as Frame.h has it. Pixels that the frame's buffer is
// too short for are not counted.
Histogram countCodes(const Frame& frame, int bits);

// Shares, 0 to 1, of the codes that occur before the mapping; both 0 for a frame without pixels.
struct MappingLoss
{
    double clipped = 0; // mapped onto the lowest or the highest code from another code
    double lost = 0;    // no longer told apart: 1 - codes after / codes before
};

// after is before, mapped code by code: a frame of the same size and bits.
MappingLoss compareFrames(const Frame& before, const Frame& after, int bits);

// The code of the pixel at x, y, or -1 outside of the frame.
int codeAt(const Frame& frame, int bits, int x, int y);

} // namespace host

#endif

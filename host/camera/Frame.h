// One frame as a camera delivers it: unpacked pixels, one byte each for 8-bit formats and one 16-bit word
// each, value in the low bits, for 10- and 12-bit formats, without gaps at line ends.
#ifndef ORLUNE_HOST_CAMERA_FRAME_H
#define ORLUNE_HOST_CAMERA_FRAME_H

#include <cstdint>
#include <vector>

namespace host {

struct Frame
{
    std::uint32_t pixelFormat = 0; // PFNC code
    int width = 0;                 // pixels
    int height = 0;                // lines
    std::uint64_t number = 0;      // counts from 0 with each start of the stream
    std::vector<std::uint8_t> pixels;
};

} // namespace host

#endif

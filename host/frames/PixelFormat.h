// The pixel formats that cameras of the viewer deliver: one table of name, PFNC code and layout.
#ifndef ORLUNE_HOST_FRAMES_PIXELFORMAT_H
#define ORLUNE_HOST_FRAMES_PIXELFORMAT_H

#include <cstdint>
#include <vector>

#include <QString>

namespace host {

struct PixelFormat
{
    const char* name;   // as PFNC spells it: "Mono12", "BayerRG10"
    std::uint32_t code; // PFNC
    int bits;           // significant bits: 8, 10 or 12
    const char* tile;   // colours of the 2 x 2 Bayer tile, row by row ("RGGB"); null for grey

    int bytesPerPixel() const { return bits > 8 ? 2 : 1; }
    int maxValue() const { return (1 << bits) - 1; }
    bool isBayer() const { return tile != nullptr; }
    // 'R', 'G' or 'B': the colour of pixel (x, y) of a Bayer format.
    char colourAt(int x, int y) const { return tile[2 * (y % 2) + x % 2]; }
};

const std::vector<PixelFormat>& pixelFormats();

// Null when there is none of that name (exact) or code.
const PixelFormat* pixelFormatByName(const QString& name);
const PixelFormat* pixelFormatByCode(std::uint32_t code);

} // namespace host

#endif

// What a simulated sensor looks at: a colour of 12 bits a channel for each pixel.
#ifndef ORLUNE_HOST_FRAMES_SCENES_H
#define ORLUNE_HOST_FRAMES_SCENES_H

#include <cstdint>
#include <functional>

#include <QSize>

namespace host {

constexpr int kSceneMax = 4095; // 12 bits

struct Colour
{
    std::uint16_t red;
    std::uint16_t green;
    std::uint16_t blue;
};

// The colour at pixel (x, y), inside the size that the scene was made for.
using Scene = std::function<Colour(int x, int y)>;

// Grey from 0 in the first column to 4095 in the last: x * 4095 / (width - 1), rounded down.
Scene rampScene(QSize size);

// Four bands: sixteen grey steps; the ramp above its darkest eighth stretched over the width; a Siemens star
// on grey beside six colour patches; a fine checkerboard beside the ramp falling.
Scene chartScene(QSize size);

} // namespace host

#endif

#include "host/frames/Scenes.h"

#include <algorithm>
#include <cmath>

namespace host {

static Colour grey(int value)
{
    const auto level = static_cast<std::uint16_t>(value);
    return {level, level, level};
}

// 0 at 0, 4095 at the last of count positions.
static int rampAt(int position, int count)
{
    return count > 1 ? static_cast<int>(qint64(position) * kSceneMax / (count - 1)) : 0;
}

// x, y relative to the star's centre; the spokes run into grey where they are finer than two pixels.
static Colour starAt(double x, double y, double radius)
{
    constexpr int kSpokes = 36;
    constexpr double kPi = 3.14159265358979323846;
    const double distance = std::hypot(x, y);
    if (distance > radius || distance * kPi < 2 * kSpokes) {
        return grey(2048);
    }
    const int sector = static_cast<int>(std::floor(std::atan2(y, x) * kSpokes / kPi));
    return grey(sector % 2 ? 3800 : 300);
}

Scene rampScene(QSize size)
{
    return [width = size.width()](int x, int) { return grey(rampAt(x, width)); };
}

Scene chartScene(QSize size)
{
    return [width = size.width(), height = size.height()](int x, int y) -> Colour {
        static constexpr Colour kPatches[] = {{3600, 500, 500},  {500, 3000, 600},  {500, 700, 3400},
                                              {3700, 3300, 400}, {400, 2900, 3100}, {3000, 500, 2900}};
        const int half = width / 2;
        const bool left = x < half;
        const int bandTop[] = {0, height / 5, 2 * height / 5, 4 * height / 5};
        if (y < bandTop[1]) {
            return grey(rampAt(16 * x / width, 16));
        }
        if (y < bandTop[2]) {
            const int value = rampAt(x, width);
            return grey(y < (bandTop[1] + bandTop[2]) / 2 ? value : value / 8);
        }
        if (y < bandTop[3]) {
            if (left) {
                const double radius = std::min(half, bandTop[3] - bandTop[2]) / 2.0;
                return starAt(x + 0.5 - half / 2.0, y + 0.5 - (bandTop[2] + bandTop[3]) / 2.0, radius);
            }
            const int column = 3 * (x - half) / (width - half);
            const int row = 2 * (y - bandTop[2]) / (bandTop[3] - bandTop[2]);
            return kPatches[3 * row + column];
        }
        return grey(left ? ((x / 2 + y / 2) % 2 ? 3000 : 1000) : rampAt(width - 1 - x, width - half));
    };
}

} // namespace host

// The raw values of a simulated sensor, 12 bits in whatever format they leave the camera: the sensor sees
// its scene as grey, or through the Bayer tile of the format.
#ifndef ORLUNE_HOST_FRAMES_FRAMESOURCE_H
#define ORLUNE_HOST_FRAMES_FRAMESOURCE_H

#include <cstdint>
#include <memory>
#include <vector>

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>

#include "host/frames/PixelFormat.h"

namespace host {

constexpr int kMaxFrameSide = 8192; // pixels

class FrameSource
{
    Q_DECLARE_TR_FUNCTIONS(FrameSource)

public:
    // what is "ramp", "chart", or the path of a picture or of a folder of pictures, which are shown in turn;
    // "./ramp" is a path. Width or height 0 stands for the first picture's, or for 640 x 480. Pictures that
    // cannot be read, or have no room in memory, are left out with a sentence in *warnings; null with a
    // sentence in *error when nothing is left or the size is out of range.
    static std::unique_ptr<FrameSource> open(const QString& what, QSize size, const PixelFormat& format,
                                             QString* error, QStringList* warnings);

    QSize size() const { return m_size; }

    // Fills raw with width times height values; the same for the same number. Any thread.
    void read(std::uint64_t number, std::vector<std::uint16_t>& raw) const;

private:
    using RawImage = std::vector<std::uint16_t>;

    FrameSource() = default;

    QSize m_size;
    std::vector<RawImage> m_images;
    bool m_noisy = false;
};

} // namespace host

#endif

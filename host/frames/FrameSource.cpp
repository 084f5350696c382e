#include "host/frames/FrameSource.h"

#include <algorithm>

#include "host/frames/Pictures.h"
#include "host/frames/Scenes.h"

namespace host {

static std::uint16_t sensorValue(const Colour& colour, const PixelFormat& format, int x, int y)
{
    if (!format.isBayer()) {
        return static_cast<std::uint16_t>((77 * colour.red + 150 * colour.green + 29 * colour.blue) >> 8);
    }
    switch (format.colourAt(x, y)) {
    case 'R':
        return colour.red;
    case 'G':
        return colour.green;
    default:
        return colour.blue;
    }
}

static std::vector<std::uint16_t> expose(const Scene& scene, QSize size, const PixelFormat& format)
{
    std::vector<std::uint16_t> raw;
    raw.reserve(std::size_t(size.width()) * size.height());
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            raw.push_back(sensorValue(scene(x, y), format, x, y));
        }
    }
    return raw;
}

// The finaliser of SplitMix64: every bit of the input stirs every bit of the result.
static std::uint64_t stir(std::uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9u;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebu;
    return value ^ (value >> 31);
}

// Adds -16 to 15, one step of an 8-bit frame.
static void addNoise(std::uint64_t number, std::vector<std::uint16_t>& raw)
{
    constexpr std::size_t kValuesPerWord = 8;
    const std::uint64_t seed = stir(number + 1);
    for (std::size_t i = 0; i < raw.size(); i += kValuesPerWord) {
        std::uint64_t word = stir(seed + i);
        for (std::size_t j = i; j < std::min(i + kValuesPerWord, raw.size()); ++j, word >>= 8) {
            const int value = raw[j] + static_cast<int>(word % 32) - 16;
            raw[j] = static_cast<std::uint16_t>(std::clamp(value, 0, kSceneMax));
        }
    }
}

std::unique_ptr<FrameSource> FrameSource::open(const QString& what, QSize size, const PixelFormat& format,
                                               QString* error, QStringList* warnings)
{
    constexpr qint64 kMemoryForPictures = 512 << 20; // bytes
    std::unique_ptr<FrameSource> source(new FrameSource);
    const auto settleSize = [&](QSize natural) {
        source->m_size = QSize(size.width() ? size.width() : natural.width(),
                               size.height() ? size.height() : natural.height());
        const auto fits = [](int side) { return side >= 1 && side <= kMaxFrameSide; };
        if (fits(source->m_size.width()) && fits(source->m_size.height())) {
            return true;
        }
        *error = tr("A frame of %1 x %2 pixels is out of range: each side has 1 to %3.")
                     .arg(source->m_size.width())
                     .arg(source->m_size.height())
                     .arg(kMaxFrameSide);
        return false;
    };

    const bool isRamp = what == QLatin1String("ramp");
    const bool isChart = what == QLatin1String("chart");
    if (isRamp || isChart) {
        if (!settleSize(QSize(640, 480))) {
            return nullptr;
        }
        source->m_images.push_back(
            expose(isRamp ? rampScene(source->m_size) : chartScene(source->m_size), source->m_size, format));
        source->m_noisy = isChart;
        return source;
    }

    const QStringList files = pictureFiles(what);
    QStringList unreadable;
    for (const QString& file : files) {
        QString reason;
        const QImage picture = readPicture(file, &reason);
        if (picture.isNull()) {
            unreadable << reason;
            continue;
        }
        if (source->m_images.empty() && !settleSize(picture.size())) {
            return nullptr;
        }
        source->m_images.push_back(expose(pictureScene(picture, source->m_size), source->m_size, format));
        const qint64 bytesEach = 2 * qint64(source->m_size.width()) * source->m_size.height();
        const qint64 count = qint64(source->m_images.size());
        if ((count + 1) * bytesEach > kMemoryForPictures && file != files.last()) {
            *warnings << tr("Only the pictures up to %1 fit into memory at this frame size.").arg(file);
            break;
        }
    }
    if (source->m_images.empty()) {
        *error = unreadable.isEmpty() ? tr("The folder %1 holds no PNG, TIFF or PGM picture.").arg(what)
                                      : unreadable.first();
        return nullptr;
    }
    *warnings << unreadable;
    return source;
}

void FrameSource::read(std::uint64_t number, std::vector<std::uint16_t>& raw) const
{
    raw = m_images[number % m_images.size()];
    if (m_noisy) {
        addNoise(number, raw);
    }
}

} // namespace host

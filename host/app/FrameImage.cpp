#include "host/app/FrameImage.h"

#include <array>
#include <cstring>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace host {

namespace {

std::size_t lineBytes(const Frame& frame, const PixelFormat& format)
{
    return std::size_t(frame.width) * std::size_t(format.bytesPerPixel());
}

bool isComplete(const Frame& frame, const PixelFormat& format)
{
    return frame.width > 0 && frame.height > 0 &&
           frame.pixels.size() >= lineBytes(frame, format) * std::size_t(frame.height);
}

// The leading 8 bits of a pixel.
class Bytes
{
public:
    Bytes(const Frame& frame, const PixelFormat& format)
        : m_pixels(frame.pixels.data()), m_width(std::size_t(frame.width)),
          m_wide(format.bytesPerPixel() == 2), m_top(format.maxValue()), m_shift(format.bits - 8)
    {
    }

    uchar at(int x, int y) const
    {
        const std::size_t pixel = std::size_t(y) * m_width + std::size_t(x);
        if (!m_wide)
            return m_pixels[pixel];
        std::uint16_t word;
        std::memcpy(&word, m_pixels + 2 * pixel, sizeof word);
        return uchar(std::min<int>(word, m_top) >> m_shift);
    }

private:
    const std::uint8_t* m_pixels;
    std::size_t m_width;
    bool m_wide;
    int m_top;
    int m_shift;
};

QImage greyImage(const Frame& frame, const Bytes& bytes)
{
    QImage image(frame.width, frame.height, QImage::Format_Grayscale8);
    for (int y = 0; y < frame.height; ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < frame.width; ++x)
            line[x] = bytes.at(x, y);
    }
    return image;
}

// Each pixel of a 2 x 2 tile gets the tile's red, its blue and the mean of its greens; an odd last line or
// column borrows the tile before it.
QImage bayerImage(const Frame& frame, const PixelFormat& format, const Bytes& bytes)
{
    QImage image(frame.width, frame.height, QImage::Format_RGB32);
    for (int y = 0; y < frame.height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const int top = std::min(y & ~1, frame.height - 2);
        for (int x = 0; x < frame.width; ++x) {
            const int left = std::min(x & ~1, frame.width - 2);
            int red = 0, green = 0, blue = 0;
            for (int tileY = top; tileY < top + 2; ++tileY) {
                for (int tileX = left; tileX < left + 2; ++tileX) {
                    const int value = bytes.at(tileX, tileY);
                    switch (format.colourAt(tileX, tileY)) {
                    case 'R':
                        red = value;
                        break;
                    case 'G':
                        green += value;
                        break;
                    default:
                        blue = value;
                        break;
                    }
                }
            }
            line[x] = qRgb(red, green / 2, blue);
        }
    }
    return image;
}

} // namespace

QImage frameImage(const Frame& frame, const PixelFormat& format)
{
    if (!isComplete(frame, format))
        return {};
    const Bytes bytes(frame, format);
    const bool hasTile = format.isBayer() && frame.width >= 2 && frame.height >= 2;
    return hasTile ? bayerImage(frame, format, bytes) : greyImage(frame, bytes);
}

bool writePgm(const Frame& frame, const PixelFormat& format, QIODevice& device)
{
    if (!isComplete(frame, format))
        return false;
    const QByteArray header = QByteArray("P5\n") + QByteArray::number(frame.width) + ' ' +
                              QByteArray::number(frame.height) + '\n' +
                              QByteArray::number(format.maxValue()) + '\n';
    QByteArray pixels(reinterpret_cast<const char*>(frame.pixels.data()),
                      int(lineBytes(frame, format) * std::size_t(frame.height)));
    if (format.bytesPerPixel() == 2) {
        for (int i = 0; i < pixels.size(); i += 2) {
            std::uint16_t word;
            std::memcpy(&word, pixels.constData() + i, sizeof word);
            pixels[i] = char(word >> 8);
            pixels[i + 1] = char(word & 0xff);
        }
    }
    return device.write(header) == header.size() && device.write(pixels) == pixels.size();
}

QString saveFrame(const Frame& frame, const PixelFormat& format, const QString& path)
{
    QSaveFile file(path);
    const QString name = QFileInfo(path).fileName();
    if (!file.open(QIODevice::WriteOnly))
        return QString("%1 cannot be written: %2.").arg(name, file.errorString());
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    const bool written = suffix == "pgm" ? writePgm(frame, format, file)
                                         : frameImage(frame, format).save(&file, suffix.constData());
    if (!written) {
        file.cancelWriting();
        return QString("%1 cannot be written as a picture; .png, .bmp, .jpg and .pgm can.").arg(name);
    }
    return file.commit() ? QString() : QString("%1 cannot be written: %2.").arg(name, file.errorString());
}

} // namespace host

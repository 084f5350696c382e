#include "tools/Pgm.h"

#include <algorithm>
#include <iterator>

#include <QtEndian>

#include "tools/Failure.h"

namespace tools {

namespace {

constexpr int kMaxima[] = {255, 1023, 4095, 65535};
constexpr int kMaxNumber = 1 << 20; // above every number that counts

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

class PgmReader
{
public:
    explicit PgmReader(const QByteArray& bytes)
        : m_at(bytes.constData() + 2), m_end(bytes.constData() + bytes.size()), m_isText(bytes[1] == '2')
    {
    }

    QString read(Picture& picture)
    {
        const int width = number();
        const int height = number();
        const int maximum = number();
        if (width < 1 || height < 1)
            return "its header is wrong";
        if (std::find(std::begin(kMaxima), std::end(kMaxima), maximum) == std::end(kMaxima))
            return QString("its maximum is %1, and not 255, 1023, 4095 or 65535").arg(maximum);
        if (qint64(width) * height > kMaxPicturePixels)
            return QString("its %1 x %2 pixels are too many").arg(width).arg(height);
        if (!m_isText && (m_at == m_end || !isBlank(*m_at++)))
            return "its header is wrong";
        const qint64 smallest = qint64(width) * height * (m_isText || maximum > 255 ? 2 : 1) - m_isText;
        if (m_end - m_at < smallest)
            return "it ends before its last pixel";
        picture.maximum = maximum;
        picture.image =
            QImage(width, height, picture.isDeep() ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8);
        if (picture.image.isNull())
            return "there is not enough memory";
        for (int y = 0; y < height; ++y) {
            uchar* line = picture.image.scanLine(y);
            for (int x = 0; x < width; ++x) {
                const int sample = m_isText ? number() : binarySample(maximum);
                if (sample < 0 || sample > maximum)
                    return QString("pixel %1 of line %2 is missing or above %3").arg(x).arg(y).arg(maximum);
                if (picture.isDeep())
                    reinterpret_cast<quint16*>(line)[x] = quint16(sample);
                else
                    line[x] = uchar(sample);
            }
        }
        return {};
    }

private:
    int binarySample(int maximum)
    {
        if (maximum <= 255)
            return uchar(*m_at++);
        m_at += 2;
        return qFromBigEndian<quint16>(m_at - 2);
    }

    // The next number, limited to kMaxNumber; -1 if something else is next.
    int number()
    {
        while (m_at < m_end && (isBlank(*m_at) || *m_at == '#')) {
            if (*m_at == '#')
                m_at = std::find(m_at, m_end, '\n');
            else
                ++m_at;
        }
        int value = -1;
        for (; m_at < m_end && *m_at >= '0' && *m_at <= '9'; ++m_at)
            value = std::min(kMaxNumber, std::max(value, 0) * 10 + (*m_at - '0'));
        return value;
    }

    const char* m_at;
    const char* m_end;
    const bool m_isText;
};

} // namespace

QString readPgm(const QByteArray& bytes, Picture& picture)
{
    return PgmReader(bytes).read(picture);
}

QByteArray pgmBytes(const Picture& picture)
{
    if (picture.channels() != 1)
        throw Failure{kTrouble, "A PGM picture holds grey only."};
    const QImage& image = picture.image;
    QByteArray bytes = "P5\n" + QByteArray::number(image.width()) + ' ' + QByteArray::number(image.height()) +
                       '\n' + QByteArray::number(picture.maximum) + '\n';
    for (int y = 0; y < image.height(); ++y) {
        const uchar* line = image.constScanLine(y);
        if (!picture.isDeep()) {
            bytes.append(reinterpret_cast<const char*>(line), image.width());
            continue;
        }
        QByteArray swapped(2 * image.width(), Qt::Uninitialized);
        qToBigEndian<quint16>(line, image.width(), swapped.data());
        bytes += swapped;
    }
    return bytes;
}

} // namespace tools

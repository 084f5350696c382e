#include "host/frames/Pictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>
#include <QRgba64>
#include <QtEndian>

namespace host {

namespace {
struct Pictures
{
    Q_DECLARE_TR_FUNCTIONS(Pictures)
};
} // namespace

// An empty text, or what is wrong with a picture of that size.
static QString sizeProblem(QSize size)
{
    if (qint64(size.width()) * size.height() <= kMaxPicturePixels) {
        return {};
    }
    return Pictures::tr("its %1 x %2 pixels are too many").arg(size.width()).arg(size.height());
}

// Qt's reader cuts a binary PGM of more than 8 bits down to 8, so those are read here. True when the file is
// one, with the picture or the error filled in.
static bool readDeepPgm(QIODevice& file, QImage* picture, QString* error)
{
    constexpr int kLongestHeader = 4096;
    static const QRegularExpression header(
        QStringLiteral("^P5(?:\\s|#[^\\n]*\\n)+(\\d{1,6})(?:\\s|#[^\\n]*\\n)+(\\d{1,6})"
                       "(?:\\s|#[^\\n]*\\n)+(\\d{1,6})\\s"));
    const QRegularExpressionMatch match = header.match(QString::fromLatin1(file.peek(kLongestHeader)));
    const int maximum = match.captured(3).toInt();
    if (!match.hasMatch() || maximum < 256 || maximum > 65535) {
        return false;
    }
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    *error = sizeProblem(size);
    if (!error->isEmpty()) {
        return true;
    }
    const qint64 bytes = 2 * qint64(size.width()) * size.height();
    file.skip(match.capturedLength());
    const QByteArray samples = file.read(bytes);
    if (samples.size() < bytes) {
        *error = Pictures::tr("it ends before its last pixel");
        return true;
    }
    QImage image(size, QImage::Format_Grayscale16);
    if (image.isNull()) {
        *error =
            Pictures::tr("a picture of %1 x %2 pixels cannot be made").arg(size.width()).arg(size.height());
        return true;
    }
    const char* sample = samples.constData();
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x, sample += 2) {
            const int value = qMin<int>(qFromBigEndian<quint16>(sample), maximum);
            line[x] = static_cast<quint16>(value * 65536LL / (maximum + 1));
        }
    }
    *picture = image;
    return true;
}

static QImage readByQt(QIODevice& file, QString* error)
{
    QImageReader reader(&file);
    reader.setAutoTransform(true);
    *error = sizeProblem(reader.size());
    if (!error->isEmpty()) {
        return {};
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        *error = reader.errorString();
        return {};
    }
    if (image.format() == QImage::Format_Grayscale16) {
        return image;
    }
    return image.convertToFormat(image.depth() == 64 ? QImage::Format_RGBA64 : QImage::Format_RGB32);
}

QStringList pictureFiles(const QString& path)
{
    if (!QFileInfo(path).isDir()) {
        return {path};
    }
    const QStringList wanted{QStringLiteral("*.png"), QStringLiteral("*.tif"), QStringLiteral("*.tiff"),
                             QStringLiteral("*.pgm")};
    QStringList files;
    for (const QFileInfo& file : QDir(path).entryInfoList(wanted, QDir::Files, QDir::Name)) {
        files << file.filePath();
    }
    return files;
}

QImage readPicture(const QString& path, QString* error)
{
    QFile file(path);
    QImage picture;
    QString reason;
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
    } else if (!readDeepPgm(file, &picture, &reason)) {
        picture = readByQt(file, &reason);
    }
    if (picture.isNull()) {
        *error =
            Pictures::tr("The picture %1 cannot be read: %2.").arg(QDir::toNativeSeparators(path), reason);
    }
    return picture;
}

static Colour colourAt(const QImage& picture, int x, int y)
{
    const uchar* line = picture.constScanLine(y);
    switch (picture.format()) {
    case QImage::Format_Grayscale16: {
        const auto level = static_cast<std::uint16_t>(reinterpret_cast<const quint16*>(line)[x] >> 4);
        return {level, level, level};
    }
    case QImage::Format_RGBA64: {
        const QRgba64 pixel = reinterpret_cast<const QRgba64*>(line)[x];
        return {static_cast<std::uint16_t>(pixel.red() >> 4), static_cast<std::uint16_t>(pixel.green() >> 4),
                static_cast<std::uint16_t>(pixel.blue() >> 4)};
    }
    default: {
        const QRgb pixel = reinterpret_cast<const QRgb*>(line)[x];
        return {static_cast<std::uint16_t>(qRed(pixel) << 4), static_cast<std::uint16_t>(qGreen(pixel) << 4),
                static_cast<std::uint16_t>(qBlue(pixel) << 4)};
    }
    }
}

Scene pictureScene(const QImage& picture, QSize size)
{
    return [picture, size](int x, int y) {
        return colourAt(picture, static_cast<int>(qint64(x) * picture.width() / size.width()),
                        static_cast<int>(qint64(y) * picture.height() / size.height()));
    };
}

} // namespace host

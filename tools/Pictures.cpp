#include "tools/Pictures.h"

#include <algorithm>
#include <iterator>

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include "tools/Failure.h"
#include "tools/Files.h"
#include "tools/Pgm.h"

namespace tools {

namespace {

constexpr qint64 kMaxPictureFile = 9 * kMaxPicturePixels; // four deep channels a pixel fit, uncompressed

struct FormRow
{
    const char* suffix;
    const char* form;
};
constexpr FormRow kForms[] = {{"png", "png"}, {"tif", "tiff"}, {"tiff", "tiff"}, {"pgm", "pgm"}};

QByteArray formOfContents(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG"))
        return "png";
    if (bytes.startsWith(QByteArray("II*\0", 4)) || bytes.startsWith(QByteArray("MM\0*", 4)))
        return "tiff";
    return bytes.startsWith("P2") || bytes.startsWith("P5") ? "pgm" : QByteArray();
}

// As one of the formats that Picture names, with the same samples.
QImage inWholeSamples(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
        return image;
    case QImage::Format_RGBA64_Premultiplied:
        return image.convertToFormat(QImage::Format_RGBA64);
    default:
        if (image.hasAlphaChannel())
            return image.convertToFormat(QImage::Format_RGBA8888);
        // A palette or single bits; grey in more bytes than it needs stays as it is.
        if (image.depth() <= 8 && image.allGray())
            return image.convertToFormat(QImage::Format_Grayscale8);
        return image.convertToFormat(QImage::Format_RGB888);
    }
}

// Empty, or why Qt can't give the picture.
QString readByQt(QByteArray& bytes, Picture& picture)
{
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, picture.form);
    // Asked first: the TIFF reader counts from the start of the device only.
    const int count = reader.imageCount();
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > kMaxPicturePixels)
        return QString("its %1 x %2 pixels are too many").arg(size.width()).arg(size.height());
    if (count > 1)
        return "it holds more than one picture";
    picture.orientation = reader.transformation();
    const QImage image = size.isValid() ? reader.read() : QImage();
    if (image.isNull())
        return reader.error() == QImageReader::UnknownError ? "it is damaged" : reader.errorString();
    picture.image = inWholeSamples(image);
    picture.maximum = picture.image.depth() == 16 || picture.image.depth() == 64 ? 65535 : 255;
    return picture.image.isNull() ? "there is not enough memory" : QString();
}

} // namespace

int Picture::channels() const
{
    switch (image.format()) {
    case QImage::Format_RGB888:
        return 3;
    case QImage::Format_RGBA8888:
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
        return 4;
    default:
        return 1;
    }
}

Picture readPicture(const QString& path)
{
    QByteArray bytes = readBytes(path, kMaxPictureFile);
    Picture picture;
    picture.form = formOfContents(bytes);
    QString problem;
    if (bytes.size() > kMaxPictureFile)
        problem = "it is too long";
    else if (picture.form.isEmpty())
        problem = "it is no PNG, TIFF or PGM picture";
    else if (picture.form == "pgm")
        problem = readPgm(bytes, picture);
    else
        problem = readByQt(bytes, picture);
    if (!problem.isEmpty())
        throw Failure{kTrouble, QString("The picture %1 can't be read: %2.").arg(quoted(path), problem)};
    return picture;
}

QByteArray pictureForm(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const auto row = std::find_if(std::begin(kForms), std::end(kForms),
                                  [&](const FormRow& each) { return suffix == QLatin1String(each.suffix); });
    return row == std::end(kForms) ? QByteArray() : QByteArray(row->form);
}

QByteArray pictureBytes(const Picture& picture)
{
    if (picture.form == "pgm")
        return pgmBytes(picture);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, picture.form);
    writer.setTransformation(picture.orientation);
    if (!writer.write(picture.image))
        throw Failure{kTrouble, QString("The picture can't be written as %1: %2.")
                                    .arg(QString::fromLatin1(picture.form.toUpper()), writer.errorString())};
    return bytes;
}

QStringList picturesIn(const QString& folder)
{
    QStringList wanted;
    for (const FormRow& row : kForms)
        wanted += QString("*.") + row.suffix;
    QStringList paths;
    for (const QFileInfo& file : QDir(folder).entryInfoList(wanted, QDir::Files, QDir::Name))
        paths += file.filePath();
    return paths;
}

} // namespace tools

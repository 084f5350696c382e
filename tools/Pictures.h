// PNG, TIFF and PGM pictures of 8 and 16 bits as samples that a table can map.
#ifndef ORLUNE_TOOLS_PICTURES_H
#define ORLUNE_TOOLS_PICTURES_H

#include <QByteArray>
#include <QImage>
#include <QImageIOHandler>
#include <QString>
#include <QStringList>

namespace tools {

constexpr qint64 kMaxPicturePixels = 1 << 26;

struct Picture
{
    // Grayscale8, RGB888, RGBA8888, Grayscale16, RGBX64 or RGBA64: every line holds whole samples, one after
    // the other.
    QImage image;
    int maximum = 255; // the largest sample there may be: 255, 1023, 4095 or 65535
    QByteArray form;   // "png", "tiff" or "pgm"
    QImageIOHandler::Transformations orientation = QImageIOHandler::TransformationNone; // kept, not applied

    bool isDeep() const { return maximum > 255; }
    int channels() const; // samples of a pixel, 4 with an alpha channel or a filler
};

// Throws Failure for what can't be read whole: other forms, several pictures in one file, a PGM with another
// maximum than those four, more than kMaxPicturePixels.
Picture readPicture(const QString& path);

// The form of a picture of that name, or empty.
QByteArray pictureForm(const QString& path);

// The bytes of the picture's file in its form. A PGM holds grey only. Throws Failure.
QByteArray pictureBytes(const Picture& picture);

// Paths of the pictures in a folder, by name.
QStringList picturesIn(const QString& folder);

} // namespace tools

#endif

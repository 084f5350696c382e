// A person's own pictures as scenes.
//
// Values keep their leading bits: an 8-bit value v becomes v * 16, a 16-bit one v / 16, and one of a deep PGM
// file v * 4096 / (maximum + 1), rounded down.
#ifndef ORLUNE_HOST_FRAMES_PICTURES_H
#define ORLUNE_HOST_FRAMES_PICTURES_H

#include <QImage>
#include <QString>
#include <QStringList>

#include "host/frames/Scenes.h"

namespace host {

constexpr qint64 kMaxPicturePixels = 1 << 26;

// The picture files (PNG, TIFF, PGM) of a folder in the order of their names, or the file itself.
QStringList pictureFiles(const QString& path);

// Format_Grayscale16, Format_RGBA64 or Format_RGB32, whichever keeps what the file holds; or null with a
// sentence in *error.
QImage readPicture(const QString& path, QString* error);

// The picture, as readPicture gives it, stretched over the size by the nearest pixel.
Scene pictureScene(const QImage& picture, QSize size);

} // namespace host

#endif

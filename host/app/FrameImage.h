// A frame as a picture: for the screen, and for a file.
#ifndef ORLUNE_HOST_APP_FRAMEIMAGE_H
#define ORLUNE_HOST_APP_FRAMEIMAGE_H

#include <QIODevice>
#include <QImage>

#include "host/camera/Frame.h"
#include "host/frames/PixelFormat.h"

namespace host {

// Grey, or the colours of the Bayer tile that each pixel lies in; 8 bits a channel, the leading ones. Null
// when the frame's buffer is too short.
QImage frameImage(const Frame& frame, const PixelFormat& format);

// The pixels as they are, Bayer formats undone, as a binary PGM of the format's depth: 16-bit words, most
// significant byte first, for 10 and 12 bits. False when the frame's buffer is too short or the device fails.
bool writePgm(const Frame& frame, const PixelFormat& format, QIODevice& device);

// Writes a .pgm file by writePgm, and any other suffix as the picture that the screen shows. Empty, or one
// sentence that says what went wrong.
QString saveFrame(const Frame& frame, const PixelFormat& format, const QString& path);

} // namespace host

#endif

// PGM pictures with the depth that they have; Qt's reader cuts them to 8 bits.
#ifndef ORLUNE_TOOLS_PGM_H
#define ORLUNE_TOOLS_PGM_H

#include "tools/Pictures.h"

namespace tools {

// Fills image and maximum from a file of the kinds P2 and P5. Empty, or why it can't be read.
QString readPgm(const QByteArray& bytes, Picture& picture);

// A P5 file. Throws Failure for a picture in colour.
QByteArray pgmBytes(const Picture& picture);

} // namespace tools

#endif

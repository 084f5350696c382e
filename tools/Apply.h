// apply: pictures through a table, as a camera without a table of its own gets its frames mapped.
#ifndef ORLUNE_TOOLS_APPLY_H
#define ORLUNE_TOOLS_APPLY_H

#include <optional>

#include "lut/LutImage.h"
#include "tools/Command.h"
#include "tools/Pictures.h"

namespace tools {

extern const Command kApplyCommand;

// --bits N, and what it asks for, if it is given. Throws Failure for a number that is none.
QCommandLineOption pictureBitsOption();
std::optional<int> askedBits(const QCommandLineParser& parser, const QCommandLineOption& option);

// The significant bits of the picture's samples, if it tells: 8, 10, 12, or 16 for a picture that has samples
// above 4095. Throws Failure, with the name, when asked says otherwise, when samples are too large for the
// bits, and when nobody tells whether a deep picture without samples above 4095 is dark or a camera's.
int pictureBits(const Picture& picture, std::optional<int> asked, const QString& name);

// Maps every sample but alpha, with the kernels of the frame path. With 8, 10 and 12 bits a sample is a pixel
// as a frame has it, in the low bits. With 16 the table maps the leading 12 bits, and its outputs are
// stretched to 0 to 65535. The picture's maximum becomes that of the bits.
void mapPicture(Picture& picture, const orlune::LutImage& table, int bits);

} // namespace tools

#endif

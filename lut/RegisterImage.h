// Fitting a table image into a camera's LUTValueAll register of any length, and back. Both are pure
// functions.
//
// By the register's length L, with N = (L - 40) / 4 and S = 16384 / (L - 40) in integer division:
//   full image     N = 4096      the image, byte for byte
//   table only     L / 4 = 4096  the 4096 entries; the trailer does not reach the camera
//   reduced image  any other L   N entries, entry i being table entry i * S shifted right by 2;
//                                the trailer in the last 40 bytes
// Shifts are arithmetic. A length that is no multiple of 4 and belongs to one of the first two rows moves
// min(L, 16424) bytes.
#ifndef ORLUNE_LUT_REGISTERIMAGE_H
#define ORLUNE_LUT_REGISTERIMAGE_H

#include "lut/LutImage.h"

namespace orlune {

// Both give false and write nothing for a register of 40 bytes or fewer, which has no room for a table.

// Fills buffer, length bytes zeroed by the caller, from the image. A register with more entries than the
// table (L - 40 above 16384, other than the full image) takes the table stretched over it: entry i is table
// entry i * 4096 / N shifted right by 2.
bool TableToRegister(const LutImage& image, uchar* buffer, qint64 length);

// The reverse: register entry i shifted left by 2 becomes the table entries i * S to i * S + S - 1. Table
// entries that no register entry reaches stay as they are. From a register with more entries than the table,
// each table entry takes the first register entry that it was stretched to.
bool RegisterToTable(const uchar* buffer, qint64 length, LutImage& image);

} // namespace orlune

#endif

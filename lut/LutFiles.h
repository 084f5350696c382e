// The table files: .lut and .bin files hold the bytes of a table image, 16424 with the trailer or 16384
// without; .csv files hold the entries as text, one decimal integer a line.
//
// All operations run on the calling thread, keep nothing between calls and give a code of ResultCodes.h. Only
// regular files are opened, symbolic links followed: a directory, a pipe or a device in a file's place is
// kOpenFailed, so that no call waits for a writer that never comes. Time and memory are bounded whatever a
// file holds and however long it is.
//
// Writing never leaves half a file: the new contents go to a temporary file beside the old one, which
// replaces it (or a symbolic link's target) when it is complete. When anything fails on the way, a full disk
// included, the old file stays as it was and the result is kOpenFailed. Only an existing file that may be
// written in a directory that may not is written in place.
#ifndef ORLUNE_LUT_LUTFILES_H
#define ORLUNE_LUT_LUTFILES_H

#include <QByteArray>
#include <QString>

#include "lut/LutImage.h"

class QIODevice;

namespace orlune {

// Longest line of a .csv file that is read, in characters with its line end: room for any number a person
// could have written, with any fill of blanks or zeros around it. A longer line is no number.
constexpr int kMaxCsvLine = 65536;

// Reads the first 16424 bytes of a .lut or .bin file into both images; what a shorter file lacks is zero.
// Neither length nor entries are tested.
//   kOpenFailed   both images are as they were
//   kInvalidData  the file is empty or can't be read; both images are zero
int ReadLutFile(const QString& path, LutImage& current, LutImage& base);

// The same into one image, without a test of what was read: an empty file gives a zero image and success.
//   kOpenFailed   the image is as it was
int ReadBaseLutFile(const QString& path, LutImage& base);

// Reads the first 4096 lines of a .csv file into the entries of both images, whose trailers become zero. Text
// is decoded as QTextStream does by default: the locale's codec, or the UTF that a byte order mark tells. A
// line holds what QString::toInt takes, blanks around the number included, and ends with "\n" or "\r\n".
//   kOpenFailed   both images are as they were
//   kInvalidData  an empty line, fewer lines, no number or one above 4095 (there is no lower limit): current
//                 holds the entries read so far, everything else in both images is zero
int ReadCsvFile(const QString& path, LutImage& current, LutImage& base);

// The same from a device that is open for reading into one image: kInvalidData, and then *badLine is the
// number, from 1, of the line at which reading stopped, or success. badLine may be null.
int ReadCsv(QIODevice& device, LutImage& image, int* badLine);

// Writes the image's 16424 bytes, or without the trailer its first 16384.
//   kOpenFailed   the file can't be written; there is no new file and the old one is as it was
int WriteLutFile(const QString& path, const LutImage& image, bool withTrailer);

// Writes the 4096 entries, each in decimal and followed by "\n". Fails as WriteLutFile does.
int WriteCsvFile(const QString& path, const LutImage& image);

// What WriteCsvFile writes.
QByteArray CsvText(const LutImage& image);

} // namespace orlune

#endif

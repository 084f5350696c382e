// The table image: 4096 entries and a 40-byte trailer that tells how the table was made. The same 16424 bytes
// are the table in memory, a .lut file, and a camera register of that length. All integers are little-endian
// in the trailer and in every byte form; in memory the entries are the machine's own integers.
//
// Offsets: entries 0, magic "CBG0" 16384, gamma 16388, brightness 16392, contrast 16396, range minimum 16400,
// range maximum 16404, standard name 16408 (16 bytes, Latin-1, zero-filled, not terminated when it has 16).
#ifndef ORLUNE_LUT_LUTIMAGE_H
#define ORLUNE_LUT_LUTIMAGE_H

#include <array>
#include <cstddef>
#include <optional>

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace orlune {

constexpr int kLutEntries = 4096;
constexpr int kLutMaxOutput = 4095; // 12 bits
constexpr int kTableBytes = 4 * kLutEntries;
constexpr int kTrailerBytes = 40;
constexpr int kImageBytes = kTableBytes + kTrailerBytes;
constexpr int kStandardNameBytes = 16;

// Plain bytes; zeroed by LutImage{}.
struct LutImage
{
    qint32 Entries[kLutEntries]; // outputs; 0..4095 in a table that is right, anything in one that was read
    uchar Trailer[kTrailerBytes];
};
static_assert(sizeof(LutImage) == kImageBytes, "no gaps");

// Inclusive bounds of a control.
struct ControlLimits
{
    int low;
    int high;
    constexpr bool Contains(int value) const { return value >= low && value <= high; }
};
constexpr ControlLimits kGammaLimits{0, 400};   // hundredths: 100 is a gamma of 1.0
constexpr ControlLimits kToneLimits{-150, 150}; // brightness and contrast
constexpr ControlLimits kRangeLimits{0, kLutMaxOutput};
constexpr int kMinRangeDistance = 63; // maximum minus minimum: at least 64 entries

// The settings of a table; the initial values are those of an untouched one.
struct LutSettings
{
    qint32 Gamma = 100;
    qint32 Brightness = 0;
    qint32 Contrast = 0;
    qint32 RangeMin = 0;
    qint32 RangeMax = kLutMaxOutput;
};

struct LutTrailer
{
    LutSettings Settings;
    QByteArray StandardName; // up to the first zero byte, 16 bytes at the most, undecoded
};

// Entry i becomes i; the trailer becomes zero.
void MakeIdentity(LutImage& image);

// How many of the 4096 outputs no input reaches, which is how many of the inputs can't be told apart any
// more. Entries outside 0..4095 reach none.
int LostCodes(const LutImage& image);

// The trailer, or nothing when its first four bytes are not the magic. Values come as they stand: no limit is
// tested.
std::optional<LutTrailer> ReadTrailer(const LutImage& image);

// Writes the trailer. Of the name the first 16 characters are kept, in Latin-1 with '?' for a character
// outside it. Who gives a standard curve a longer name, or such characters, gets the table and its settings
// back all the same; only the curve is not found again, unless another one has the shorter name, and the
// identity curve stands in for it.
void StampTrailer(LutImage& image, const LutSettings& settings, const QString& standardName);

// The byte form of an image, and back. FromBytes copies at most size and at most kImageBytes bytes over the
// image's start and leaves the rest of it as it is.
std::array<uchar, kImageBytes> ToBytes(const LutImage& image);
void FromBytes(LutImage& image, const void* bytes, std::size_t size);

} // namespace orlune

#endif

#include "lut/LutImage.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <numeric>

#include <QtEndian>

namespace orlune {

namespace {

constexpr char kMagic[4] = {'C', 'B', 'G', '0'};

// Offsets within the trailer.
constexpr int kMagicAt = 0;
constexpr int kGammaAt = 4;
constexpr int kBrightnessAt = 8;
constexpr int kContrastAt = 12;
constexpr int kRangeMinAt = 16;
constexpr int kRangeMaxAt = 20;
constexpr int kNameAt = 24;
static_assert(kNameAt + kStandardNameBytes == kTrailerBytes, "the name ends the image");

} // namespace

void MakeIdentity(LutImage& image)
{
    image = LutImage{};
    std::iota(std::begin(image.Entries), std::end(image.Entries), 0);
}

int LostCodes(const LutImage& image)
{
    std::bitset<kLutEntries> reached;
    for (qint32 output : image.Entries) {
        if (kRangeLimits.Contains(output))
            reached.set(std::size_t(output));
    }
    return kLutEntries - int(reached.count());
}

std::optional<LutTrailer> ReadTrailer(const LutImage& image)
{
    const uchar* at = image.Trailer;
    if (std::memcmp(at + kMagicAt, kMagic, sizeof kMagic) != 0)
        return std::nullopt;
    LutTrailer trailer;
    trailer.Settings.Gamma = qFromLittleEndian<qint32>(at + kGammaAt);
    trailer.Settings.Brightness = qFromLittleEndian<qint32>(at + kBrightnessAt);
    trailer.Settings.Contrast = qFromLittleEndian<qint32>(at + kContrastAt);
    trailer.Settings.RangeMin = qFromLittleEndian<qint32>(at + kRangeMinAt);
    trailer.Settings.RangeMax = qFromLittleEndian<qint32>(at + kRangeMaxAt);
    const char* name = reinterpret_cast<const char*>(at + kNameAt);
    trailer.StandardName = QByteArray(name, int(qstrnlen(name, kStandardNameBytes)));
    return trailer;
}

void StampTrailer(LutImage& image, const LutSettings& settings, const QString& standardName)
{
    uchar* at = image.Trailer;
    std::memcpy(at + kMagicAt, kMagic, sizeof kMagic);
    qToLittleEndian<qint32>(settings.Gamma, at + kGammaAt);
    qToLittleEndian<qint32>(settings.Brightness, at + kBrightnessAt);
    qToLittleEndian<qint32>(settings.Contrast, at + kContrastAt);
    qToLittleEndian<qint32>(settings.RangeMin, at + kRangeMinAt);
    qToLittleEndian<qint32>(settings.RangeMax, at + kRangeMaxAt);
    std::memset(at + kNameAt, 0, kStandardNameBytes);
    const QByteArray name = standardName.toLatin1();
    std::memcpy(at + kNameAt, name.constData(), std::min(int(name.size()), kStandardNameBytes));
}

std::array<uchar, kImageBytes> ToBytes(const LutImage& image)
{
    std::array<uchar, kImageBytes> bytes;
    qToLittleEndian<qint32>(image.Entries, kLutEntries, bytes.data());
    std::memcpy(bytes.data() + kTableBytes, image.Trailer, kTrailerBytes);
    return bytes;
}

void FromBytes(LutImage& image, const void* bytes, std::size_t size)
{
    auto whole = ToBytes(image);
    std::copy_n(static_cast<const uchar*>(bytes), std::min(size, whole.size()), whole.data());
    qFromLittleEndian<qint32>(whole.data(), kLutEntries, image.Entries);
    std::memcpy(image.Trailer, whole.data() + kTableBytes, kTrailerBytes);
}

} // namespace orlune

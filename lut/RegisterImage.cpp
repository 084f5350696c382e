#include "lut/RegisterImage.h"

#include <algorithm>
#include <cstring>

#include <QtEndian>

namespace orlune {

namespace {

constexpr int kReducedShift = 2; // 12-bit outputs to 10-bit register entries

enum class Form { None, Bytes, Reduced, Stretched };

// N of the header's table.
qint64 RegisterEntries(qint64 length)
{
    return (length - kTrailerBytes) / 4;
}

Form FormOf(qint64 length)
{
    if (length <= kTrailerBytes)
        return Form::None;
    if (length / 4 == kLutEntries || RegisterEntries(length) == kLutEntries)
        return Form::Bytes;
    return RegisterEntries(length) < kLutEntries ? Form::Reduced : Form::Stretched;
}

qint64 ReducedStep(qint64 length)
{
    return kTableBytes / (length - kTrailerBytes);
}

// Left shift of a signed value without undefined behaviour.
qint32 ShiftedUp(qint32 value)
{
    return qint32(quint32(value) << kReducedShift);
}

} // namespace

bool TableToRegister(const LutImage& image, uchar* buffer, qint64 length)
{
    const Form form = FormOf(length);
    if (form == Form::None)
        return false;
    if (form == Form::Bytes) {
        const auto bytes = ToBytes(image);
        std::memcpy(buffer, bytes.data(), std::min<qint64>(length, kImageBytes));
        return true;
    }
    const qint64 count = RegisterEntries(length);
    for (qint64 i = 0; i < count; ++i) {
        const qint64 entry = form == Form::Reduced ? i * ReducedStep(length) : i * kLutEntries / count;
        qToLittleEndian<qint32>(image.Entries[entry] >> kReducedShift, buffer + 4 * i);
    }
    std::memcpy(buffer + length - kTrailerBytes, image.Trailer, kTrailerBytes);
    return true;
}

bool RegisterToTable(const uchar* buffer, qint64 length, LutImage& image)
{
    const Form form = FormOf(length);
    if (form == Form::None)
        return false;
    if (form == Form::Bytes) {
        FromBytes(image, buffer, std::size_t(length));
        return true;
    }
    const qint64 count = RegisterEntries(length);
    if (form == Form::Reduced) {
        const qint64 step = ReducedStep(length);
        for (qint64 entry = 0; entry < count * step; ++entry)
            image.Entries[entry] = ShiftedUp(qFromLittleEndian<qint32>(buffer + 4 * (entry / step)));
    } else {
        for (qint64 entry = 0; entry < kLutEntries; ++entry) {
            const qint64 first = (entry * count + kLutEntries - 1) / kLutEntries;
            image.Entries[entry] = ShiftedUp(qFromLittleEndian<qint32>(buffer + 4 * first));
        }
    }
    std::memcpy(image.Trailer, buffer + length - kTrailerBytes, kTrailerBytes);
    return true;
}

} // namespace orlune

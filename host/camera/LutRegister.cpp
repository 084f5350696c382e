#include "host/camera/LutRegister.h"

#include <algorithm>

#include <QtEndian>

namespace host {

namespace {

struct Form
{
    int entries;
    int bits;
};

Form formOf(int length)
{
    constexpr int kTrailerBytes = 40;
    constexpr int kEntryBytes = 4;
    const int entries = std::max(length - kTrailerBytes, 0) / kEntryBytes;
    if (length / kEntryBytes == kInputs || entries == kInputs) {
        return {kInputs, 12};
    }
    return {entries, 10};
}

} // namespace

std::optional<OutputTable> outputsOf(const QByteArray& lutRegister)
{
    const Form form = formOf(lutRegister.size());
    if (form.entries == 0) {
        return std::nullopt;
    }
    OutputTable outputs;
    for (int input = 0; input < kInputs; ++input) {
        const int entry = static_cast<int>(qint64(input) * form.entries / kInputs);
        const qint32 value = qFromLittleEndian<qint32>(lutRegister.constData() + 4 * entry);
        const int output = std::clamp(value, 0, (1 << form.bits) - 1) << (12 - form.bits);
        outputs[input] = static_cast<std::uint16_t>(output);
    }
    return outputs;
}

QByteArray identityRegister(int length)
{
    const Form form = formOf(length);
    QByteArray bytes(length, '\0');
    for (int entry = 0; entry < form.entries; ++entry) {
        const auto value = static_cast<qint32>((qint64(entry) << form.bits) / form.entries);
        qToLittleEndian<qint32>(value, bytes.data() + 4 * entry);
    }
    return bytes;
}

} // namespace host

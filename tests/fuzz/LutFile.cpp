// A .lut or .bin file from anywhere: read, its settings taken from the trailer, the table rebuilt under them,
// stamped again and cut down for frames.
#include "FuzzInput.h"
#include "InputFile.h"
#include "curve/BezierCurve.h"
#include "lut/LutFiles.h"
#include "lut/LutImage.h"
#include "lut/PlainString.h"
#include "lut/ResultCodes.h"
#include "plugin/FrameKernels.h"

using namespace orlune;
using fuzz::require;

namespace {

// The first byte chooses: 0 for a file of just the bytes that follow; otherwise they are 40 bytes of trailer
// and the pattern of the entries, so that a short input makes a whole file.
std::vector<std::uint8_t> fileOf(fuzz::Input input)
{
    if (input.take<std::uint8_t>() == 0)
        return input.takeRest();
    const auto trailer = input.takeBytes(kTrailerBytes);
    const auto entries = fuzz::repeated<std::uint8_t>(input.takeRest(), kTableBytes);
    std::vector<std::uint8_t> file(entries.get(), entries.get() + kTableBytes);
    file.insert(file.end(), trailer.begin(), trailer.end());
    return file;
}

bool same(const LutImage& a, const LutImage& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = fileOf(fuzz::Input(data, size));
    const QString path = fuzz::pathOf(bytes);
    const auto current = std::make_unique<LutImage>();
    const auto base = std::make_unique<LutImage>();
    const int code = ReadLutFile(path, *current, *base);
    require(code == (bytes.empty() ? kInvalidData : kSuccess), "only an empty file is no table");
    auto wanted = bytes;
    wanted.resize(kImageBytes);
    const auto read = ToBytes(*current);
    require(std::equal(wanted.begin(), wanted.end(), read.begin()), "the image holds the file's bytes");
    require(same(*base, *current), "so does the base");
    base->Entries[0] = ~base->Entries[0];
    require(ReadBaseLutFile(path, *base) == kSuccess && same(*base, *current), "the base alone is the same");

    const auto trailer = ReadTrailer(*current);
    const LutSettings settings = trailer ? trailer->Settings : LutSettings();
    const QString name = trailer ? FromPlainString(trailer->StandardName) : QString();
    const int adjusted =
        CBezierCurve().AdjustLutRange(settings.Brightness, settings.Contrast, settings.Gamma / 100.0,
                                      settings.RangeMin, settings.RangeMax, current->Entries);
    require(adjusted == kSuccess || same(*current, *base), "a failed adjustment changes nothing");

    StampTrailer(*current, settings, name);
    const auto stamped = ReadTrailer(*current);
    require(stamped && std::memcmp(&stamped->Settings, &settings, sizeof settings) == 0 &&
                FromPlainString(stamped->StandardName) == name,
            "a trailer is read as it was stamped");

    for (const int bits : {8, 10, 12}) {
        const std::unique_ptr<std::int32_t[]> table(new std::int32_t[std::size_t(1) << bits]);
        ResampleLut(current->Entries, kLutEntries, table.get(), 1 << bits, 12 - bits);
    }
    return 0;
}

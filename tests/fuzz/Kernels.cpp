// The pixel loops of every processor kind that runs here, on frames of any size at any address, against the
// loop that a reader would write.
#include "FuzzInput.h"
#include "plugin/FrameKernels.h"

using namespace orlune;
using fuzz::require;

namespace {

template <class Pixel>
std::vector<std::uint8_t> mapped(const std::vector<std::uint8_t>& src, const std::int32_t* table, int entries)
{
    std::vector<std::uint8_t> dst(src.size());
    for (std::size_t i = 0; i < src.size(); i += sizeof(Pixel)) {
        Pixel pixel;
        std::memcpy(&pixel, &src[i], sizeof pixel);
        pixel = Pixel(table[std::min<int>(pixel, entries - 1)]);
        std::memcpy(&dst[i], &pixel, sizeof pixel);
    }
    return dst;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const bool words = input.takeBelow(2) != 0;
    const bool inPlace = input.takeBelow(2) != 0;
    // Now and then as large as a frame that is written around the caches.
    const bool large = input.take<std::uint8_t>() == 0xff;
    const int width = 1 + input.takeBelow(large ? 1600 : 300);
    const int height = 1 + input.takeBelow(large ? 800 : 10);
    const std::size_t srcOffset = std::size_t(input.takeBelow(65));
    const std::size_t dstOffset = inPlace ? srcOffset : std::size_t(input.takeBelow(65));
    const int entries = words ? input.takeNear(1, 4096) : 256;
    const auto tablePattern = input.takeBytes(input.take<std::uint8_t>());
    const auto pixelPattern = input.takeRest();

    const auto table = fuzz::repeated<std::int32_t>(tablePattern, std::size_t(std::clamp(entries, 1, 4096)));
    const std::size_t bytes = std::size_t(width) * std::size_t(height) * (words ? 2 : 1);
    const auto pixels = fuzz::repeated<std::uint8_t>(pixelPattern, bytes);
    const std::vector<std::uint8_t> before(pixels.get(), pixels.get() + bytes);
    const bool valid = entries >= 1 && entries <= 4096;
    const auto wanted = !valid  ? before
                        : words ? mapped<std::uint16_t>(before, table.get(), entries)
                                : mapped<std::uint8_t>(before, table.get(), entries);

    for (const KernelSet& kernels : AvailableKernelSets()) {
        const auto src = fuzz::repeated<std::uint8_t>({}, srcOffset + bytes);
        const auto other = fuzz::repeated<std::uint8_t>({}, dstOffset + bytes);
        std::uint8_t* from = src.get() + srcOffset;
        std::uint8_t* to = inPlace ? from : other.get() + dstOffset;
        std::copy(before.begin(), before.end(), to);
        std::copy(before.begin(), before.end(), from);
        const int code = words ? ApplyLut16(reinterpret_cast<const std::uint16_t*>(from),
                                            reinterpret_cast<std::uint16_t*>(to), width, height, table.get(),
                                            entries, kernels)
                               : ApplyLut8(from, to, width, height, table.get(), kernels);
        require(code == (valid ? 0 : -3), "a table has 1 to 4096 entries");
        require(std::equal(wanted.begin(), wanted.end(), to), kernels.name);
        require(inPlace || std::equal(before.begin(), before.end(), from), "the source stays");
        require(std::all_of(to - (inPlace ? srcOffset : dstOffset), to, [](int v) { return v == 0; }),
                "nothing before the frame is written");
    }
    return 0;
}

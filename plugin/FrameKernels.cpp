#include "plugin/FrameKernels.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "PixelLoops.h"

namespace orlune {

namespace {

constexpr int kInvalidInput = -3;

struct PixelFormat
{
    std::uint32_t code;
    int bits;
};

constexpr PixelFormat kPixelFormats[] = {
    {0x01080001, 8},  // Mono8
    {0x01080008, 8},  // BayerGR8
    {0x01080009, 8},  // BayerRG8
    {0x0108000A, 8},  // BayerGB8
    {0x0108000B, 8},  // BayerBG8
    {0x01100003, 10}, // Mono10
    {0x0110000C, 10}, // BayerGR10
    {0x0110000D, 10}, // BayerRG10
    {0x0110000E, 10}, // BayerGB10
    {0x0110000F, 10}, // BayerBG10
    {0x01100005, 12}, // Mono12
    {0x01100010, 12}, // BayerGR12
    {0x01100011, 12}, // BayerRG12
    {0x01100012, 12}, // BayerGB12
    {0x01100013, 12}, // BayerBG12
};

struct SupportedSet
{
    KernelSet set;
    bool (*runs)();
};

const SupportedSet kSets[] = {
#ifdef ORLUNE_VECTOR_LOOPS
    {{"AVX-512 VBMI", Map8Vbmi, Map16Vbmi},
     [] {
         return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
     }},
    {{"AVX2", Map8Avx2, Map16Baseline}, [] { return __builtin_cpu_supports("avx2") != 0; }},
#endif
    {{"baseline", Map8Baseline, Map16Baseline}, [] { return true; }},
};

// The number of pixels, or 0 for a frame that can't be mapped.
std::size_t PixelCount(const void* src, const void* dst, int width, int height, const void* table)
{
    if (!src || !dst || !table || width < 1 || height < 1)
        return 0;
    const std::int64_t count = std::int64_t(width) * height;
    return count <= std::numeric_limits<std::int32_t>::max() ? std::size_t(count) : 0;
}

} // namespace

int GetPixelBits(std::uint32_t code)
{
    const auto format = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats),
                                     [code](const PixelFormat& row) { return row.code == code; });
    return format == std::end(kPixelFormats) ? -1 : format->bits;
}

void ResampleLut(const std::int32_t* src, int srcCount, std::int32_t* dst, int dstCount, int shift)
{
    if (!src || !dst || srcCount < 1 || dstCount < 1 || shift < 0 || shift > 31)
        return;
    const int step = srcCount / dstCount;
    for (int i = 0; i < dstCount; ++i)
        dst[i] = src[i * step] >> shift;
}

std::vector<KernelSet> AvailableKernelSets()
{
    std::vector<KernelSet> sets;
    for (const SupportedSet& each : kSets)
        if (each.runs())
            sets.push_back(each.set);
    return sets;
}

const KernelSet& FastestKernelSet() noexcept
{
    static const KernelSet& fastest =
        std::find_if(std::begin(kSets), std::end(kSets), [](const SupportedSet& each) {
            return each.runs();
        })->set;
    return fastest;
}

int ApplyLut8(const std::uint8_t* src, std::uint8_t* dst, int width, int height, const std::int32_t* table,
              const KernelSet& kernels) noexcept
{
    const std::size_t count = PixelCount(src, dst, width, height, table);
    if (count == 0)
        return kInvalidInput;
    kernels.map8(src, dst, count, table);
    return 0;
}

int ApplyLut16(const std::uint16_t* src, std::uint16_t* dst, int width, int height, const std::int32_t* table,
               int entries, const KernelSet& kernels) noexcept
{
    const std::size_t count = PixelCount(src, dst, width, height, table);
    if (count == 0 || entries < 1 || entries > kMaxFrameTable)
        return kInvalidInput;
    kernels.map16(src, dst, count, table, entries);
    return 0;
}

} // namespace orlune

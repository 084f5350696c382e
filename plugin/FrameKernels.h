// The frame path without the plug-in around it: which pixel formats are mapped, the table cut down to a
// frame's depth, and one lookup a pixel.
//
// Stands alone, needs C++17 and no library but the standard one. Every function may be called from any
// thread, any number of them at once; nothing here keeps a state or takes a lock.
#ifndef ORLUNE_PLUGIN_FRAMEKERNELS_H
#define ORLUNE_PLUGIN_FRAMEKERNELS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orlune {

// Significant bits of a pixel of the PFNC format code: 8, 10 or 12; -1 for a format that is not mapped.
int GetPixelBits(std::uint32_t code);

// dst[i] = src[i * (srcCount / dstCount)] shifted right by shift bits, arithmetically: the table is sampled,
// not averaged. Does nothing when a pointer is null, a count is below 1 or shift is not 0 to 31.
void ResampleLut(const std::int32_t* src, int srcCount, std::int32_t* dst, int dstCount, int shift);

// The pixel loops as they suit one kind of processor. All sets give the same output.
struct KernelSet
{
    const char* name;
    // table holds 256 entries.
    void (*map8)(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table);
    // table holds entries of them, 1 to 4096.
    void (*map16)(const std::uint16_t* src, std::uint16_t* dst, std::size_t count, const std::int32_t* table,
                  int entries);
};

// Those that this processor runs, the fastest first and "baseline" last.
std::vector<KernelSet> AvailableKernelSets();
const KernelSet& FastestKernelSet() noexcept;

// Map width times height pixels that lie one after the other: dst[i] becomes the low byte (ApplyLut8, 256
// entries) or the low 16-bit word (ApplyLut16) of the table entry that src[i] selects. A word beyond the
// table selects the last entry. src and dst may be one buffer, but not overlap otherwise; neither need be
// aligned.
//
// 0, or -3 with no pixel touched: a pointer is null, width or height is below 1, their product does not fit a
// signed 32-bit integer, or entries is not 1 to 4096.
int ApplyLut8(const std::uint8_t* src, std::uint8_t* dst, int width, int height, const std::int32_t* table,
              const KernelSet& kernels = FastestKernelSet()) noexcept;
int ApplyLut16(const std::uint16_t* src, std::uint16_t* dst, int width, int height, const std::int32_t* table,
               int entries, const KernelSet& kernels = FastestKernelSet()) noexcept;

} // namespace orlune

#endif

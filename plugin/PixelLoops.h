// The pixel loops behind FrameKernels.h, one file for each kind of processor. Their arguments are tested
// already, and each has the meaning that KernelSet gives it.
//
// The files of a newer processor are compiled for it as a whole, so they call no inline function of another
// header: the linker may keep their copy of it for everyone.
#ifndef ORLUNE_PLUGIN_PIXELLOOPS_H
#define ORLUNE_PLUGIN_PIXELLOOPS_H

#include <cstddef>
#include <cstdint>

namespace orlune {

constexpr int kMaxFrameTable = 4096;

void Map8Baseline(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table);
void Map16Baseline(const std::uint16_t* src, std::uint16_t* dst, std::size_t count, const std::int32_t* table,
                   int entries);
#ifdef ORLUNE_VECTOR_LOOPS
void Map8Avx2(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table);
void Map8Vbmi(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table);
void Map16Vbmi(const std::uint16_t* src, std::uint16_t* dst, std::size_t count, const std::int32_t* table,
               int entries);
#endif

// What the loops share. No function here has external linkage, for the reason above.
namespace {

constexpr std::size_t kLine = 64;            // bytes of a cache line
constexpr std::size_t kPrefetchAhead = 4096; // bytes; the processor's own prefetch stops at a page's end

// The caller may prefetch past the end of a buffer: it reads nothing.
inline void Prefetch(const std::uint8_t* at)
{
    __builtin_prefetch(at + kPrefetchAhead);
}

// Whether to write around the caches: an output that large only pushes other data out of them. Mapped in
// place, its lines are in the cache already; words at an odd address never fill a line from its start.
inline bool WritesAroundCaches(const std::uint8_t* src, const std::uint8_t* dst, std::size_t bytes,
                               std::size_t bytesPerPixel)
{
    return src != dst && bytes >= (std::size_t(1) << 20) &&
           reinterpret_cast<std::uintptr_t>(dst) % bytesPerPixel == 0;
}

} // namespace

} // namespace orlune

#endif

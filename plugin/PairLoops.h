// Lookups two pixels at a time, by scalar instructions: one table holds the results, a second holds them
// shifted to where the pair's other pixel lies, so that two lookups and an OR give a pair ready to be stored.
// It needs no byte order: a pixel and its result lie at the same place in the pair.
//
// Included by the loops of several processors, compiled for each.
#ifndef ORLUNE_PLUGIN_PAIRLOOPS_H
#define ORLUNE_PLUGIN_PAIRLOOPS_H

#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "PixelLoops.h"

namespace orlune {
namespace {

template <class T>
inline T Load(const std::uint8_t* at)
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
inline void Store(std::uint8_t* at, T value)
{
    std::memcpy(at, &value, sizeof value);
}

template <class Pixel, class Pair, int kEntries>
struct PairTables
{
    Pixel low[kEntries];
    Pair high[kEntries];

    PairTables(const std::int32_t* table, int entries)
    {
        for (int i = 0; i < entries; ++i) {
            low[i] = Pixel(table[i]);
            high[i] = Pair(Pair(low[i]) << (8 * sizeof(Pixel)));
        }
    }
};

inline void PairMap8(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table)
{
    const PairTables<std::uint8_t, std::uint16_t, 256> tables(table, 256);
    const auto pair = [&tables](std::uint32_t x) {
        return std::uint16_t(tables.low[x & 0xff] | tables.high[x >> 8 & 0xff]);
    };
    std::size_t i = 0;
    for (; i + kLine <= count; i += kLine) {
        Prefetch(src + i);
        Prefetch(dst + i);
        for (std::size_t k = i; k < i + kLine; k += 4) {
            const auto x = Load<std::uint32_t>(src + k);
            Store(dst + k, pair(x));
            Store(dst + k + 2, pair(x >> 16));
        }
    }
    for (; i < count; ++i)
        dst[i] = tables.low[src[i]];
}

#ifdef __SSE2__
inline __m128i AtMost(__m128i words, __m128i limit)
{
#ifdef __SSE4_1__
    return _mm_min_epu16(words, limit);
#else
    return _mm_sub_epi16(words, _mm_subs_epu16(words, limit));
#endif
}
#endif

inline void PairMap16(const std::uint16_t* srcWords, std::uint16_t* dstWords, std::size_t count,
                      const std::int32_t* table, int entries)
{
    const auto* src = reinterpret_cast<const std::uint8_t*>(srcWords);
    auto* dst = reinterpret_cast<std::uint8_t*>(dstWords);
    const std::size_t bytes = 2 * count;
    const PairTables<std::uint16_t, std::uint32_t, kMaxFrameTable> tables(table, entries);
    const int last = entries - 1;
    std::size_t i = 0;
#ifdef __SSE2__
    const auto pair = [&tables](std::uint32_t x) { return tables.low[x & 0xffff] | tables.high[x >> 16]; };
    const auto mapFour = [&pair](std::uint64_t x, std::uint8_t* to) {
        Store(to, pair(std::uint32_t(x)));
        Store(to + 4, pair(std::uint32_t(x >> 32)));
    };
    const __m128i limit = _mm_set1_epi16(short(last));
    for (; i + kLine <= bytes; i += kLine) {
        Prefetch(src + i);
        Prefetch(dst + i);
        for (std::size_t k = i; k < i + kLine; k += 16) {
            const __m128i x = AtMost(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src + k)), limit);
            mapFour(std::uint64_t(_mm_cvtsi128_si64(x)), dst + k);
            mapFour(std::uint64_t(_mm_cvtsi128_si64(_mm_unpackhi_epi64(x, x))), dst + k + 8);
        }
    }
#endif
    for (; i < bytes; i += 2) {
        const int word = Load<std::uint16_t>(src + i);
        Store(dst + i, tables.low[word < last ? word : last]);
    }
}

} // namespace
} // namespace orlune

#endif

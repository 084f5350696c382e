// Any processor: scalar lookups, two pixels at a time. One table holds the results, a second holds them
// shifted to where a pair's other pixel lies, so that two lookups and an OR give a pair ready to be stored. A
// pixel and its result lie at the same place in a pair, whatever the byte order.
#include <cstring>

#include "PixelLoops.h"

namespace orlune {
namespace {

template <class Pixel, class Pair, int kEntries>
class PairTables
{
public:
    PairTables(const std::int32_t* table, int entries)
    {
        for (int i = 0; i < entries; ++i) {
            m_low[i] = Pixel(table[i]);
            m_high[i] = Pair(Pair(m_low[i]) << kShift);
        }
    }

    // The results of the pixels in the low bits of pixels.
    Pixel One(std::uint32_t pixels) const { return m_low[Pixel(pixels)]; }
    Pair Two(std::uint32_t pixels) const
    {
        return Pair(m_low[Pixel(pixels)] | m_high[Pixel(pixels >> kShift)]);
    }

private:
    static constexpr int kShift = 8 * sizeof(Pixel);
    Pixel m_low[kEntries];
    Pair m_high[kEntries];
};

// A cache line of pixels, loaded as a whole before the first result is stored: a load that follows a store to
// an address with the same low 12 bits waits for it, and two buffers of a frame easily lie like that.
using Line = std::uint64_t[kLine / 8];

template <class T>
inline void Store(std::uint8_t* at, T value)
{
    std::memcpy(at, &value, sizeof value);
}

inline void LoadLine(Line& line, const std::uint8_t* src, const std::uint8_t* dst)
{
    Prefetch(src);
    Prefetch(dst);
    for (std::size_t i = 0; i < kLine / 8; ++i) // one at a time, into registers
        std::memcpy(&line[i], src + 8 * i, 8);
}

// The line at src again, its 16-bit words at most limit.
inline void LoadLimited(Line& line, const std::uint8_t* src, std::uint16_t limit)
{
    typedef std::uint16_t Words __attribute__((vector_size(16)));
    alignas(16) std::uint8_t limited[kLine];
    for (std::size_t i = 0; i < kLine; i += sizeof(Words)) {
        Words words;
        std::memcpy(&words, src + i, sizeof words);
        words = words < limit ? words : words * 0 + limit;
        std::memcpy(limited + i, &words, sizeof words);
    }
    std::memcpy(line, limited, sizeof line);
}

} // namespace

void Map8Baseline(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table)
{
    const PairTables<std::uint8_t, std::uint16_t, 256> tables(table, 256);
    const std::uint8_t* const end = src + count;
    for (; std::size_t(end - src) >= kLine; src += kLine, dst += kLine) {
        Line line;
        LoadLine(line, src, dst);
        std::uint8_t* to = dst;
        for (const std::uint64_t eight : line) {
            const auto first = std::uint32_t(eight);
            const auto second = std::uint32_t(eight >> 32);
            Store(to, tables.Two(first));
            Store(to + 2, tables.Two(first >> 16));
            Store(to + 4, tables.Two(second));
            Store(to + 6, tables.Two(second >> 16));
            to += 8;
        }
    }
    for (; src != end; ++src, ++dst)
        *dst = tables.One(*src);
}

void Map16Baseline(const std::uint16_t* srcWords, std::uint16_t* dstWords, std::size_t count,
                   const std::int32_t* table, int entries)
{
    const PairTables<std::uint16_t, std::uint32_t, kMaxFrameTable> tables(table, entries);
    const auto last = std::uint16_t(entries - 1);
    // The bits of a word that no index below the largest power of two within the table has.
    std::uint64_t beyond = 0xffffffffffffffff;
    for (int power = 1; power <= entries; power *= 2)
        beyond = ~(std::uint64_t(power - 1) * 0x0001000100010001);

    const auto* src = reinterpret_cast<const std::uint8_t*>(srcWords);
    auto* dst = reinterpret_cast<std::uint8_t*>(dstWords);
    const std::uint8_t* const end = src + 2 * count;
    for (; std::size_t(end - src) >= kLine; src += kLine, dst += kLine) {
        Line line;
        LoadLine(line, src, dst);
        std::uint64_t bits = 0;
        for (const std::uint64_t four : line)
            bits |= four;
        if (__builtin_expect((bits & beyond) != 0, 0))
            LoadLimited(line, src, last);
        std::uint8_t* to = dst;
        for (const std::uint64_t four : line) {
            Store(to, tables.Two(std::uint32_t(four)));
            Store(to + 4, tables.Two(std::uint32_t(four >> 32)));
            to += 8;
        }
    }
    for (; src != end; src += 2, dst += 2) {
        std::uint16_t word;
        std::memcpy(&word, src, sizeof word);
        Store(dst, tables.One(word < last ? word : last));
    }
}

} // namespace orlune

// AVX-512 VBMI: one instruction looks up 64 bytes in a table of 128, and a few of them in one of 256 bytes or
// of 1024 words of 10 bits. Every other table goes the way of any processor.
#include <immintrin.h>

#include "PixelLoops.h"

namespace orlune {
namespace {

// Of a table of bytes, 128 each part: what the low seven bits of each index select in the part.
inline __m512i Select(const std::uint8_t* table, int part, __m512i indices)
{
    return _mm512_permutex2var_epi8(_mm512_load_si512(table + 128 * part), indices,
                                    _mm512_load_si512(table + 128 * part + 64));
}

// The same in two parts or four; the masks hold the next higher bits of the indices.
inline __m512i SelectOf2(const std::uint8_t* table, int part, __m512i indices, __mmask64 bit7)
{
    return _mm512_mask_mov_epi8(Select(table, part, indices), bit7, Select(table, part + 1, indices));
}

inline __m512i SelectOf4(const std::uint8_t* table, int part, __m512i indices, __mmask64 bit7, __mmask64 bit8)
{
    return _mm512_mask_mov_epi8(SelectOf2(table, part, indices, bit7), bit8,
                                SelectOf2(table, part + 2, indices, bit7));
}

class ByteTable
{
public:
    static constexpr int kVectors = 2; // that Lookup replaces by their results
    static constexpr std::size_t kBytesPerPixel = 1;

    explicit ByteTable(const std::int32_t* table)
    {
        for (int i = 0; i < 256; ++i)
            m_bytes[i] = std::uint8_t(table[i]);
    }

    void Lookup(__m512i (&x)[kVectors]) const
    {
        for (__m512i& pixels : x)
            pixels = SelectOf2(m_bytes, 0, pixels, _mm512_movepi8_mask(pixels));
    }

private:
    alignas(64) std::uint8_t m_bytes[256];
};

// Up to 1024 entries of 10 bits: their low bytes, and their high two bits packed four to a byte.
class WordTable
{
public:
    static constexpr int kVectors = 2;
    static constexpr std::size_t kBytesPerPixel = 2;

    // Whether a WordTable can hold them.
    static bool Takes(const std::int32_t* table, int entries)
    {
        std::int32_t bits = 0;
        for (int i = 0; i < entries; ++i)
            bits |= table[i];
        return entries <= kMaxEntries && (bits & ~1023) == 0;
    }

    WordTable(const std::int32_t* table, int entries) : m_last(_mm512_set1_epi16(short(entries - 1)))
    {
        for (int i = 0; i < entries; ++i) {
            m_low[i] = std::uint8_t(table[i]);
            m_high[i / 4] |= std::uint8_t(table[i] >> 8 << 2 * (i % 4));
        }
    }

    void Lookup(__m512i (&x)[kVectors]) const
    {
        const __m512i a = _mm512_min_epu16(x[0], m_last);
        const __m512i b = _mm512_min_epu16(x[1], m_last);
        const __m512i lowByte = _mm512_set1_epi16(0xff);
        const __m512i bits0To7 =
            _mm512_packus_epi16(_mm512_and_si512(a, lowByte), _mm512_and_si512(b, lowByte));
        const __m512i bits2To9 = _mm512_packus_epi16(_mm512_srli_epi16(a, 2), _mm512_srli_epi16(b, 2));
        const __mmask64 bit7 = _mm512_movepi8_mask(bits0To7);
        const __mmask64 bit8 = _mm512_movepi8_mask(_mm512_add_epi8(bits2To9, bits2To9));
        const __mmask64 bit9 = _mm512_movepi8_mask(bits2To9);
        const __m512i low = _mm512_mask_mov_epi8(SelectOf4(m_low, 0, bits0To7, bit7, bit8), bit9,
                                                 SelectOf4(m_low, 4, bits0To7, bit7, bit8));
        // Each result's byte of the packed table, shifted right by twice the index's low two bits.
        const __m512i bytesAt = _mm512_set1_epi64(0x3830282018100800);
        const __m512i shifts = _mm512_and_si512(_mm512_add_epi8(bits0To7, bits0To7), _mm512_set1_epi8(6));
        const __m512i packed = SelectOf2(m_high, 0, bits2To9, bit9);
        // With a mask of all, since GCC 12 warns within its own header of the form without one.
        const __m512i shifted =
            _mm512_maskz_multishift_epi64_epi8(~__mmask64(0), _mm512_or_si512(bytesAt, shifts), packed);
        const __m512i high = _mm512_and_si512(shifted, _mm512_set1_epi8(3));
        // Undoes the order that packing gave the pixels.
        x[0] = _mm512_unpacklo_epi8(low, high);
        x[1] = _mm512_unpackhi_epi8(low, high);
    }

private:
    static constexpr int kMaxEntries = 1024;

    alignas(64) std::uint8_t m_low[kMaxEntries] = {};
    alignas(64) std::uint8_t m_high[kMaxEntries / 4] = {};
    __m512i m_last;
};

// At most as many bytes as Lookup takes.
template <class Table>
inline void MapPart(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes, const Table& table)
{
    __mmask64 present[Table::kVectors];
    __m512i x[Table::kVectors];
    for (std::size_t v = 0; v < Table::kVectors; ++v) {
        const std::size_t left = bytes < kLine * v ? 0 : bytes - kLine * v;
        present[v] = left == 0 ? 0 : ~__mmask64(0) >> (left < kLine ? kLine - left : 0);
        x[v] = _mm512_maskz_loadu_epi8(present[v], src + kLine * v);
    }
    table.Lookup(x);
    for (std::size_t v = 0; v < Table::kVectors; ++v)
        _mm512_mask_storeu_epi8(dst + kLine * v, present[v], x[v]);
}

template <bool kAroundCaches, class Table>
void MapBytes(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes, const Table& table)
{
    constexpr std::size_t kStep = kLine * Table::kVectors;
    std::size_t i = 0;
    if (kAroundCaches) {
        i = -reinterpret_cast<std::uintptr_t>(dst) % kLine;
        MapPart(src, dst, i, table);
    }
    for (; i + kStep <= bytes; i += kStep) {
        __m512i x[Table::kVectors];
        for (std::size_t v = 0; v < Table::kVectors; ++v) {
            Prefetch(src + i + kLine * v);
            x[v] = _mm512_loadu_si512(src + i + kLine * v);
        }
        table.Lookup(x);
        for (std::size_t v = 0; v < Table::kVectors; ++v) {
            std::uint8_t* to = dst + i + kLine * v;
            if (kAroundCaches) {
                _mm512_stream_si512(reinterpret_cast<__m512i*>(to), x[v]);
            } else {
                Prefetch(to);
                _mm512_storeu_si512(to, x[v]);
            }
        }
    }
    MapPart(src + i, dst + i, bytes - i, table);
    if (kAroundCaches)
        _mm_sfence(); // other threads see the frame when they see that it is done
}

template <class Table>
void MapAll(const std::uint8_t* src, std::uint8_t* dst, std::size_t bytes, const Table& table)
{
    if (WritesAroundCaches(src, dst, bytes, Table::kBytesPerPixel))
        MapBytes<true>(src, dst, bytes, table);
    else
        MapBytes<false>(src, dst, bytes, table);
}

} // namespace

void Map8Vbmi(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table)
{
    MapAll(src, dst, count, ByteTable(table));
}

void Map16Vbmi(const std::uint16_t* src, std::uint16_t* dst, std::size_t count, const std::int32_t* table,
               int entries)
{
    if (WordTable::Takes(table, entries))
        MapAll(reinterpret_cast<const std::uint8_t*>(src), reinterpret_cast<std::uint8_t*>(dst), 2 * count,
               WordTable(table, entries));
    else
        Map16Baseline(src, dst, count, table, entries);
}

} // namespace orlune

// AVX2: bytes by shuffles of 16-byte tables.
#include <immintrin.h>

#include "PixelLoops.h"

namespace orlune {
namespace {

// A shuffle looks up 16 entries by the low four bits of an index, and gives 0 for an index with the top bit
// set. Row r of a half of the table holds what the entries of row r differ by from those of row r - 1; an
// index that has r * 16 taken off it is negative below row r, so that the rows up to the index's own XOR
// together to its entry. The index of the other half is negative throughout.
class Rows
{
public:
    explicit Rows(const std::int32_t* table)
    {
        for (int i = 0; i < 256; ++i) {
            m_bytes[i] = std::uint8_t(table[i]);
            m_rows[i] = std::uint8_t(table[i] ^ (i % 128 < 16 ? 0 : table[i - 16]));
        }
    }

    std::uint8_t operator[](std::uint8_t index) const { return m_bytes[index]; }

    // Two vectors at once: the rows are loaded once for both.
    void Lookup(__m256i& a, __m256i& b) const
    {
        const __m256i top = _mm256_set1_epi8(char(0x80));
        __m256i fromA = _mm256_setzero_si256();
        __m256i fromB = _mm256_setzero_si256();
        Half(m_rows, a, b, fromA, fromB);
        Half(m_rows + 128, _mm256_xor_si256(a, top), _mm256_xor_si256(b, top), fromA, fromB);
        a = fromA;
        b = fromB;
    }

private:
    static inline void Half(const std::uint8_t* rows, __m256i a, __m256i b, __m256i& fromA, __m256i& fromB)
    {
        const __m256i sixteen = _mm256_set1_epi8(16);
#pragma GCC unroll 8
        for (int r = 0; r < 8; ++r) {
            const __m256i row =
                _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(rows + 16 * r)));
            fromA = _mm256_xor_si256(fromA, _mm256_shuffle_epi8(row, a));
            fromB = _mm256_xor_si256(fromB, _mm256_shuffle_epi8(row, b));
            // Keeps the compiler from gathering all shuffles before the first XOR: it would run out of
            // registers.
            asm("" : "+x"(fromA), "+x"(fromB));
            a = _mm256_subs_epi8(a, sixteen);
            b = _mm256_subs_epi8(b, sixteen);
        }
    }

    alignas(16) std::uint8_t m_rows[256];
    std::uint8_t m_bytes[256];
};

template <bool kAroundCaches>
void Map8(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const Rows& rows)
{
    std::size_t i = 0;
    if (kAroundCaches)
        for (; reinterpret_cast<std::uintptr_t>(dst + i) % kLine != 0; ++i)
            dst[i] = rows[src[i]];
    for (; i + kLine <= count; i += kLine) {
        Prefetch(src + i);
        __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
        __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i + 32));
        rows.Lookup(a, b);
        auto* to = reinterpret_cast<__m256i*>(dst + i);
        if (kAroundCaches) {
            _mm256_stream_si256(to, a);
            _mm256_stream_si256(to + 1, b);
        } else {
            Prefetch(dst + i);
            _mm256_storeu_si256(to, a);
            _mm256_storeu_si256(to + 1, b);
        }
    }
    for (; i < count; ++i)
        dst[i] = rows[src[i]];
    if (kAroundCaches)
        _mm_sfence(); // other threads see the frame when they see that it is done
}

} // namespace

void Map8Avx2(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table)
{
    const Rows rows(table);
    if (WritesAroundCaches(src, dst, count, 1))
        Map8<true>(src, dst, count, rows);
    else
        Map8<false>(src, dst, count, rows);
}

} // namespace orlune

// Any processor; on x86-64 with the vectors that all of them have.
#include "PairLoops.h"

namespace orlune {

void MapBaseline8(const std::uint8_t* src, std::uint8_t* dst, std::size_t count, const std::int32_t* table)
{
    PairMap8(src, dst, count, table);
}

void MapBaseline16(const std::uint16_t* src, std::uint16_t* dst, std::size_t count, const std::int32_t* table,
                   int entries)
{
    PairMap16(src, dst, count, table, entries);
}

} // namespace orlune

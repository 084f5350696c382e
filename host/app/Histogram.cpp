#include "host/app/Histogram.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

// A frame's pixels as codes, whatever the width of a pixel.
class Codes
{
public:
    Codes(const Frame& frame, int bits)
        : m_bytes(frame.pixels.data()), m_wide(bits > 8), m_top((1 << bits) - 1),
          m_count(std::min<std::size_t>(std::size_t(frame.width) * std::size_t(frame.height),
                                        frame.pixels.size() / (m_wide ? 2 : 1)))
    {
    }

    std::size_t count() const { return m_count; }
    int top() const { return m_top; }
    int operator[](std::size_t pixel) const
    {
        if (!m_wide)
            return m_bytes[pixel];
        std::uint16_t word;
        std::memcpy(&word, m_bytes + 2 * pixel, sizeof word);
        return std::min<int>(word, m_top);
    }

private:
    const std::uint8_t* m_bytes;
    bool m_wide;
    int m_top;
    std::size_t m_count;
};

} // namespace

int Histogram::usedCodes() const
{
    return int(std::count_if(counts.begin(), counts.end(), [](std::uint32_t count) { return count > 0; }));
}

Histogram countCodes(const Frame& frame, int bits)
{
    const Codes codes(frame, bits);
    Histogram histogram;
    histogram.counts.resize(std::size_t(codes.top()) + 1);
    for (std::size_t pixel = 0; pixel < codes.count(); ++pixel)
        ++histogram.counts[std::size_t(codes[pixel])];
    return histogram;
}

MappingLoss compareFrames(const Frame& before, const Frame& after, int bits)
{
    const Codes in(before, bits);
    const Codes out(after, bits);
    constexpr int kUnseen = -1;
    std::vector<int> mapping(std::size_t(in.top()) + 1, kUnseen);
    for (std::size_t pixel = 0; pixel < std::min(in.count(), out.count()); ++pixel)
        mapping[std::size_t(in[pixel])] = out[pixel];

    int codesBefore = 0, codesAfter = 0, clipped = 0;
    std::vector<bool> reached(mapping.size());
    for (int code = 0; code <= in.top(); ++code) {
        const int output = mapping[std::size_t(code)];
        if (output == kUnseen)
            continue;
        ++codesBefore;
        if (!reached[std::size_t(output)])
            ++codesAfter;
        reached[std::size_t(output)] = true;
        if (output != code && (output == 0 || output == out.top()))
            ++clipped;
    }
    if (codesBefore == 0)
        return {};
    return {double(clipped) / codesBefore, 1 - double(codesAfter) / codesBefore};
}

int codeAt(const Frame& frame, int bits, int x, int y)
{
    if (x < 0 || y < 0 || x >= frame.width || y >= frame.height)
        return -1;
    const Codes codes(frame, bits);
    const std::size_t pixel = std::size_t(y) * std::size_t(frame.width) + std::size_t(x);
    return pixel < codes.count() ? codes[pixel] : -1;
}

} // namespace host

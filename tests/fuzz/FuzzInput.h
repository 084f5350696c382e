// What the fuzz targets share. A target is one function that takes any bytes and stops the program when
// something is wrong, by itself or by a sanitizer. The fuzz preset links it with libFuzzer, every other build
// with FeedFiles.cpp.
#ifndef ORLUNE_TESTS_FUZZ_FUZZINPUT_H
#define ORLUNE_TESTS_FUZZ_FUZZINPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// For what has to hold whatever the input is.
inline void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

// The input, taken from its front. Behind its end there are zeros.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : m_at(data), m_end(data + size) {}

    bool isEmpty() const { return m_at == m_end; }

    template <class T>
    T take()
    {
        T value{};
        const std::size_t count = std::min(sizeof value, std::size_t(m_end - m_at));
        if (count != 0) // an empty input may have no address
            std::memcpy(&value, m_at, count);
        m_at += count;
        return value;
    }
    int takeBelow(int limit) { return int(take<std::uint32_t>() % std::uint32_t(limit)); }
    // A number that is mostly within the bounds or right behind one of them.
    int takeNear(int low, int high)
    {
        const auto kind = take<std::uint8_t>();
        return kind == 0xff ? take<std::int32_t>() : low - 2 + takeBelow(high - low + 5);
    }
    std::vector<std::uint8_t> takeBytes(std::size_t count)
    {
        count = std::min(count, std::size_t(m_end - m_at));
        std::vector<std::uint8_t> bytes(m_at, m_at + count);
        m_at += count;
        return bytes;
    }
    std::vector<std::uint8_t> takeRest() { return takeBytes(std::size_t(m_end - m_at)); }

private:
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};

// An array on the heap of just that length, so that the address sanitizer sees a step beyond either end,
// filled with the pattern again and again.
template <class T>
std::unique_ptr<T[]> repeated(const std::vector<std::uint8_t>& pattern, std::size_t count)
{
    std::unique_ptr<T[]> values(new T[count]());
    auto* to = reinterpret_cast<std::uint8_t*>(values.get());
    for (std::size_t i = 0; i < count * sizeof(T) && !pattern.empty(); ++i)
        to[i] = pattern[i % pattern.size()];
    return values;
}

} // namespace fuzz

#endif

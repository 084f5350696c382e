// The camera's memory: bytes at addresses, which the nodes show as values and the frame thread maps frames
// by. Words are 32-bit, signed and little-endian.
//
// Thread: any. Each operation is one step for every other thread, so a block is never seen half written.
#ifndef ORLUNE_HOST_CAMERA_REGISTERMEMORY_H
#define ORLUNE_HOST_CAMERA_REGISTERMEMORY_H

#include <cstdint>
#include <mutex>

#include <QByteArray>

namespace host {

class RegisterMemory
{
public:
    // Zeroed.
    explicit RegisterMemory(int size) : m_bytes(size, '\0') {}

    // All throw std::out_of_range for a range outside the memory.
    QByteArray read(int address, int length) const;
    void write(int address, const QByteArray& bytes);
    std::int32_t word(int address) const;
    void setWord(int address, std::int32_t value);

private:
    void checkRange(int address, int length) const;

    mutable std::mutex m_mutex;
    QByteArray m_bytes;
};

} // namespace host

#endif

#include "host/camera/RegisterMemory.h"

#include <algorithm>
#include <stdexcept>

#include <QtEndian>

namespace host {

void RegisterMemory::checkRange(int address, int length) const
{
    if (address < 0 || length < 0 || length > m_bytes.size() - address) {
        throw std::out_of_range("an address outside the camera's memory");
    }
}

QByteArray RegisterMemory::read(int address, int length) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    checkRange(address, length);
    return QByteArray(m_bytes.constData() + address, length);
}

void RegisterMemory::write(int address, const QByteArray& bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    checkRange(address, bytes.size());
    std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + address);
}

std::int32_t RegisterMemory::word(int address) const
{
    return qFromLittleEndian<qint32>(read(address, sizeof(qint32)).constData());
}

void RegisterMemory::setWord(int address, std::int32_t value)
{
    QByteArray bytes(sizeof(qint32), '\0');
    qToLittleEndian<qint32>(value, bytes.data());
    write(address, bytes);
}

} // namespace host

#include "host/app/FrameMailbox.h"

#include <utility>

namespace host {

bool FrameMailbox::put(std::shared_ptr<const ShownFrame> frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool wasEmpty = !m_latest;
    m_latest.swap(frame);
    ++m_count;
    return wasEmpty;
}

std::shared_ptr<const ShownFrame> FrameMailbox::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_latest, nullptr);
}

std::uint64_t FrameMailbox::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_count;
}

} // namespace host

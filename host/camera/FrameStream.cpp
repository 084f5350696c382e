#include "host/camera/FrameStream.h"

#include <algorithm>
#include <chrono>

namespace host {

void FrameStream::start(double framesPerSecond, std::function<void(std::uint64_t)> produce)
{
    if (isRunning()) {
        return;
    }
    using Clock = std::chrono::steady_clock;
    const auto period =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / framesPerSecond));
    m_stop = false;
    m_thread = std::thread([this, period, produce = std::move(produce)] {
        Clock::time_point due = Clock::now();
        for (std::uint64_t number = 0;; ++number) {
            {
                std::unique_lock<std::mutex> lock(m_mutex);
                if (m_wake.wait_until(lock, due, [this] { return m_stop; })) {
                    return;
                }
            }
            produce(number);
            due = std::max(due + period, Clock::now());
        }
    });
}

void FrameStream::stop()
{
    if (!isRunning()) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

} // namespace host

// A thread that produces frames at a steady rate.
#ifndef ORLUNE_HOST_CAMERA_FRAMESTREAM_H
#define ORLUNE_HOST_CAMERA_FRAMESTREAM_H

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

class FrameStream
{
public:
    FrameStream() = default;
    ~FrameStream() { stop(); }
    FrameStream(const FrameStream&) = delete;
    FrameStream& operator=(const FrameStream&) = delete;

    // Calls produce(0), produce(1), ... on a thread of its own, framesPerSecond times a second or as often as
    // produce allows: a late frame is not made up for. Does nothing while it runs. produce must not throw and
    // must not call start or stop. Throws std::system_error when there is no thread.
    void start(double framesPerSecond, std::function<void(std::uint64_t)> produce);

    // Returns when produce has returned for the last time.
    void stop();

    bool isRunning() const { return m_thread.joinable(); }

private:
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stop = false;
};

} // namespace host

#endif

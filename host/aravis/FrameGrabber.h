// Takes a camera's frames from Aravis' stream, on a thread of its own, and hands them on as the viewer has
// them.
//
// The stream outlives a stop: making one costs a tenth of a second, and the plug-in stops and restarts the
// frames with every step of a slider.
#ifndef ORLUNE_HOST_ARAVIS_FRAMEGRABBER_H
#define ORLUNE_HOST_ARAVIS_FRAMEGRABBER_H

#include <atomic>
#include <cstdint>
#include <thread>

#include <QString>

#include "host/aravis/Arv.h"
#include "host/camera/Camera.h"

namespace host {

class FrameGrabber
{
public:
    ~FrameGrabber() { stop(); }

    // Makes the stream ready for frames of the size that the camera has now; before each start.
    void prepare(ArvCamera* camera, GError** error);

    // Hands frames to sink until stop. Frames that came before are dropped. Throws std::system_error when
    // there is no thread.
    void start(Camera::FrameSink sink);
    // Returns when the sink has returned for the last time.
    void stop();
    bool isRunning() const { return m_thread.joinable(); }

    // Frames since the start that came incomplete, or in a form that the viewer does not know, or found no
    // buffer.
    std::uint64_t lostFrames() const { return m_lost; }

    // The stream, to be released together with its device. Stopped before.
    Held<ArvStream> takeStream();

private:
    void run(const Camera::FrameSink& sink);

    Held<ArvStream> m_stream;
    unsigned m_payload = 0; // bytes of the stream's buffers
    std::thread m_thread;
    std::atomic<bool> m_stop{false};
    std::atomic<std::uint64_t> m_lost{0};
};

// The frame in a buffer; false when that is incomplete or has a pixel format that the viewer does not know.
// Words above the format's depth become the highest code.
bool readFrame(ArvBuffer* buffer, Frame& frame);

} // namespace host

#endif

#include "host/aravis/FrameGrabber.h"

#include <algorithm>
#include <cstring>

#include "host/frames/PixelFormat.h"

namespace host {

namespace {

constexpr int kBuffers = 12;
// How long the thread sleeps at most without a frame, and so how long a stop takes.
constexpr guint64 kPauseMicroseconds = 10000;

// Frames that found no free buffer since the stream was made.
guint64 underruns(ArvStream* stream)
{
    guint64 completed = 0;
    guint64 failed = 0;
    guint64 underruns = 0;
    arv_stream_get_statistics(stream, &completed, &failed, &underruns);
    return underruns;
}

} // namespace

void FrameGrabber::prepare(ArvCamera* camera, GError** error)
{
    GError* failure = nullptr;
    const unsigned payload = arv_camera_get_payload(camera, &failure);
    if (!failure && m_stream && payload == m_payload)
        return;
    m_stream.reset();
    if (!failure)
        m_stream.reset(arv_camera_create_stream(camera, nullptr, nullptr, &failure));
    if (failure)
        return g_propagate_error(error, failure);
    m_payload = payload;
    if (ARV_IS_GV_STREAM(m_stream.get()))
        g_object_set(m_stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_AUTO, nullptr);
    for (int i = 0; i < kBuffers; ++i)
        arv_stream_push_buffer(m_stream.get(), arv_buffer_new_allocate(payload));
}

void FrameGrabber::start(Camera::FrameSink sink)
{
    m_lost = 0;
    m_stop = false;
    m_thread = std::thread([this, sink = std::move(sink)] { run(sink); });
}

void FrameGrabber::stop()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
}

Held<ArvStream> FrameGrabber::takeStream()
{
    m_payload = 0;
    return std::move(m_stream);
}

void FrameGrabber::run(const Camera::FrameSink& sink)
{
    // A frame that was under way when the camera was stopped is not of this run; there are at most as many as
    // buffers.
    const guint64 start = guint64(g_get_real_time()) * 1000;
    int mayBeOld = kBuffers;
    const guint64 underrunsBefore = underruns(m_stream.get());
    std::uint64_t incomplete = 0;
    Frame frame;
    std::uint64_t number = 0;
    while (!m_stop) {
        ArvBuffer* const buffer = arv_stream_timeout_pop_buffer(m_stream.get(), kPauseMicroseconds);
        if (!buffer)
            continue;
        const bool old = mayBeOld > 0 && arv_buffer_get_system_timestamp(buffer) < start;
        mayBeOld = old ? mayBeOld - 1 : 0;
        const bool whole = !old && readFrame(buffer, frame);
        arv_stream_push_buffer(m_stream.get(), buffer);
        if (old)
            continue;
        frame.number = number++;
        incomplete += !whole;
        m_lost = incomplete + underruns(m_stream.get()) - underrunsBefore;
        if (whole && sink)
            sink(frame);
    }
}

bool readFrame(ArvBuffer* buffer, Frame& frame)
{
    if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS || arv_buffer_get_n_parts(buffer) < 1)
        return false;
    const PixelFormat* format = pixelFormatByCode(arv_buffer_get_image_pixel_format(buffer));
    std::size_t size = 0;
    const auto* data = static_cast<const std::uint8_t*>(arv_buffer_get_image_data(buffer, &size));
    const int width = arv_buffer_get_image_width(buffer);
    const int height = arv_buffer_get_image_height(buffer);
    int padding = 0; // bytes at each line's end
    int linesBelow = 0;
    arv_buffer_get_image_padding(buffer, &padding, &linesBelow);
    if (!format || !data || width < 1 || height < 1 || padding < 0)
        return false;
    const std::size_t line = std::size_t(width) * format->bytesPerPixel();
    const std::size_t stride = line + std::size_t(padding);
    if (size < line || (size - line) / stride < std::size_t(height) - 1)
        return false;

    frame.pixelFormat = format->code;
    frame.width = width;
    frame.height = height;
    frame.pixels.resize(line * std::size_t(height));
    for (int y = 0; y < height; ++y)
        std::memcpy(&frame.pixels[line * std::size_t(y)], data + stride * std::size_t(y), line);
    if (format->bytesPerPixel() == 2) {
        auto* const words = reinterpret_cast<std::uint16_t*>(frame.pixels.data());
        const auto highest = std::uint16_t(format->maxValue());
        std::transform(words, words + frame.pixels.size() / 2, words,
                       [=](std::uint16_t word) { return std::min(word, highest); });
    }
    return true;
}

} // namespace host

#include "host/app/FramePipeline.h"

#include <chrono>

namespace host {

namespace {

constexpr int kStageSoftwareLut = 1;

// Maps frame in place. True when the plug-in did.
bool mapFrame(IPlugin& plugin, Frame& frame, std::optional<int>* code)
{
    FrameIn in{};
    in.pixelFormat = frame.pixelFormat;
    in.data = frame.pixels.data();
    FrameOut out{};
    out.width = frame.width;
    out.height = frame.height;
    out.data = frame.pixels.data();
    FrameResult result{};
    *code = plugin.ProcessFrame(&in, &out, kStageSoftwareLut, &result);
    return result.processed == 1;
}

} // namespace

std::future<std::shared_ptr<const ShownFrame>> FramePipeline::nextFrame()
{
    m_asked.emplace();
    return m_asked->get_future();
}

void FramePipeline::process(Frame& frame)
{
    auto shown = std::make_shared<ShownFrame>();
    shown->format = pixelFormatByCode(frame.pixelFormat);
    shown->before = frame;
    if (m_plugin) {
        const auto start = std::chrono::steady_clock::now();
        shown->mapped = mapFrame(*m_plugin, frame, &shown->mappingCode);
        const auto end = std::chrono::steady_clock::now();
        shown->mappingNanos = std::chrono::duration_cast<std::chrono::nanoseconds>(end - start).count();
    }
    shown->after = frame;
    if (shown->format) {
        const int bits = shown->format->bits;
        shown->codesBefore = countCodes(shown->before, bits);
        shown->codesAfter = shown->mapped ? countCodes(shown->after, bits) : shown->codesBefore;
        shown->loss = compareFrames(shown->before, shown->after, bits);
    }
    if (m_asked) {
        m_asked->set_value(shown);
        m_asked.reset();
    }
    if (m_mailbox.put(std::move(shown)) && m_onFrame)
        m_onFrame();
}

} // namespace host

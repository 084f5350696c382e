// The road of a frame on the camera's frame thread: through the plug-in, through the counting, into the
// mailbox.
#ifndef ORLUNE_HOST_APP_FRAMEPIPELINE_H
#define ORLUNE_HOST_APP_FRAMEPIPELINE_H

#include <functional>
#include <future>
#include <optional>

#include "host/app/FrameMailbox.h"
#include "plugin/IPlugin.h"

namespace host {

class FramePipeline
{
public:
    // onFrame is called on the frame thread when a frame lies in the mailbox that was empty before.
    explicit FramePipeline(std::function<void()> onFrame) : m_onFrame(std::move(onFrame)) {}

    // The plug-in that maps the frames, or null. Only while the stream is stopped, and never one that is not
    // initialised.
    void setPlugin(IPlugin* plugin) { m_plugin = plugin; }

    // The next frame, whether or not the mailbox passes it on. Only while the stream is stopped.
    std::future<std::shared_ptr<const ShownFrame>> nextFrame();

    // The camera's frame sink.
    void process(Frame& frame);

    FrameMailbox& mailbox() { return m_mailbox; }

private:
    std::function<void()> m_onFrame;
    IPlugin* m_plugin = nullptr;
    std::optional<std::promise<std::shared_ptr<const ShownFrame>>> m_asked;
    FrameMailbox m_mailbox;
};

} // namespace host

#endif

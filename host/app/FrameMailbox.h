// Hands the latest frame from the frame thread to the GUI thread. It holds one frame: a GUI that cannot keep
// up misses frames, and nothing piles up.
#ifndef ORLUNE_HOST_APP_FRAMEMAILBOX_H
#define ORLUNE_HOST_APP_FRAMEMAILBOX_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "host/app/Histogram.h"
#include "host/camera/Frame.h"
#include "host/frames/PixelFormat.h"

namespace host {

// A frame with all that the view shows of it.
struct ShownFrame
{
    Frame before;
    Frame after;                         // equal to before unless mapped
    const PixelFormat* format = nullptr; // null: not one that the viewer knows, and nothing is counted
    bool mapped = false;                 // by the plug-in
    std::optional<int> mappingCode;      // ProcessFrame's; none without a plug-in
    std::int64_t mappingNanos = 0;       // time that ProcessFrame took
    Histogram codesBefore;
    Histogram codesAfter;
    MappingLoss loss;
};

class FrameMailbox
{
public:
    // Any thread. True when the box was empty, so that the reader has to be told.
    bool put(std::shared_ptr<const ShownFrame> frame);

    // Any thread. Null when nothing came since the last time.
    std::shared_ptr<const ShownFrame> take();

    // Frames put in so far.
    std::uint64_t count() const;

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const ShownFrame> m_latest;
    std::uint64_t m_count = 0;
};

} // namespace host

#endif

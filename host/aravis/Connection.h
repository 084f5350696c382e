// The connection to one camera: Aravis' device, the one door to its nodes, and the knowledge of its loss.
//
// A camera that has gone costs Aravis 2.5 to 5 seconds an access, and as much again to close. So the first
// access that times out marks the connection as lost, every later one fails at once, and a device is closed
// on a thread of its own.
//
// Thread: the GUI thread, so that one access at a time reaches the device.
#ifndef ORLUNE_HOST_ARAVIS_CONNECTION_H
#define ORLUNE_HOST_ARAVIS_CONNECTION_H

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <type_traits>

#include <QString>

#include "host/aravis/Arv.h"

namespace host {

class Connection
{
public:
    // onLoss is called at most once a connection, on any thread, and not any more once close has returned.
    explicit Connection(std::function<void()> onLoss) : m_onLoss(std::move(onLoss)) {}
    ~Connection() { close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Takes control of the camera of an address as openAravisCamera takes it. Empty, or one sentence that
    // says why not. Closed before.
    QString open(const QString& address);

    // Gives the camera up, and a stream of its before it. Does not wait for the camera.
    void close(Held<ArvStream> stream = nullptr);
    // Whether all that was given up is closed within this time.
    bool waitUntilClosed(std::chrono::milliseconds patience) const;

    bool isLost() const { return !m_device || m_watch->lost; }

    // What is written on the camera that was opened last: vendor, model, serial number.
    const QString& inscription() const { return m_inscription; }

    // Throws a GenericException of the camera, in the form of Aravis' own messages.
    [[noreturn]] static void refuse(const std::string& what, const std::string& reason);

    // The type of the camera's node of that name; G_TYPE_INVALID when it has none. Throws as access does.
    GType typeOf(const std::string& node) const;

    // One access to a node of that name and type: call(ArvGcFeatureNode*, GError**). Throws a
    // GenericException with the node's name and Aravis' text when it fails, and with "camera lost" from the
    // loss on.
    template <class Call>
    auto access(const std::string& node, GType type, Call call) const
    {
        checkPresence(node);
        ArvGcFeatureNode* const found = find(node, type);
        return checked(node, [&](GError** error) { return call(found, error); });
    }

    // The same for an operation on the camera as a whole, named for the exception: call(ArvCamera*,
    // GError**).
    template <class Call>
    auto control(const std::string& operation, Call call) const
    {
        checkPresence(operation);
        return checked(operation, [&](GError** error) { return call(m_camera.get(), error); });
    }

private:
    // Shared with Aravis, whose threads report a loss to it.
    struct Watch
    {
        void report();

        std::atomic<bool> lost{false};
        std::mutex mutex;
        std::function<void()> onLoss; // guarded by mutex; empty when nobody listens any more
    };

    template <class Call>
    auto checked(const std::string& what, Call call) const
    {
        ArvError error;
        if constexpr (std::is_void_v<decltype(call(error.out()))>) {
            call(error.out());
            check(what, error);
        } else {
            const auto result = call(error.out());
            check(what, error);
            return result;
        }
    }

    ArvGcFeatureNode* find(const std::string& node, GType type) const;
    void checkPresence(const std::string& what) const;
    void check(const std::string& what, const ArvError& error) const;

    std::function<void()> m_onLoss;
    std::shared_ptr<Watch> m_watch;
    Held<ArvDevice> m_device;
    Held<ArvCamera> m_camera;
    QString m_inscription;
    std::shared_future<void> m_closing;
};

} // namespace host

#endif

#include "host/aravis/Connection.h"

#include <system_error>
#include <thread>

#include <QStringList>

#include "genapi/GenApi.h"
#include "host/aravis/Discovery.h"

namespace host {

namespace {

constexpr char kLost[] = "camera lost";

// On a thread that nobody waits for at the program's end: a camera that does not answer would hold that up.
std::shared_future<void> closeInBackground(Held<ArvStream> stream, Held<ArvCamera> camera,
                                           Held<ArvDevice> device)
{
    std::promise<void> closed;
    std::shared_future<void> future = closed.get_future().share();
    try {
        std::thread([stream = std::move(stream), camera = std::move(camera), device = std::move(device),
                     closed = std::move(closed)]() mutable {
            stream.reset();
            camera.reset();
            device.reset();
            closed.set_value();
        }).detach();
    } catch (const std::system_error&) {
        // No thread: all is closed by now.
    }
    return future;
}

} // namespace

void Connection::Watch::report()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!lost.exchange(true) && onLoss)
        onLoss();
}

void Connection::refuse(const std::string& what, const std::string& reason)
{
    const std::string name = "[" + what + "]";
    const std::string message = reason.rfind(name, 0) == 0 ? reason : name + " " + reason;
    throw GenICam_3_0::GenericException(message.c_str(), "Aravis", 0);
}

QString Connection::open(const QString& address)
{
    QString error;
    m_device = openDevice(address, &error);
    if (!m_device)
        return error;
    if (ARV_IS_GV_DEVICE(m_device.get()) && !arv_gv_device_is_controller(ARV_GV_DEVICE(m_device.get()))) {
        close();
        return cameraInUse(address);
    }

    m_watch = std::make_shared<Watch>();
    m_watch->onLoss = m_onLoss;
    using SharedWatch = std::shared_ptr<Watch>;
    // The signal comes on a thread of Aravis', which the device's end waits for.
    g_signal_connect_data(
        m_device.get(), "control-lost",
        G_CALLBACK(+[](ArvDevice*, gpointer watch) { (*static_cast<SharedWatch*>(watch))->report(); }),
        new SharedWatch(m_watch), [](gpointer watch, GClosure*) { delete static_cast<SharedWatch*>(watch); },
        GConnectFlags(0));

    ArvError failure;
    m_camera.reset(arv_camera_new_with_device(m_device.get(), failure.out()));
    if (!m_camera) {
        close();
        return openFailure(address, failure);
    }
    QStringList inscription;
    for (const auto part :
         {arv_camera_get_vendor_name, arv_camera_get_model_name, arv_camera_get_device_serial_number})
        inscription += QString::fromUtf8(part(m_camera.get(), nullptr));
    inscription.removeAll({});
    m_inscription = inscription.join(QLatin1Char(' '));
    return {};
}

void Connection::close(Held<ArvStream> stream)
{
    if (!m_device)
        return;
    if (m_watch) {
        const std::lock_guard<std::mutex> lock(m_watch->mutex);
        m_watch->onLoss = nullptr;
    }
    m_closing = closeInBackground(std::move(stream), std::move(m_camera), std::move(m_device));
}

bool Connection::waitUntilClosed(std::chrono::milliseconds patience) const
{
    return !m_closing.valid() || m_closing.wait_for(patience) == std::future_status::ready;
}

GType Connection::typeOf(const std::string& node) const
{
    checkPresence(node);
    ArvGcNode* const found = arv_gc_get_node(arv_device_get_genicam(m_device.get()), node.c_str());
    return ARV_IS_GC_FEATURE_NODE(found) ? G_OBJECT_TYPE(found) : G_TYPE_INVALID;
}

ArvGcFeatureNode* Connection::find(const std::string& node, GType type) const
{
    if (typeOf(node) != type)
        refuse(node, "not a node of the kind that the camera had before");
    return ARV_GC_FEATURE_NODE(arv_gc_get_node(arv_device_get_genicam(m_device.get()), node.c_str()));
}

void Connection::checkPresence(const std::string& what) const
{
    if (isLost())
        refuse(what, kLost);
}

void Connection::check(const std::string& what, const ArvError& error) const
{
    if (!error)
        return;
    const bool lost = error.is(ARV_DEVICE_ERROR_TIMEOUT) || error.is(ARV_DEVICE_ERROR_NOT_CONNECTED);
    if (!lost)
        refuse(what, error.text());
    m_watch->report();
    refuse(what, std::string(error.text()) + ": " + kLost);
}

} // namespace host

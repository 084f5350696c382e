#include "host/app/Session.h"

#include <new>

namespace host {

Session::Session(const PluginModule& module, bool chinese)
    : m_module(module), m_chinese(chinese),
      // By name, so that Qt makes and deletes all that goes from thread to thread: the thread sanitizer can't
      // see how Qt's event queue synchronises.
      m_pipeline([this] { QMetaObject::invokeMethod(this, "frameReady", Qt::QueuedConnection); })
{
}

Session::~Session()
{
    close();
}

void Session::open(std::unique_ptr<Camera> camera, QWidget* pluginParent)
{
    close();
    m_camera = std::move(camera);
    m_pluginParent = pluginParent;
    connect(m_camera.get(), &Camera::registerWritten, this, &Session::registerWritten);
    connect(m_camera.get(), &Camera::streamingChanged, this, &Session::streamingChanged);
    connect(m_camera.get(), &Camera::lost, this, &Session::cameraLost);
    m_camera->setFrameSink([this](Frame& frame) {
        try {
            m_pipeline.process(frame);
        } catch (const std::bad_alloc&) {
            // No memory to show this frame; the next one may find some.
        }
    });
    noteWarnings();
    startPlugin();
    startStream();
}

void Session::close()
{
    if (!m_camera)
        return;
    stopStream();
    endPlugin();
    m_pipeline.mailbox().take(); // a frame of the old camera is not the new one's
    m_camera.reset();
}

void Session::restartPlugin()
{
    if (!m_camera)
        return;
    const bool wasStreaming = m_camera->isStreaming();
    stopStream();
    endPlugin();
    startPlugin();
    if (wasStreaming)
        startStream();
}

QString Session::reconnect()
{
    if (!m_camera)
        return {};
    const QString error = m_camera->reconnect();
    if (error.isEmpty())
        startStream();
    return error;
}

void Session::startPlugin()
{
    m_plugin = std::make_unique<PluginObject>(m_module);
    connect(m_plugin.get(), &PluginObject::message, this, &Session::onPluginMessage);
    const int code =
        m_plugin->start(m_camera->deviceNodeMap(), m_camera->remoteNodeMap(), m_chinese, m_pluginParent);
    const QString text = code == 0 ? QString() : m_plugin->errorText(code);
    if (code == 0)
        m_pipeline.setPlugin(m_plugin->running());
    else
        m_plugin.reset();
    emit pluginStarted(code, text);
}

// The stream has to be stopped.
void Session::endPlugin()
{
    m_pipeline.setPlugin(nullptr);
    m_plugin.reset();
    m_restartAfterAccess = false;
}

QString Session::setScene(const QString& scene)
{
    const QString error = m_camera->setScene(scene);
    if (error.isEmpty())
        noteWarnings();
    return error;
}

void Session::noteWarnings()
{
    for (const QString& warning : m_camera->warnings())
        emit note(warning);
}

void Session::sendToPlugin(PluginMsgType type)
{
    if (m_plugin)
        m_plugin->send(type);
}

void Session::startStream()
{
    if (!m_camera)
        return;
    const QString error = m_camera->startStream();
    if (!error.isEmpty())
        emit note(error);
}

void Session::stopStream()
{
    if (m_camera)
        m_camera->stopStream();
}

// Runs inside the plug-in's operation: the camera has to be free when this returns.
void Session::onPluginMessage(int type)
{
    emit pluginMessage(type);
    if (type == MSG_DEVICE_ACCESS_BEGIN) {
        m_restartAfterAccess = m_camera->isStreaming();
        stopStream();
    } else if (type == MSG_DEVICE_ACCESS_END && m_restartAfterAccess) {
        m_restartAfterAccess = false;
        startStream();
    }
}

std::shared_ptr<const ShownFrame> Session::firstFrame(std::chrono::milliseconds patience)
{
    if (!m_camera)
        return nullptr;
    const bool wasStreaming = m_camera->isStreaming();
    stopStream();
    std::future<std::shared_ptr<const ShownFrame>> frame = m_pipeline.nextFrame();
    startStream();
    const bool came = m_camera->isStreaming() && frame.wait_for(patience) == std::future_status::ready;
    if (!wasStreaming)
        stopStream();
    return came ? frame.get() : nullptr;
}

QString messageName(int type)
{
    switch (type) {
    case MSG_DEVICE_ACCESS_END:
        return "device access end";
    case MSG_DEVICE_ACCESS_BEGIN:
        return "device access begin";
    case MSG_DIALOG_HIDDEN:
        return "dialog hidden";
    case MSG_DIALOG_SHOWN:
        return "dialog shown";
    default:
        return "unknown";
    }
}

} // namespace host

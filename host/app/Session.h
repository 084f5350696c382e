// One camera at a time, with a plug-in object of its own, and the rules between them: who stops the stream
// when, and in which order all is taken down. GUI thread.
#ifndef ORLUNE_HOST_APP_SESSION_H
#define ORLUNE_HOST_APP_SESSION_H

#include <chrono>
#include <memory>

#include <QObject>
#include <QString>

#include "host/app/FramePipeline.h"
#include "host/app/PluginModule.h"
#include "host/camera/Camera.h"

namespace host {

class Session : public QObject
{
    Q_OBJECT

public:
    // The module has to outlive the session.
    Session(const PluginModule& module, bool chinese);
    ~Session() override;

    // Closes the present camera, starts a plug-in object on this one and then its stream. pluginParent
    // becomes the parent of the plug-in's window and has to outlive the camera's time here. What fails is
    // told by the signals; the camera is then open all the same, with what works.
    void open(std::unique_ptr<Camera> camera, QWidget* pluginParent);
    void close();

    // Ends the plug-in object and starts a new one on the same camera.
    void restartPlugin();

    // Opens the connection to the camera anew and starts the stream; the plug-in goes on as it is. Empty, or
    // one sentence that says why the camera is lost.
    QString reconnect();

    Camera* camera() const { return m_camera.get(); }
    QDialog* editor() const { return m_plugin ? m_plugin->dialog() : nullptr; }
    FrameMailbox& mailbox() { return m_pipeline.mailbox(); }

    // Lets the camera look at something else, see Camera.h. Empty, or why it goes on as before.
    QString setScene(const QString& scene);

    void sendToPlugin(PluginMsgType type);

    // The stream as the user wants it. Failures are told by note().
    void startStream();
    void stopStream();

    // The first frame of a stream that is started for it, so that it is the same each time; the stream is
    // then on or off as before. Null when none came in time.
    std::shared_ptr<const ShownFrame> firstFrame(std::chrono::milliseconds patience);

signals:
    // 0 and an empty text, or InitPlugin's code and the plug-in's text for it.
    void pluginStarted(int code, const QString& text);
    void pluginMessage(int type); // before the session does its part
    void registerWritten(int bytes);
    void streamingChanged(bool streaming);
    void note(const QString& sentence); // something for the user to know
    void cameraLost(const QString& reason);
    void frameReady(); // a frame lies in the mailbox

private:
    void noteWarnings();
    void startPlugin();
    void endPlugin();
    void onPluginMessage(int type);

    const PluginModule& m_module;
    const bool m_chinese;
    FramePipeline m_pipeline;
    std::unique_ptr<Camera> m_camera;
    QWidget* m_pluginParent = nullptr;
    std::unique_ptr<PluginObject> m_plugin;
    bool m_restartAfterAccess = false;
};

// What a message of the plug-in says, in words.
QString messageName(int type);

} // namespace host

#endif

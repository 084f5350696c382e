// A camera as the viewer sees it: two node maps for the plug-in, a stream of frames, and what tests and bug
// reports look at.
//
// Thread: everything on the GUI thread, but for the frame sink, which runs on a thread of the camera's own.
#ifndef ORLUNE_HOST_CAMERA_CAMERA_H
#define ORLUNE_HOST_CAMERA_CAMERA_H

#include <functional>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include "genapi/GenApi.h"
#include "host/camera/Frame.h"

namespace host {

class Camera : public QObject
{
    Q_OBJECT

public:
    using FrameSink = std::function<void(Frame&)>;

    using QObject::QObject;

    // Names the camera to a person: model, and address where it has one.
    virtual QString name() const = 0;

    // What a person should know about how this camera was opened, a sentence each.
    virtual QStringList warnings() const { return {}; }

    // Node maps, owned by the camera. The device map holds DeviceDisplayName and may be null.
    virtual GenApi_3_0::INodeMap* deviceNodeMap() = 0;
    virtual GenApi_3_0::INodeMap* remoteNodeMap() = 0;

    // Receives every frame, on the camera's frame thread; may change it. Set while the stream is stopped. The
    // sink must not throw, and must not wait for the GUI thread, which stopStream keeps waiting for it.
    virtual void setFrameSink(FrameSink sink) = 0;

    // Starts or stops the stream; both do nothing when it is so already. A running stream holds
    // TLParamsLocked at 1. startStream gives an empty text, or one sentence that says why there is no stream.
    // After stopStream has returned the sink is not called any more.
    virtual QString startStream() = 0;
    virtual void stopStream() = 0;
    virtual bool isStreaming() const = 0;
    // Frames that the camera sent since the stream was started and that did not arrive whole.
    virtual quint64 lostFrames() const { return 0; }

    // Makes the connection to the camera anew, after a loss or at any time; the node maps stay, and the
    // stream is off then. Empty, or one sentence that says why the camera is lost.
    virtual QString reconnect() = 0;

    // Looks at something else from now on: what is "chart", "ramp", or the path of a picture or of a folder
    // of pictures. The stream is started anew when it runs; warnings() are those of the new pictures. Empty,
    // or why the camera goes on as before.
    virtual QString setScene(const QString& /*what*/)
    {
        return tr("This camera sees what is in front of it.");
    }

    // For scripts and bug reports: bytes of the LUT register, and of the stored user set's copy of it; empty
    // with a sentence in *error when there is none. pokeRegister loads bytes below the nodes, whatever their
    // locks say.
    virtual QByteArray registerBytes(QString* error) = 0;
    virtual QByteArray userSetBytes(QString* error) = 0;
    virtual QString pokeRegister(const QByteArray& bytes) = 0; // empty, or why not

    // Faults that this camera can play, by name, and their switches; none for a real one.
    virtual QStringList faultNames() const { return {}; }
    virtual QString setFault(const QString& /*name*/, bool /*on*/)
    {
        return tr("This camera plays no faults.");
    }
    virtual QStringList activeFaults() const { return {}; }

    // Holds TLParamsLocked at 1 without a stream, as another program's acquisition would; empty, or why not.
    virtual QString setLocked(bool /*on*/) { return tr("This camera cannot be locked by hand."); }

signals:
    void streamingChanged(bool streaming);
    // A write to the LUT register has arrived in the camera.
    void registerWritten(int bytes);
    // The camera is gone; every node access fails from now on.
    void lost(const QString& reason);
};

} // namespace host

#endif

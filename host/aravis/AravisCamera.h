// A camera of Aravis' behind the viewer's interface.
#ifndef ORLUNE_HOST_ARAVIS_ARAVISCAMERA_H
#define ORLUNE_HOST_ARAVIS_ARAVISCAMERA_H

#include <optional>

#include "host/aravis/AravisCameras.h"
#include "host/aravis/AravisNodes.h"
#include "host/aravis/Connection.h"
#include "host/aravis/FrameGrabber.h"
#include "host/camera/Camera.h"

namespace host {

class AravisCamera final : public Camera
{
    Q_OBJECT

public:
    explicit AravisCamera(AravisRequest request);
    ~AravisCamera() override;

    // Empty, or one sentence that says why there is no connection. Before everything else.
    QString open();

    QString name() const override;
    GenApi_3_0::INodeMap* deviceNodeMap() override { return &m_deviceMap; }
    GenApi_3_0::INodeMap* remoteNodeMap() override { return &*m_nodes; }

    void setFrameSink(FrameSink sink) override;
    QString startStream() override;
    void stopStream() override;
    bool isStreaming() const override { return m_grabber.isRunning(); }
    quint64 lostFrames() const override { return m_grabber.lostFrames(); }

    QString reconnect() override;

    QByteArray registerBytes(QString* error) override;
    QByteArray userSetBytes(QString* error) override;
    QString pokeRegister(const QByteArray& bytes) override;
    QString setLocked(bool on) override;

private:
    // The map with the one node that a viewer keeps for a camera itself.
    class DeviceMap : public GenApi_3_0::INodeMap
    {
    public:
        explicit DeviceMap(const AravisCamera& camera) : m_displayName(camera) {}
        GenApi_3_0::INode* GetNode(const GenICam_3_0::gcstring& Name) const override;

    private:
        class DisplayName : public GenApi_3_0::INode, public GenApi_3_0::IString
        {
        public:
            explicit DisplayName(const AravisCamera& camera) : m_camera(camera) {}
            GenICam_3_0::gcstring GetName(bool) const override { return "DeviceDisplayName"; }
            GenApi_3_0::EAccessMode GetAccessMode() const override { return GenApi_3_0::RO; }
            void SetValue(const GenICam_3_0::gcstring&, bool) override;
            GenICam_3_0::gcstring GetValue(bool, bool) override
            {
                return m_camera.name().toUtf8().constData();
            }

        private:
            const AravisCamera& m_camera;
        };

        mutable DisplayName m_displayName;
    };

    QString connectCamera();
    QString asOpenFailure(const QString& failure) const;
    void updateLock();
    void endStream();
    void onLoss();

    const AravisRequest m_request;
    Connection m_connection;
    DeviceMap m_deviceMap;
    std::optional<AravisNodeMap> m_nodes; // since the camera has been open
    FrameSink m_sink;
    FrameGrabber m_grabber;
    bool m_lockedByHand = false;
};

} // namespace host

#endif

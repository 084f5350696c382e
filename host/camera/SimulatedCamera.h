// A camera without hardware. Register memory lies below typed nodes, frames run through the table in that
// memory as in a real camera, user sets outlive the program, and faults can be switched on.
//
// Models, by the LUT nodes that they have:
//   lut         LUTValueAll of 16424 bytes and LUTSelector; while TLParamsLocked is 1 the register and
//               UserSetLoad refuse. The table is always in force.
//   lut-enable  the same with LUTEnable: nothing refuses under the lock, and the table is in force while
//               LUTEnable is set
//   no-lut      none
// All have TLParamsLocked (read only: the camera itself sets it), UserSetSelector, UserSetLoad, UserSetSave
// and UserSetDefault, and DeviceDisplayName in the device map. LUTSelector chooses between two tables; table
// 0 is the one that frames run through. A user set holds LUTSelector, LUTEnable and both tables; set 0 is the
// factory's, with identity tables, and cannot be saved.
#ifndef ORLUNE_HOST_CAMERA_SIMULATEDCAMERA_H
#define ORLUNE_HOST_CAMERA_SIMULATEDCAMERA_H

#include <memory>
#include <vector>

#include "host/camera/AccessFaults.h"
#include "host/camera/Camera.h"
#include "host/camera/FrameStream.h"
#include "host/camera/RegisterMemory.h"
#include "host/camera/SimulatedNodes.h"
#include "host/camera/UserSets.h"
#include "host/frames/FrameSource.h"

namespace host {

struct SimulatedCameraOptions
{
    QString model = QStringLiteral("lut");
    int lutBytes = -1;                              // length of LUTValueAll, 0 to 1 MiB; -1: the model's own
    QByteArray displayName = "Simulated camera";    // what DeviceDisplayName gives, up to 255 bytes
    QString pixelFormat = QStringLiteral("Mono12"); // by its PFNC name, see host/frames/PixelFormat.h
    int width = 0;                                  // pixels; 0: the first picture's, 640 for a scene
    int height = 0;                                 // lines; 0: the first picture's, 480 for a scene
    double frameRate = 25;                          // frames a second, 0.1 to 1000
    QString frames = QStringLiteral("chart");       // "chart", "ramp", or the path of a picture or a folder
    QString stateFile;                              // where the user sets are kept; empty: nowhere
};

QStringList simulatedCameraModels();

class SimulatedCamera : public Camera
{
    Q_OBJECT

public:
    // Made by makeSimulatedCamera.
    SimulatedCamera(const SimulatedCameraOptions& options, const PixelFormat& format,
                    std::unique_ptr<FrameSource> source, QStringList warnings);

    QString name() const override;
    QStringList warnings() const override { return m_warnings; }
    GenApi_3_0::INodeMap* deviceNodeMap() override { return &m_deviceMap; }
    GenApi_3_0::INodeMap* remoteNodeMap() override { return &m_remoteMap; }

    void setFrameSink(FrameSink sink) override;
    QString startStream() override;
    void stopStream() override;
    bool isStreaming() const override { return m_stream.isRunning(); }
    QString reconnect() override;
    QString setScene(const QString& what) override;

    // Of the table that LUTSelector chooses.
    QByteArray registerBytes(QString* error) override;
    QByteArray userSetBytes(QString* error) override; // UserSet0's
    QString pokeRegister(const QByteArray& bytes) override;

    QStringList faultNames() const override;
    QString setFault(const QString& name, bool on) override;
    QStringList activeFaults() const override { return m_faults.switchesOn(); }
    QString setLocked(bool on) override;

    // Counts accesses, and lets a chosen one fail.
    AccessFaults& accessFaults() { return m_faults; }

private:
    void addNodes();
    void updateLock();
    bool isUnplugged() const;
    bool isFrozen() const;     // the lock is on, and this model heeds it
    int selectedTable() const; // address
    int featureBytes() const { return m_userSets.bytes(UserSets::kFactorySet).size(); }
    void loadUserSet();
    void saveUserSet();
    QByteArray selectedTableIn(const QByteArray& features, QString* error) const;
    QString noRegister() const;
    void produceFrame(std::uint64_t number);

    const QString m_model;
    const bool m_hasLut;
    const bool m_hasEnable;
    const int m_lutBytes;
    const PixelFormat& m_format;
    const double m_frameRate;
    const QSize m_frameSize;               // as asked for; a side of 0 is the first picture's
    std::unique_ptr<FrameSource> m_source; // changed while the stream is stopped
    QStringList m_warnings;

    RegisterMemory m_memory;
    AccessFaults m_faults;
    SimulatedNodeMap m_deviceMap;
    SimulatedNodeMap m_remoteMap;
    UserSets m_userSets;
    bool m_lockedByHand = false;

    // The frame thread's while the stream runs.
    FrameSink m_sink;
    std::vector<std::uint16_t> m_raw;
    Frame m_frame;

    FrameStream m_stream; // last, so that its thread ends before anything that it uses
};

// Null with a sentence in *error when an option is unknown or out of range.
std::unique_ptr<SimulatedCamera> makeSimulatedCamera(const SimulatedCameraOptions& options, QString* error);

} // namespace host

#endif

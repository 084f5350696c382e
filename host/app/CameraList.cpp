#include "host/app/CameraList.h"

#include <functional>

#include "host/camera/SimulatedCamera.h"

namespace host {

namespace {

using Opener = std::function<std::unique_ptr<Camera>(const CameraRequest&, QString*)>;

struct Kind
{
    CameraEntry entry;
    Opener open;
};

std::unique_ptr<Camera> openSimulated(const CameraRequest& request, QString* error)
{
    SimulatedCameraOptions options;
    options.model = request.camera;
    options.lutBytes = request.lutBytes;
    options.stateFile = request.stateFile;
    options.width = request.size.isValid() ? request.size.width() : 0;
    options.height = request.size.isValid() ? request.size.height() : 0;
    if (!request.frames.isEmpty())
        options.frames = request.frames;
    if (!request.pixelFormat.isEmpty())
        options.pixelFormat = request.pixelFormat;
    return makeSimulatedCamera(options, error);
}

const QVector<Kind>& kinds()
{
    static const QVector<Kind> list = {
        {{"lut", "Simulated, LUT under the parameter lock", true}, openSimulated},
        {{"lut-enable", "Simulated, LUT with LUTEnable", true}, openSimulated},
        {{"no-lut", "Simulated, without LUT", false}, openSimulated},
    };
    return list;
}

} // namespace

const QVector<CameraEntry>& cameraEntries()
{
    static const QVector<CameraEntry> entries = [] {
        QVector<CameraEntry> list;
        for (const Kind& kind : kinds())
            list += kind.entry;
        return list;
    }();
    return entries;
}

QStringList cameraKeys()
{
    QStringList keys;
    for (const CameraEntry& entry : cameraEntries())
        keys += entry.key;
    return keys;
}

const CameraEntry* cameraEntry(const QString& key)
{
    for (const CameraEntry& entry : cameraEntries()) {
        if (entry.key == key)
            return &entry;
    }
    return nullptr;
}

std::unique_ptr<Camera> openCamera(const CameraRequest& request, QString* error)
{
    for (const Kind& kind : kinds()) {
        if (kind.entry.key == request.camera)
            return kind.open(request, error);
    }
    *error = QString("There is no camera \"%1\"; there are %2.").arg(request.camera, cameraKeys().join(", "));
    return nullptr;
}

} // namespace host

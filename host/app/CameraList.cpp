#include "host/app/CameraList.h"

#include "host/aravis/AravisCameras.h"
#include "host/camera/SimulatedCamera.h"

namespace host {

namespace {

const QString kRealPrefix = QStringLiteral("aravis:");

QString addressOf(const QString& realKey)
{
    return realKey.mid(kRealPrefix.size());
}

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

} // namespace

const QVector<CameraEntry>& cameraEntries()
{
    static const QVector<CameraEntry> entries = {
        {"lut", "Simulated, LUT under the parameter lock", true},
        {"lut-enable", "Simulated, LUT with LUTEnable", true},
        {"no-lut", "Simulated, without LUT", false},
    };
    return entries;
}

QString cameraKeys()
{
    QStringList keys;
    for (const CameraEntry& entry : cameraEntries())
        keys += entry.key;
    return keys.join(", ") + ", " + realCameraKey("ADDRESS");
}

QString realCameraKey(const QString& address)
{
    return kRealPrefix + address;
}

bool isRealCamera(const QString& key)
{
    return key.startsWith(kRealPrefix) && !addressOf(key).isEmpty();
}

std::optional<CameraEntry> cameraEntry(const QString& key)
{
    if (isRealCamera(key))
        return CameraEntry{key, addressOf(key), false};
    for (const CameraEntry& entry : cameraEntries()) {
        if (entry.key == key)
            return entry;
    }
    return std::nullopt;
}

FoundCameras findRealCameras()
{
    FoundCameras found;
    QString problem;
    for (const FoundCamera& camera : listAravisCameras(&problem)) {
        if (camera.problem.isEmpty())
            found.entries += {realCameraKey(camera.address), camera.title, false};
        else
            found.problems += camera.problem;
    }
    if (!problem.isEmpty())
        found.problems += problem;
    else if (found.entries.isEmpty() && found.problems.isEmpty())
        found.problems += QString("No real camera was found.");
    return found;
}

std::unique_ptr<Camera> openCamera(const CameraRequest& request, QString* error)
{
    if (isRealCamera(request.camera))
        return openAravisCamera({addressOf(request.camera), request.pixelFormat, request.size}, error);
    if (cameraEntry(request.camera))
        return openSimulated(request, error);
    *error = QString("There is no camera \"%1\"; there are %2.").arg(request.camera, cameraKeys());
    return nullptr;
}

} // namespace host

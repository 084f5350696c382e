// The cameras that the viewer can open, by key: the simulated ones, and real ones as "aravis:ADDRESS" with an
// address as host/aravis/AravisCameras.h takes it.
#ifndef ORLUNE_HOST_APP_CAMERALIST_H
#define ORLUNE_HOST_APP_CAMERALIST_H

#include <memory>
#include <optional>

#include <QString>
#include <QStringList>
#include <QVector>

#include "host/app/CommandLine.h"
#include "host/camera/Camera.h"

namespace host {

struct CameraEntry
{
    QString key;
    QString title;      // for menus
    bool choosesLength; // its LUT register's length can be chosen
};

// The simulated ones, in the order of the menu.
const QVector<CameraEntry>& cameraEntries();

// The keys of all, as a person is told them.
QString cameraKeys();

QString realCameraKey(const QString& address);
bool isRealCamera(const QString& key);

// Nothing when no camera can have that key. A real one need not be there.
std::optional<CameraEntry> cameraEntry(const QString& key);

struct FoundCameras
{
    QVector<CameraEntry> entries;
    QStringList problems; // a sentence each
};

// The real ones in reach. Any thread; takes about a second.
FoundCameras findRealCameras();

// Null with a sentence in *error when the camera cannot be opened.
std::unique_ptr<Camera> openCamera(const CameraRequest& request, QString* error);

} // namespace host

#endif

// The cameras that the viewer can open, by key. A new kind of camera is one more entry in CameraList.cpp.
#ifndef ORLUNE_HOST_APP_CAMERALIST_H
#define ORLUNE_HOST_APP_CAMERALIST_H

#include <memory>

#include <QString>
#include <QStringList>
#include <QVector>

#include "host/app/CommandLine.h"
#include "host/camera/Camera.h"

namespace host {

struct CameraEntry
{
    QString key;
    QString title; // for menus
    bool hasLut;   // its register's length can be chosen
};

// In the order of the menu.
const QVector<CameraEntry>& cameraEntries();
QStringList cameraKeys();

// Null when there is no camera of that key.
const CameraEntry* cameraEntry(const QString& key);

// Null with a sentence in *error when the camera cannot be opened.
std::unique_ptr<Camera> openCamera(const CameraRequest& request, QString* error);

} // namespace host

#endif

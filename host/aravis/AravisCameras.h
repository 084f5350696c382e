// Real cameras: GigE Vision and USB3 Vision devices with a GenICam description, reached through Aravis. A
// build without Aravis has the same functions; they say so.
#ifndef ORLUNE_HOST_ARAVIS_ARAVISCAMERAS_H
#define ORLUNE_HOST_ARAVIS_ARAVISCAMERAS_H

#include <memory>

#include <QSize>
#include <QString>
#include <QVector>

#include "host/camera/Camera.h"

namespace host {

struct FoundCamera
{
    QString address; // for openAravisCamera; empty when the camera cannot be opened
    QString title;   // for a person: what is written on the camera, and where it is
    QString problem; // one sentence that says why it cannot be opened, or empty
};

struct AravisRequest
{
    // The IPv4 address of a GigE camera, or a camera's name as FoundCamera gives it. Only a name makes the
    // viewer search the network.
    QString address;
    QString pixelFormat; // as the camera spells it; empty: as the camera has it
    QSize size;          // of the frames; empty: as the camera has it
};

// Asks on every network interface and USB port, which takes about a second. Any thread. An empty result with
// a sentence in *problem when there is nothing to ask with.
QVector<FoundCamera> listAravisCameras(QString* problem);

// Null with one sentence in *error when the camera cannot be had. Waits up to 2.5 seconds for an address
// without a camera. GUI thread.
std::unique_ptr<Camera> openAravisCamera(const AravisRequest& request, QString* error);

} // namespace host

#endif

// Finding and opening Aravis' devices, and what to tell a person when that fails.
#ifndef ORLUNE_HOST_ARAVIS_DISCOVERY_H
#define ORLUNE_HOST_ARAVIS_DISCOVERY_H

#include <QString>

#include "host/aravis/Arv.h"

namespace host {

// The device of an address as openAravisCamera takes it, which another program may control; or null with one
// sentence in *error.
Held<ArvDevice> openDevice(const QString& address, QString* error);

// Why a device cannot be opened, from Aravis' failure.
QString openFailure(const QString& address, const ArvError& error);

QString cameraInUse(const QString& address);

} // namespace host

#endif

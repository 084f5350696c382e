// USB3 Vision cameras that are plugged in and may not be opened by this user. Aravis does not see them: it
// has to open a device to learn its name.
#ifndef ORLUNE_HOST_ARAVIS_USBACCESS_H
#define ORLUNE_HOST_ARAVIS_USBACCESS_H

#include <QString>
#include <QVector>

namespace host {

struct BlockedUsbCamera
{
    QString name;   // vendor, product and serial number, as far as the device tells them
    QString file;   // of the device
    QString reason; // why it cannot be opened, in the system's words
};

// Looks in the kernel's lists under root.
QVector<BlockedUsbCamera> blockedUsbCameras(const QString& root = QStringLiteral("/"));

} // namespace host

#endif

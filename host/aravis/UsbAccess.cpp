#include "host/aravis/UsbAccess.h"

#include <cerrno>
#include <unistd.h>

#include <QDir>
#include <QFile>

namespace host {

namespace {

// Of a USB3 Vision control interface, as the kernel prints them.
const QByteArray kInterfaceClass = "ef";
const QByteArray kInterfaceSubclass = "05";
const QByteArray kControlProtocol = "00";

QByteArray attribute(const QDir& folder, const QString& name)
{
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

bool isControlInterface(const QDir& folder)
{
    return attribute(folder, "bInterfaceClass") == kInterfaceClass &&
           attribute(folder, "bInterfaceSubClass") == kInterfaceSubclass &&
           attribute(folder, "bInterfaceProtocol") == kControlProtocol;
}

} // namespace

QVector<BlockedUsbCamera> blockedUsbCameras(const QString& root)
{
    QVector<BlockedUsbCamera> blocked;
    const QDir devices(root + "/sys/bus/usb/devices");
    // An interface is named after its device: "2-1:1.0" belongs to "2-1".
    for (const QString& interface : devices.entryList({"*:*"}, QDir::Dirs)) {
        if (!isControlInterface(QDir(devices.filePath(interface))))
            continue;
        const QDir device(devices.filePath(interface.section(':', 0, 0)));
        const QString file = QStringLiteral("/dev/bus/usb/%1/%2")
                                 .arg(attribute(device, "busnum").toInt(), 3, 10, QLatin1Char('0'))
                                 .arg(attribute(device, "devnum").toInt(), 3, 10, QLatin1Char('0'));
        if (::access(QFile::encodeName(root + file).constData(), R_OK | W_OK) == 0)
            continue;
        const QString reason = qt_error_string(errno);
        QByteArrayList name;
        for (const char* part : {"manufacturer", "product", "serial"})
            name += attribute(device, part);
        name.removeAll({});
        blocked += {QString::fromUtf8(name.join(' ')), file, reason};
    }
    return blocked;
}

} // namespace host

#include "host/aravis/Discovery.h"

#include <mutex>

#include "host/aravis/AravisCameras.h"
#include "host/aravis/UsbAccess.h"

namespace host {

namespace {

// Aravis' list of devices is one for the whole program.
std::mutex listMutex;

bool isGigE(unsigned int index)
{
    return qstrcmp(arv_get_device_protocol(index), "GigEVision") == 0;
}

FoundCamera foundCamera(unsigned int index)
{
    const QString address =
        QString::fromUtf8(isGigE(index) ? arv_get_device_address(index) : arv_get_device_id(index));
    const QString place = isGigE(index) ? Camera::tr("GigE, at %1").arg(address) : Camera::tr("USB3");
    QStringList inscription;
    for (const auto part : {arv_get_device_vendor, arv_get_device_model, arv_get_device_serial_nbr})
        inscription += QString::fromUtf8(part(index));
    return {address, inscription.join(QLatin1Char(' ')) + QStringLiteral(", ") + place, {}};
}

QString blockedSentence(const BlockedUsbCamera& camera)
{
    return Camera::tr("The USB camera %1 may not be opened: %2, %3.")
        .arg(camera.name, camera.file, camera.reason);
}

bool isListed(const QString& name)
{
    for (unsigned int i = 0; i < arv_get_n_devices(); ++i) {
        if (name == QString::fromUtf8(arv_get_device_id(i)))
            return true;
    }
    return false;
}

QString notListed(const QString& name)
{
    const QVector<BlockedUsbCamera> blocked = blockedUsbCameras();
    return blocked.isEmpty() ? Camera::tr("No camera of the name \"%1\" was found.").arg(name)
                             : blockedSentence(blocked.constFirst());
}

} // namespace

QVector<FoundCamera> listAravisCameras(QString* /*problem*/)
{
    const std::lock_guard<std::mutex> lock(listMutex);
    arv_update_device_list();
    QVector<FoundCamera> cameras;
    for (unsigned int i = 0; i < arv_get_n_devices(); ++i)
        cameras += foundCamera(i);
    for (const BlockedUsbCamera& camera : blockedUsbCameras())
        cameras += {{}, Camera::tr("%1, USB3").arg(camera.name), blockedSentence(camera)};
    return cameras;
}

QString cameraInUse(const QString& address)
{
    return Camera::tr("The camera %1 is in use by another program.").arg(address);
}

QString openFailure(const QString& address, const ArvError& error)
{
    const QString text = QString::fromUtf8(error.text());
    if (text.contains("LIBUSB_ERROR_BUSY"))
        return cameraInUse(address);
    if (text.contains("LIBUSB_ERROR_ACCESS"))
        return Camera::tr("The camera %1 may not be opened: the permission for its USB device is missing.")
            .arg(address);
    if (error.is(ARV_DEVICE_ERROR_NOT_FOUND) || error.is(ARV_DEVICE_ERROR_TIMEOUT))
        return Camera::tr("No camera answers at %1.").arg(address);
    return Camera::tr("The camera %1 cannot be opened: %2.").arg(address, text);
}

Held<ArvDevice> openDevice(const QString& address, QString* error)
{
    std::unique_lock<std::mutex> lock(listMutex, std::defer_lock);
    const QByteArray name = address.toUtf8();
    // What is neither an address nor in its list, Aravis would look for in the network's name service.
    if (!g_hostname_is_ip_address(name.constData())) {
        lock.lock();
        arv_update_device_list();
        if (!isListed(address)) {
            *error = notListed(address);
            return nullptr;
        }
    }
    ArvError failure;
    Held<ArvDevice> device(arv_open_device(name.constData(), failure.out()));
    if (!device)
        *error = openFailure(address, failure);
    return device;
}

} // namespace host

#include "host/aravis/AravisCamera.h"

#include <system_error>

#include "host/frames/PixelFormat.h"

namespace host {

namespace {

using namespace std::chrono_literals;

// A camera that answers is closed within milliseconds; the close of one that does not ends in the background.
constexpr std::chrono::milliseconds kClosePatience = 500ms;

// The exception's text, or an empty one when call throws nothing.
template <class Call>
QString failureOf(Call call)
{
    try {
        call();
        return {};
    } catch (const std::exception& failure) {
        return QString::fromUtf8(failure.what());
    }
}

// What the viewer has to choose for itself before it takes frames.
void checkPixelFormat(ArvCamera* camera, GError** error)
{
    GError* failure = nullptr;
    const ArvPixelFormat code = arv_camera_get_pixel_format(camera, &failure);
    if (failure)
        return g_propagate_error(error, failure);
    if (pixelFormatByCode(code))
        return;
    const char* name = arv_camera_get_pixel_format_as_string(camera, nullptr);
    g_set_error(error, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_WRONG_FEATURE,
                "the viewer does not know the pixel format %s; choose another one with --pixel-format", name);
}

} // namespace

GenApi_3_0::INode* AravisCamera::DeviceMap::GetNode(const GenICam_3_0::gcstring& Name) const
{
    return Name == m_displayName.GetName(false) ? &m_displayName : nullptr;
}

void AravisCamera::DeviceMap::DisplayName::SetValue(const GenICam_3_0::gcstring&, bool)
{
    Connection::refuse("DeviceDisplayName", "the node is read only");
}

AravisCamera::AravisCamera(AravisRequest request)
    : m_request(std::move(request)),
      m_connection([this] { QMetaObject::invokeMethod(this, &AravisCamera::onLoss, Qt::QueuedConnection); }),
      m_deviceMap(*this)
{
}

AravisCamera::~AravisCamera()
{
    if (isStreaming())
        endStream();
    m_connection.close(m_grabber.takeStream());
    m_connection.waitUntilClosed(kClosePatience);
}

QString AravisCamera::open()
{
    const QString error = connectCamera();
    if (!error.isEmpty())
        return error;
    return asOpenFailure(failureOf(
        [this] { m_nodes.emplace(m_connection, [this](int bytes) { emit registerWritten(bytes); }); }));
}

// Empty for an empty one.
QString AravisCamera::asOpenFailure(const QString& failure) const
{
    return failure.isEmpty() ? failure
                             : tr("The camera %1 cannot be opened: %2.").arg(m_request.address, failure);
}

QString AravisCamera::connectCamera()
{
    const QString error = m_connection.open(m_request.address);
    if (!error.isEmpty())
        return error;
    const QString failure = failureOf([this] {
        if (!m_request.pixelFormat.isEmpty()) {
            m_connection.control("PixelFormat", [this](ArvCamera* camera, GError** error) {
                arv_camera_set_pixel_format_from_string(camera, m_request.pixelFormat.toUtf8().constData(),
                                                        error);
            });
        }
        if (m_request.size.isValid()) {
            m_connection.control("Width, Height", [this](ArvCamera* camera, GError** error) {
                arv_camera_set_region(camera, -1, -1, m_request.size.width(), m_request.size.height(), error);
            });
        }
    });
    if (!failure.isEmpty())
        m_connection.close();
    return asOpenFailure(failure);
}

QString AravisCamera::name() const
{
    return tr("%1 at %2").arg(m_connection.inscription(), m_request.address);
}

void AravisCamera::setFrameSink(FrameSink sink)
{
    Q_ASSERT(!isStreaming());
    m_sink = std::move(sink);
}

QString AravisCamera::startStream()
{
    if (isStreaming())
        return {};
    const QString failure = failureOf([this] {
        m_connection.control("PixelFormat", checkPixelFormat);
        m_connection.control("stream",
                             [this](ArvCamera* camera, GError** error) { m_grabber.prepare(camera, error); });
        m_grabber.start(m_sink);
        updateLock();
        m_connection.control("AcquisitionStart", arv_camera_start_acquisition);
    });
    if (!failure.isEmpty()) {
        endStream();
        return tr("The camera's stream cannot be started: %1.").arg(failure);
    }
    emit streamingChanged(true);
    return {};
}

void AravisCamera::stopStream()
{
    if (!isStreaming())
        return;
    endStream();
    emit streamingChanged(false);
}

// A camera that fails here is lost, or will say so at the next access.
void AravisCamera::endStream()
{
    failureOf([this] { m_connection.control("AcquisitionStop", arv_camera_stop_acquisition); });
    m_grabber.stop();
    failureOf([this] { updateLock(); });
}

void AravisCamera::updateLock()
{
    m_nodes->setLock(isStreaming() || m_lockedByHand);
}

void AravisCamera::onLoss()
{
    if (!m_connection.isLost())
        return; // that was another connection's
    stopStream();
    m_connection.close(m_grabber.takeStream());
    emit lost(
        tr("The camera %1 is lost: it does not answer, or another program has taken it over.").arg(name()));
}

QString AravisCamera::reconnect()
{
    const QString before = m_connection.inscription();
    stopStream();
    m_connection.close(m_grabber.takeStream());
    if (!m_connection.waitUntilClosed(kClosePatience))
        return tr("The lost connection is still being closed; try again in a few seconds.");
    const QString error = connectCamera();
    if (!error.isEmpty())
        return error;
    const QString now = m_connection.inscription();
    if (now == before)
        return asOpenFailure(failureOf([this] { updateLock(); }));
    m_connection.close();
    return tr("Another camera answers at %1: %2.").arg(m_request.address, now);
}

QByteArray AravisCamera::registerBytes(QString* error)
{
    QByteArray bytes;
    *error = failureOf([&] {
        AravisRegister& lut = m_nodes->lut();
        bytes.resize(int(lut.GetLength()));
        lut.Get(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size(), false, true);
    });
    return error->isEmpty() ? bytes : QByteArray();
}

QByteArray AravisCamera::userSetBytes(QString* error)
{
    *error = tr("This camera shows a stored user set only by loading it.");
    return {};
}

QString AravisCamera::pokeRegister(const QByteArray& bytes)
{
    return failureOf(
        [&] { m_nodes->lut().poke(reinterpret_cast<const std::uint8_t*>(bytes.constData()), bytes.size()); });
}

QString AravisCamera::setLocked(bool on)
{
    m_lockedByHand = on;
    return failureOf([this] { updateLock(); });
}

std::unique_ptr<Camera> openAravisCamera(const AravisRequest& request, QString* error)
{
    auto camera = std::make_unique<AravisCamera>(request);
    *error = camera->open();
    if (!error->isEmpty())
        camera.reset();
    return camera;
}

} // namespace host

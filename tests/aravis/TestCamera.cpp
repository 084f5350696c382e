// A GigE Vision camera on loopback in a process of its own: Aravis' emulator with LutCamera.xml.
//
//   orlune-testcamera DESCRIPTION [OPTION=VALUE...]
//
// Options, see main: lut is the register's length, 0 for a camera without LUT; enable=1 gives it LUTEnable;
// lock=none takes its TLParamsLocked; format is a PFNC code; loss is the share of image packets that are not
// sent. Prints "ready", or "port taken". Then, for each line on the standard input:
//   ADDRESS LENGTH     prints that part of the camera's memory in hex
// and ends with the input. Addresses are decimal.
#include <atomic>
#include <chrono>
#include <iostream>
#include <thread>

#include <QMap>
#include <QRegularExpression>
#include <QTemporaryFile>

#include "host/aravis/Arv.h"

namespace {

constexpr guint32 kLut = 0xA000;
constexpr guint32 kHasLut = 0xF000;
constexpr guint32 kHasLutEnable = 0xF004;
constexpr guint32 kLutLength = 0xF008;
constexpr guint32 kUserSetSelector = 0xF014;
constexpr guint32 kUserSetLoad = 0xF01C;
constexpr guint32 kUserSetSave = 0xF020;
constexpr int kMaxLutBytes = 16424;

class Camera
{
public:
    explicit Camera(ArvFakeCamera* camera) : m_camera(camera) {}

    void set(guint32 address, guint32 value) { arv_fake_camera_write_register(m_camera, address, value); }
    guint32 get(guint32 address) const
    {
        guint32 value = 0;
        arv_fake_camera_read_register(m_camera, address, &value);
        return value;
    }
    QByteArray bytes(guint32 address, int length) const
    {
        QByteArray bytes(length, '\0');
        arv_fake_camera_read_memory(m_camera, address, guint32(length), bytes.data());
        return bytes;
    }

    // Set 0 holds zeros; set 1 what was saved last. A command is over when its register is 0 again.
    void playUserSets()
    {
        if (get(kUserSetSave) != 0) {
            m_saved = bytes(kLut, kMaxLutBytes);
            set(kUserSetSave, 0);
        }
        if (get(kUserSetLoad) != 0) {
            // As slow as a real one's flash, so that who does not wait is caught.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const QByteArray table = get(kUserSetSelector) == 1 ? m_saved : QByteArray(kMaxLutBytes, '\0');
            arv_fake_camera_write_memory(m_camera, kLut, kMaxLutBytes, table.constData());
            set(kUserSetLoad, 0);
        }
    }

private:
    ArvFakeCamera* m_camera;
    QByteArray m_saved = QByteArray(kMaxLutBytes, '\0');
};

// Code x + 3 y, cut to the format's depth. A line of 16-bit words begins with one that is too high for any
// format.
void fillFrame(ArvBuffer* buffer, void*, guint32, guint32, ArvPixelFormat format)
{
    std::size_t size = 0;
    void* const data = const_cast<void*>(arv_buffer_get_data(buffer, &size));
    const int width = arv_buffer_get_image_width(buffer);
    for (int i = 0; i < width * arv_buffer_get_image_height(buffer); ++i) {
        const int x = i % width, code = x + 3 * (i / width);
        if (format == ARV_PIXEL_FORMAT_MONO_8)
            static_cast<guint8*>(data)[i] = guint8(code);
        else
            static_cast<guint16*>(data)[i] = x == 0 ? 0xFFFF : guint16(code & 0xFFF);
    }
}

// The description; without ownLock its TLParamsLocked is none that one could use.
QByteArray describe(const char* path, bool ownLock)
{
    QFile file(path);
    QString text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (!ownLock)
        text.replace(QRegularExpression("<Integer (Name=\"TLParamsLocked\">).*?</Integer>"),
                     "<Float \\1<Value>0</Value></Float>");
    return text.toUtf8();
}

// The emulator shares its port with whoever has it, and one of the two is not heard.
bool isPortFree()
{
    constexpr guint16 kControlPort = 3956;
    const host::Held<GSocket> socket(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_DATAGRAM, G_SOCKET_PROTOCOL_UDP, nullptr));
    const host::Held<GSocketAddress> address(
        g_inet_socket_address_new_from_string("127.0.0.1", kControlPort));
    return g_socket_bind(socket.get(), address.get(), FALSE, nullptr);
}

} // namespace

int main(int argc, char* argv[])
{
    QMap<QByteArray, QByteArray> options = {{"lut", "16424"}, {"enable", "0"},  {"format", "17301505"},
                                            {"rate", "25"},   {"serial", "T1"}, {"lock", "own"},
                                            {"loss", "0"}};
    for (int i = 2; i < argc; ++i) {
        const QList<QByteArray> option = QByteArray(argv[i]).split('=');
        options[option.first()] = option.last();
    }

    if (!isPortFree()) {
        std::cout << "port taken" << std::endl;
        return 1;
    }
    QTemporaryFile file;
    file.open();
    file.write(describe(argv[1], options["lock"] == "own"));
    file.close();
    const host::Held<ArvGvFakeCamera> emulator(
        arv_gv_fake_camera_new_full("127.0.0.1", options["serial"], file.fileName().toUtf8()));
    file.remove();
    if (!arv_gv_fake_camera_is_running(emulator.get()))
        return 1;

    ArvFakeCamera* const fake = arv_gv_fake_camera_get_fake_camera(emulator.get());
    Camera camera(fake);
    camera.set(kHasLut, options["lut"] != "0");
    camera.set(kHasLutEnable, options["enable"].toUInt());
    camera.set(kLutLength, options["lut"].toUInt());
    camera.set(ARV_FAKE_CAMERA_REGISTER_ACQUISITION_MODE, 0);
    camera.set(ARV_FAKE_CAMERA_REGISTER_WIDTH, 320);
    camera.set(ARV_FAKE_CAMERA_REGISTER_HEIGHT, 240);
    camera.set(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT, options["format"].toUInt());
    camera.set(ARV_FAKE_CAMERA_REGISTER_ACQUISITION_FRAME_PERIOD_US, 1000000 / options["rate"].toUInt());
    g_object_set(emulator.get(), "gvsp-lost-ratio", options["loss"].toDouble(), nullptr);
    arv_fake_camera_set_fill_pattern(fake, fillFrame, nullptr);

    std::atomic<bool> end{false};
    std::thread userSets([&] {
        while (!end) {
            camera.playUserSets();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });

    std::cout << "ready" << std::endl;
    guint32 address = 0;
    int length = 0;
    while (std::cin >> address >> length)
        std::cout << camera.bytes(address, length).toHex().constData() << std::endl;
    end = true;
    userSets.join();
    return 0;
}

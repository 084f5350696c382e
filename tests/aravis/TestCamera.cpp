// A GigE Vision camera on loopback in a process of its own: Aravis' emulator with LutCamera.xml.
//
//   orlune-testcamera DESCRIPTION [lut=BYTES] [enable=1] [format=PFNC] [width=N] [height=N] [rate=N]
//   [serial=S]
//                     [lock=own|none] [loss=RATIO]
//
// lut=0 is a camera without LUT, loss the share of the image packets that it does not send. Prints "ready",
// or "port taken". Then, for each line on the standard input:
//   read ADDRESS LENGTH     prints the bytes in hex
// and ends with the input. Addresses are decimal.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <arv.h>
#include <glib/gstdio.h>

namespace {

constexpr guint32 kLut = 0xA000;
constexpr guint32 kHasLut = 0xF000;
constexpr guint32 kHasLutEnable = 0xF004;
constexpr guint32 kLutLength = 0xF008;
constexpr guint32 kUserSetSelector = 0xF014;
constexpr guint32 kUserSetLoad = 0xF01C;
constexpr guint32 kUserSetSave = 0xF020;
constexpr std::size_t kMaxLutBytes = 16424;

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
    std::vector<unsigned char> bytes(guint32 address, guint32 length) const
    {
        std::vector<unsigned char> bytes(length);
        arv_fake_camera_read_memory(m_camera, address, length, bytes.data());
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
            const std::vector<unsigned char> zeros(kMaxLutBytes);
            const auto& table = get(kUserSetSelector) == 1 ? m_saved : zeros;
            arv_fake_camera_write_memory(m_camera, kLut, guint32(table.size()), table.data());
            set(kUserSetLoad, 0);
        }
    }

private:
    ArvFakeCamera* m_camera;
    std::vector<unsigned char> m_saved = std::vector<unsigned char>(kMaxLutBytes);
};

// Code x + 3 y, cut to the format's depth. A line of 16-bit words begins with one that is too high for any
// format.
void fillFrame(ArvBuffer* buffer, void*, guint32, guint32, ArvPixelFormat format)
{
    std::size_t size = 0;
    auto* const data = static_cast<unsigned char*>(const_cast<void*>(arv_buffer_get_data(buffer, &size)));
    const int width = arv_buffer_get_image_width(buffer);
    const int height = arv_buffer_get_image_height(buffer);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int i = y * width + x;
            if (format == ARV_PIXEL_FORMAT_MONO_8) {
                data[i] = static_cast<unsigned char>(x + 3 * y);
            } else {
                const auto word = static_cast<guint16>(x == 0 ? 0xFFFF : (x + 3 * y) & 0xFFF);
                std::memcpy(data + 2 * i, &word, 2);
            }
        }
    }
}

// The description; without ownLock its TLParamsLocked is none that one could use.
std::string describe(const std::string& path, bool ownLock)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    std::string description = text.str();
    if (!ownLock) {
        const std::string end = "</Integer>";
        const std::size_t lock = description.find("<Integer Name=\"TLParamsLocked\">");
        const std::size_t behind = description.find(end, lock) + end.size();
        description.replace(lock, behind - lock, "<Float Name=\"TLParamsLocked\"><Value>0</Value></Float>");
    }
    return description;
}

// The emulator shares its port with whoever has it, and one of the two is not heard.
bool isPortFree()
{
    constexpr guint16 kControlPort = 3956;
    GSocket* const socket =
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_DATAGRAM, G_SOCKET_PROTOCOL_UDP, nullptr);
    GSocketAddress* const address = g_inet_socket_address_new_from_string("127.0.0.1", kControlPort);
    const bool free = g_socket_bind(socket, address, FALSE, nullptr);
    g_object_unref(address);
    g_object_unref(socket);
    return free;
}

} // namespace

int main(int argc, char* argv[])
{
    std::map<std::string, std::string> options = {{"lut", "16424"}, {"enable", "0"},   {"format", "17301505"},
                                                  {"width", "320"}, {"height", "240"}, {"rate", "25"},
                                                  {"serial", "T1"}, {"lock", "own"},   {"loss", "0"}};
    for (int i = 2; i < argc; ++i) {
        const std::string option = argv[i];
        options[option.substr(0, option.find('='))] = option.substr(option.find('=') + 1);
    }
    const auto number = [&](const char* name) { return guint32(std::stoul(options.at(name))); };

    if (!isPortFree()) {
        std::puts("port taken");
        return 1;
    }
    char path[] = "/tmp/orlune-testcamera-XXXXXX";
    const int file = g_mkstemp(path);
    std::ofstream(path) << describe(argv[1], options.at("lock") == "own");
    ArvGvFakeCamera* const emulator =
        arv_gv_fake_camera_new_full("127.0.0.1", options.at("serial").c_str(), path);
    g_close(file, nullptr);
    std::remove(path);
    if (!arv_gv_fake_camera_is_running(emulator))
        return 1;

    Camera camera(arv_gv_fake_camera_get_fake_camera(emulator));
    camera.set(kHasLut, number("lut") != 0);
    camera.set(kHasLutEnable, number("enable"));
    camera.set(kLutLength, number("lut"));
    camera.set(ARV_FAKE_CAMERA_REGISTER_WIDTH, number("width"));
    camera.set(ARV_FAKE_CAMERA_REGISTER_HEIGHT, number("height"));
    camera.set(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT, number("format"));
    camera.set(ARV_FAKE_CAMERA_REGISTER_ACQUISITION_FRAME_PERIOD_US, 1000000 / number("rate"));
    g_object_set(emulator, "gvsp-lost-ratio", std::stod(options.at("loss")), nullptr);
    arv_fake_camera_set_fill_pattern(arv_gv_fake_camera_get_fake_camera(emulator), fillFrame, nullptr);

    std::atomic<bool> end{false};
    std::thread userSets([&] {
        while (!end) {
            camera.playUserSets();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });

    std::cout << "ready" << std::endl;
    std::string verb;
    guint32 address = 0;
    guint32 length = 0;
    while (std::cin >> verb >> address >> length) {
        std::string hex;
        for (const unsigned char byte : camera.bytes(address, length)) {
            constexpr char kDigits[] = "0123456789abcdef";
            hex += {kDigits[byte / 16], kDigits[byte % 16]};
        }
        std::cout << hex << std::endl;
    }
    end = true;
    userSets.join();
    g_object_unref(emulator);
    return 0;
}

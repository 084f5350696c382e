// A camera application in one file: it opens the editor on a grey ramp, and shows that as mapped.
//
//   minimal-host            a camera without a table: the plug-in maps the frames
//   minimal-host --lut      a camera with a table in a register, locked while frames come
//   minimal-host --smoke    moves Gamma itself and ends: 0 when that changed the picture

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <vector>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLibrary>
#include <QSlider>
#include <QTimer>

#include <orlune/genapi/GenApi.h>
#include <orlune/plugin/IPlugin.h>

namespace {

using namespace GenApi_3_0;
using GenICam_3_0::gcstring;
using GenICam_3_0::GenericException;

const int kWidth = 256;
const int kHeight = 64;
const std::uint32_t kMono8 = 0x01080001;

// A node is an INode and the interface of its type.
template <typename Interface>
struct Node : INode, Interface
{
    explicit Node(const char* name) : m_name(name) {}
    EAccessMode GetAccessMode() const override { return RW; }
    gcstring GetName(bool) const override { return m_name; }
    const gcstring m_name;
};

// Not zero while frames come: the plug-in then asks for the camera before it writes the table.
struct LockNode : Node<IInteger>
{
    LockNode() : Node("TLParamsLocked") {}
    void SetValue(std::int64_t value, bool) override { m_value = value; }
    std::int64_t GetValue(bool, bool) override { return m_value; }
    std::int64_t m_value = 1;
};

// Set to 0 when the plug-in starts.
struct SelectorNode : Node<IEnumeration>
{
    SelectorNode() : Node("LUTSelector") {}
    void SetIntValue(std::int64_t value, bool) override { m_value = value; }
    std::int64_t GetIntValue(bool, bool) override { return m_value; }
    std::int64_t m_value = 0;
};

// 4096 entries of 12 bits, 32-bit little-endian each. A refusal reaches the user as the exception's text.
struct TableNode : Node<IRegister>
{
    explicit TableNode(const LockNode& lock) : Node("LUTValueAll"), m_lock(lock)
    {
        std::iota(m_entries.begin(), m_entries.end(), 0);
    }
    std::int64_t GetLength() override { return 4 * std::int64_t(m_entries.size()); }
    void Get(std::uint8_t* buffer, std::int64_t length, bool, bool) override
    {
        std::memcpy(buffer, m_entries.data(), std::size_t(std::min(length, GetLength())));
    }
    void Set(const std::uint8_t* buffer, std::int64_t length, bool) override
    {
        if (m_lock.m_value != 0)
            throw GenericException("The camera is sending frames.", __FILE__, __LINE__);
        std::memcpy(m_entries.data(), buffer, std::size_t(std::min(length, GetLength())));
    }
    const LockNode& m_lock;
    std::vector<std::int32_t> m_entries = std::vector<std::int32_t>(4096);
};

// Without a table it has no nodes at all, which is a camera, too.
struct Camera : INodeMap
{
    explicit Camera(bool hasLut) : m_hasLut(hasLut) {}
    INode* GetNode(const gcstring& name) const override
    {
        for (INode* node : std::initializer_list<INode*>{&m_lock, &m_selector, &m_table}) {
            if (m_hasLut && node->GetName() == name)
                return node;
        }
        return nullptr;
    }

    void setStreaming(bool on) { m_lock.m_value = on; }
    std::vector<std::uint8_t> frame() const
    {
        std::vector<std::uint8_t> pixels(kWidth * kHeight);
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = std::uint8_t(m_table.m_entries[i % kWidth * 16] >> 4); // 8-bit pixels, 12-bit entries
        return pixels;
    }
    const bool m_hasLut;
    mutable LockNode m_lock;
    mutable SelectorNode m_selector;
    mutable TableNode m_table{m_lock};
};

class Viewer : public QLabel
{
    Q_OBJECT

public:
    explicit Viewer(Camera& camera) : m_camera(camera) {}

    std::vector<std::uint8_t> showFrame(IPlugin& plugin)
    {
        std::vector<std::uint8_t> pixels = m_camera.frame();
        FrameIn in = {};
        in.pixelFormat = kMono8;
        in.data = pixels.data();
        FrameOut out = {};
        out.width = kWidth;
        out.height = kHeight;
        out.data = pixels.data(); // in place
        FrameResult result = {};
        const int code = plugin.ProcessFrame(&in, &out, 1, &result);
        if (code != 0)
            std::fprintf(stderr, "frame: %s\n", plugin.GetErrorText(code));
        const QImage image(pixels.data(), kWidth, kHeight, kWidth, QImage::Format_Grayscale8);
        setPixmap(QPixmap::fromImage(image));
        return pixels;
    }

public slots:
    // The plug-in goes on as soon as this returns, so the camera is free by then.
    void onPluginMessage(const PLUGIN_MSG& message)
    {
        if (message.type == MSG_DEVICE_ACCESS_BEGIN || message.type == MSG_DEVICE_ACCESS_END)
            m_camera.setStreaming(message.type == MSG_DEVICE_ACCESS_END);
    }

private:
    Camera& m_camera;
};

bool gammaChangesPicture(Viewer& viewer, IPlugin& plugin)
{
    const auto before = viewer.showFrame(plugin);
    viewer.findChild<QSlider*>("objGammaSlider")->setValue(200);
    return viewer.showFrame(plugin) != before;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QFont font = QApplication::font();
    font.setPixelSize(11); // the editor's form has room for no larger one
    QApplication::setFont(font);
    QLibrary module(ORLUNE_MODULE);
    QDir::setCurrent(QFileInfo(module.fileName()).path()); // the standard curves lie beside the module
    const auto create = reinterpret_cast<CreatePluginObjectFunction>(module.resolve("CreatePluginObject"));
    const auto destroy = reinterpret_cast<DestoryPluginObjectFunction>(module.resolve("DestoryPluginObject"));
    IPlugin* plugin = create && destroy ? create() : nullptr;
    if (!plugin || plugin->GetInterfaceVersion() != 0x10000) {
        std::fprintf(stderr, "No plug-in for this program. %s\n", qPrintable(module.errorString()));
        return 1;
    }

    Camera camera(app.arguments().contains("--lut"));
    Viewer viewer(camera);
    viewer.show();
    QObject::connect(plugin, SIGNAL(SigPluginMsg(PLUGIN_MSG)), &viewer, SLOT(onPluginMessage(PLUGIN_MSG)));

    PluginInitParam start = {};
    start.remoteDeviceMap = &camera;
    start.parentWidget = &viewer;
    int exitCode = plugin->InitPlugin(&start);
    if (exitCode == 0) {
        PLUGIN_MSG show = {};
        show.type = MSG_SHOW_DIALOG;
        plugin->SlotProcessDemoMsg(show);
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] { viewer.showFrame(*plugin); });
        timer.start(40);
        if (app.arguments().contains("--smoke"))
            exitCode = gammaChangesPicture(viewer, *plugin) ? 0 : 1;
        else
            exitCode = app.exec();
    } else {
        std::fprintf(stderr, "start: %s\n", plugin->GetErrorText(exitCode));
    }
    plugin->UninitPlugin();
    destroy(plugin);
    return exitCode;
}

#include "main.moc"

// The plug-in object of a camera without a LUT, and frame records with anything in them. Runs in the
// directory that holds the standard curves.
#include <limits>

#include <QApplication>
#include <QSlider>

#include "FuzzInput.h"
#include "plugin/OrlunePlugin.h"
#include "support/FakeCamera.h"

using fuzz::require;

namespace {

// Five each of 8, 10 and 12 bits.
constexpr std::uint32_t kFormats[] = {0x01080001, 0x01080008, 0x01080009, 0x0108000A, 0x0108000B,
                                      0x01100003, 0x0110000C, 0x0110000D, 0x0110000E, 0x0110000F,
                                      0x01100005, 0x01100010, 0x01100011, 0x01100012, 0x01100013};
constexpr std::uint8_t kUntouched = 0xee;
constexpr std::int64_t kMostPixels = std::numeric_limits<std::int32_t>::max();

// Without a screen, and silent.
QApplication* makeApplication()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    return new QApplication(argc, argv);
}

struct Running
{
    Running()
    {
        PluginInitParam param{};
        param.remoteDeviceMap = &camera;
        param.parentWidget = &parent;
        require(plugin.InitPlugin(&param) == 0, "the plug-in runs");
    }
    void set(const char* slider, int value)
    {
        parent.findChild<QSlider*>(QLatin1String(slider))->setValue(value);
    }

    QApplication* application = makeApplication();
    FakeCamera camera{false, false};
    QWidget parent;
    OrlunePlugin plugin;
};

template <class Record>
Record takeRecord(fuzz::Input& input)
{
    Record record;
    const auto bytes = fuzz::repeated<std::uint8_t>(input.takeBytes(8), sizeof record);
    std::memcpy(&record, bytes.get(), sizeof record);
    return record;
}

void processFrame(fuzz::Input& input, OrlunePlugin& plugin)
{
    auto in = takeRecord<FrameIn>(input);
    auto out = takeRecord<FrameOut>(input);
    FrameResult result{{}, kUntouched, {}};
    const int known = input.take<std::uint8_t>() % 20;
    if (known < 15)
        in.pixelFormat = kFormats[known];
    const auto* format = std::find(std::begin(kFormats), std::end(kFormats), in.pixelFormat);
    const bool mapped = format != std::end(kFormats);
    const int depth = mapped ? 8 + (format - kFormats) / 5 * 2 : 8;

    // A frame that is right as far as its size goes is a small one, and its buffers are just as large.
    if (input.takeBelow(4) != 0) {
        out.width = input.takeBelow(200);
        out.height = input.takeBelow(20);
    }
    const auto pixels = [&out] { return std::int64_t(out.width) * out.height; };
    const bool sized = out.width >= 1 && out.height >= 1 && pixels() <= kMostPixels;
    if (sized && pixels() > 4096) {
        out.width = 1 + out.width % 64;
        out.height = 1 + out.height % 64;
    }
    const std::size_t bytes = sized ? std::size_t(pixels()) * (depth > 8 ? 2 : 1) : 1;
    const int stage = input.takeNear(1, 1);
    const auto nulls = input.take<std::uint8_t>(); // mostly none
    const bool inPlace = input.takeBelow(2) != 0;
    const auto src = fuzz::repeated<std::uint8_t>(input.takeBytes(input.take<std::uint8_t>()), bytes);
    const auto dst = fuzz::repeated<std::uint8_t>({kUntouched}, bytes);
    in.data = nulls == 0xf0 ? nullptr : src.get();
    out.data = nulls == 0xf1 ? nullptr : inPlace ? src.get() : dst.get();

    const int code = plugin.ProcessFrame(nulls == 0xf2 ? nullptr : &in, nulls == 0xf3 ? nullptr : &out, stage,
                                         nulls == 0xf4 ? nullptr : &result);
    const bool right = (nulls < 0xf0 || nulls > 0xf4) && mapped && sized;
    require(code == (stage == 1 && !right ? -3 : 0), "only a right record is mapped");
    const bool done = right && stage == 1;
    require(result.processed == (done ? 1 : kUntouched), "processed tells whether a frame was mapped");
    if (!done)
        require(std::all_of(dst.get(), dst.get() + bytes, [](int v) { return v == kUntouched; }),
                "otherwise nothing is written");
    for (std::size_t i = 1; done && depth > 8 && i < bytes; i += 2)
        require(static_cast<std::uint8_t*>(out.data)[i] >> (depth - 8) == 0, "pixels keep their depth");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static auto* const running = new Running; // as long as the process
    fuzz::Input input(data, size);
    const bool adjusted = input.take<std::uint8_t>() % 8 == 7;
    running->set("objGammaSlider", adjusted ? input.takeNear(0, 400) : 100);
    running->set("objBrightnessSlider", adjusted ? input.takeNear(-150, 150) : 0);
    running->set("objContrastSlider", adjusted ? input.takeNear(-150, 150) : 0);
    for (int frame = 0; frame < 4 && !input.isEmpty(); ++frame)
        processFrame(input, running->plugin);
    return 0;
}

// The module under long use, in one process: does it keep memory, file descriptors or windows, or get slower?
// Prints a line for each kind of use; ends with 1 when something was kept or went wrong. docs/reliability.md
// has the figures.
#include "contract/Roads.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <limits>
#include <thread>

#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

// More than this, in KiB, is no noise. The address sanitizer keeps what is freed, and finds leaks by itself.
#ifdef __SANITIZE_ADDRESS__
constexpr long kMostGrowth = std::numeric_limits<long>::max();
#else
constexpr long kMostGrowth = 2048;
#endif

struct Holdings
{
    long residentKiB;
    int descriptors;
    int windows;
};

Holdings holdings()
{
    QFile statm("/proc/self/statm");
    statm.open(QIODevice::ReadOnly);
    const long pages = statm.readAll().split(' ').value(1).toLong();
    const auto everything = QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System;
    return {pages * (sysconf(_SC_PAGESIZE) / 1024), QDir("/proc/self/fd").entryList(everything).size(),
            QApplication::topLevelWidgets().size()};
}

void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

double median(std::vector<double>::iterator begin, int count)
{
    std::nth_element(begin, begin + count / 2, begin + count);
    return begin[count / 2];
}

int g_failures = 0;

void complain(const char* what, const QString& why)
{
    std::printf("%s: %s\n", what, qPrintable(why));
    ++g_failures;
}

// A warning is a failure too, but for one of the offscreen platform's.
void onQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type != QtDebugMsg && !text.contains("propagateSizeHints"))
        complain("Qt", text);
}

// Repeats a use and prints what it cost. The first tenth warms up. The last tenth's pace is compared with
// that of the tenth after the warm-up, by the median of single steps.
void use(const char* what, int count, const std::function<void(int)>& step)
{
    const int tenth = std::max(1, count / 10);
    std::vector<double> us(std::size_t(count + tenth)); // its memory is no growth
    Holdings warm = holdings();
    for (int i = 0; i < count; ++i) {
        if (i == tenth) {
            settle();
            warm = holdings();
        }
        const auto start = Clock::now();
        step(i);
        us[std::size_t(i)] = std::chrono::duration<double, std::micro>(Clock::now() - start).count();
    }
    settle();
    const Holdings end = holdings();
    const double early = median(us.begin() + tenth, tenth);
    const double late = median(us.begin() + std::max(0, count - tenth), tenth);
    std::printf("%-34s %9d %10.1f %6.2f %9ld %7ld %5d %7d\n", what, count, late, late / early,
                end.residentKiB, end.residentKiB - warm.residentKiB, end.descriptors - warm.descriptors,
                end.windows - warm.windows);
    std::fflush(stdout);
    if (end.residentKiB - warm.residentKiB > kMostGrowth)
        complain(what, "memory grows");
    if (end.descriptors > warm.descriptors || end.windows > warm.windows)
        complain(what, "descriptors or windows are left");
}

// Up and down through every setting that has a slider.
void moveSlider(ModuleHost& editor, int i)
{
    const char* const sliders[] = {"objGammaSlider", "objBrightnessSlider", "objContrastSlider"};
    editor.wheel(sliders[i % 3], {0, i / 60 % 2 ? -120 : 120});
    if (i % 16 == 15)
        QCoreApplication::processEvents(); // the picture is drawn as a person sees it
}

void checkQuiet(const char* what, ModuleHost& editor)
{
    if (!editor.boxes.isEmpty())
        complain(what, "a box: " + editor.boxes.first());
}

// On several plug-in objects in turn.
void sliderSteps(const char* what, int objects, int count)
{
    std::vector<std::unique_ptr<Rig>> rigs;
    for (int i = 0; i < objects; ++i) {
        rigs.push_back(std::make_unique<Rig>(kCameras[(i + 1) % int(std::size(kCameras))]));
        rigs.back()->start();
        rigs.back()->editor->show();
    }
    use(what, count, [&](int i) {
        ModuleHost& editor = *rigs[std::size_t(i % objects)]->editor;
        moveSlider(editor, i / objects);
        editor.messages.clear();
    });
    for (; !rigs.empty(); rigs.pop_back()) { // the last first: each has gone into a working directory
        Rig& rig = *rigs.back();
        checkQuiet(what, *rig.editor);
        const QByteArray table = rig.table();
        // A save dialog is answered by every editor that is there.
        const bool isSaved = rigs.size() > 1 || rig.savedTable() == table;
        if (!table.isEmpty() && (!isSaved || !rig.contradiction().isEmpty()))
            complain(what, "camera and editor have come apart");
    }
}

// A thread maps frames all the time; a step is one of a slider and as long as it takes for ten frames.
void frames(int count)
{
    const char* what = "ten frames and a slider step";
    constexpr int kWidth = 640, kHeight = 480;
    Rig rig(kCameras[kNoLut]);
    rig.start();
    rig.editor->show();
    std::atomic<bool> isOver{false};
    std::atomic<int> mapped{0}, wrong{0};
    std::thread stream([&] {
        const std::vector<std::uint16_t> frame(kWidth * kHeight, 1234);
        std::vector<std::uint16_t> shown(frame.size());
        while (!isOver) {
            std::uint8_t processed = 0;
            const int code = process(*rig.editor->plugin, kMono12, frame.data(), shown.data(), kWidth,
                                     kHeight, &processed);
            if (code != 0 || !processed || shown.front() != shown.back()) // by two tables
                ++wrong;
            ++mapped;
        }
    });
    use(what, count / 10, [&](int i) {
        const int until = mapped + 10;
        moveSlider(*rig.editor, i);
        while (mapped < until)
            std::this_thread::yield();
    });
    isOver = true;
    stream.join();
    checkQuiet(what, *rig.editor);
    if (wrong != 0)
        complain(what, QString("%1 frames were not mapped, or not by one table").arg(wrong));
}

// Through all sources again and again; every seventh time the camera fails.
void sourceSwitches(int count)
{
    const char* what = "source switches";
    Rig rig(kCameras[1]);
    rig.startAndLearn();
    int surprises = 0;
    use(what, count, [&](int i) {
        const bool fails = i % 7 == 6;
        if (fails)
            rig.faults().arm({1, host::AccessFault::ThrowsGenericException});
        takeSource(*rig.editor, i % 5);
        surprises += rig.editor->takeBoxes().size() != int(fails) || !rig.bracketsAreClosed();
        rig.editor->takeMessages();
    });
    if (surprises != 0)
        complain(what, QString("%1 switches did not end as they should").arg(surprises));
}

void loads(int count)
{
    const char* what = "module loaded, used, unloaded";
    WorkingDirectory directory;
    FakeCamera camera;
    use(what, count, [&](int i) {
        ModuleHost editor(&camera, i % 2);
        editor.show();
        moveSlider(editor, i);
        checkQuiet(what, editor);
        camera.log.clear();
    });
    if (QFile::exists(":/OrlunePlugin_D08DDF08-B172-4e06-B9B3-22822888E027_zh.qm"))
        complain(what, "the module is still there");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    qInstallMessageHandler(onQtMessage);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"steps", "Slider steps", "count", "1000000"},
                       {"frames", "Frames", "count", "100000"},
                       {"switches", "Source switches", "count", "10000"},
                       {"loads", "Times that the module is loaded and unloaded", "count", "1000"}});
    parser.process(app);
    const auto count = [&](const char* name) { return parser.value(name).toInt(); };

    std::printf("%-34s %9s %10s %6s %9s %7s %5s %7s\n", "", "count", "us/step", "pace", "KiB", "growth",
                "fds", "windows");
    sliderSteps("slider steps", 1, count("steps"));
    frames(count("frames"));
    sourceSwitches(count("switches"));
    sliderSteps("slider steps on eight objects", 8, count("steps") / 10);
    loads(count("loads"));
    return g_failures == 0 ? 0 : 1;
}

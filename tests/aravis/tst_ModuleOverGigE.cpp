// The built module on a camera behind the GigE Vision protocol. What arrives in the camera's memory is held
// against the simulated camera under the same hands.
#include <atomic>
#include <functional>

#include "contract/ModuleHost.h"

#include "CameraProcess.h"
#include "host/aravis/AravisCameras.h"
#include "host/camera/SimulatedCamera.h"

namespace {

// What a person does in the plug-in's window, one after the other.
const struct
{
    const char* name;
    std::function<void(ModuleHost&)> act;
} kSteps[] = {
    {"gamma", [](auto& host) { host.type("objGammaLineEdit", "230"); }},
    {"range's end", [](auto& host) { host.type("objLutRangeMaxEdit", "3000"); }},
    {"contrast slider", [](auto& host) { host.moveSlider("objContrastSlider", -7); }},
    {"stored in the camera", [](auto& host) { host.click("objWriteLutButton"); }},
    {"standard curve", [](auto& host) { host.click(kRadios[Standard]), host.choose("negative"); }},
    {"read from the camera", [](auto& host) { host.click(kRadios[Device]); }},
    {"changed after that", [](auto& host) { host.type("objGammaLineEdit", "80"); }},
    {"default", [](auto& host) { host.click(kRadios[Default]); }},
};

// As a viewer does on the plug-in's messages.
void obey(ModuleHost& host, host::Camera& camera)
{
    host.onCode = [&camera](int code) {
        if (code == MSG_DEVICE_ACCESS_BEGIN)
            camera.stopStream();
        else if (code == MSG_DEVICE_ACCESS_END)
            camera.startStream();
    };
}

// What is seen after each step on a camera that streams: the window, the messages, the table.
QStringList takeSteps(host::Camera& camera, const std::function<QByteArray()>& table)
{
    ModuleHost host(camera.remoteNodeMap(), 0, camera.deviceNodeMap());
    obey(host, camera);
    host.show();
    QStringList seen = {camera.startStream()};
    for (const auto& [name, act] : kSteps) {
        act(host);
        seen += QString("%1: %2").arg(name, host.settings());
        for (const int code : host.takeMessages())
            seen += QString::number(code);
        seen += camera.isStreaming() ? table().toHex() : QByteArray("no stream");
    }
    return seen + host.boxes;
}

} // namespace

#define OPEN_OR_SKIP(camera, ...)                                                                            \
    START_OR_SKIP(m_process, __VA_ARGS__);                                                                   \
    QString error;                                                                                           \
    const auto camera = host::openAravisCamera({QStringLiteral("127.0.0.1"), {}, {}}, &error);               \
    QVERIFY2(camera, qPrintable(error))

class tst_ModuleOverGigE : public QObject
{
    Q_OBJECT

    const WorkingDirectory m_directory;
    CameraProcess m_process;

private slots:
    void everyChangeArrives()
    {
        for (const int bytes : {16424, 16384, 4136}) {
            for (const bool enable : {false, true}) {
                host::SimulatedCameraOptions options;
                options.model = enable ? "lut-enable" : "lut";
                options.lutBytes = bytes;
                OPEN_OR_SKIP(camera, QString("lut=%1").arg(bytes), QString("enable=%1").arg(int(enable)));
                const auto simulated = host::makeSimulatedCamera(options, &error);
                const QStringList wanted =
                    takeSteps(*simulated, [&] { return simulated->registerBytes(&error); });
                QCOMPARE(takeSteps(*camera, [&] { return m_process.memory(CameraProcess::kLut, bytes); }),
                         wanted);
                QCOMPARE(m_process.memory(CameraProcess::kLutEnable, 4).back(), char(enable));
                QCOMPARE(m_process.memory(CameraProcess::kUserSetDefault, 4).back(), '\1');
            }
        }
    }

    void framesFlowWhileSlidersMove()
    {
        for (const bool mapped : {true, false}) {
            OPEN_OR_SKIP(camera, mapped ? "lut=0" : "enable=1", "rate=40", "format=17825797"); // Mono12
            ModuleHost host(camera->remoteNodeMap());
            host.show();
            host.take(Standard);
            host.choose("negative");
            std::atomic<std::uint64_t> frames{0};
            std::atomic<std::uint64_t> wrong{0}; // frames out of order, or not mapped as they should be
            camera->setFrameSink([&](host::Frame& frame) {
                void* pixels = frame.pixels.data();
                std::uint8_t processed = 0;
                const int code = process(*host.plugin, frame.pixelFormat, pixels, pixels, frame.width,
                                         frame.height, &processed);
                wrong += frame.number != frames++ || code != 0 || (processed == 1) != mapped;
            });
            for (int run = 0; run < 2; ++run) {
                frames = 0; // each stream numbers them anew
                QCOMPARE(camera->startStream(), QString());
                for (int value = 100; value <= 160; ++value) {
                    host.moveSlider("objGammaSlider", value + run);
                    if (value % 10 == 0)
                        QTRY_VERIFY(frames >= std::uint64_t(value / 10 - 9));
                }
                camera->stopStream();
                const std::uint64_t stopped = frames;
                QTest::qWait(50);
                QCOMPARE(frames, stopped);
            }
            QCOMPARE(wrong, 0u);
            QCOMPARE(camera->lostFrames(), 0u);
            QCOMPARE(host.boxes, QStringList());
            QCOMPARE(host.messages, QVector<int>());
        }
    }

    void cameraGoesAndComesBack()
    {
        OPEN_OR_SKIP(camera);
        QSignalSpy lost(camera.get(), &host::Camera::lost);
        ModuleHost host(camera->remoteNodeMap(), 0, camera->deviceNodeMap());
        QCOMPARE(host.dialog->windowTitle(), QString("Orlune  Aravis Fake T1 at 127.0.0.1"));
        obey(host, *camera);
        host.show();
        QCOMPARE(camera->startStream(), QString());
        host.type("objContrastLineEdit", "20");

        // While the slider moves, and so most likely during a write.
        std::thread killer = m_process.killSoon(60);
        auto& slider = host.find<QSlider>("objGammaSlider");
        int gone = 100;
        while (host.boxes.isEmpty() && gone < 400)
            slider.setValue(++gone);
        killer.join();
        QCOMPARE(host.boxes.size(), 1);
        QVERIFY2(host.boxes[0].contains("LUTValueAll") || host.boxes[0].contains("TLParamsLocked"),
                 qPrintable(host.boxes[0]));
        QCOMPARE(slider.value(), gone - 1); // the editor shows what the camera has got

        // From now on nothing waits.
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 5; ++i)
            slider.setValue(300 + i);
        host.type("objBrightnessLineEdit", "5");
        QCOMPARE(host.boxes.size(), 7);
        QVERIFY2(host.boxes.last().contains("camera lost"), qPrintable(host.boxes.last()));
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(slider.value(), gone - 1);
        QVERIFY(!camera->startStream().isEmpty());
        QTRY_COMPARE(lost.size(), 1);
        host.boxes.clear();

        QVERIFY(m_process.start());
        QTRY_VERIFY_WITH_TIMEOUT((error = camera->reconnect()).isEmpty(), 10000);
        QCOMPARE(camera->startStream(), QString());
        slider.setValue(gone);
        QCOMPARE(host.boxes, QStringList());
        // The camera has the whole state that the window shows.
        QCOMPARE(host.settings(), QString("%1 0 20 0 4095").arg(gone));
        QCOMPARE(host.contradiction(m_process.memory(CameraProcess::kLut, 16424)), QString());
    }
};

QTEST_MAIN(tst_ModuleOverGigE)
#include "tst_ModuleOverGigE.moc"

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
    {"brightness", [](auto& host) { host.type("objBrightnessLineEdit", "-20"); }},
    {"contrast", [](auto& host) { host.type("objContrastLineEdit", "35"); }},
    {"range's end", [](auto& host) { host.type("objLutRangeMaxEdit", "3000"); }},
    {"range's start", [](auto& host) { host.type("objLutRangeMinEdit", "100"); }},
    {"gamma slider", [](auto& host) { host.moveSlider("objGammaSlider", 150); }},
    {"brightness slider", [](auto& host) { host.moveSlider("objBrightnessSlider", 11); }},
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

} // namespace

#define OPEN_OR_SKIP(camera, ...)                                                                            \
    START_OR_SKIP(m_process, __VA_ARGS__);                                                                   \
    QString error;                                                                                           \
    const auto camera = host::openAravisCamera({QStringLiteral("127.0.0.1"), {}, {}}, &error);               \
    QVERIFY2(camera, qPrintable(error))

class tst_ModuleOverGigE : public QObject
{
    Q_OBJECT

private slots:
    void everyChangeArrives_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("enable");
        for (const int bytes : {16424, 16384, 4136}) {
            QTest::addRow("%d bytes, locked by the stream", bytes) << bytes << false;
            QTest::addRow("%d bytes, LUTEnable", bytes) << bytes << true;
        }
    }

    void everyChangeArrives()
    {
        QFETCH(int, bytes);
        QFETCH(bool, enable);
        WorkingDirectory directory;

        host::SimulatedCameraOptions options;
        options.model = enable ? "lut-enable" : "lut";
        options.lutBytes = bytes;
        QString none;
        const auto simulated = host::makeSimulatedCamera(options, &none);
        QVERIFY2(simulated, qPrintable(none));
        QVector<QByteArray> registers;
        QStringList texts;
        {
            ModuleHost host(simulated->remoteNodeMap());
            host.show();
            for (const auto& step : kSteps) {
                step.act(host);
                registers += simulated->registerBytes(&none);
                texts += host.settings();
            }
        }

        OPEN_OR_SKIP(camera, QString("lut=%1").arg(bytes), QString("enable=%1").arg(int(enable)));
        ModuleHost host(camera->remoteNodeMap(), 0, camera->deviceNodeMap());
        QCOMPARE(host.initResult, 0);
        obey(host, *camera);
        host.show();
        QCOMPARE(camera->startStream(), QString());
        const QByteArray on = m_process.memory(CameraProcess::kLutEnable, 4).chopped(1) + char(enable);
        for (int i = 0; i < int(std::size(kSteps)); ++i) {
            const QByteArray name = kSteps[i].name;
            kSteps[i].act(host);
            QVERIFY2(m_process.memory(CameraProcess::kLut, bytes) == registers[i], name);
            QVERIFY2(m_process.memory(CameraProcess::kLutEnable, 4) == on, name);
            QVERIFY2(host.settings() == texts[i], name);
            QVERIFY(camera->isStreaming());
            const bool bracketed =
                name == "read from the camera" || (!enable && name != "stored in the camera");
            const QVector<int> bracket = {MSG_DEVICE_ACCESS_BEGIN, MSG_DEVICE_ACCESS_END};
            QCOMPARE(host.takeMessages().mid(0, 2), bracketed ? bracket : QVector<int>());
        }
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(m_process.memory(CameraProcess::kUserSetDefault, 4), QByteArray("\0\0\0\1", 4));
    }

    void framesFlowWhileSlidersMove_data()
    {
        QTest::addColumn<bool>("mapped");
        QTest::newRow("frame path") << true;
        QTest::newRow("LUT in the camera") << false;
    }

    void framesFlowWhileSlidersMove()
    {
        QFETCH(bool, mapped);
        WorkingDirectory directory;
        OPEN_OR_SKIP(camera, mapped ? "lut=0" : "enable=1", "rate=40", "format=17825797", "width=160",
                     "height=120"); // Mono12
        ModuleHost host(camera->remoteNodeMap());
        QCOMPARE(host.initResult, 0);
        host.show();

        host::Frame last; // looked at while no frames come
        std::atomic<std::uint64_t> frames{0};
        std::atomic<std::uint64_t> wrong{0}; // frames out of order, or not mapped as they should be
        camera->setFrameSink([&](host::Frame& frame) {
            void* pixels = frame.pixels.data();
            std::uint8_t processed = 0;
            const int code = process(*host.plugin, frame.pixelFormat, pixels, pixels, frame.width,
                                     frame.height, &processed);
            wrong += frame.number != frames++ || code != 0 || (processed == 1) != mapped;
            last = frame;
        });
        const auto waitForFrames = [&](std::uint64_t more) {
            return QTest::qWaitFor([&, target = frames + more] { return frames >= target; });
        };
        QCOMPARE(camera->startStream(), QString());
        host.take(Standard);
        host.choose("negative");
        QVERIFY(waitForFrames(3));
        camera->stopStream();
        for (int i = 0; i < last.width * last.height; ++i) {
            const int x = i % last.width, sent = (x + 3 * (i / last.width)) & 0xFFF;
            if (x > 0)
                QCOMPARE(qFromLittleEndian<quint16>(&last.pixels[std::size_t(2 * i)]),
                         mapped ? 4095 - sent : sent);
        }
        frames = 0; // each stream numbers them anew
        QCOMPARE(camera->startStream(), QString());
        for (int value = 100; value <= 220; ++value) {
            host.moveSlider("objGammaSlider", value);
            host.moveSlider("objBrightnessSlider", value / 4);
            if (value % 10 == 0)
                QVERIFY(waitForFrames(1));
            QCoreApplication::processEvents();
        }
        QVERIFY(waitForFrames(10));
        camera->stopStream();
        QCOMPARE(wrong, 0u);
        QCOMPARE(camera->lostFrames(), 0u);
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.messages, QVector<int>());
    }

    void cameraGoesAndComesBack()
    {
        WorkingDirectory directory;
        OPEN_OR_SKIP(camera);
        ModuleHost host(camera->remoteNodeMap());
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

private:
    CameraProcess m_process;
};

QTEST_MAIN(tst_ModuleOverGigE)
#include "tst_ModuleOverGigE.moc"

// The adapter over Aravis, through the GigE Vision protocol: nodes, transfers, frames, and a camera that
// goes.
#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>

#include "CameraProcess.h"
#include "host/aravis/AravisCamera.h"
#include "host/aravis/UsbAccess.h"

using namespace GenApi_3_0;

Q_DECLARE_METATYPE(EAccessMode)

namespace {

const QString kAddress = QStringLiteral("127.0.0.1");
constexpr int kLostPatience = 1000; // milliseconds; less than one timeout of the transport

template <class Interface>
Interface& as(host::Camera& camera, const char* node)
{
    auto* found = dynamic_cast<Interface*>(camera.remoteNodeMap()->GetNode(node));
    if (!found)
        qFatal("no such node %s", node);
    return *found;
}

// The exception's text; empty when there was none.
template <class Call>
QString failureOf(Call call)
{
    try {
        call();
        return {};
    } catch (const GenICam_3_0::GenericException& failure) {
        return failure.what();
    }
}

void writeLut(host::Camera& camera, const QByteArray& bytes)
{
    as<IRegister>(camera, "LUTValueAll")
        .Set(reinterpret_cast<const std::uint8_t*>(bytes.constData()), bytes.size());
}

} // namespace

class tst_AravisCamera : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_camera.reset(); }

    void nodes_data()
    {
        QTest::addColumn<QString>("interfaces"); // their first letters, in the order below
        QTest::addColumn<EAccessMode>("mode");
        const auto row = [](const char* node, const char* interfaces, EAccessMode mode) {
            QTest::newRow(node) << interfaces << mode;
        };
        row("LUTValueAll", "R", RW);
        row("LUTSelector", "E", RW);
        row("LUTEnable", "B", NI);
        row("UnavailableBoolean", "B", NA);
        row("TLParamsLocked", "I", RW);
        row("HasLUTReg", "I", RO);
        row("WriteOnlyInteger", "I", WO);
        row("UserSetLoad", "C", RW);
        row("Text", "S", RW);
        row("Root", "", RO);
    }

    void nodes()
    {
        QFETCH(QString, interfaces);
        QFETCH(EAccessMode, mode);
        OPEN_OR_SKIP();
        const INodeMap& map = *m_camera->remoteNodeMap();
        INode* node = map.GetNode(QTest::currentDataTag());
        QVERIFY(node);
        QCOMPARE(node->GetName(), GenICam_3_0::gcstring(QTest::currentDataTag()));
        QString found;
        found += dynamic_cast<IInteger*>(node) ? "I" : "";
        found += dynamic_cast<IBoolean*>(node) ? "B" : "";
        found += dynamic_cast<IString*>(node) ? "S" : "";
        found += dynamic_cast<ICommand*>(node) ? "C" : "";
        found += dynamic_cast<IEnumeration*>(node) ? "E" : "";
        found += dynamic_cast<IRegister*>(node) ? "R" : "";
        QCOMPARE(found, interfaces);
        QCOMPARE(node->GetAccessMode(), mode);
        QVERIFY(!map.GetNode("LUTValue") && !map.GetNode(""));
    }

    void refusedWrites_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("LUTEnable") << "does not implement";
        QTest::newRow("UnavailableBoolean") << "not available";
        QTest::newRow("LimitedInteger") << "6 lies outside";
        QTest::newRow("HasLUTReg") << "read only";
        QTest::newRow("LUTSelector") << "Value 2 not found";
        QTest::newRow("LUTValueAll") << "locked";
    }

    // The exception names the node, and nothing has changed in the camera.
    void refusedWrites()
    {
        QFETCH(QString, text);
        OPEN_OR_SKIP();
        QCOMPARE(m_camera->setLocked(true), QString());
        const QByteArray before = m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut);
        const QString failure = failureOf([&] {
            INode* node = m_camera->remoteNodeMap()->GetNode(QTest::currentDataTag());
            if (auto* boolean = dynamic_cast<IBoolean*>(node))
                boolean->SetValue(true);
            else if (auto* integer = dynamic_cast<IInteger*>(node))
                integer->SetValue(6);
            else if (auto* enumeration = dynamic_cast<IEnumeration*>(node))
                enumeration->SetIntValue(2);
            else
                writeLut(*m_camera, QByteArray(16424, '\1'));
        });
        QVERIFY2(failure.startsWith('[' + QString(QTest::currentDataTag()) + ']'), qPrintable(failure));
        QVERIFY2(failure.contains(text), qPrintable(failure));
        QCOMPARE(m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut), before);
    }

    void wholeRegisterOnly_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {16424, 16384, 4136})
            QTest::addRow("%d bytes", length) << length;
    }

    void wholeRegisterOnly()
    {
        QFETCH(int, length);
        OPEN_OR_SKIP({QStringLiteral("lut=%1").arg(length)});
        auto& lut = as<IRegister>(*m_camera, "LUTValueAll");
        QCOMPARE(lut.GetLength(), length);
        QSignalSpy written(m_camera.get(), &host::Camera::registerWritten);

        QByteArray bytes(length, '\0');
        for (int i = 0; i < length; ++i)
            bytes[i] = char(i * 7 + i / 256);
        writeLut(*m_camera, bytes);
        QCOMPARE(m_process.memory(CameraProcess::kLut, length), bytes);
        QCOMPARE(written.size(), 1);
        QCOMPARE(written[0][0].toInt(), length);

        for (const int wrong : {0, length - 4, length + 4}) {
            QByteArray other(length + 4, '\xEE');
            auto* data = reinterpret_cast<std::uint8_t*>(other.data());
            QVERIFY(failureOf([&] { lut.Set(data, wrong); }).contains(QString::number(length)));
            QVERIFY(failureOf([&] { lut.Get(data, wrong); }).contains(QString::number(length)));
        }
        QCOMPARE(m_process.memory(CameraProcess::kLut, length), bytes);
        QCOMPARE(written.size(), 1);

        QByteArray back(length, '\0');
        lut.Get(reinterpret_cast<std::uint8_t*>(back.data()), length);
        QCOMPARE(back, bytes);
    }

    // What scripts and bug reports ask for.
    void registerOnDemand()
    {
        OPEN_OR_SKIP({"lut=4136"});
        QCOMPARE(m_camera->setLocked(true), QString()); // below the nodes that counts for nothing
        const QByteArray bytes(4136, '\x5A');
        QCOMPARE(m_camera->pokeRegister(bytes), QString());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 4136), bytes);
        QString error;
        QCOMPARE(m_camera->registerBytes(&error), bytes);
        QCOMPARE(error, QString());
        QVERIFY(m_camera->pokeRegister(bytes.left(8)).contains("4136"));
        QVERIFY(m_camera->userSetBytes(&error).isEmpty() && !error.isEmpty());

        OPEN_OR_SKIP({"lut=0"});
        QVERIFY(m_camera->registerBytes(&error).isEmpty() && error.contains("no LUT"));
        QVERIFY(m_camera->pokeRegister(bytes).contains("no LUT"));
    }

    void valuesArrive()
    {
        OPEN_OR_SKIP({"enable=1"});
        as<IBoolean>(*m_camera, "LUTEnable").SetValue(true);
        QCOMPARE(m_process.memory(CameraProcess::kLutEnable, 4), QByteArray("\0\0\0\1", 4));
        QVERIFY(as<IBoolean>(*m_camera, "LUTEnable").GetValue());
        as<IEnumeration>(*m_camera, "UserSetDefault").SetIntValue(1);
        QCOMPARE(m_process.memory(CameraProcess::kUserSetDefault, 4), QByteArray("\0\0\0\1", 4));
        QCOMPARE(as<IEnumeration>(*m_camera, "UserSetDefault").GetIntValue(), 1);
        as<IInteger>(*m_camera, "LimitedInteger").SetValue(-5);
        QCOMPARE(as<IInteger>(*m_camera, "LimitedInteger").GetValue(), -5);
        as<IString>(*m_camera, "Text").SetValue("LUT");
        QCOMPARE(as<IString>(*m_camera, "Text").GetValue(), GenICam_3_0::gcstring("LUT"));

        // Execute is over when the camera is: the set's table is there at once.
        QCOMPARE(m_camera->pokeRegister(QByteArray(16424, '\x33')), QString());
        as<IEnumeration>(*m_camera, "UserSetSelector").SetIntValue(1);
        as<ICommand>(*m_camera, "UserSetSave").Execute();
        QCOMPARE(m_camera->pokeRegister(QByteArray(16424, '\x44')), QString());
        as<ICommand>(*m_camera, "UserSetLoad").Execute();
        QVERIFY(as<ICommand>(*m_camera, "UserSetLoad").IsDone());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), QByteArray(16424, '\x33'));
        as<ICommand>(*m_camera, "WriteOnlyCommand").Execute();

        auto* name = dynamic_cast<IString*>(m_camera->deviceNodeMap()->GetNode("DeviceDisplayName"));
        QVERIFY(name && QString(name->GetValue()).contains(kAddress) &&
                QString(name->GetValue()).contains("T1"));
        QVERIFY(!m_camera->deviceNodeMap()->GetNode("LUTValueAll"));
    }

    void lockWhileStreaming_data()
    {
        QTest::addColumn<QString>("lock");
        QTest::newRow("the camera's TLParamsLocked") << "own";
        QTest::newRow("a camera without") << "none";
    }

    void lockWhileStreaming()
    {
        QFETCH(QString, lock);
        OPEN_OR_SKIP({"lock=" + lock});
        const auto locked = [&] { return as<IInteger>(*m_camera, "TLParamsLocked").GetValue(); };
        QCOMPARE(locked(), 0);
        QSignalSpy streaming(m_camera.get(), &host::Camera::streamingChanged);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_camera->startStream(), QString());
            QVERIFY(m_camera->isStreaming());
            QCOMPARE(locked(), 1);
            if (lock == "own")
                QCOMPARE(as<IRegister>(*m_camera, "LUTValueAll").GetAccessMode(), RO);
            m_camera->stopStream();
            QVERIFY(!m_camera->isStreaming());
            QCOMPARE(locked(), 0);
        }
        QCOMPARE(streaming.size(), 4);
        QCOMPARE(m_process.memory(CameraProcess::kAcquisitionMode, 4), QByteArray("\0\0\0\1", 4));
        QCOMPARE(m_camera->setLocked(true), QString());
        QCOMPARE(m_camera->reconnect(), QString());
        QCOMPARE(locked(), 1);
        QCOMPARE(m_camera->setLocked(false), QString());
        QCOMPARE(locked(), 0);
    }

    void framesAreExact_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<quint32>("code");
        QTest::addColumn<int>("bytes"); // a pixel
        QTest::newRow("8 bits") << "Mono8" << 0x01080001u << 1;
        QTest::newRow("12 bits") << "Mono12" << 0x01100005u << 2;
    }

    void framesAreExact()
    {
        QFETCH(QString, format);
        QFETCH(quint32, code);
        QFETCH(int, bytes);
        const QSize size(300, 100);
        OPEN_OR_SKIP({"rate=60"}, format, size);

        std::mutex mutex;
        std::vector<host::Frame> frames;
        m_camera->setFrameSink([&](host::Frame& frame) {
            const std::lock_guard<std::mutex> lock(mutex);
            frames.push_back(frame);
        });
        const auto count = [&] {
            const std::lock_guard<std::mutex> lock(mutex);
            return frames.size();
        };
        for (int run = 0; run < 2; ++run) {
            frames.clear();
            QCOMPARE(m_camera->startStream(), QString());
            QTRY_VERIFY(count() >= 10);
            m_camera->stopStream();
            const std::size_t stopped = count();
            QTest::qWait(50);
            QCOMPARE(count(), stopped);
            QCOMPARE(m_camera->lostFrames(), 0u);
        }
        for (std::size_t i = 0; i < frames.size(); ++i) {
            const host::Frame& frame = frames[i];
            QCOMPARE(frame.number, i);
            QCOMPARE(frame.pixelFormat, code);
            QCOMPARE(QSize(frame.width, frame.height), size);
            QCOMPARE(int(frame.pixels.size()), bytes * size.width() * size.height());
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x) {
                    const std::uint8_t* pixel = &frame.pixels[std::size_t(bytes * (y * size.width() + x))];
                    const int sent = bytes == 1 ? (x + 3 * y) & 0xFF : x == 0 ? 0xFFF : (x + 3 * y) & 0xFFF;
                    const int got = bytes == 1 ? *pixel : qFromLittleEndian<quint16>(pixel);
                    if (got != sent)
                        QFAIL(qPrintable(QStringLiteral("frame %1, pixel %2, %3").arg(i).arg(x).arg(y)));
                }
            }
        }
    }

    // The camera of this test sends nothing twice.
    void incompleteFramesAreCounted()
    {
        OPEN_OR_SKIP({"rate=60", "loss=0.01"});
        std::atomic<quint64> whole{0};
        std::atomic<quint64> numbered{0};
        m_camera->setFrameSink([&](host::Frame& frame) {
            ++whole;
            numbered = frame.number + 1;
        });
        QCOMPARE(m_camera->startStream(), QString());
        QTRY_VERIFY(whole >= 5 && m_camera->lostFrames() >= 3);
        m_camera->stopStream();
        QVERIFY2(numbered > whole && numbered <= whole + m_camera->lostFrames(), "numbers show the gaps");
    }

    void unknownPixelFormat()
    {
        OPEN_OR_SKIP({"format=17825799"}); // Mono16
        QString error = m_camera->startStream();
        QVERIFY2(error.contains("Mono16") && error.contains("--pixel-format"), qPrintable(error));
        QVERIFY(!m_camera->isStreaming());
        QCOMPARE(as<IInteger>(*m_camera, "TLParamsLocked").GetValue(), 0);
        m_camera.reset();
        QVERIFY(!host::openAravisCamera({kAddress, "Mono13", {}}, &error));
        QVERIFY2(error.contains("Mono13"), qPrintable(error));
        QVERIFY(host::openAravisCamera({kAddress, {}, {}}, &error)); // the failed one has let go of it
    }

    void noSecondController()
    {
        OPEN_OR_SKIP();
        QString error;
        QVERIFY(!host::openAravisCamera({kAddress, {}, {}}, &error));
        QCOMPARE(error, QStringLiteral("The camera 127.0.0.1 is in use by another program."));
        writeLut(*m_camera, QByteArray(16424, '\7')); // the first is not disturbed
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), QByteArray(16424, '\7'));
    }

    // One access waits for the transport; those after it do not. The camera that comes back is as before.
    void goneWhileWriting()
    {
        OPEN_OR_SKIP();
        QSignalSpy lost(m_camera.get(), &host::Camera::lost);
        IRegister& lut = as<IRegister>(*m_camera, "LUTValueAll");
        QByteArray bytes(16424, '\1');

        std::thread killer([pid = m_process.pid()] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            ::kill(pid_t(pid), SIGKILL);
        });
        QString failure;
        for (int i = 0; i < 100000 && failure.isEmpty(); ++i)
            failure =
                failureOf([&] { lut.Set(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()); });
        killer.join();
        QVERIFY2(failure.startsWith("[LUTValueAll]") && failure.contains("timeout"), qPrintable(failure));

        QElapsedTimer timer;
        timer.start();
        const QStringList failures = {
            failureOf([&] { lut.Set(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()); }),
            failureOf([&] { lut.GetLength(); }),
            failureOf([&] { m_camera->remoteNodeMap()->GetNode("TLParamsLocked"); }),
            failureOf([&] { m_camera->remoteNodeMap()->GetNode("LUTNothing"); }),
            m_camera->startStream(),
        };
        for (const QString& text : failures)
            QVERIFY2(text.contains("camera lost"), qPrintable(text));
        QVERIFY2(timer.elapsed() < kLostPatience, qPrintable(QString::number(timer.elapsed())));
        QTRY_COMPARE(lost.size(), 1);

        QVERIFY(m_process.start());
        QString error = "not yet";
        QTRY_VERIFY_WITH_TIMEOUT((error = m_camera->reconnect()).isEmpty(), 10000);
        lut.Set(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), bytes);
        QCOMPARE(m_camera->startStream(), QString());
        QTest::qWait(50);
        QCOMPARE(lost.size(), 1);
    }

    // Nobody touches the camera: Aravis' heartbeat finds out.
    void goneWhileStreaming()
    {
        OPEN_OR_SKIP();
        QSignalSpy lost(m_camera.get(), &host::Camera::lost);
        QSignalSpy streaming(m_camera.get(), &host::Camera::streamingChanged);
        QCOMPARE(m_camera->startStream(), QString());
        m_process.kill();
        QElapsedTimer timer;
        timer.start();
        qint64 longest = 0;
        while (lost.isEmpty() && timer.elapsed() < 15000) {
            QElapsedTimer step;
            step.start();
            QTest::qWait(10);
            longest = qMax(longest, step.elapsed());
        }
        QCOMPARE(lost.size(), 1);
        QVERIFY(!m_camera->isStreaming());
        QCOMPARE(streaming.size(), 2);
        QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
    }

    void anotherCamera()
    {
        OPEN_OR_SKIP();
        QVERIFY(m_process.start({"serial=T2"}));
        const QString error = m_camera->reconnect();
        QVERIFY2(error.contains("Another camera") && error.contains("T2"), qPrintable(error));
        QVERIFY(
            failureOf([&] { m_camera->remoteNodeMap()->GetNode("LUTValueAll"); }).contains("camera lost"));
    }

    void usbPermission()
    {
        QTemporaryDir root;
        const auto write = [&](const QString& path, const QByteArray& text) {
            const QString file = root.filePath(path);
            QDir().mkpath(QFileInfo(file).path());
            QFile out(file);
            QVERIFY(out.open(QIODevice::WriteOnly) && out.write(text) == text.size());
        };
        const QString devices = "sys/bus/usb/devices/";
        const auto plugIn = [&](const QString& port, const char* subclass, const QByteArray& number) {
            write(devices + port + "/busnum", "2\n");
            write(devices + port + "/devnum", number + "\n");
            write(devices + port + "/product", "Cam " + number + "\n");
            for (const char* protocol : {"00", "01"}) {
                const QString interface = devices + port + ":1." + protocol;
                write(interface + "/bInterfaceClass", "ef\n");
                write(interface + "/bInterfaceSubClass", QByteArray(subclass) + "\n");
                write(interface + "/bInterfaceProtocol", QByteArray(protocol) + "\n");
            }
        };
        plugIn("2-1", "05", "7");
        plugIn("2-2", "05", "8");
        plugIn("2-3", "02", "9"); // no camera
        write("dev/bus/usb/002/008", "");

        const QVector<host::BlockedUsbCamera> blocked = host::blockedUsbCameras(root.path());
        QCOMPARE(blocked.size(), 1);
        QCOMPARE(blocked[0].name, QStringLiteral("Cam 7"));
        QCOMPARE(blocked[0].file, QStringLiteral("/dev/bus/usb/002/007"));
        QVERIFY(!blocked[0].reason.isEmpty());
    }

private:
    // Starts a camera process and opens its camera.
    bool open(const QStringList& options = {}, const QString& pixelFormat = {}, QSize size = {})
    {
        if (!m_process.start(options))
            return false;
        QString error;
        m_camera = host::openAravisCamera({kAddress, pixelFormat, size}, &error);
        if (!m_camera)
            qWarning("%s", qPrintable(error));
        return m_camera != nullptr;
    }

    CameraProcess m_process;
    std::unique_ptr<host::Camera> m_camera;
};

#define OPEN_OR_SKIP(...)                                                                                    \
    do {                                                                                                     \
        if (!open(__VA_ARGS__))                                                                              \
            QSKIP("no GigE Vision camera can be served on loopback: UDP port 3956 is taken");                \
    } while (false)

QTEST_GUILESS_MAIN(tst_AravisCamera)
#include "tst_AravisCamera.moc"

// The adapter over Aravis, through the GigE Vision protocol: nodes, transfers, frames, and a camera that
// goes.
#include <atomic>

#include "CameraProcess.h"
#include "host/aravis/AravisCamera.h"
#include "host/aravis/UsbAccess.h"

using namespace GenApi_3_0;

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

#define OPEN_OR_SKIP(...)                                                                                    \
    START_OR_SKIP(m_process, __VA_ARGS__);                                                                   \
    QVERIFY(open())

class tst_AravisCamera : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_camera.reset(); }

    void nodes()
    {
        const struct
        {
            const char* name;
            const char* interfaces; // their first letters, in the order below
            EAccessMode mode;
        } rows[] = {{"LUTValueAll", "R", RW},
                    {"LUTSelector", "E", RW},
                    {"LUTEnable", "B", NI},
                    {"UnavailableBoolean", "B", NA},
                    {"TLParamsLocked", "I", RW},
                    {"HasLUTReg", "I", RO},
                    {"WriteOnlyInteger", "I", WO},
                    {"UserSetLoad", "C", RW},
                    {"Text", "S", RW},
                    {"Root", "", RO}};
        OPEN_OR_SKIP();
        const INodeMap& map = *m_camera->remoteNodeMap();
        for (const auto& row : rows) {
            INode* node = map.GetNode(row.name);
            QVERIFY2(node, row.name);
            QCOMPARE(node->GetName(), GenICam_3_0::gcstring(row.name));
            QByteArray found;
            found += dynamic_cast<IInteger*>(node) ? "I" : "";
            found += dynamic_cast<IBoolean*>(node) ? "B" : "";
            found += dynamic_cast<IString*>(node) ? "S" : "";
            found += dynamic_cast<ICommand*>(node) ? "C" : "";
            found += dynamic_cast<IEnumeration*>(node) ? "E" : "";
            found += dynamic_cast<IRegister*>(node) ? "R" : "";
            QVERIFY2(found == row.interfaces, row.name);
            QVERIFY2(node->GetAccessMode() == row.mode, row.name);
        }
        QVERIFY(!map.GetNode("LUTValue") && !map.GetNode(""));
    }

    // The exception names the node, and nothing has changed in the camera.
    void refusedWrites()
    {
        OPEN_OR_SKIP();
        QCOMPARE(m_camera->setLocked(true), QString());
        const QByteArray before = m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut);
        const auto refused = [&](const char* name, const char* why, auto write) {
            const QString failure = failureOf([&] { write(m_camera->remoteNodeMap()->GetNode(name)); });
            QVERIFY2(failure.startsWith(QString("[%1]").arg(name)) && failure.contains(why),
                     qPrintable(failure));
        };
        const auto boolean = [](INode* node) { dynamic_cast<IBoolean&>(*node).SetValue(true); };
        const auto integer = [](INode* node) { dynamic_cast<IInteger&>(*node).SetValue(6); };
        refused("LUTEnable", "does not implement", boolean);
        refused("UnavailableBoolean", "not available", boolean);
        refused("LimitedInteger", "6 lies outside", integer);
        refused("HasLUTReg", "read only", integer);
        refused("LUTSelector", "Value 2 not found",
                [](INode* node) { dynamic_cast<IEnumeration&>(*node).SetIntValue(2); });
        refused("LUTValueAll", "locked", [this](INode*) { writeLut(*m_camera, QByteArray(16424, '\1')); });
        QCOMPARE(m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut), before);
    }

    void wholeRegisterOnly()
    {
        for (const int length : {16424, 16384, 4136}) {
            OPEN_OR_SKIP(QStringLiteral("lut=%1").arg(length));
            auto& lut = as<IRegister>(*m_camera, "LUTValueAll");
            QCOMPARE(lut.GetLength(), length);
            QSignalSpy written(m_camera.get(), &host::Camera::registerWritten);
            QByteArray bytes(length, '\0');
            for (int i = 0; i < length; ++i)
                bytes[i] = char(i * 7 + i / 256);
            writeLut(*m_camera, bytes);
            for (const int wrong : {0, length - 4, length + 4}) {
                QByteArray other(length + 4, '\xEE');
                auto* data = reinterpret_cast<std::uint8_t*>(other.data());
                QVERIFY(failureOf([&] { lut.Set(data, wrong); }).contains(QString::number(length)));
                QVERIFY(failureOf([&] { lut.Get(data, wrong); }).contains(QString::number(length)));
            }
            QCOMPARE(m_process.memory(CameraProcess::kLut, length), bytes);
            QCOMPARE(written.size(), 1);
            QCOMPARE(written[0][0].toInt(), length);
            QByteArray back(length, '\0');
            lut.Get(reinterpret_cast<std::uint8_t*>(back.data()), length);
            QCOMPARE(back, bytes);
        }
    }

    // What scripts and bug reports ask for.
    void registerOnDemand()
    {
        OPEN_OR_SKIP("lut=4136");
        QCOMPARE(m_camera->setLocked(true), QString()); // below the nodes that counts for nothing
        const QByteArray bytes(4136, '\x5A');
        QCOMPARE(m_camera->pokeRegister(bytes), QString());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 4136), bytes);
        QString error;
        QCOMPARE(m_camera->registerBytes(&error), bytes);
        QCOMPARE(error, QString());
        QVERIFY(m_camera->pokeRegister(bytes.left(8)).contains("4136"));
        QVERIFY(m_camera->userSetBytes(&error).isEmpty() && !error.isEmpty());

        OPEN_OR_SKIP("lut=0");
        QVERIFY(m_camera->registerBytes(&error).isEmpty() && error.contains("no LUT"));
        QVERIFY(m_camera->pokeRegister(bytes).contains("no LUT"));
    }

    void valuesArrive()
    {
        OPEN_OR_SKIP("enable=1");
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
        QTest::addColumn<QString>("lock"); // the camera's TLParamsLocked
        QTest::newRow("own") << "own";
        QTest::newRow("none") << "none";
    }

    void lockWhileStreaming()
    {
        QFETCH(QString, lock);
        OPEN_OR_SKIP("lock=" + lock);
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
        QTest::addColumn<quint32>("code");
        QTest::addColumn<int>("bytes"); // a pixel
        QTest::newRow("Mono8") << 0x01080001u << 1;
        QTest::newRow("Mono12") << 0x01100005u << 2;
    }

    void framesAreExact()
    {
        QFETCH(quint32, code);
        QFETCH(int, bytes);
        const QSize size(300, 100);
        std::vector<std::uint8_t> sent;
        for (int i = 0; i < size.width() * size.height(); ++i) {
            const int x = i % size.width(), word = x == 0 ? 0xFFF : (x + 3 * (i / size.width())) & 0xFFF;
            sent.push_back(std::uint8_t(bytes == 1 ? x + 3 * (i / size.width()) : word));
            if (bytes == 2)
                sent.push_back(std::uint8_t(word >> 8));
        }
        START_OR_SKIP(m_process, "rate=60");
        QVERIFY(open(QTest::currentDataTag(), size));

        std::atomic<std::uint64_t> frames{0};
        std::atomic<std::uint64_t> wrong{0};
        m_camera->setFrameSink([&](host::Frame& frame) {
            wrong += frame.number != frames++ || frame.pixelFormat != code ||
                     QSize(frame.width, frame.height) != size || frame.pixels != sent;
        });
        for (int run = 0; run < 2; ++run) {
            frames = 0;
            QCOMPARE(m_camera->startStream(), QString());
            QTRY_VERIFY(frames >= 10);
            m_camera->stopStream();
            const std::uint64_t stopped = frames;
            QTest::qWait(50);
            QCOMPARE(frames, stopped);
            QCOMPARE(wrong, 0u);
            QCOMPARE(m_camera->lostFrames(), 0u);
        }
    }

    // The camera of this test sends nothing twice.
    void incompleteFramesAreCounted()
    {
        OPEN_OR_SKIP("rate=60", "loss=0.01");
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
        OPEN_OR_SKIP("format=17825799"); // Mono16
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

    // One access waits for the transport; those after it do not.
    void goneWhileWriting()
    {
        OPEN_OR_SKIP();
        QSignalSpy lost(m_camera.get(), &host::Camera::lost);
        IRegister& lut = as<IRegister>(*m_camera, "LUTValueAll");
        const auto write = [&] { writeLut(*m_camera, QByteArray(16424, '\1')); };
        std::thread killer = m_process.killSoon(20);
        QString failure;
        for (int i = 0; i < 100000 && failure.isEmpty(); ++i)
            failure = failureOf(write);
        killer.join();
        QVERIFY2(failure.startsWith("[LUTValueAll]") && failure.contains("timeout"), qPrintable(failure));

        QElapsedTimer timer;
        timer.start();
        const QStringList failures = {
            failureOf(write),
            failureOf([&] { lut.GetLength(); }),
            failureOf([&] { m_camera->remoteNodeMap()->GetNode("TLParamsLocked"); }),
            failureOf([&] { m_camera->remoteNodeMap()->GetNode("LUTNothing"); }),
            m_camera->startStream(),
        };
        for (const QString& text : failures)
            QVERIFY2(text.contains("camera lost"), qPrintable(text));
        QVERIFY2(timer.elapsed() < kLostPatience, qPrintable(QString::number(timer.elapsed())));
        QTRY_COMPARE(lost.size(), 1);
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
    bool open(const QString& pixelFormat = {}, QSize size = {})
    {
        QString error;
        m_camera = host::openAravisCamera({kAddress, pixelFormat, size}, &error);
        if (!m_camera)
            qWarning("%s", qPrintable(error));
        return m_camera != nullptr;
    }

    CameraProcess m_process;
    std::unique_ptr<host::Camera> m_camera;
};

QTEST_GUILESS_MAIN(tst_AravisCamera)
#include "tst_AravisCamera.moc"

// The adapter over Aravis, through the GigE Vision protocol: nodes, streams, and a camera that goes. Tables
// and frames byte by byte, and a camera that goes in a write, are seen with the viewer.
#include <atomic>

#include "CameraProcess.h"
#include "host/aravis/AravisCamera.h"
#include "host/aravis/UsbAccess.h"
#include "support/TestFolder.h"

using namespace GenApi_3_0;

namespace {

const QString kAddress = QStringLiteral("127.0.0.1");

template <class Interface>
Interface& as(host::Camera& camera, const char* node)
{
    auto* found = dynamic_cast<Interface*>(camera.remoteNodeMap()->GetNode(node));
    if (!found)
        qFatal("no such node %s", node);
    return *found;
}

// The exception's text; empty when there was none.
QString failureOf(const std::function<void()>& call)
{
    try {
        call();
        return {};
    } catch (const GenICam_3_0::GenericException& failure) {
        return failure.what();
    }
}

} // namespace

#define OPEN_OR_SKIP(...)                                                                                    \
    m_camera.reset();                                                                                        \
    START_OR_SKIP(m_process, __VA_ARGS__);                                                                   \
    m_camera = host::openAravisCamera({kAddress, {}, {}}, &m_error);                                         \
    QVERIFY2(m_camera, qPrintable(m_error))

class tst_AravisCamera : public QObject
{
    Q_OBJECT

    CameraProcess m_process;
    std::unique_ptr<host::Camera> m_camera;
    QString m_error;

private slots:
    void nodes()
    {
        // The interfaces by their first letters, in the order below.
        const std::tuple<const char*, const char*, EAccessMode> rows[] = {{"LUTValueAll", "R", RW},
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
        for (const auto& [name, interfaces, mode] : rows) {
            INode* node = map.GetNode(name);
            QVERIFY2(node, name);
            QCOMPARE(node->GetName(), GenICam_3_0::gcstring(name));
            QByteArray found;
            found += dynamic_cast<IInteger*>(node) ? "I" : "";
            found += dynamic_cast<IBoolean*>(node) ? "B" : "";
            found += dynamic_cast<IString*>(node) ? "S" : "";
            found += dynamic_cast<ICommand*>(node) ? "C" : "";
            found += dynamic_cast<IEnumeration*>(node) ? "E" : "";
            found += dynamic_cast<IRegister*>(node) ? "R" : "";
            QVERIFY2(found == interfaces, name);
            QVERIFY2(node->GetAccessMode() == mode, name);
        }
        QVERIFY(!map.GetNode("LUTValue") && !map.GetNode(""));
    }

    // The exception names the node, and nothing has changed in the camera.
    void refusedWrites()
    {
        OPEN_OR_SKIP();
        const QByteArray before = m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut);
        const auto refused = [&](const char* name, const char* why,
                                 const std::function<void(INode*)>& access) {
            const QString failure = failureOf([&] { access(m_camera->remoteNodeMap()->GetNode(name)); });
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
        std::vector<std::uint8_t> bytes(16428, 1);
        auto& lut = as<IRegister>(*m_camera, "LUTValueAll");
        for (const int wrong : {0, 16420, 16428}) {
            refused("LUTValueAll", "in 16424 bytes", [&](INode*) { lut.Set(bytes.data(), wrong); });
            refused("LUTValueAll", "in 16424 bytes", [&](INode*) { lut.Get(bytes.data(), wrong); });
        }
        QCOMPARE(m_camera->setLocked(true), QString());
        refused("LUTValueAll", "locked", [&](INode*) { lut.Set(bytes.data(), 16424); });
        QCOMPARE(m_camera->setLocked(false), QString());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 0xF100 - CameraProcess::kLut), before);
    }

    // What scripts and bug reports ask for.
    void registerOnDemand()
    {
        OPEN_OR_SKIP("lut=4136");
        QCOMPARE(m_camera->setLocked(true), QString()); // below the nodes that counts for nothing
        const QByteArray bytes(4136, '\x5A');
        QCOMPARE(m_camera->pokeRegister(bytes), QString());
        QCOMPARE(m_process.memory(CameraProcess::kLut, 4136), bytes);
        QCOMPARE(m_camera->registerBytes(&m_error), bytes);
        QCOMPARE(m_error, QString());
        QVERIFY(m_camera->pokeRegister(bytes.left(8)).contains("4136"));
        QVERIFY(m_camera->userSetBytes(&m_error).isEmpty() && !m_error.isEmpty());

        OPEN_OR_SKIP("lut=0");
        QVERIFY(m_camera->registerBytes(&m_error).isEmpty() && m_error.contains("no LUT"));
        QVERIFY(m_camera->pokeRegister(bytes).contains("no LUT"));
    }

    void valuesArrive()
    {
        OPEN_OR_SKIP("enable=1");
        as<IBoolean>(*m_camera, "LUTEnable").SetValue(true);
        QVERIFY(as<IBoolean>(*m_camera, "LUTEnable").GetValue());
        as<IEnumeration>(*m_camera, "UserSetDefault").SetIntValue(1);
        QCOMPARE(as<IEnumeration>(*m_camera, "UserSetDefault").GetIntValue(), 1);
        as<IInteger>(*m_camera, "LimitedInteger").SetValue(-5);
        QCOMPARE(as<IInteger>(*m_camera, "LimitedInteger").GetValue(), -5);
        as<IString>(*m_camera, "Text").SetValue("LUT");
        QCOMPARE(as<IString>(*m_camera, "Text").GetValue(), GenICam_3_0::gcstring("LUT"));
        as<ICommand>(*m_camera, "WriteOnlyCommand").Execute();
        QVERIFY(as<ICommand>(*m_camera, "UserSetLoad").IsDone());
        QVERIFY(!m_camera->deviceNodeMap()->GetNode("LUTValueAll"));
    }

    void lockWhileStreaming()
    {
        for (const char* lock : {"own", "none"}) { // the camera's TLParamsLocked
            OPEN_OR_SKIP(QString("lock=") + lock);
            const auto locked = [&] { return as<IInteger>(*m_camera, "TLParamsLocked").GetValue(); };
            QCOMPARE(locked(), 0);
            QSignalSpy streaming(m_camera.get(), &host::Camera::streamingChanged);
            for (int i = 0; i < 2; ++i) {
                QCOMPARE(m_camera->startStream(), QString());
                QVERIFY(m_camera->isStreaming());
                QCOMPARE(locked(), 1);
                if (!strcmp(lock, "own"))
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
        }
    }

    void framesFlowWhileTablesAreWritten()
    {
        OPEN_OR_SKIP("enable=1", "rate=60");
        std::atomic<quint64> frames{0}, wrong{0};
        m_camera->setFrameSink([&](host::Frame& frame) { wrong += frame.number != frames++; });
        for (int run = 0; run < 2; ++run) {
            frames = 0; // each stream numbers them anew
            QCOMPARE(m_camera->startStream(), QString());
            QTRY_VERIFY(m_camera->pokeRegister(QByteArray(16424, '\1')).isEmpty() && frames >= 10);
            m_camera->stopStream();
            const quint64 stopped = frames;
            QTest::qWait(50);
            QCOMPARE(frames, stopped);
            QCOMPARE(m_camera->lostFrames(), 0u);
        }
        QCOMPARE(wrong, 0u);
    }

    // The camera of this test sends nothing twice.
    void incompleteFramesAreCounted()
    {
        OPEN_OR_SKIP("rate=60", "loss=0.01");
        std::atomic<quint64> whole{0}, numbered{0};
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
        const QString error = m_camera->startStream();
        QVERIFY2(error.contains("Mono16") && error.contains("--pixel-format"), qPrintable(error));
        QVERIFY(!m_camera->isStreaming());
        QCOMPARE(as<IInteger>(*m_camera, "TLParamsLocked").GetValue(), 0);
        m_camera.reset();
        QVERIFY(!host::openAravisCamera({kAddress, "Mono13", {}}, &m_error) && m_error.contains("Mono13"));
        QVERIFY(host::openAravisCamera({kAddress, {}, {}}, &m_error)); // the failed one has let go of it
    }

    void noSecondController()
    {
        OPEN_OR_SKIP();
        QVERIFY(!host::openAravisCamera({kAddress, {}, {}}, &m_error));
        QCOMPARE(m_error, QStringLiteral("The camera 127.0.0.1 is in use by another program."));
        QCOMPARE(m_camera->pokeRegister(QByteArray(16424, '\7')), QString()); // the first is not disturbed
    }

    // Nobody touches the camera: Aravis' heartbeat finds out, and the viewer's thread waits for nothing.
    void goneWhileStreaming()
    {
        OPEN_OR_SKIP();
        QSignalSpy lost(m_camera.get(), &host::Camera::lost);
        QSignalSpy streaming(m_camera.get(), &host::Camera::streamingChanged);
        QCOMPARE(m_camera->startStream(), QString());
        m_process.kill();
        qint64 longest = 0;
        for (const QDeadlineTimer patience(15000); lost.isEmpty() && !patience.hasExpired();) {
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
        m_error = m_camera->reconnect();
        QVERIFY2(m_error.contains("Another camera") && m_error.contains("T2"), qPrintable(m_error));
        QVERIFY(failureOf([&] { m_camera->remoteNodeMap()->GetNode("LUTNothing"); }).contains("camera lost"));
    }

    void usbPermission()
    {
        const TestFolder root;
        const auto plugIn = [&](const QString& port, const QByteArray& subclass, const QByteArray& number) {
            const QString device = "sys/bus/usb/devices/" + port;
            root.put(device + "/busnum", "2\n");
            root.put(device + "/devnum", number + "\n");
            root.put(device + "/product", "Cam " + number + "\n");
            for (const char* protocol : {"00", "01"}) {
                const QString interface = device + ":1." + protocol;
                root.put(interface + "/bInterfaceClass", "ef\n");
                root.put(interface + "/bInterfaceSubClass", subclass + "\n");
                root.put(interface + "/bInterfaceProtocol", QByteArray(protocol) + "\n");
            }
        };
        plugIn("2-1", "05", "7");
        plugIn("2-2", "05", "8");
        plugIn("2-3", "02", "9"); // no camera
        root.put("dev/bus/usb/002/008", "");

        const QVector<host::BlockedUsbCamera> blocked = host::blockedUsbCameras(root.path());
        QCOMPARE(blocked.size(), 1);
        QCOMPARE(blocked[0].name, QStringLiteral("Cam 7"));
        QCOMPARE(blocked[0].file, QStringLiteral("/dev/bus/usb/002/007"));
        QVERIFY(!blocked[0].reason.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_AravisCamera)
#include "tst_AravisCamera.moc"

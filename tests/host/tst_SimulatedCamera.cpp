#include <atomic>

#include <QtEndian>
#include <QtTest>

#include "host/camera/SimulatedCamera.h"

using namespace GenApi_3_0;
using host::SimulatedCamera;
using host::SimulatedCameraOptions;
using Spoil = std::function<void(QByteArray&, SimulatedCameraOptions&)>;
Q_DECLARE_METATYPE(Spoil)

namespace {

SimulatedCameraOptions wideRamp(const char* model, int lutBytes = -1, const QString& stateFile = {})
{
    SimulatedCameraOptions options;
    options.model = QString::fromLatin1(model);
    options.lutBytes = lutBytes;
    options.frames = QStringLiteral("ramp");
    options.width = 4096; // pixel x of a ramp this wide sees the value x
    options.height = 1;
    options.frameRate = 1000;
    options.stateFile = stateFile;
    return options;
}

// A camera with its nodes at hand.
struct Rig
{
    explicit Rig(const SimulatedCameraOptions& options) : camera(host::makeSimulatedCamera(options, &error))
    {
        if (!camera)
            qFatal("%s", qPrintable(error));
    }
    explicit Rig(const char* model) : Rig(wideRamp(model)) {}

    template <class Interface>
    Interface* find(const char* name)
    {
        return dynamic_cast<Interface*>(camera->remoteNodeMap()->GetNode(name));
    }
    void choose(const char* name, int value) { find<IEnumeration>(name)->SetIntValue(value); }
    int choice(const char* name) { return int(find<IEnumeration>(name)->GetIntValue()); }
    void execute(const char* name) { find<ICommand>(name)->Execute(); }
    void enable(bool on) { find<IBoolean>("LUTEnable")->SetValue(on); }
    bool isEnabled() { return find<IBoolean>("LUTEnable")->GetValue(); }
    bool isLocked() { return find<IInteger>("TLParamsLocked")->GetValue() == 1; }
    void write(const QByteArray& bytes)
    {
        find<IRegister>("LUTValueAll")
            ->Set(reinterpret_cast<const std::uint8_t*>(bytes.constData()), bytes.size());
    }
    QByteArray table()
    {
        auto* lut = find<IRegister>("LUTValueAll");
        QByteArray bytes(int(lut->GetLength()), '?');
        lut->Get(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
        return bytes;
    }
    void store(const QByteArray& table) // and start with it
    {
        write(table);
        choose("UserSetSelector", 1);
        execute("UserSetSave");
        choose("UserSetDefault", 1);
    }
    host::Frame firstFrame()
    {
        QSemaphore arrived;
        host::Frame first;
        camera->setFrameSink([&](host::Frame& frame) {
            if (frame.number == 0) {
                first = frame;
                arrived.release();
            }
        });
        error = camera->startStream();
        if (!error.isEmpty() || !arrived.tryAcquire(1, 10000))
            qWarning("no frame: %s", qPrintable(error));
        camera->stopStream();
        camera->setFrameSink({});
        return first;
    }

    QString error;
    std::unique_ptr<SimulatedCamera> camera;
};

void setEntry(QByteArray& bytes, int entry, int value)
{
    qToLittleEndian<qint32>(value, bytes.data() + 4 * entry);
}

QByteArray filled(int value, int bytes = 16424)
{
    QByteArray table(bytes, '\0');
    for (int entry = 0; entry < bytes / 4; ++entry)
        setEntry(table, entry, value);
    return table;
}

int pixel(const host::Frame& frame, int x)
{
    const bool wide = frame.pixels.size() > std::size_t(frame.width) * frame.height;
    return wide ? qFromLittleEndian<quint16>(&frame.pixels[2 * x]) : frame.pixels[x];
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool refused(const std::function<void()>& access)
{
    try {
        access();
        return false;
    } catch (const GenICam_3_0::GenericException&) {
        return true;
    }
}

} // namespace

class tst_SimulatedCamera : public QObject
{
    Q_OBJECT

    QString stateFile() const { return m_folder->filePath("state.json"); }

    std::unique_ptr<QTemporaryDir> m_folder;

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    // An odd length; the usual ones are in the module's round trips and the transcripts.
    void registerKeepsItsBytes()
    {
        const int length = 4099;
        Rig rig(wideRamp("lut", length));
        QSignalSpy written(rig.camera.get(), &host::Camera::registerWritten);
        QByteArray bytes(length, '\0');
        for (int i = 0; i < length; ++i)
            bytes[i] = char(i * 7 + 1);
        rig.write(bytes);
        QVERIFY(refused([&] { rig.write(bytes + 'x'); }));
        QCOMPARE(rig.table(), bytes);
        QVERIFY(!rig.camera->pokeRegister(bytes + 'x').isEmpty());
        QCOMPARE(rig.camera->registerBytes(&rig.error), bytes);
        bytes.fill('\x55');
        rig.camera->setLocked(true);
        QCOMPARE(rig.camera->pokeRegister(bytes), QString()); // below the nodes and their locks
        QCOMPARE(rig.camera->registerBytes(&rig.error), bytes);
        QCOMPARE(QList<QVariantList>(written), {QVariantList{length}});
    }

    void selectorSwitchesTables()
    {
        Rig rig("lut");
        const QByteArray factory = rig.table();
        rig.choose("LUTSelector", 1);
        rig.write(filled(9));
        for (int outside : {2, -1})
            QVERIFY(refused([&] { rig.choose("LUTSelector", outside); }));
        QCOMPARE(rig.choice("LUTSelector"), 1);
        QCOMPARE(pixel(rig.firstFrame(), 3000), 3000); // frames run through table 0
        rig.choose("LUTSelector", 0);
        QCOMPARE(rig.table(), factory);
    }

    void framesRunThroughTheTable()
    {
        using Map = std::map<int, int>;
        // The register's length, entries that are not 1, and what the inputs become.
        const std::tuple<int, Map, Map> rows[] = {
            {16424, {{0, 4095}, {1, 7}, {4095, 2048}}, {{0, 4095}, {1, 7}, {2, 1}, {4095, 2048}}},
            {16424, {{5, -1}, {6, 4096}}, {{5, 0}, {6, 4095}}},
            {8232, {{3, 1023}}, {{5, 4}, {6, 4092}, {7, 4092}, {8, 4}}},
            {4099, {{1013, 100}}, {{4091, 4}, {4092, 400}, {4095, 400}}}, // 1014 entries
            {32808, {{2, 50}, {3, 60}}, {{0, 4}, {1, 200}, {2, 4}}},
            {43, {{0, 25}}, {{0, 0}, {4095, 4095}}}}; // no room for a table
        for (const auto& [length, entries, outputs] : rows) {
            Rig rig(wideRamp("lut", length));
            QByteArray table = filled(1, length);
            for (const auto& [entry, value] : entries)
                setEntry(table, entry, value);
            rig.write(table);
            const host::Frame frame = rig.firstFrame();
            for (const auto& [input, output] : outputs)
                QVERIFY2(pixel(frame, input) == output, qPrintable(QString("%1: %2").arg(length).arg(input)));
        }
    }

    void disabledTableLeavesFramesAlone()
    {
        Rig rig("lut-enable");
        rig.write(filled(77));
        QVERIFY(!rig.isEnabled());
        QCOMPARE(pixel(rig.firstFrame(), 1234), 1234);
        rig.enable(true);
        QCOMPARE(pixel(rig.firstFrame(), 1234), 77);
        // A new camera's table is the identity at the register's resolution.
        QCOMPARE(pixel(Rig(wideRamp("lut", 8232)).firstFrame(), 1235), 1232);
    }

    void formatsAreCutToTheirDepth()
    {
        const QPair<const char*, int> rows[] = {{"8", 0xab}, {"10", 0x2af}, {"12", 0xabc}}; // of 0xabc
        for (const auto& [bits, value] : rows) {
            for (const char* kind : {"Mono", "BayerRG"}) {
                SimulatedCameraOptions options;
                options.pixelFormat = QLatin1String(kind) + bits;
                options.width = options.height = 64;
                Rig rig(options);
                rig.write(filled(0xabc));
                const host::Frame frame = rig.firstFrame();
                QCOMPARE(QString(host::pixelFormatByCode(frame.pixelFormat)->name), options.pixelFormat);
                QCOMPARE(int(frame.pixels.size()), value > 255 ? 8192 : 4096);
                QCOMPARE(pixel(frame, 4095), value);
            }
        }
    }

    void streamLocksTheParameters()
    {
        for (const char* model : {"lut", "lut-enable"}) {
            Rig rig(model);
            const bool refuses = !rig.find<INode>("LUTEnable");
            const QByteArray before = rig.table(), table = filled(1);
            QVERIFY(refused([&] { rig.find<IInteger>("TLParamsLocked")->SetValue(1); }));
            QCOMPARE(rig.camera->startStream(), QString());
            QVERIFY(rig.isLocked());
            QCOMPARE(rig.find<INode>("LUTValueAll")->GetAccessMode(), refuses ? RO : RW);
            QCOMPARE(refused([&] { rig.write(table); }), refuses);
            QCOMPARE(rig.table(), refuses ? before : table);
            QCOMPARE(refused([&] { rig.execute("UserSetLoad"); }), refuses);
            QCOMPARE(rig.table(), before);
            rig.camera->setLocked(true);
            rig.camera->stopStream();
            QVERIFY(rig.isLocked()); // the hand still holds it
            rig.camera->setLocked(false);
            rig.write(table);
        }
    }

    void stoppedStreamIsSilent()
    {
        Rig rig("lut");
        std::atomic<bool> mayRun{false};
        std::atomic<int> strays{0};
        std::vector<std::uint64_t> numbers; // the frame thread's while the stream runs
        QSemaphore arrived;
        rig.camera->setFrameSink([&](host::Frame& frame) {
            strays += !mayRun;
            numbers.push_back(frame.number);
            arrived.release();
        });
        for (int round = 0; round < 20; ++round) {
            numbers.clear();
            mayRun = true;
            QCOMPARE(rig.camera->startStream(), QString());
            QVERIFY(arrived.tryAcquire(3, 10000));
            rig.camera->stopStream();
            mayRun = false;
            arrived.acquire(arrived.available());
            for (std::size_t i = 0; i < numbers.size(); ++i)
                QCOMPARE(numbers[i], std::uint64_t(i));
        }
        QCOMPARE(strays.load(), 0);
    }

    void frameSeesNoTornTable()
    {
        Rig rig("lut-enable");
        rig.enable(true);
        const QByteArray tables[] = {filled(0x111), filled(0xeee)};
        rig.write(tables[0]);
        std::atomic<int> frames{0}, torn{0};
        rig.camera->setFrameSink([&](host::Frame& frame) {
            const int first = pixel(frame, 0);
            torn += first != 0x111 && first != 0xeee;
            for (int x = 0; x < frame.width; ++x)
                torn += pixel(frame, x) != first;
            ++frames;
        });
        QCOMPARE(rig.camera->startStream(), QString());
        QDeadlineTimer patience(20000);
        for (int i = 0; frames < 500 && !patience.hasExpired(); ++i)
            rig.write(tables[i % 2]);
        rig.camera->stopStream();
        QVERIFY(frames >= 500);
        QCOMPARE(torn.load(), 0);
    }

    void userSetSurvivesARestart()
    {
        const QByteArray saved = filled(1000), other = filled(2000);
        {
            Rig rig(wideRamp("lut-enable", -1, stateFile()));
            rig.choose("LUTSelector", 1);
            rig.enable(true);
            rig.store(other);
            rig.choose("LUTSelector", 0);
            rig.store(saved);

            rig.write(filled(3000)); // not saved
            rig.enable(false);
            rig.choose("LUTSelector", 1);
            rig.execute("UserSetLoad");
            QCOMPARE(rig.choice("LUTSelector"), 0);
            QVERIFY(rig.isEnabled());
            QCOMPARE(rig.table(), saved);
            rig.write(filled(3000));
        }
        Rig rig(wideRamp("lut-enable", -1, stateFile()));
        QCOMPARE(rig.camera->warnings(), QStringList());
        QCOMPARE(rig.choice("UserSetDefault"), 1);
        QVERIFY(rig.isEnabled());
        QCOMPARE(rig.table(), saved);
        QCOMPARE(rig.camera->userSetBytes(&rig.error), saved);
        rig.choose("LUTSelector", 1);
        QCOMPARE(rig.table(), other);
    }

    void refusedSaveChangesNothing()
    {
        Rig rig(wideRamp("lut", -1, m_folder->filePath("no/such/folder/state.json")));
        const QByteArray factory = rig.table(), saved = rig.camera->userSetBytes(&rig.error);
        rig.write(filled(5));
        QVERIFY(refused([&] { rig.execute("UserSetSave"); })); // the factory's
        rig.execute("UserSetLoad");
        QCOMPARE(rig.table(), factory);
        QVERIFY(refused([&] { rig.store(filled(5)); }));
        QCOMPARE(rig.camera->userSetBytes(&rig.error), saved);
        QVERIFY(refused([&] { rig.choose("UserSetDefault", 1); }));
        QCOMPARE(rig.choice("UserSetDefault"), 0);
        QVERIFY(refused([&] { rig.choose("UserSetSelector", 2); }));
    }

    void uselessStateFileIsReportedAndKept_data()
    {
        QTest::addColumn<Spoil>("spoil");
        QTest::newRow("empty") << Spoil([](auto& state, auto&) { state.clear(); });
        QTest::newRow("cut off") << Spoil([](auto& state, auto&) { state.chop(3); });
        QTest::newRow("one character of the table") << Spoil([](auto& state, auto&) {
            const int at = state.indexOf("AAAA", state.size() / 2);
            QVERIFY(at > 0);
            state[at] = 'B';
        });
        QTest::newRow("start set") << Spoil(
            [](auto& state, auto&) { state.replace("\"startSet\": 1", "\"startSet\": 0"); });
        QTest::newRow("set too short, checksum right") << Spoil([](auto& state, auto&) {
            QJsonObject object = QJsonDocument::fromJson(state).object();
            object["userSet0"] = "AAAA";
            object.remove("sha256");
            const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
            const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
            object["sha256"] = QString::fromLatin1(sum.toHex());
            state = QJsonDocument(object).toJson();
        });
        QTest::newRow("another model") << Spoil([](auto&, auto& options) { options.model = "lut-enable"; });
        QTest::newRow("another length") << Spoil([](auto&, auto& options) { options.lutBytes = 16384; });
    }
    void uselessStateFileIsReportedAndKept()
    {
        QFETCH(Spoil, spoil);
        SimulatedCameraOptions options = wideRamp("lut", -1, stateFile());
        Rig(options).store(filled(5));
        QByteArray state = contents(stateFile());
        spoil(state, options);
        QFile file(stateFile());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(state) == state.size());
        file.close();

        SimulatedCameraOptions fresh = options;
        fresh.stateFile.clear();
        const QByteArray factory = Rig(fresh).table(), table = filled(6, factory.size());
        {
            Rig rig(options);
            QCOMPARE(rig.camera->warnings().size(), 1);
            QVERIFY(rig.camera->warnings().first().contains("state.json"));
            QCOMPARE(rig.choice("UserSetDefault"), 0);
            QCOMPARE(rig.table(), factory);
            QCOMPARE(contents(stateFile()), state);
            rig.store(table);
        }
        Rig rig(options);
        QCOMPARE(rig.camera->warnings(), QStringList());
        QCOMPARE(rig.table(), table);
    }

    void faultShowsItselfAndGoes()
    {
        Rig rig("lut-enable");
        rig.choose("UserSetSelector", 1);
        const auto switchRefused = [&] { return refused([&] { rig.enable(true); }); };
        const std::pair<const char*, std::function<bool()>> rows[] = {
            {"unplugged", [&] { return refused([&] { rig.isLocked(); }); }},
            {"write-fails", switchRefused},
            {"user-set-fails", [&] { return refused([&] { rig.execute("UserSetLoad"); }); }},
            {"zero-length", [&] { return rig.find<IRegister>("LUTValueAll")->GetLength() == 0; }},
            {"missing:LUTEnable", [&] { return !rig.find<INode>("LUTEnable"); }},
            {"wrong-type:LUTEnable",
             [&] { return rig.find<INode>("LUTEnable") && !rig.find<IBoolean>("LUTEnable"); }},
            {"not-implemented:LUTEnable",
             [&] { return !IsImplemented(rig.find<INode>("LUTEnable")) && switchRefused(); }}};
        for (const auto& [fault, shows] : rows) {
            QVERIFY2(!shows(), fault);
            QCOMPARE(rig.camera->setFault(fault, true), QString());
            QCOMPARE(rig.camera->activeFaults(), QStringList(fault));
            if (strchr(fault, ':'))
                rig.choose("LUTSelector", 1); // another node works
            QVERIFY2(shows(), fault);
            QCOMPARE(rig.camera->activeFaults().isEmpty(), !strcmp(fault, "write-fails")); // strikes once
            QCOMPARE(rig.camera->setFault(fault, false), QString());
            QVERIFY2(!shows(), fault);
        }
        QVERIFY(!rig.camera->setFault("missing:Gain", true).isEmpty());
        QCOMPARE(rig.camera->activeFaults(), QStringList());
    }

    void unpluggedCameraIsLost()
    {
        Rig rig("lut");
        SimulatedCamera& camera = *rig.camera;
        QSignalSpy lost(&camera, &host::Camera::lost);
        QCOMPARE(camera.startStream(), QString());
        QCOMPARE(camera.setFault("unplugged", true), QString());
        QVERIFY(!camera.isStreaming() && !camera.startStream().isEmpty());
        QVERIFY(refused([&] { rig.table(); }));
        camera.setFault("unplugged", true);
        QCOMPARE(lost.size(), 1);
        QVERIFY(camera.reconnect().contains("unplugged"));
        camera.setFault("unplugged", false);
        QCOMPARE(camera.reconnect(), QString());
        QCOMPARE(camera.startStream(), QString());

        camera.setFault("slow", true);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(rig.isLocked());
        QVERIFY(timer.elapsed() >= 20);
    }

    void badOptionIsRefused()
    {
        const std::pair<std::function<void(SimulatedCameraOptions&)>, const char*> rows[] = {
            {[](auto& o) { o.model = "lut2"; }, "\"lut2\""},
            {[](auto& o) { o.model = "no-lut", o.lutBytes = 16424; }, "no-lut"},
            {[](auto& o) { o.lutBytes = (1 << 20) + 1; }, "1048576"},
            {[](auto& o) { o.frameRate = qQNaN(); }, "0.1"},
            {[](auto& o) { o.width = -5; }, "-5 x 480"}};
        for (const auto& [change, mentions] : rows) {
            SimulatedCameraOptions options;
            change(options);
            QString error;
            QVERIFY2(!host::makeSimulatedCamera(options, &error), mentions);
            QVERIFY2(error.contains(mentions), qPrintable(error));
        }
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedCamera)
#include "tst_SimulatedCamera.moc"

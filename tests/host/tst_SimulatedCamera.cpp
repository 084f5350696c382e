#include <atomic>

#include <QtEndian>
#include <QtTest>

#include "host/camera/SimulatedCamera.h"

using namespace GenApi_3_0;
using host::SimulatedCamera;
using host::SimulatedCameraOptions;
using Values = QVector<int>;
using Spoil = std::function<void(QByteArray&)>;
using Change = std::function<void(SimulatedCameraOptions&)>;
Q_DECLARE_METATYPE(Spoil)
Q_DECLARE_METATYPE(Change)

#define VERIFY_REFUSED(call) QVERIFY_EXCEPTION_THROWN(call, GenICam_3_0::GenericException)

namespace {

template <class Interface>
Interface* find(SimulatedCamera& camera, const char* name)
{
    return dynamic_cast<Interface*>(camera.remoteNodeMap()->GetNode(name));
}

std::unique_ptr<SimulatedCamera> make(const SimulatedCameraOptions& options)
{
    QString error;
    auto camera = host::makeSimulatedCamera(options, &error);
    if (!camera) {
        qFatal("%s", qPrintable(error));
    }
    return camera;
}

std::unique_ptr<SimulatedCamera> make(const char* model, int lutBytes = -1, const QString& stateFile = {})
{
    SimulatedCameraOptions options;
    options.model = QString::fromLatin1(model);
    options.lutBytes = lutBytes;
    options.frames = QStringLiteral("ramp");
    options.width = 4096; // pixel x of a ramp this wide sees the value x
    options.height = 1;
    options.frameRate = 1000;
    options.stateFile = stateFile;
    return make(options);
}

void writeTable(SimulatedCamera& camera, const QByteArray& bytes)
{
    find<IRegister>(camera, "LUTValueAll")
        ->Set(reinterpret_cast<const std::uint8_t*>(bytes.constData()), bytes.size());
}

QByteArray readTable(SimulatedCamera& camera)
{
    auto* table = find<IRegister>(camera, "LUTValueAll");
    QByteArray bytes(int(table->GetLength()), '?');
    table->Get(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
    return bytes;
}

void setEntry(QByteArray& bytes, int entry, int value)
{
    qToLittleEndian<qint32>(value, bytes.data() + 4 * entry);
}

QByteArray filled(int value, int bytes = 16424)
{
    QByteArray table(bytes, '\0');
    for (int entry = 0; entry < bytes / 4; ++entry) {
        setEntry(table, entry, value);
    }
    return table;
}

host::Frame firstFrame(SimulatedCamera& camera)
{
    QSemaphore arrived;
    host::Frame first;
    camera.setFrameSink([&](host::Frame& frame) {
        if (frame.number == 0) {
            first = frame;
            arrived.release();
        }
    });
    const QString error = camera.startStream();
    if (!error.isEmpty() || !arrived.tryAcquire(1, 10000)) {
        qWarning("no frame: %s", qPrintable(error));
    }
    camera.stopStream();
    camera.setFrameSink({});
    return first;
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

} // namespace

class tst_SimulatedCamera : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void displayNameIsHandedOut();
    void registerKeepsItsBytes_data();
    void registerKeepsItsBytes();
    void selectorSwitchesTables();
    void framesRunThroughTheTable_data();
    void framesRunThroughTheTable();
    void disabledTableLeavesFramesAlone();
    void formatsAreCutToTheirDepth_data();
    void formatsAreCutToTheirDepth();
    void streamLocksTheParameters_data();
    void streamLocksTheParameters();
    void stoppedStreamIsSilent();
    void frameSeesNoTornTable();
    void userSetSurvivesARestart();
    void factorySetStaysAsItIs();
    void unwritableStateChangesNothing();
    void uselessStateFileIsReportedAndKept_data();
    void uselessStateFileIsReportedAndKept();
    void faultShowsItselfAndGoes_data();
    void faultShowsItselfAndGoes();
    void unpluggedCameraIsLost();
    void badOptionIsRefused_data();
    void badOptionIsRefused();

private:
    QString stateFile() const { return m_folder->filePath("state.json"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_SimulatedCamera::displayNameIsHandedOut()
{
    SimulatedCameraOptions options;
    options.displayName = "Cam\xe9ra 1";
    const auto camera = make(options);
    auto* name = dynamic_cast<IString*>(camera->deviceNodeMap()->GetNode("DeviceDisplayName"));
    QCOMPARE(name->GetValue().c_str(), "Cam\xe9ra 1");
    VERIFY_REFUSED(name->SetValue("x"));
    QVERIFY(!find<INode>(*camera, "DeviceDisplayName"));
}

void tst_SimulatedCamera::registerKeepsItsBytes_data()
{
    QTest::addColumn<int>("length");
    for (int length : {16424, 16384, 4136, 4099, 40, 0}) {
        QTest::addRow("%d bytes", length) << length;
    }
}

void tst_SimulatedCamera::registerKeepsItsBytes()
{
    QFETCH(int, length);
    const auto camera = make("lut", length);
    QSignalSpy written(camera.get(), &host::Camera::registerWritten);
    QByteArray bytes(length, '\0');
    for (int i = 0; i < length; ++i) {
        bytes[i] = char(i * 7 + 1);
    }
    writeTable(*camera, bytes);
    QCOMPARE(written.size(), 1);
    QCOMPARE(written.first().first().toInt(), length);
    VERIFY_REFUSED(writeTable(*camera, bytes + 'x'));
    QCOMPARE(readTable(*camera), bytes);

    QString error;
    QVERIFY(!camera->pokeRegister(bytes + 'x').isEmpty());
    QCOMPARE(camera->registerBytes(&error), bytes);
    bytes.fill('\x55');
    camera->setLocked(true);
    QCOMPARE(camera->pokeRegister(bytes), QString()); // below the nodes and their locks
    QCOMPARE(camera->registerBytes(&error), bytes);
    QCOMPARE(written.size(), 1);
}

void tst_SimulatedCamera::selectorSwitchesTables()
{
    const auto camera = make("lut");
    const QByteArray factory = readTable(*camera);
    auto* selector = find<IEnumeration>(*camera, "LUTSelector");
    selector->SetIntValue(1);
    writeTable(*camera, filled(9));
    VERIFY_REFUSED(selector->SetIntValue(2));
    VERIFY_REFUSED(selector->SetIntValue(-1));
    QCOMPARE(selector->GetIntValue(), 1);
    QCOMPARE(pixel(firstFrame(*camera), 3000), 3000); // frames run through table 0
    selector->SetIntValue(0);
    QCOMPARE(readTable(*camera), factory);
}

void tst_SimulatedCamera::framesRunThroughTheTable_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<Values>("entries"); // entry, value, entry, value, ...
    QTest::addColumn<Values>("pixels");  // input, output, ...; entries not named are 1
    QTest::newRow("full image") << 16424 << Values{0, 4095, 1, 7, 4095, 2048}
                                << Values{0, 4095, 1, 7, 2, 1, 4095, 2048};
    QTest::newRow("outside of 12 bits") << 16424 << Values{5, -1, 6, 4096} << Values{5, 0, 6, 4095};
    QTest::newRow("2048 entries") << 8232 << Values{3, 1023} << Values{5, 4, 6, 4092, 7, 4092, 8, 4};
    QTest::newRow("odd length: 1014 entries")
        << 4099 << Values{1013, 100} << Values{4091, 4, 4092, 400, 4095, 400};
    QTest::newRow("8192 entries") << 32808 << Values{2, 50, 3, 60} << Values{0, 4, 1, 200, 2, 4};
    QTest::newRow("no room for a table") << 43 << Values{0, 25} << Values{0, 0, 4095, 4095};
}

void tst_SimulatedCamera::framesRunThroughTheTable()
{
    QFETCH(int, length);
    QFETCH(Values, entries);
    QFETCH(Values, pixels);
    const auto camera = make("lut", length);
    QByteArray table = filled(1, length);
    for (int i = 0; i < entries.size(); i += 2) {
        setEntry(table, entries[i], entries[i + 1]);
    }
    writeTable(*camera, table);
    const host::Frame frame = firstFrame(*camera);
    for (int i = 0; i < pixels.size(); i += 2) {
        QCOMPARE(pixel(frame, pixels[i]), pixels[i + 1]);
    }
}

void tst_SimulatedCamera::disabledTableLeavesFramesAlone()
{
    const auto camera = make("lut-enable");
    auto* enable = find<IBoolean>(*camera, "LUTEnable");
    writeTable(*camera, filled(77));
    QVERIFY(!enable->GetValue());
    QCOMPARE(pixel(firstFrame(*camera), 1234), 1234);
    enable->SetValue(true);
    QCOMPARE(pixel(firstFrame(*camera), 1234), 77);
    // A new camera's table is the identity at the register's resolution.
    QCOMPARE(pixel(firstFrame(*make("lut", 8232)), 1235), 1232);
}

void tst_SimulatedCamera::formatsAreCutToTheirDepth_data()
{
    QTest::addColumn<int>("value"); // of an output of 0xabc
    QTest::addColumn<int>("bytes");
    for (const char* kind : {"Mono", "BayerRG"}) {
        QTest::addRow("%s8", kind) << 0xab << 4096;
        QTest::addRow("%s10", kind) << 0x2af << 8192;
        QTest::addRow("%s12", kind) << 0xabc << 8192;
    }
}

void tst_SimulatedCamera::formatsAreCutToTheirDepth()
{
    QFETCH(int, bytes);
    SimulatedCameraOptions options;
    options.pixelFormat = QString::fromLatin1(QTest::currentDataTag());
    options.width = 64;
    options.height = 64;
    const auto camera = make(options);
    writeTable(*camera, filled(0xabc));
    const host::Frame frame = firstFrame(*camera);
    QCOMPARE(host::pixelFormatByCode(frame.pixelFormat)->name, QTest::currentDataTag());
    QCOMPARE(int(frame.pixels.size()), bytes);
    QTEST(pixel(frame, 4095), "value");
}

void tst_SimulatedCamera::streamLocksTheParameters_data()
{
    QTest::addColumn<bool>("refuses");
    QTest::newRow("lut") << true;
    QTest::newRow("lut-enable") << false;
}

void tst_SimulatedCamera::streamLocksTheParameters()
{
    QFETCH(bool, refuses);
    const auto camera = make(QTest::currentDataTag());
    VERIFY_REFUSED(find<IInteger>(*camera, "TLParamsLocked")->SetValue(1));
    auto* locked = find<IInteger>(*camera, "TLParamsLocked");
    auto* load = find<ICommand>(*camera, "UserSetLoad");
    const auto tryUnderLock = [&](const QByteArray& table) {
        const QByteArray before = readTable(*camera);
        QCOMPARE(locked->GetValue(), 1);
        QCOMPARE(find<INode>(*camera, "LUTValueAll")->GetAccessMode(), refuses ? RO : RW);
        if (refuses) {
            VERIFY_REFUSED(writeTable(*camera, table));
            VERIFY_REFUSED(load->Execute());
            QCOMPARE(readTable(*camera), before);
        } else {
            writeTable(*camera, table);
            QCOMPARE(readTable(*camera), table);
            load->Execute();
            QVERIFY(readTable(*camera) != table);
        }
    };
    QCOMPARE(locked->GetValue(), 0);
    QCOMPARE(camera->startStream(), QString());
    tryUnderLock(filled(1));
    camera->stopStream();
    QCOMPARE(locked->GetValue(), 0);
    writeTable(*camera, filled(2));

    camera->setLocked(true);
    tryUnderLock(filled(3));
    QCOMPARE(camera->startStream(), QString());
    camera->stopStream();
    QCOMPARE(locked->GetValue(), 1); // the hand still holds it
    camera->setLocked(false);
    QCOMPARE(locked->GetValue(), 0);
}

void tst_SimulatedCamera::stoppedStreamIsSilent()
{
    const auto camera = make("lut");
    std::atomic<bool> mayRun{false};
    std::atomic<int> strays{0};
    std::vector<std::uint64_t> numbers; // the frame thread's while the stream runs
    QSemaphore arrived;
    camera->setFrameSink([&](host::Frame& frame) {
        strays += !mayRun;
        numbers.push_back(frame.number);
        arrived.release();
    });
    for (int round = 0; round < 20; ++round) {
        numbers.clear();
        mayRun = true;
        QCOMPARE(camera->startStream(), QString());
        QVERIFY(arrived.tryAcquire(3, 10000));
        camera->stopStream();
        mayRun = false;
        arrived.acquire(arrived.available());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            QCOMPARE(numbers[i], std::uint64_t(i));
        }
    }
    QCOMPARE(strays.load(), 0);
}

void tst_SimulatedCamera::frameSeesNoTornTable()
{
    const auto camera = make("lut-enable");
    find<IBoolean>(*camera, "LUTEnable")->SetValue(true);
    const QByteArray tables[] = {filled(0x111), filled(0xeee)};
    writeTable(*camera, tables[0]);
    std::atomic<int> frames{0};
    std::atomic<int> torn{0};
    camera->setFrameSink([&](host::Frame& frame) {
        const int first = pixel(frame, 0);
        for (int x = 0; x < frame.width; ++x) {
            torn += pixel(frame, x) != first;
        }
        ++frames;
    });
    QCOMPARE(camera->startStream(), QString());
    QDeadlineTimer patience(20000);
    for (int i = 0; frames < 100 && !patience.hasExpired(); ++i) {
        writeTable(*camera, tables[i % 2]);
    }
    camera->stopStream();
    QVERIFY(frames >= 100);
    QCOMPARE(torn.load(), 0);
}

void tst_SimulatedCamera::userSetSurvivesARestart()
{
    const QByteArray saved = filled(1000);
    const QByteArray other = filled(2000);
    {
        const auto camera = make("lut-enable", -1, stateFile());
        auto* set = find<IEnumeration>(*camera, "UserSetSelector");
        auto* enable = find<IBoolean>(*camera, "LUTEnable");
        auto* lut = find<IEnumeration>(*camera, "LUTSelector");
        set->SetIntValue(1);
        lut->SetIntValue(1);
        writeTable(*camera, other);
        enable->SetValue(true);
        find<ICommand>(*camera, "UserSetSave")->Execute();
        lut->SetIntValue(0);
        writeTable(*camera, saved);
        find<ICommand>(*camera, "UserSetSave")->Execute();
        find<IEnumeration>(*camera, "UserSetDefault")->SetIntValue(1);

        writeTable(*camera, filled(3000)); // not saved
        enable->SetValue(false);
        lut->SetIntValue(1);
        find<ICommand>(*camera, "UserSetLoad")->Execute();
        QCOMPARE(lut->GetIntValue(), 0);
        QVERIFY(enable->GetValue());
        QCOMPARE(readTable(*camera), saved);
        writeTable(*camera, filled(3000));
    }
    const auto camera = make("lut-enable", -1, stateFile());
    QCOMPARE(camera->warnings(), QStringList());
    QCOMPARE(find<IEnumeration>(*camera, "UserSetDefault")->GetIntValue(), 1);
    QVERIFY(find<IBoolean>(*camera, "LUTEnable")->GetValue());
    QCOMPARE(readTable(*camera), saved);
    QString error;
    QCOMPARE(camera->userSetBytes(&error), saved);
    find<IEnumeration>(*camera, "LUTSelector")->SetIntValue(1);
    QCOMPARE(readTable(*camera), other);
}

void tst_SimulatedCamera::factorySetStaysAsItIs()
{
    const auto camera = make("lut", -1, stateFile());
    const QByteArray factory = readTable(*camera);
    writeTable(*camera, filled(5));
    VERIFY_REFUSED(find<ICommand>(*camera, "UserSetSave")->Execute());
    QVERIFY(!QFile::exists(stateFile()));
    find<ICommand>(*camera, "UserSetLoad")->Execute();
    QCOMPARE(readTable(*camera), factory);
    VERIFY_REFUSED(find<IEnumeration>(*camera, "UserSetSelector")->SetIntValue(2));
}

void tst_SimulatedCamera::unwritableStateChangesNothing()
{
    const auto camera = make("lut", -1, m_folder->filePath("no/such/folder/state.json"));
    QString error;
    const QByteArray before = camera->userSetBytes(&error);
    writeTable(*camera, filled(5));
    find<IEnumeration>(*camera, "UserSetSelector")->SetIntValue(1);
    VERIFY_REFUSED(find<ICommand>(*camera, "UserSetSave")->Execute());
    QCOMPARE(camera->userSetBytes(&error), before);
    auto* start = find<IEnumeration>(*camera, "UserSetDefault");
    VERIFY_REFUSED(start->SetIntValue(1));
    QCOMPARE(start->GetIntValue(), 0);
}

void tst_SimulatedCamera::uselessStateFileIsReportedAndKept_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<int>("length");
    QTest::newRow("cut off") << Spoil([](QByteArray& state) { state.chop(3); }) << -1;
    QTest::newRow("one character of the table") << Spoil([](QByteArray& state) {
        const int at = state.indexOf("AAAA", state.size() / 2);
        QVERIFY(at > 0);
        state[at] = 'B';
    }) << -1;
    QTest::newRow("start set") << Spoil([](QByteArray& state) {
        state.replace("\"startSet\": 1", "\"startSet\": 0");
    }) << -1;
    QTest::newRow("set too short, checksum right") << Spoil([](QByteArray& state) {
        QJsonObject object = QJsonDocument::fromJson(state).object();
        object["userSet0"] = "AAAA";
        object.remove("sha256");
        const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
        object["sha256"] =
            QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
        state = QJsonDocument(object).toJson();
    }) << -1;
    QTest::newRow("another length") << Spoil([](QByteArray&) {}) << 16384;
}

void tst_SimulatedCamera::uselessStateFileIsReportedAndKept()
{
    QFETCH(Spoil, spoil);
    QFETCH(int, length);
    const auto saveUserSet = [](SimulatedCamera& camera, const QByteArray& table) {
        writeTable(camera, table);
        find<IEnumeration>(camera, "UserSetSelector")->SetIntValue(1);
        find<ICommand>(camera, "UserSetSave")->Execute();
        find<IEnumeration>(camera, "UserSetDefault")->SetIntValue(1);
    };
    saveUserSet(*make("lut", -1, stateFile()), filled(5));
    QByteArray state = contents(stateFile());
    spoil(state);
    {
        QFile file(stateFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(state);
    }
    QByteArray table;
    {
        const auto camera = make("lut", length, stateFile());
        QCOMPARE(camera->warnings().size(), 1);
        QVERIFY(camera->warnings().first().contains("state.json"));
        QCOMPARE(find<IEnumeration>(*camera, "UserSetDefault")->GetIntValue(), 0);
        QCOMPARE(readTable(*camera), readTable(*make("lut", length)));
        QCOMPARE(contents(stateFile()), state);
        table = filled(6, readTable(*camera).size());
        saveUserSet(*camera, table);
    }
    const auto camera = make("lut", length, stateFile());
    QCOMPARE(camera->warnings(), QStringList());
    QCOMPARE(readTable(*camera), table);
}

// What a caller of this node sees, in the order of the plug-in's own steps.
static QString experience(SimulatedCamera& camera, const char* name)
{
    try {
        INode* node = camera.remoteNodeMap()->GetNode(name);
        if (!node) {
            return "absent";
        }
        if (!IsImplemented(node)) {
            return "not implemented";
        }
        if (auto* table = dynamic_cast<IRegister*>(node)) {
            if (table->GetLength() == 0) {
                return "no length";
            }
            writeTable(camera, filled(4));
        } else if (auto* choice = dynamic_cast<IEnumeration*>(node)) {
            choice->SetIntValue(choice->GetIntValue());
        } else if (auto* command = dynamic_cast<ICommand*>(node)) {
            command->Execute();
        } else if (auto* flag = dynamic_cast<IBoolean*>(node)) {
            flag->SetValue(true);
        } else if (auto* number = dynamic_cast<IInteger*>(node)) {
            number->GetValue();
        } else {
            return "wrong type";
        }
    } catch (const GenICam_3_0::GenericException&) {
        return "throws";
    }
    return "works";
}

void tst_SimulatedCamera::faultShowsItselfAndGoes_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QString>("seen");
    QTest::newRow("unplugged") << QByteArray("TLParamsLocked") << "throws";
    QTest::newRow("write-fails") << QByteArray("LUTEnable") << "throws";
    QTest::newRow("user-set-fails") << QByteArray("UserSetLoad") << "throws";
    QTest::newRow("zero-length") << QByteArray("LUTValueAll") << "no length";
    for (const char* node : {"LUTValueAll", "LUTSelector", "LUTEnable", "TLParamsLocked", "UserSetLoad"}) {
        QTest::addRow("missing:%s", node) << QByteArray(node) << "absent";
        QTest::addRow("wrong-type:%s", node) << QByteArray(node) << "wrong type";
        QTest::addRow("not-implemented:%s", node) << QByteArray(node) << "not implemented";
    }
}

void tst_SimulatedCamera::faultShowsItselfAndGoes()
{
    QFETCH(QByteArray, node);
    QFETCH(QString, seen);
    const auto camera = make("lut-enable");
    find<IEnumeration>(*camera, "UserSetSelector")->SetIntValue(1);
    const QString fault = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(experience(*camera, node), QString("works"));
    QCOMPARE(camera->setFault(fault, true), QString());
    QCOMPARE(camera->activeFaults(), QStringList(fault));
    QCOMPARE(experience(*camera, node), seen);
    if (fault.contains(':')) {
        const char* other = node == "LUTSelector" ? "LUTEnable" : "LUTSelector";
        QCOMPARE(experience(*camera, other), QString("works"));
    }
    if (fault == "write-fails") { // once
        QCOMPARE(camera->activeFaults(), QStringList());
    }
    QCOMPARE(camera->setFault(fault, false), QString());
    QCOMPARE(experience(*camera, node), QString("works"));
    QVERIFY(!camera->setFault(fault + "?", true).isEmpty());
    QCOMPARE(camera->activeFaults(), QStringList());
}

void tst_SimulatedCamera::unpluggedCameraIsLost()
{
    const auto camera = make("lut");
    QSignalSpy lost(camera.get(), &host::Camera::lost);
    QCOMPARE(camera->startStream(), QString());
    QCOMPARE(camera->setFault("unplugged", true), QString());
    QCOMPARE(lost.size(), 1);
    QVERIFY(!camera->isStreaming());
    QVERIFY(!camera->startStream().isEmpty());
    QCOMPARE(experience(*camera, "LUTValueAll"), QString("throws"));
    QVERIFY(camera->reconnect().contains("unplugged"));
    camera->setFault("unplugged", false);
    QCOMPARE(camera->reconnect(), QString());
    QCOMPARE(camera->startStream(), QString());

    camera->setFault("slow", true);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(experience(*camera, "TLParamsLocked"), QString("works")); // two accesses and a lookup
    QVERIFY(timer.elapsed() >= 40);
}

void tst_SimulatedCamera::badOptionIsRefused_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("model") << Change([](auto& o) { o.model = "lut2"; }) << "\"lut2\"";
    QTest::newRow("length without a register") << Change([](auto& o) {
        o.model = "no-lut";
        o.lutBytes = 16424;
    }) << "no-lut";
    QTest::newRow("length") << Change([](auto& o) { o.lutBytes = (1 << 20) + 1; }) << "1048576";
    QTest::newRow("rate that is no number") << Change([](auto& o) { o.frameRate = qQNaN(); }) << "0.1";
    QTest::newRow("size") << Change([](auto& o) { o.width = -5; }) << "-5 x 480";
}

void tst_SimulatedCamera::badOptionIsRefused()
{
    QFETCH(Change, change);
    QFETCH(QString, mentions);
    SimulatedCameraOptions options;
    change(options);
    QString error;
    QVERIFY(!host::makeSimulatedCamera(options, &error));
    QVERIFY2(error.contains(mentions), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_SimulatedCamera)
#include "tst_SimulatedCamera.moc"

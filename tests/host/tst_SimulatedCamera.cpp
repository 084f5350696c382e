// The simulated camera's nodes, frames and user sets. What a viewer's user meets of them, the round trips,
// the lock by hand, faults and unplugging, is in the transcripts.
#include <atomic>
#include <future>

#include <QtTest>

#include "host/camera/SimulatedCamera.h"
#include "support/TestFolder.h"

using namespace GenApi_3_0;
using host::SimulatedCameraOptions;

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
        std::promise<host::Frame> first;
        camera->setFrameSink([&](host::Frame& frame) {
            if (frame.number == 0)
                first.set_value(frame);
        });
        camera->startStream();
        std::future<host::Frame> arrived = first.get_future();
        if (arrived.wait_for(std::chrono::seconds(10)) != std::future_status::ready)
            qFatal("no first frame");
        camera->stopStream();
        camera->setFrameSink({});
        return arrived.get();
    }

    QString error;
    std::unique_ptr<host::SimulatedCamera> camera;
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
    return qFromLittleEndian<quint16>(&frame.pixels[2 * x]);
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

// The file made anew with this as its user set, and a checksum that is right.
void replaceUserSet(QByteArray& state, const char* userSet)
{
    QJsonObject object = QJsonDocument::fromJson(state).object();
    object["userSet0"] = userSet;
    object.remove("sha256");
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
    object["sha256"] = QString::fromLatin1(sum.toHex());
    state = QJsonDocument(object).toJson();
}

} // namespace

class tst_SimulatedCamera : public QObject
{
    Q_OBJECT

private slots:
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
            QVERIFY(refused([&] { rig.write(table + 'x'); }));
            QCOMPARE(rig.table(), table);
            const host::Frame frame = rig.firstFrame();
            for (const auto& [input, output] : outputs)
                QVERIFY2(pixel(frame, input) == output, qPrintable(QString("%1: %2").arg(length).arg(input)));
        }
        // A new camera's table is the identity at the register's resolution.
        QCOMPARE(pixel(Rig(wideRamp("lut", 8232)).firstFrame(), 1235), 1232);
    }

    void streamLocksTheRegister()
    {
        for (const char* model : {"lut", "lut-enable"}) {
            Rig rig(model);
            const bool refuses = !rig.find<INode>("LUTEnable");
            const QByteArray before = rig.table(), table = filled(1);
            QCOMPARE(rig.camera->startStream(), QString());
            QVERIFY(refused([&] { rig.find<IInteger>("TLParamsLocked")->SetValue(0); }));
            QCOMPARE(rig.find<INode>("LUTValueAll")->GetAccessMode(), refuses ? RO : RW);
            QCOMPARE(refused([&] { rig.write(table); }), refuses);
            QCOMPARE(rig.table(), refuses ? before : table);
            QCOMPARE(rig.camera->pokeRegister(table), QString()); // below the nodes and their locks
            QCOMPARE(rig.table(), table);
            QCOMPARE(refused([&] { rig.execute("UserSetLoad"); }), refuses);
            QCOMPARE(rig.table(), refuses ? table : before);
        }
    }

    void framesAreWholeAndEndWithTheStream()
    {
        Rig rig("lut-enable");
        const QByteArray tables[] = {filled(0x111), filled(0xeee)};
        rig.write(tables[0]);
        QCOMPARE(pixel(rig.firstFrame(), 1234), 1234); // not enabled yet
        rig.enable(true);
        std::atomic<bool> mayRun{false};
        std::atomic<int> strays{0}, torn{0};
        std::atomic<quint64> frames{0};
        rig.camera->setFrameSink([&](host::Frame& frame) {
            strays += !mayRun || frame.number != frames++;
            const int first = pixel(frame, 0);
            torn += first != 0x111 && first != 0xeee;
            for (int x = 0; x < frame.width; ++x)
                torn += pixel(frame, x) != first;
        });
        for (int round = 0; round < 20; ++round) {
            frames = 0;
            mayRun = true;
            QCOMPARE(rig.camera->startStream(), QString());
            const QDeadlineTimer patience(10000);
            for (int i = 0; frames < 25 && !patience.hasExpired(); ++i)
                rig.write(tables[i % 2]);
            rig.camera->stopStream();
            mayRun = false;
            QVERIFY(frames >= 25);
        }
        QCOMPARE(strays.load(), 0);
        QCOMPARE(torn.load(), 0);
    }

    void userSetSurvivesARestart()
    {
        const TestFolder folder;
        const SimulatedCameraOptions options = wideRamp("lut-enable", -1, folder.path("state.json"));
        const QByteArray saved = filled(1000), other = filled(2000);
        {
            Rig rig(options);
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
        Rig rig(options);
        QCOMPARE(rig.camera->warnings(), QStringList());
        QCOMPARE(rig.choice("UserSetDefault"), 1);
        QVERIFY(rig.isEnabled());
        QCOMPARE(rig.table(), saved);
        QCOMPARE(rig.camera->userSetBytes(&rig.error), saved);
        rig.choose("LUTSelector", 1);
        QCOMPARE(rig.table(), other);
        QCOMPARE(pixel(rig.firstFrame(), 3000), 1000); // frames run through table 0
    }

    void refusedSaveChangesNothing()
    {
        const TestFolder folder;
        Rig rig(wideRamp("lut", -1, folder.path("no/such/folder/state.json")));
        const QByteArray factory = rig.table(), saved = rig.camera->userSetBytes(&rig.error);
        rig.write(filled(5));
        QVERIFY(refused([&] { rig.execute("UserSetSave"); })); // the factory's
        rig.execute("UserSetLoad");
        QCOMPARE(rig.table(), factory);
        QVERIFY(refused([&] { rig.store(filled(5)); }));
        QCOMPARE(rig.camera->userSetBytes(&rig.error), saved);
        QVERIFY(refused([&] { rig.choose("UserSetDefault", 1); }));
        QCOMPARE(rig.choice("UserSetDefault"), 0);
        for (const int outside : {2, -1})
            QVERIFY(refused([&] { rig.choose("UserSetSelector", outside); }));
        QCOMPARE(rig.choice("UserSetSelector"), 1);
    }

    void uselessStateFileIsReportedAndKept()
    {
        using Spoil = std::function<void(QByteArray & state, SimulatedCameraOptions & options)>;
        const std::pair<const char*, Spoil> rows[] = {
            {"empty", [](auto& state, auto&) { state.clear(); }},
            {"cut off", [](auto& state, auto&) { state.chop(3); }},
            {"one character of the table",
             [](auto& state, auto&) { state[state.indexOf("AAAA", state.size() / 2)] = 'B'; }},
            {"start set", [](auto& state, auto&) { state.replace("\"startSet\": 1", "\"startSet\": 0"); }},
            {"set too short", [](auto& state, auto&) { replaceUserSet(state, "AAAA"); }},
            {"another model", [](auto&, auto& options) { options.model = "lut-enable"; }},
            {"another length", [](auto&, auto& options) { options.lutBytes = 16384; }}};
        for (const auto& [name, spoil] : rows) {
            const TestFolder folder;
            SimulatedCameraOptions options = wideRamp("lut", -1, folder.path("state.json"));
            Rig(options).store(filled(5));
            QByteArray state = folder.get("state.json");
            spoil(state, options);
            folder.put("state.json", state);

            SimulatedCameraOptions fresh = options;
            fresh.stateFile.clear();
            const QByteArray factory = Rig(fresh).table(), table = filled(6, factory.size());
            {
                Rig rig(options);
                QVERIFY2(rig.camera->warnings().size() == 1, name);
                QVERIFY(rig.camera->warnings().first().contains("state.json"));
                QCOMPARE(rig.choice("UserSetDefault"), 0);
                QCOMPARE(rig.table(), factory);
                QCOMPARE(folder.get("state.json"), state);
                rig.store(table);
            }
            Rig rig(options);
            QCOMPARE(rig.camera->warnings(), QStringList());
            QCOMPARE(rig.table(), table);
        }
    }

    void slowCameraTakesItsTime()
    {
        Rig rig("lut");
        rig.camera->setFault("slow", true);
        QCOMPARE(rig.camera->activeFaults(), QStringList("slow"));
        QElapsedTimer timer;
        timer.start();
        rig.choice("UserSetSelector");
        QVERIFY(timer.elapsed() >= 20);
    }

    // What the viewer's command line does not let through.
    void badOptionIsRefused()
    {
        QString error;
        QVERIFY(!host::makeSimulatedCamera(wideRamp("no-lut", 16424), &error) && error.contains("no-lut"));
        SimulatedCameraOptions options = wideRamp("lut");
        options.frameRate = qQNaN();
        QVERIFY(!host::makeSimulatedCamera(options, &error) && error.contains("0.1"));
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedCamera)
#include "tst_SimulatedCamera.moc"

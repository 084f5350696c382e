// Every access to the camera, on every road through the plug-in, failing in every way that it can. No access
// is named here: a good run of each road finds them, so a new one is covered by itself.
#include "contract/ModuleHost.h"

#include <optional>

#include "host/camera/SimulatedCamera.h"

using host::AccessFault;
using host::AccessFaults;
using host::NodeOperation;

namespace {

constexpr int kTableBytes = 16384;

struct CameraKind
{
    const char* name;
    const char* model;
    bool locked; // by a running acquisition
};
// lut-enable is never asked whether it is locked, so locked covers free.
const CameraKind kCameras[] = {{"lut", "lut", false},
                               {"lut locked", "lut", true},
                               {"lut-enable locked", "lut-enable", true},
                               {"no-lut", "no-lut", false}};
const int kNoLut = 3;

struct Access
{
    std::string node;
    NodeOperation operation;
    bool exists;
};
const char* const kOperations[] = {"Lookup", "AccessMode", "Length", "Read", "Write", "Execute"};

struct Way
{
    const char* name;
    std::optional<AccessFault::Kind> kind; // none: from this access on the camera is gone
    const char* box;                       // what the user reads; null: see boxOf
};
const Way kWays[] = {
    {"throws GenericException", AccessFault::ThrowsGenericException, "The camera does not answer."},
    {"throws std::exception", AccessFault::ThrowsStdException, "The camera's driver has failed."},
    {"throws something else", AccessFault::ThrowsForeign, "Unkown Error! "},
    {"absent", AccessFault::NodeAbsent, "Get xml value failed! "},
    {"wrong type", AccessFault::WrongType, nullptr},
    {"not implemented", AccessFault::NotImplemented, nullptr},
    {"no length", AccessFault::ZeroLength, "Invalid parameter! "},
    {"unplugged", std::nullopt, "The camera is unplugged."}};

bool canFail(const Way& way, const Access& access)
{
    return way.kind ? AccessFaults::canStrike(*way.kind, access.operation, access.exists)
                    : access.operation != NodeOperation::Lookup;
}

QString boxOf(const Way& way, const Access& access)
{
    const QString node = QString::fromStdString(access.node);
    QString text = QString::fromLatin1(way.box);
    if (way.kind == AccessFault::WrongType)
        text = node.startsWith("UserSet") && node != "UserSetLoad" && node != "UserSetSave"
                   ? "Invalid parameter! "
                   : "Get xml value failed! ";
    if (way.kind == AccessFault::NotImplemented)
        text = QString("The node %1 is not implemented.").arg(node);
    return "Error|" + text;
}

// The plug-in on a simulated camera, and all that can be seen of both.
class Rig
{
public:
    // What a person sees of the editor.
    struct Seen
    {
        QString controls;
        QImage picture;
    };

    explicit Rig(const CameraKind& kind) : m_kind(kind)
    {
        host::SimulatedCameraOptions options;
        options.model = kind.model;
        options.width = options.height = 8; // no frame is looked at
        QString error;
        camera = host::makeSimulatedCamera(options, &error);
        resetCamera();
    }

    // The lock on or off, no fault waiting.
    void resetCamera()
    {
        camera->setLocked(m_kind.locked);
        faults().disarm();
    }

    void start()
    {
        editor = std::make_unique<ModuleHost>(camera->remoteNodeMap(), 0, camera->deviceNodeMap());
        editor->onCode = [this](int code) { // a host that stops its acquisition, and goes on with it
            if (code == MSG_DEVICE_ACCESS_BEGIN || code == MSG_DEVICE_ACCESS_END)
                camera->setLocked(m_kind.locked && code == MSG_DEVICE_ACCESS_END);
        };
    }

    // The accesses that an action makes.
    std::vector<Access> accessesOf(const std::function<void()>& action)
    {
        std::vector<Access> accesses;
        faults().setObserver([&](const std::string& node, NodeOperation operation) {
            accesses.push_back({node, operation, true});
        });
        action();
        faults().setObserver({});
        for (Access& access : accesses) {
            const GenICam_3_0::gcstring name = access.node.c_str();
            access.exists = camera->remoteNodeMap()->GetNode(name) || camera->deviceNodeMap()->GetNode(name);
        }
        return accesses;
    }

    // Runs an action of which the at-th access fails.
    void runFailing(int at, const Way& way, const std::function<void()>& action)
    {
        if (way.kind)
            faults().arm({at, *way.kind});
        else
            faults().setObserver([=, count = 0](const std::string&, NodeOperation) mutable {
                if (++count == at)
                    faults().setSwitch(AccessFaults::kUnplugged, true);
            });
        action();
        faults().setObserver({});
        faults().setSwitch(AccessFaults::kUnplugged, false);
    }

    QByteArray table() const
    {
        QString error;
        return camera->registerBytes(&error);
    }
    QByteArray userSet() const
    {
        QString error;
        return camera->userSetBytes(&error);
    }
    // A fresh camera has another user set selected than the one that the plug-in uses.
    void selectFactorySet()
    {
        auto* node = camera->remoteNodeMap()->GetNode("UserSetSelector");
        dynamic_cast<GenApi_3_0::IEnumeration&>(*node).SetIntValue(0);
    }

    Seen look() const
    {
        QStringList controls;
        for (const char* radio : kRadios)
            controls << QString::number(editor->find<QRadioButton>(radio).isChecked());
        for (const Control& control : kControls) {
            controls << editor->text(control.edit) << QString::number(editor->enabled(control.edit));
            if (control.slider)
                controls << QString::number(editor->slider(control.slider));
        }
        auto& combo = editor->find<QComboBox>("objStandardComboBox");
        controls << combo.currentText() << QString::number(combo.isEnabled());
        return {controls.join(' '), editor->find<QWidget>("objPlotterWidget").grab().toImage()};
    }

    // Where edits, sliders and camera contradict each other after an action that went well;
    // empty when nowhere.
    QString contradiction()
    {
        const QByteArray image = table();
        const char* trailer = image.constData() + kTableBytes;
        for (const Control& control : kControls) {
            const QString text = editor->text(control.edit);
            if (control.slider && QString::number(editor->slider(control.slider)) != text)
                return QString("%1 beside a slider: %2").arg(text, control.slider);
            trailer += 4;
            if (QString::number(qFromLittleEndian<qint32>(trailer)) != text)
                return QString("%1 in %2 is not in the camera").arg(text, control.edit);
        }
        trailer += 4;
        if (editor->find<QComboBox>("objStandardComboBox").currentText() !=
            QString::fromLatin1(trailer, 16).section(QChar(0), 0, 0))
            return "another standard curve in the camera";
        return QString();
    }

    QByteArray savedTable()
    {
        QFile::remove("saved.lut");
        editor->fileAnswers << QDir::current().filePath("saved.lut");
        editor->click("objSaveLutButton");
        return WorkingDirectory::read("saved.lut");
    }

    // Whether the plug-in's messages are accesses that were opened and closed one after the other.
    bool bracketsAreClosed() const
    {
        const QVector<int>& messages = editor->messages;
        for (int i = 0; i < messages.size(); ++i) {
            if (messages[i] != (i % 2 ? MSG_DEVICE_ACCESS_END : MSG_DEVICE_ACCESS_BEGIN))
                return false;
        }
        return messages.size() % 2 == 0 && (messages.isEmpty() || m_kind.locked);
    }

    AccessFaults& faults() const { return camera->accessFaults(); }

    WorkingDirectory directory;
    std::unique_ptr<host::SimulatedCamera> camera;
    std::unique_ptr<ModuleHost> editor;

private:
    const CameraKind& m_kind;
};

void step(ModuleHost& editor)
{
    editor.wheel("objContrastSlider", {0, 120});
}

// An editor with a standard curve and a setting to lose.
void prepare(ModuleHost& editor)
{
    editor.click(kRadios[Standard]);
    editor.choose("lut4_11");
    editor.choose("negative");
    editor.wheel("objBrightnessSlider", {0, 120});
}

struct Road
{
    enum End {
        Restored, // the control is as before
        Default,  // the dialog is on the Default source, as after its start
        Kept      // nothing in the editor has changed
    };
    QByteArray name;
    End failed;
    bool loads; // the camera's user set
    std::function<void(Rig&)> before;
    std::function<void(ModuleHost&)> act;
};

std::vector<Road> makeRoads()
{
    const auto nothing = [](Rig&) {};
    std::vector<Road> roads;
    for (const Control& control : kControls) {
        roads.push_back({QByteArray(control.edit) + " typed", Road::Restored, false, nothing,
                         [control](ModuleHost& e) { e.type(control.edit, QString::number(control.value)); }});
        if (control.slider)
            roads.push_back({QByteArray(control.slider) + " stepped", Road::Restored, false, nothing,
                             [control](ModuleHost& e) {
                                 e.wheel(control.slider, {0, -120});
                             }});
    }
    const char* const names[] = {"Standard", "Device", "Lut File", "CSV File", "Default"};
    for (int source = Standard; source <= Default; ++source) {
        const auto take = [source](ModuleHost& e) {
            if (source == LutFile || source == Csv)
                e.fileAnswers << QDir::current().filePath(source == Csv ? "kept.csv" : "kept.lut");
            e.click(kRadios[source]);
        };
        roads.push_back({QByteArray(names[source]) + " taken", Road::Default, source == Device,
                         [source](Rig& rig) {
                             if (source == Standard)
                                 rig.editor->click(kRadios[Default]);
                         },
                         take});
        roads.push_back({QByteArray(names[source]) + " taken again", Road::Default, source == Device,
                         [take](Rig& rig) { take(*rig.editor); }, take});
    }
    roads.push_back(
        {"standard curve chosen", Road::Default, false, nothing, [](ModuleHost& e) { e.choose("lut4_11"); }});
    roads.push_back({"stored", Road::Kept, false,
                     [](Rig& rig) {
                         // so that it shows whether anything was stored
                         rig.editor->click(kRadios[Default]);
                         rig.editor->click("objWriteLutButton");
                         prepare(*rig.editor);
                     },
                     [](ModuleHost& e) { e.click("objWriteLutButton"); }});
    return roads;
}

} // namespace

class tst_FaultMatrix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }
    void start_data();
    void start();
    void road_data();
    void road();
    void withoutLut();
    void cleanupTestCase() { m_rig.reset(); }

private:
    static void addColumns()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("road");
        QTest::addColumn<int>("at");
        QTest::addColumn<int>("way");
    }
    // A row for every way in which every access can fail.
    void addRows(int kind, int road, const QByteArray& name, const std::vector<Access>& accesses);
    void useRig(int kind);
    void prepareFor(const Road& road);

    const std::vector<Road> m_roads = makeRoads();
    std::map<std::pair<int, int>, std::vector<Access>> m_accesses; // by camera and road; the start is road -1

    // One running plug-in for all rows of a camera, and what there is to see in good order: right after the
    // start and a step on from there or from prepare().
    std::unique_ptr<Rig> m_rig;
    int m_rigKind = -1;
    Rig::Seen m_started;
    QByteArray m_startedAndStepped, m_preparedAndStepped;
};

void tst_FaultMatrix::addRows(int kind, int road, const QByteArray& name, const std::vector<Access>& accesses)
{
    m_accesses[{kind, road}] = accesses;
    for (std::size_t i = 0; i < accesses.size(); ++i) {
        for (std::size_t way = 0; way < std::size(kWays); ++way) {
            if (canFail(kWays[way], accesses[i]))
                QTest::addRow("%s, %s, %d. %s %s: %s", kCameras[kind].name, name.constData(), int(i + 1),
                              accesses[i].node.c_str(), kOperations[int(accesses[i].operation)],
                              kWays[way].name)
                    << kind << road << int(i + 1) << int(way);
        }
    }
}

void tst_FaultMatrix::useRig(int kind)
{
    if (m_rigKind == kind)
        return;
    m_rig.reset(); // before the next: each has a working directory
    m_rig = std::make_unique<Rig>(kCameras[kind]);
    m_rigKind = kind;
    m_rig->start();
    ModuleHost& editor = *m_rig->editor;
    editor.show();
    m_started = m_rig->look();
    step(editor);
    m_startedAndStepped = m_rig->table();
    for (const char* file : {"kept.lut", "kept.csv"}) {
        editor.fileAnswers << QDir::current().filePath(file);
        editor.click("objSaveLutButton");
    }
    prepare(editor);
    step(editor);
    m_preparedAndStepped = m_rig->table();
}

void tst_FaultMatrix::prepareFor(const Road& road)
{
    m_rig->resetCamera(); // whatever a row before has left behind
    prepare(*m_rig->editor);
    road.before(*m_rig);
    m_rig->selectFactorySet();
    m_rig->editor->takeMessages();
}

void tst_FaultMatrix::start_data()
{
    addColumns();
    for (int kind = 0; kind < int(std::size(kCameras)); ++kind) {
        Rig rig(kCameras[kind]);
        addRows(kind, -1, "started", rig.accessesOf([&] { rig.start(); }));
    }
    useRig(0);
    m_rig.reset();
    m_rigKind = -1;
}

void tst_FaultMatrix::start()
{
    QFETCH(int, kind);
    QFETCH(int, at);
    QFETCH(int, way);
    const Access& access = m_accesses.at({kind, -1})[std::size_t(at - 1)];
    const auto failure = kWays[way].kind;
    const bool answers = failure == AccessFault::NodeAbsent || failure == AccessFault::NotImplemented ||
                         failure == AccessFault::WrongType; // to the question whether a node is there
    const bool onlyTheName = access.node == "DeviceDisplayName";
    const bool fails = onlyTheName ? !failure && kind != kNoLut : !answers || access.node == "LUTSelector";
    const bool hasLut =
        kind != kNoLut && !(access.node == "LUTValueAll" && answers && failure != AccessFault::WrongType);

    Rig rig(kCameras[kind]);
    const QByteArray before = rig.table();
    rig.runFailing(at, kWays[way], [&] { rig.start(); });
    ModuleHost& editor = *rig.editor;
    QCOMPARE(editor.initResult, fails ? -4 : 0);
    QVERIFY(!rig.faults().isArmed());
    QCOMPARE(editor.dialog->windowTitle(), onlyTheName ? "Orlune" : "Orlune  Simulated camera");
    if (fails) {
        // The dialog waits for its end and leaves the camera alone; the next start finds everything in order.
        editor.send(MSG_SHOW_DIALOG);
        QVERIFY(rig.accessesOf([&] { step(editor); }).empty());
        editor.plugin->UninitPlugin();
        editor.start();
        QCOMPARE(editor.initResult, 0);
    }
    QCOMPARE(editor.boxes, QStringList());
    QCOMPARE(editor.messages, QVector<int>());
    QVERIFY(rig.table() == before);

    editor.show();
    step(editor);
    if (hasLut) {
        QVERIFY(rig.table() == m_startedAndStepped);
        QCOMPARE(rig.contradiction(), QString());
        QVERIFY(rig.savedTable() == rig.table());
    } else { // frames are mapped instead
        const auto* entries = reinterpret_cast<const qint32*>(m_startedAndStepped.constData());
        QVERIFY(mappedRamp(*editor.plugin) == Table(entries, entries + 4096));
        QVERIFY(rig.table() == before);
    }
    QCOMPARE(editor.boxes, QStringList());
    QVERIFY(rig.bracketsAreClosed());
}

void tst_FaultMatrix::road_data()
{
    addColumns();
    for (int kind = 0; kind < kNoLut; ++kind) {
        useRig(kind);
        for (int i = 0; i < int(m_roads.size()); ++i) {
            prepareFor(m_roads[i]);
            const auto accesses = m_rig->accessesOf([&] { m_roads[i].act(*m_rig->editor); });
            QVERIFY2(!accesses.empty(), m_roads[i].name);
            addRows(kind, i, m_roads[i].name, accesses);
            QCOMPARE(m_rig->editor->takeBoxes(), QStringList());
            QVERIFY2(m_rig->bracketsAreClosed(), m_roads[i].name);
        }
    }
}

void tst_FaultMatrix::road()
{
    QFETCH(int, kind);
    QFETCH(int, road);
    QFETCH(int, at);
    QFETCH(int, way);
    const std::vector<Access>& accesses = m_accesses.at({kind, road});
    const Access& failing = accesses[std::size_t(at - 1)];
    const Road::End end = m_roads[road].failed;
    useRig(kind);
    Rig& rig = *m_rig;
    ModuleHost& editor = *rig.editor;
    prepareFor(m_roads[road]);
    const Rig::Seen before = rig.look();
    const QByteArray tableBefore = rig.table();
    const QByteArray userSetBefore = rig.userSet();

    rig.runFailing(at, kWays[way], [&] { m_roads[road].act(editor); });
    QVERIFY(!rig.faults().isArmed());

    // One failure, one box; only that the camera's start set could not be found is not told.
    const bool silent = failing.node == "UserSetDefault" && (kWays[way].kind == AccessFault::NodeAbsent ||
                                                             kWays[way].kind == AccessFault::WrongType);
    QCOMPARE(editor.takeBoxes(), silent ? QStringList() : QStringList{boxOf(kWays[way], failing)});
    QVERIFY(rig.bracketsAreClosed());

    // The editor is as it was before, or as it was started.
    const Rig::Seen seen = rig.look();
    const Rig::Seen& wanted = end == Road::Default ? m_started : before;
    QCOMPARE(seen.controls, wanted.controls);
    QVERIFY(seen.picture == wanted.picture);

    // The camera holds a whole table, the old one or one that it was told to load, and so does its user set.
    QVERIFY(rig.table() == tableBefore || (m_roads[road].loads && rig.table() == userSetBefore));
    const auto saved = std::find_if(accesses.begin(), accesses.begin() + at - 1, [](const Access& access) {
        return access.node == "UserSetSave" && access.operation == NodeOperation::Execute;
    });
    QVERIFY(rig.userSet() == (saved == accesses.begin() + at - 1 ? userSetBefore : tableBefore));

    // The next good action brings everything together.
    step(editor);
    QCOMPARE(editor.takeBoxes(), QStringList());
    QVERIFY(rig.bracketsAreClosed());
    QVERIFY(rig.table() == (end == Road::Default ? m_startedAndStepped : m_preparedAndStepped));
    QCOMPARE(rig.contradiction(), QString());
    if (way == 0) // a file dialog is slow, and another way to fail leaves no other table
        QVERIFY(rig.savedTable() == rig.table());
}

// A camera without a table is left alone once the plug-in has started.
void tst_FaultMatrix::withoutLut()
{
    useRig(kNoLut);
    for (const Road& road : m_roads) {
        prepare(*m_rig->editor);
        const auto accesses = m_rig->accessesOf([&] { road.act(*m_rig->editor); });
        QVERIFY2(accesses.empty(), road.name);
    }
    QCOMPARE(m_rig->editor->boxes, QStringList());
}

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    tst_FaultMatrix test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_FaultMatrix.moc"

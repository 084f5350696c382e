// Every access to the camera, on every road through the plug-in, failing in every way that it can. No access
// is named here: a good run of each road finds them, so a new one is covered by itself.
#include "contract/Roads.h"

#include <optional>

using host::AccessFault;
using host::AccessFaults;
using host::NodeOperation;

namespace {

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

// One access on one road that fails in one way.
struct Case
{
    int kind;
    int road; // -1: the start
    int at;
    Way way;
    Access access;
    bool isStored; // the user set, by then
};

// The accesses that an action makes.
std::vector<Access> accessesOf(Rig& rig, const std::function<void()>& action)
{
    std::vector<Access> accesses;
    rig.faults().setObserver([&](const std::string& node, NodeOperation operation) {
        accesses.push_back({node, operation, true});
    });
    action();
    rig.faults().setObserver({});
    for (Access& access : accesses) {
        const GenICam_3_0::gcstring name = access.node.c_str();
        access.exists =
            rig.camera->remoteNodeMap()->GetNode(name) || rig.camera->deviceNodeMap()->GetNode(name);
    }
    return accesses;
}

// Runs an action of which the at-th access fails.
void runFailing(Rig& rig, int at, const Way& way, const std::function<void()>& action)
{
    if (way.kind)
        rig.faults().arm({at, *way.kind});
    else
        rig.faults().setObserver([=, &rig, count = 0](const std::string&, NodeOperation) mutable {
            if (++count == at)
                rig.faults().setSwitch(AccessFaults::kUnplugged, true);
        });
    action();
    rig.faults().setObserver({});
    rig.faults().setSwitch(AccessFaults::kUnplugged, false);
}

} // namespace

class tst_FaultMatrix : public QObject
{
    Q_OBJECT

private slots:
    void start_data()
    {
        QTest::addColumn<int>("row");
        for (int kind = 0; kind < int(std::size(kCameras)); ++kind) {
            Rig rig(kCameras[kind]);
            addRows(kind, -1, "started", accessesOf(rig, [&] { rig.start(); }));
        }
        m_startedAndStepped = useRig(0).startedAndStepped;
        m_rig.reset(); // two hosts would both answer the file dialogs
        m_rigKind = -1;
    }

    void start()
    {
        const auto& [kind, road, at, way, access, isStored] = currentRow(m_cases);
        const auto failure = way.kind;
        const bool answers = failure == AccessFault::NodeAbsent || failure == AccessFault::NotImplemented ||
                             failure == AccessFault::WrongType; // to the question whether a node is there
        const bool onlyTheName = access.node == "DeviceDisplayName";
        const bool fails =
            onlyTheName ? !failure && kind != kNoLut : !answers || access.node == "LUTSelector";
        const bool hasLut =
            kind != kNoLut && !(access.node == "LUTValueAll" && answers && failure != AccessFault::WrongType);

        Rig rig(kCameras[kind]);
        const QByteArray before = rig.table();
        runFailing(rig, at, way, [&] { rig.start(); });
        ModuleHost& editor = *rig.editor;
        QCOMPARE(editor.initResult, fails ? -4 : 0);
        QVERIFY(!rig.faults().isArmed());
        QCOMPARE(editor.dialog->windowTitle(), onlyTheName ? "Orlune" : "Orlune  Simulated camera");
        if (fails) {
            // The dialog waits for its end and leaves the camera alone; the next start finds everything in
            // order.
            editor.send(MSG_SHOW_DIALOG);
            QVERIFY(accessesOf(rig, [&] { step(editor); }).empty());
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

    void road_data()
    {
        QTest::addColumn<int>("row");
        for (int kind = 0; kind < kNoLut; ++kind) {
            Rig& rig = useRig(kind);
            for (int i = 0; i < int(m_roads.size()); ++i) {
                m_roads[i].prepareRig(rig);
                const auto accesses = accessesOf(rig, [&] { m_roads[i].act(*rig.editor); });
                QVERIFY2(!accesses.empty(), m_roads[i].name);
                addRows(kind, i, m_roads[i].name, accesses);
                QCOMPARE(rig.editor->takeBoxes(), QStringList());
                QVERIFY2(rig.bracketsAreClosed(), m_roads[i].name);
            }
        }
    }

    void road()
    {
        const Case& row = currentRow(m_cases);
        const Road& road = m_roads[std::size_t(row.road)];
        const bool toDefault = road.failed == Road::Default;
        Rig& rig = useRig(row.kind);
        ModuleHost& editor = *rig.editor;
        road.prepareRig(rig);
        const Rig::Seen before = rig.look();
        const QByteArray tableBefore = rig.table();
        const QByteArray userSetBefore = rig.userSet();

        runFailing(rig, row.at, row.way, [&] { road.act(editor); });
        QVERIFY(!rig.faults().isArmed());

        // One failure, one box; only that the camera's start set could not be found is not told.
        const auto failure = row.way.kind;
        const bool isSilent = row.access.node == "UserSetDefault" &&
                              (failure == AccessFault::NodeAbsent || failure == AccessFault::WrongType);
        QCOMPARE(editor.takeBoxes(), isSilent ? QStringList() : QStringList{boxOf(row.way, row.access)});
        QVERIFY(rig.bracketsAreClosed());

        // The editor is as it was before, or as it was started.
        QCOMPARE(rig.difference(toDefault ? rig.started : before), QString());

        // The camera holds a whole table, the old one or one that it was told to load, and so does its user
        // set.
        QVERIFY(rig.table() == tableBefore || (road.loads() && rig.table() == userSetBefore));
        QVERIFY(rig.userSet() == (row.isStored ? tableBefore : userSetBefore));

        // The next good action brings everything together.
        step(editor);
        QCOMPARE(editor.takeBoxes(), QStringList());
        QVERIFY(rig.bracketsAreClosed());
        QVERIFY(rig.table() == (toDefault ? rig.startedAndStepped : rig.preparedAndStepped));
        QCOMPARE(rig.contradiction(), QString());
        if (row.way.name == kWays[0].name) // a file dialog is slow, and another way leaves no other table
            QVERIFY(rig.savedTable() == rig.table());
    }

    void cleanupTestCase() { m_rig.reset(); }

private:
    // A row for every way in which every access can fail.
    void addRows(int kind, int road, const QByteArray& name, const std::vector<Access>& accesses)
    {
        bool isStored = false;
        int at = 0;
        for (const Access& access : accesses) {
            ++at;
            for (const Way& way : kWays) {
                if (!canFail(way, access))
                    continue;
                QTest::addRow("%s, %s, %d. %s %s: %s", kCameras[kind].name, name.constData(), at,
                              access.node.c_str(), kOperations[int(access.operation)], way.name)
                    << int(m_cases.size());
                m_cases.push_back({kind, road, at, way, access, isStored});
            }
            isStored |= access.node == "UserSetSave" && access.operation == NodeOperation::Execute;
        }
    }

    // One running plug-in serves all rows of a camera.
    Rig& useRig(int kind)
    {
        if (m_rigKind != kind) {
            m_rig.reset(); // before the next: each has a working directory
            m_rig = std::make_unique<Rig>(kCameras[kind]);
            m_rig->startAndLearn();
            m_rigKind = kind;
        }
        return *m_rig;
    }

    const std::vector<Road> m_roads = makeRoads();
    std::vector<Case> m_cases;
    std::unique_ptr<Rig> m_rig;
    int m_rigKind = -1;
    QByteArray m_startedAndStepped;
};

QTEST_MAIN(tst_FaultMatrix)
#include "tst_FaultMatrix.moc"

// Every access to the camera, on every road through the plug-in, failing in every way that it can. No access
// is named here: a good run of each road finds them, so a new one is covered by itself.
#include "contract/Roads.h"

#include <map>
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
        addColumns();
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
        QFETCH(int, kind);
        QFETCH(int, at);
        QFETCH(int, way);
        const Access& access = m_accesses.at({kind, -1})[std::size_t(at - 1)];
        const auto failure = kWays[way].kind;
        const bool answers = failure == AccessFault::NodeAbsent || failure == AccessFault::NotImplemented ||
                             failure == AccessFault::WrongType; // to the question whether a node is there
        const bool onlyTheName = access.node == "DeviceDisplayName";
        const bool fails =
            onlyTheName ? !failure && kind != kNoLut : !answers || access.node == "LUTSelector";
        const bool hasLut =
            kind != kNoLut && !(access.node == "LUTValueAll" && answers && failure != AccessFault::WrongType);

        Rig rig(kCameras[kind]);
        const QByteArray before = rig.table();
        runFailing(rig, at, kWays[way], [&] { rig.start(); });
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
        addColumns();
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
        QFETCH(int, kind);
        QFETCH(int, road);
        QFETCH(int, at);
        QFETCH(int, way);
        const std::vector<Access>& accesses = m_accesses.at({kind, road});
        const Access& failing = accesses[std::size_t(at - 1)];
        const Road::End end = m_roads[road].failed;
        Rig& rig = useRig(kind);
        ModuleHost& editor = *rig.editor;
        m_roads[road].prepareRig(rig);
        const Rig::Seen before = rig.look();
        const QByteArray tableBefore = rig.table();
        const QByteArray userSetBefore = rig.userSet();

        runFailing(rig, at, kWays[way], [&] { m_roads[road].act(editor); });
        QVERIFY(!rig.faults().isArmed());

        // One failure, one box; only that the camera's start set could not be found is not told.
        const bool silent = failing.node == "UserSetDefault" && (kWays[way].kind == AccessFault::NodeAbsent ||
                                                                 kWays[way].kind == AccessFault::WrongType);
        QCOMPARE(editor.takeBoxes(), silent ? QStringList() : QStringList{boxOf(kWays[way], failing)});
        QVERIFY(rig.bracketsAreClosed());

        // The editor is as it was before, or as it was started.
        QCOMPARE(rig.difference(end == Road::Default ? rig.started : before), QString());

        // The camera holds a whole table, the old one or one that it was told to load, and so does its user
        // set.
        QVERIFY(rig.table() == tableBefore || (m_roads[road].loads && rig.table() == userSetBefore));
        const auto saved =
            std::find_if(accesses.begin(), accesses.begin() + at - 1, [](const Access& access) {
                return access.node == "UserSetSave" && access.operation == NodeOperation::Execute;
            });
        QVERIFY(rig.userSet() == (saved == accesses.begin() + at - 1 ? userSetBefore : tableBefore));

        // The next good action brings everything together.
        step(editor);
        QCOMPARE(editor.takeBoxes(), QStringList());
        QVERIFY(rig.bracketsAreClosed());
        QVERIFY(rig.table() == (end == Road::Default ? rig.startedAndStepped : rig.preparedAndStepped));
        QCOMPARE(rig.contradiction(), QString());
        if (way == 0) // a file dialog is slow, and another way to fail leaves no other table
            QVERIFY(rig.savedTable() == rig.table());
    }

    // A camera without a table is left alone once the plug-in has started.
    void withoutLut()
    {
        Rig& rig = useRig(kNoLut);
        for (const Road& road : m_roads) {
            prepare(*rig.editor);
            const auto accesses = accessesOf(rig, [&] { road.act(*rig.editor); });
            QVERIFY2(accesses.empty(), road.name);
        }
        QCOMPARE(rig.editor->boxes, QStringList());
    }

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

    void addRows(int kind, int road, const QByteArray& name, const std::vector<Access>& accesses)
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
    std::map<std::pair<int, int>, std::vector<Access>> m_accesses; // by camera and road; the start is road -1

    std::unique_ptr<Rig> m_rig;
    int m_rigKind = -1;
    QByteArray m_startedAndStepped;
};

QTEST_MAIN(tst_FaultMatrix)
#include "tst_FaultMatrix.moc"

#include "device/NodeAccess.h"
#include "support/FakeCamera.h"
#include "support/Rows.h"

using namespace orlune;
using Failure = FakeCamera::Failure;

namespace {

struct Access : NodeAccess
{
    explicit Access(FakeCamera& camera) { RemoteNodeMap = &camera; }
    void ShowNodeFailure(const char* what) override { boxes << what; }
    QStringList boxes;
    LutImage image{};
    qint64 value = 77;
};

struct Operation
{
    const char* name;
    const char* node;
    const char* otherNode; // of another type
    int wrongType;
    int (*call)(Access& access, const char* node, bool show);
};
const Operation kOperations[] = {
    {"write register", "LUTValueAll", "LUTEnable", -1005,
     [](Access& a, const char* n, bool) { return a.WriteRegister(n, &a.image); }},
    {"read register", "LUTValueAll", "LUTEnable", -1005,
     [](Access& a, const char* n, bool) { return a.ReadRegister(n, &a.image); }},
    {"set enum", "LUTSelector", "TLParamsLocked", -1012,
     [](Access& a, const char* n, bool show) { return a.SetEnumValue(n, 1, show); }},
    {"get enum", "LUTSelector", "TLParamsLocked", -1012,
     [](Access& a, const char* n, bool) { return a.GetEnumValue(n, a.value); }},
    {"get integer", "TLParamsLocked", "LUTSelector", -1005,
     [](Access& a, const char* n, bool) { return a.GetIntegerValue(n, a.value); }},
    {"command", "UserSetLoad", "LUTSelector", -1005,
     [](Access& a, const char* n, bool) { return a.ExecuteCommand(n); }},
    {"set boolean", "LUTEnable", "LUTSelector", -1005,
     [](Access& a, const char* n, bool show) { return a.SetBooleanValue(n, true, show); }}};

} // namespace

class tst_NodeAccess : public QObject
{
    Q_OBJECT

private slots:
    void failures_data() { addRows(kOperations); }

    void failures()
    {
        const Operation& row = currentRow(kOperations);
        FakeCamera camera(true);
        Access access(camera);
        MakeIdentity(access.image);
        QCOMPARE(row.call(access, nullptr, true), -1012);
        QCOMPARE(row.call(access, "NoSuchNode", true), -1005);
        QCOMPARE(row.call(access, row.otherNode, true), row.wrongType);
        for (const Failure failure : {Failure::Camera, Failure::Standard, Failure::Foreign}) {
            Failure& ofNode = camera.any(row.node).failure;
            for (Failure* where : {&ofNode, &camera.mapFailure}) { // the look-up itself
                QCOMPARE(access.boxes, QStringList());
                *where = failure;
                QCOMPARE(row.call(access, row.node, true), -1013);
                QCOMPARE(access.boxes,
                         QStringList(failure == Failure::Foreign ? nullptr : FakeCamera::kFailureText));
                access.boxes.clear();
                if (QByteArray(row.name).startsWith("set"))
                    QCOMPARE(row.call(access, row.node, false), -1013);
                *where = Failure::None;
            }
        }
        QCOMPARE(access.value, 77);
        QCOMPARE(access.image.Entries[4095], 4095);
        QCOMPARE(row.call(access, row.node, true), 0);
    }

    void implemented()
    {
        FakeCamera camera(true);
        Access access(camera);
        bool result = true;
        QCOMPARE(access.IsNodeImplemented("", result), -1012);
        camera.any("LUTEnable").failure = Failure::Camera;
        QCOMPARE(access.IsNodeImplemented("LUTEnable", result), -1005);
        camera.mapFailure = Failure::Foreign;
        QCOMPARE(access.IsNodeImplemented("LUTEnable", result), -1005);
        QVERIFY(result); // an out argument that is touched shows
        camera.mapFailure = camera.any("LUTEnable").failure = Failure::None;
        QCOMPARE(access.IsNodeImplemented("NoSuchNode", result), 0);
        QVERIFY(!result);
        for (const auto mode :
             {GenApi_3_0::NI, GenApi_3_0::NA, GenApi_3_0::RO, GenApi_3_0::WO, GenApi_3_0::RW}) {
            camera.any("LUTEnable").mode = mode;
            QCOMPARE(access.IsNodeImplemented("LUTEnable", result), 0);
            QCOMPARE(result, mode != GenApi_3_0::NI);
        }
        QCOMPARE(access.boxes, QStringList());
    }

    void registerLengths_data()
    {
        QTest::addColumn<qint64>("length");
        for (const qint64 length :
             {qint64(41), qint64(44), qint64(16384), qint64(16427), qint64(40000), qint64(0), qint64(-1),
              qint64(40), kMaxRegisterBytes + 1, qint64(1) << 62})
            QTest::addRow("%lld", length) << length;
    }

    void registerLengths()
    {
        QFETCH(qint64, length);
        const bool isTable = length > 40 && length <= kMaxRegisterBytes;
        FakeCamera camera;
        auto& node = camera.node<FakeCamera::Register>("LUTValueAll");
        node.claimedLength = length;
        node.bytes = QByteArray(int(qBound(qint64(0), length, qint64(65536))), '\0');
        Access access(camera);
        QCOMPARE(access.WriteRegister("LUTValueAll", &access.image), isTable ? 0 : -1012);
        QCOMPARE(access.ReadRegister("LUTValueAll", &access.image), isTable ? 0 : -1012);
        QCOMPARE(camera.log.size(), isTable ? 2 : 0); // no transfer of what is no table
        QCOMPARE(access.WriteRegister("LUTValueAll", nullptr), -1012);
        QCOMPARE(access.ReadRegister("LUTValueAll", nullptr), -1012);
        QCOMPARE(access.boxes, QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_NodeAccess)
#include "tst_NodeAccess.moc"

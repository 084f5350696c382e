// What no road through the plug-in shows; tst_FaultMatrix has the rest of the failures.
#include <QtTest>

#include "device/NodeAccess.h"
#include "support/FakeCamera.h"

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

} // namespace

class tst_NodeAccess : public QObject
{
    Q_OBJECT

private slots:
    void withoutArgument()
    {
        FakeCamera camera;
        Access access(camera);
        QCOMPARE(access.WriteRegister("LUTValueAll", nullptr), -1012);
        QCOMPARE(access.ReadRegister("LUTValueAll", nullptr), -1012);
        QCOMPARE(access.WriteRegister(nullptr, &access.image), -1012);
        QCOMPARE(access.GetEnumValue(nullptr, access.value), -1012);
        QCOMPARE(access.ExecuteCommand(nullptr), -1012);
        QCOMPARE(camera.log, QStringList());
    }

    void failureKeepsArgument()
    {
        FakeCamera camera;
        Access access(camera);
        MakeIdentity(access.image);
        for (const char* node : {"LUTValueAll", "LUTSelector", "TLParamsLocked"})
            camera.any(node).failure = Failure::Camera;
        QCOMPARE(access.ReadRegister("LUTValueAll", &access.image), -1013);
        QCOMPARE(access.GetEnumValue("LUTSelector", access.value), -1013);
        QCOMPARE(access.GetIntegerValue("TLParamsLocked", access.value), -1013);
        QCOMPARE(access.boxes.size(), 3);
        QCOMPARE(access.SetEnumValue("LUTSelector", 1, false), -1013); // shows nothing
        QCOMPARE(access.boxes.size(), 3);
        QCOMPARE(access.value, 77);
        QCOMPARE(access.image.Entries[4095], 4095);
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
        QCOMPARE(access.boxes, QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_NodeAccess)
#include "tst_NodeAccess.moc"

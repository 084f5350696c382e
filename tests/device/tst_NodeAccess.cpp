#include <QtTest>

#include "device/NodeAccess.h"
#include "lut/ResultCodes.h"
#include "support/FakeCamera.h"

using namespace orlune;
using Failure = FakeCamera::Failure;

namespace {

struct Access : NodeAccess
{
    explicit Access(FakeCamera& camera) { RemoteNodeMap = &camera; }
    void ShowNodeFailure(const char* what) override
    {
        boxes << (what ? QString::fromLatin1(what) : QString());
    }
    QStringList boxes;
};

// Runs one operation on a node; those with an out argument are checked to leave it alone on failure.
int run(Access& access, const QString& operation, const char* name, bool show = true)
{
    qint64 value = 77;
    bool flag = true;
    static LutImage image;
    int code = 0;
    if (operation == QLatin1String("WriteRegister"))
        return access.WriteRegister(name, &image);
    if (operation == QLatin1String("ReadRegister"))
        return access.ReadRegister(name, &image);
    if (operation == QLatin1String("SetEnumValue"))
        return access.SetEnumValue(name, 1, show);
    if (operation == QLatin1String("SetBooleanValue"))
        return access.SetBooleanValue(name, true, show);
    if (operation == QLatin1String("ExecuteCommand"))
        return access.ExecuteCommand(name);
    if (operation == QLatin1String("GetEnumValue"))
        code = access.GetEnumValue(name, value);
    else if (operation == QLatin1String("GetIntegerValue"))
        code = access.GetIntegerValue(name, value);
    else if (operation == QLatin1String("IsNodeImplemented"))
        code = access.IsNodeImplemented(QString::fromLatin1(name), flag);
    if (code != 0 && (value != 77 || !flag))
        qFatal("the out argument was touched");
    return code;
}

} // namespace

class tst_NodeAccess : public QObject
{
    Q_OBJECT

private slots:
    void failures_data();
    void failures();
    void goodAccess();
    void implemented_data();
    void implemented();
    void registerLengths_data();
    void registerLengths();
    void failedReadKeepsImage();
};

void tst_NodeAccess::failures_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QByteArray>("otherNode");
    QTest::addColumn<int>("wrongType");
    QTest::newRow("write register") << "WriteRegister" << QByteArray("LUTValueAll") << QByteArray("LUTEnable")
                                    << -1005;
    QTest::newRow("read register") << "ReadRegister" << QByteArray("LUTValueAll") << QByteArray("LUTEnable")
                                   << -1005;
    QTest::newRow("set enum") << "SetEnumValue" << QByteArray("LUTSelector") << QByteArray("TLParamsLocked")
                              << -1012;
    QTest::newRow("get enum") << "GetEnumValue" << QByteArray("LUTSelector") << QByteArray("TLParamsLocked")
                              << -1012;
    QTest::newRow("get integer") << "GetIntegerValue" << QByteArray("TLParamsLocked")
                                 << QByteArray("LUTSelector") << -1005;
    QTest::newRow("command") << "ExecuteCommand" << QByteArray("UserSetLoad") << QByteArray("LUTSelector")
                             << -1005;
    QTest::newRow("set boolean") << "SetBooleanValue" << QByteArray("LUTEnable") << QByteArray("LUTSelector")
                                 << -1005;
}

void tst_NodeAccess::failures()
{
    QFETCH(QString, operation);
    QFETCH(QByteArray, node);
    QFETCH(QByteArray, otherNode);
    QFETCH(int, wrongType);
    FakeCamera camera(true);
    Access access(camera);

    QCOMPARE(run(access, operation, nullptr), -1012);
    QCOMPARE(run(access, operation, "NoSuchNode"), -1005);
    QCOMPARE(run(access, operation, otherNode), wrongType);
    QCOMPARE(access.boxes, QStringList());

    const QString text = QLatin1String(FakeCamera::kFailureText);
    for (const Failure failure : {Failure::Camera, Failure::Standard, Failure::Foreign}) {
        const QStringList box{failure == Failure::Foreign ? QString() : text};
        camera.any(node).failure = failure;
        QCOMPARE(run(access, operation, node), -1013);
        QCOMPARE(access.boxes, box);
        access.boxes.clear();
        camera.any(node).failure = Failure::None;
        camera.mapFailure = failure; // the look-up itself
        QCOMPARE(run(access, operation, node), -1013);
        QCOMPARE(access.boxes, box);
        access.boxes.clear();
        if (operation.startsWith(QLatin1String("Set"))) {
            QCOMPARE(run(access, operation, node, false), -1013);
            QCOMPARE(access.boxes, QStringList());
        }
        camera.mapFailure = Failure::None;
    }
    QCOMPARE(run(access, operation, node), 0);
}

void tst_NodeAccess::goodAccess()
{
    FakeCamera camera(true);
    Access access(camera);
    LutImage image;
    MakeIdentity(image);
    qint64 value = 0;
    camera.node<FakeCamera::Integer>("TLParamsLocked").value = -5;

    QCOMPARE(access.WriteRegister("LUTValueAll", &image), 0);
    LutImage back{};
    QCOMPARE(access.ReadRegister("LUTValueAll", &back), 0);
    QVERIFY(memcmp(&back, &image, sizeof image) == 0);
    QCOMPARE(access.SetEnumValue("LUTSelector", 3, true), 0);
    QCOMPARE(access.GetEnumValue("LUTSelector", value), 0);
    QCOMPARE(value, 3);
    QCOMPARE(access.GetIntegerValue("TLParamsLocked", value), 0);
    QCOMPARE(value, -5);
    QCOMPARE(access.SetBooleanValue("LUTEnable", true, true), 0);
    QCOMPARE(access.ExecuteCommand("UserSetSave"), 0);
    const QStringList expected{"LUTValueAll.Set+verify",         "LUTValueAll.Get",
                               "LUTSelector.SetIntValue+verify", "LUTSelector.GetIntValue",
                               "TLParamsLocked.GetValue",        "LUTEnable.SetTrue+verify",
                               "UserSetSave.Execute+verify"};
    QCOMPARE(camera.log, expected);
    QCOMPARE(access.WriteRegister("LUTValueAll", nullptr), -1012);
    QCOMPARE(access.ReadRegister("LUTValueAll", nullptr), -1012);
}

void tst_NodeAccess::implemented_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("result");
    QTest::newRow("empty name") << "" << int(GenApi_3_0::RW) << -1012 << true;
    QTest::newRow("absent") << "NoSuchNode" << int(GenApi_3_0::RW) << 0 << false;
    QTest::newRow("not implemented") << "LUTEnable" << int(GenApi_3_0::NI) << 0 << false;
    QTest::newRow("not available") << "LUTEnable" << int(GenApi_3_0::NA) << 0 << true;
    QTest::newRow("read only") << "LUTEnable" << int(GenApi_3_0::RO) << 0 << true;
}

void tst_NodeAccess::implemented()
{
    QFETCH(QString, name);
    QFETCH(int, mode);
    FakeCamera camera(true);
    Access access(camera);
    camera.any("LUTEnable").mode = GenApi_3_0::EAccessMode(mode);
    bool result = true; // an out argument that is not touched shows
    QTEST(access.IsNodeImplemented(name, result), "code");
    QTEST(result, "result");

    camera.any("LUTEnable").failure = Failure::Camera;
    QCOMPARE(access.IsNodeImplemented("LUTEnable", result), -1005);
    camera.mapFailure = Failure::Foreign;
    QCOMPARE(access.IsNodeImplemented("LUTEnable", result), -1005);
    QCOMPARE(access.boxes, QStringList());
}

void tst_NodeAccess::registerLengths_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<int>("code");
    for (const qint64 good : {41, 44, 1064, 4136, 8232, 16384, 16385, 16424, 16427, 40000})
        QTest::addRow("%lld", good) << good << 0;
    for (const qint64 bad : {qint64(0), qint64(-1), qint64(40), kMaxRegisterBytes + 1, qint64(1) << 62})
        QTest::addRow("%lld", bad) << bad << -1012;
}

void tst_NodeAccess::registerLengths()
{
    QFETCH(qint64, length);
    FakeCamera camera;
    auto& node = camera.node<FakeCamera::Register>("LUTValueAll");
    node.claimedLength = length;
    node.bytes = QByteArray(int(qBound(qint64(0), length, qint64(65536))), '\0');
    Access access(camera);
    LutImage image{};
    QTEST(access.WriteRegister("LUTValueAll", &image), "code");
    QTEST(access.ReadRegister("LUTValueAll", &image), "code");
    QCOMPARE(camera.log.isEmpty(), length <= 40 || length > 65536); // no transfer of what is no table
    QCOMPARE(access.boxes, QStringList());
}

void tst_NodeAccess::failedReadKeepsImage()
{
    FakeCamera camera;
    Access access(camera);
    LutImage image;
    MakeIdentity(image);
    camera.any("LUTValueAll").failure = Failure::Camera;
    QCOMPARE(access.ReadRegister("LUTValueAll", &image), -1013);
    QCOMPARE(image.Entries[4095], 4095);
}

QTEST_GUILESS_MAIN(tst_NodeAccess)
#include "tst_NodeAccess.moc"

#include <QtTest>

#include "device/DeviceLut.h"
#include "lut/ResultCodes.h"
#include "support/FakeCamera.h"

using namespace orlune;
using Failure = FakeCamera::Failure;

namespace {

// Stands where the dialog does. Boxes and bracket messages go into the camera's log, so that their order
// shows.
struct Link : DeviceLut
{
    explicit Link(FakeCamera& fake) : camera(fake) { RemoteNodeMap = &fake; }
    void ShowNodeFailure(const char* what) override
    {
        camera.log << QLatin1String("box ") + QLatin1String(what);
    }
    void ShowError(int code) override
    {
        if (code != kReported)
            camera.log << QStringLiteral("box %1").arg(code);
    }
    void BeginDeviceAccess() override { camera.log << QStringLiteral("begin"); }
    void EndDeviceAccess() override { camera.log << QStringLiteral("end"); }
    LutImage* StampLut() override
    {
        camera.log << QStringLiteral("stamp");
        return &current;
    }
    LutImage* GetLut() override { return &current; }
    LutImage* GetBaseLut() override { return &base; }

    FakeCamera& camera;
    LutImage current{};
    LutImage base{};
};

const QString kBox = QLatin1String("box ") + QLatin1String(FakeCamera::kFailureText);

void prepare(FakeCamera& camera, const QString& trouble, const QByteArray& node)
{
    if (trouble == QLatin1String("throws"))
        camera.any(node).failure = Failure::Camera;
    else if (trouble == QLatin1String("absent"))
        camera.remove(node);
    else if (trouble == QLatin1String("wrong type"))
        camera.add<FakeCamera::String>(node);
    else if (trouble == QLatin1String("no length"))
        camera.node<FakeCamera::Register>(node).claimedLength = 0;
}

} // namespace

class tst_DeviceLut : public QObject
{
    Q_OBJECT

private slots:
    void probe_data();
    void probe();
    void apply_data();
    void apply();
    void read_data();
    void read();
    void save_data();
    void save();
};

void tst_DeviceLut::probe_data()
{
    QTest::addColumn<bool>("hasEnable");
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("supported");
    QTest::newRow("register only") << false << "" << QByteArray() << 0 << true;
    QTest::newRow("with LUTEnable") << true << "" << QByteArray() << 0 << true;
    QTest::newRow("no register") << true << "absent" << QByteArray("LUTValueAll") << 0 << false;
    QTest::newRow("register throws") << false << "throws" << QByteArray("LUTValueAll") << -1007 << false;
    QTest::newRow("no selector") << false << "absent" << QByteArray("LUTSelector") << -1007 << false;
    QTest::newRow("selector throws") << false << "throws" << QByteArray("LUTSelector") << -1007 << false;
    QTest::newRow("enable throws") << true << "throws" << QByteArray("LUTEnable") << -1007 << false;
}

void tst_DeviceLut::probe()
{
    QFETCH(bool, hasEnable);
    QFETCH(QString, trouble);
    QFETCH(QByteArray, node);
    FakeCamera camera(hasEnable);
    prepare(camera, trouble, node);
    Link link(camera);
    QTEST(link.ProbeLutSupport(), "code");
    QTEST(link.IsLutSupported(), "supported");
    QVERIFY(camera.log.filter("box").isEmpty());
    if (link.IsLutSupported())
        QCOMPARE(camera.node<FakeCamera::Enumeration>("LUTSelector").value, 0);
    else if (node == "LUTValueAll")
        QCOMPARE(camera.log, QStringList()); // the selector was left alone
}

void tst_DeviceLut::apply_data()
{
    QTest::addColumn<bool>("hasEnable");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("log");

    const QByteArray all("LUTValueAll"), enable("LUTEnable"), lock("TLParamsLocked");
    const QString set("LUTValueAll.Set+verify"), asked("TLParamsLocked.GetValue"),
        on("LUTEnable.SetTrue+verify");
    QTest::newRow("free") << false << false << "" << all << 0 << QStringList{"stamp", asked, set};
    QTest::newRow("locked") << false << true << "" << all << 0
                            << QStringList{"stamp", asked, "begin", set, "end"};
    QTest::newRow("locked, write throws")
        << false << true << "throws" << all << -1013 << QStringList{"stamp", asked, "begin", kBox, "end"};
    QTest::newRow("locked, register gone") << false << true << "absent" << all << -1005
                                           << QStringList{"stamp", asked, "begin", "box -1005", "end"};
    QTest::newRow("no length") << false << false << "no length" << all << -1012
                               << QStringList{"stamp", asked, "box -1012"};
    QTest::newRow("lock throws") << false << true << "throws" << lock << -1013
                                 << QStringList{"stamp", asked, kBox};
    QTest::newRow("lock absent") << false << true << "absent" << lock << -1005
                                 << QStringList{"stamp", "box -1005"};
    QTest::newRow("enable, locked") << true << true << "" << all << 0 << QStringList{"stamp", on, set};
    QTest::newRow("enable throws") << true << false << "throws" << enable << -1013
                                   << QStringList{"stamp", on, kBox};
    QTest::newRow("enable absent") << true << false << "absent" << enable << -1005
                                   << QStringList{"stamp", "box -1005"};
    QTest::newRow("enable, write throws")
        << true << false << "throws" << all << -1013 << QStringList{"stamp", on, kBox};
}

void tst_DeviceLut::apply()
{
    QFETCH(bool, hasEnable);
    QFETCH(bool, locked);
    QFETCH(QString, trouble);
    QFETCH(QByteArray, node);
    FakeCamera camera(hasEnable);
    Link link(camera);
    QCOMPARE(link.ProbeLutSupport(), 0);
    camera.node<FakeCamera::Integer>("TLParamsLocked").value = locked;
    prepare(camera, trouble, node);
    camera.log.clear();
    QTEST(link.ApplyLut(), "code");
    QTEST(camera.log, "log");
}

void tst_DeviceLut::read_data()
{
    QTest::addColumn<bool>("hasEnable");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("images"); // "read", "zero" or "kept"
    QTest::addColumn<QStringList>("log");

    const QString asked("TLParamsLocked.GetValue"), get("UserSetSelector.GetIntValue"),
        select("UserSetSelector.SetIntValue+verify"), load("UserSetLoad.Execute+verify"),
        on("LUTEnable.SetTrue+verify"), read("LUTValueAll.Get");
    const QByteArray none, sel("UserSetSelector"), cmd("UserSetLoad"), all("LUTValueAll"),
        enable("LUTEnable");
    QTest::newRow("free") << false << false << 0 << "" << none << 0 << "read"
                          << QStringList{asked, get, select, load, read};
    QTest::newRow("selected already")
        << false << false << 1 << "" << none << 0 << "read" << QStringList{asked, get, load, read};
    QTest::newRow("locked") << false << true << 1 << "" << none << 0 << "read"
                            << QStringList{asked, "begin", get, load, "end", read};
    QTest::newRow("enable") << true << false << 1 << "" << none << 0 << "read"
                            << QStringList{asked, get, load, on, read};
    QTest::newRow("lock absent") << false << true << 1 << "absent" << QByteArray("TLParamsLocked") << -1005
                                 << "kept" << QStringList{};
    QTest::newRow("selector absent") << false << true << 1 << "absent" << sel << -1005 << "kept"
                                     << QStringList{asked, "begin", "end"};
    QTest::newRow("selector no enumeration")
        << false << true << 1 << "wrong type" << sel << -1012 << "kept" << QStringList{asked, "begin", "end"};
    QTest::newRow("load throws") << false << true << 0 << "throws" << cmd << -1013 << "kept"
                                 << QStringList{asked, "begin", get, select, load, kBox, "end"};
    QTest::newRow("enable throws") << true << false << 1 << "throws" << enable << -1013 << "kept"
                                   << QStringList{asked, get, load, on, kBox};
    QTest::newRow("read throws") << false << false << 1 << "throws" << all << -1013 << "zero"
                                 << QStringList{asked, get, load, kBox};
    QTest::newRow("no length") << false << false << 1 << "no length" << all << -1012 << "zero"
                               << QStringList{asked, get, load};
}

void tst_DeviceLut::read()
{
    QFETCH(bool, hasEnable);
    QFETCH(bool, locked);
    QFETCH(int, selected);
    QFETCH(QString, trouble);
    QFETCH(QByteArray, node);
    QFETCH(QString, images);
    FakeCamera camera(hasEnable);
    Link link(camera);
    QCOMPARE(link.ProbeLutSupport(), 0);
    MakeIdentity(link.current);
    MakeIdentity(link.base);
    const LutImage identity = link.current;
    camera.node<FakeCamera::Register>("LUTValueAll").bytes = QByteArray(16424, '\x01');
    camera.node<FakeCamera::Integer>("TLParamsLocked").value = locked;
    camera.node<FakeCamera::Enumeration>("UserSetSelector").value = selected;
    prepare(camera, trouble, node);
    camera.log.clear();

    QTEST(link.ReadDeviceLut(), "code");
    QTEST(camera.log, "log");
    LutImage expected{};
    if (images == QLatin1String("read"))
        memset(&expected, 1, sizeof expected);
    else if (images == QLatin1String("kept"))
        expected = identity;
    QVERIFY(memcmp(&link.current, &expected, sizeof expected) == 0);
    QVERIFY(memcmp(&link.base, &expected, sizeof expected) == 0);
}

void tst_DeviceLut::save_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("log");
    const QString get("UserSetSelector.GetIntValue"), select("UserSetSelector.SetIntValue+verify"),
        save("UserSetSave.Execute+verify"), start("UserSetDefault.SetIntValue+verify");
    QTest::newRow("good") << 0 << "" << QByteArray() << 0 << QStringList{get, select, save, start};
    QTest::newRow("selected") << 1 << "" << QByteArray() << 0 << QStringList{get, save, start};
    QTest::newRow("no selector") << 0 << "absent" << QByteArray("UserSetSelector") << -1005 << QStringList{};
    QTest::newRow("save throws") << 1 << "throws" << QByteArray("UserSetSave") << -1013
                                 << QStringList{get, save, kBox};
    QTest::newRow("default throws") << 1 << "throws" << QByteArray("UserSetDefault") << 0
                                    << QStringList{get, save, start, kBox};
    QTest::newRow("default absent") << 1 << "absent" << QByteArray("UserSetDefault") << 0
                                    << QStringList{get, save};
}

void tst_DeviceLut::save()
{
    QFETCH(int, selected);
    QFETCH(QString, trouble);
    QFETCH(QByteArray, node);
    FakeCamera camera;
    Link link(camera);
    QCOMPARE(link.ProbeLutSupport(), 0);
    camera.node<FakeCamera::Enumeration>("UserSetSelector").value = selected;
    prepare(camera, trouble, node);
    camera.log.clear();
    QTEST(link.SaveUserSet(), "code");
    QTEST(camera.log, "log");
}

QTEST_GUILESS_MAIN(tst_DeviceLut)
#include "tst_DeviceLut.moc"

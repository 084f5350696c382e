// The order of every transfer between editor and camera. What each single failing access leads to is
// tst_FaultMatrix' business.
#include "device/DeviceLut.h"
#include "support/FakeCamera.h"
#include "support/Rows.h"

using namespace orlune;

namespace {

// Stands where the dialog does. Boxes and bracket messages go into the camera's log, so that their order
// shows.
struct Link : DeviceLut
{
    explicit Link(FakeCamera& fake) : camera(fake) { RemoteNodeMap = &fake; }
    void ShowNodeFailure(const char* what) override { camera.log << what; }
    void ShowError(int code) override { camera.log << QString("box %1").arg(code); }
    void BeginDeviceAccess() override { camera.log << "begin"; }
    void EndDeviceAccess() override { camera.log << "end"; }
    LutImage* StampLut() override
    {
        camera.log << "stamp";
        return &current;
    }
    LutImage* GetLut() override { return &current; }
    LutImage* GetBaseLut() override { return &base; }

    FakeCamera& camera;
    LutImage current{};
    LutImage base{};
};

struct Row
{
    const char* name;
    int (DeviceLut::*call)();
    const char* camera; // e: LUTEnable, l: locked, s: the user set is selected
    const char* fails;  // a node
    int code;
    char images; // 0, the identity that was there before, or r for the register's
    QStringList log;
};
const QString kBox = FakeCamera::kFailureText, kSet = "LUTValueAll.Set+verify", kGet = "LUTValueAll.Get";
const QString kAsked = "TLParamsLocked.GetValue", kOn = "LUTEnable.SetTrue+verify";
const QString kSelected = "UserSetSelector.GetIntValue", kSelect = "UserSetSelector.SetIntValue+verify";
const QString kLoad = "UserSetLoad.Execute+verify", kSave = "UserSetSave.Execute+verify";
const QString kStart = "UserSetDefault.SetIntValue+verify";
const auto kApply = &DeviceLut::ApplyLut, kRead = &DeviceLut::ReadDeviceLut, kStore = &DeviceLut::SaveUserSet;
const Row kRows[] = {
    {"write", kApply, "", "", 0, 'i', {"stamp", kAsked, kSet}},
    {"write, locked", kApply, "l", "", 0, 'i', {"stamp", kAsked, "begin", kSet, "end"}},
    {"write fails",
     kApply,
     "l",
     "LUTValueAll",
     -1013,
     'i',
     {"stamp", kAsked, "begin", kBox, "box -1013", "end"}},
    {"lock fails", kApply, "l", "TLParamsLocked", -1013, 'i', {"stamp", kAsked, kBox, "box -1013"}},
    {"write, enable", kApply, "el", "", 0, 'i', {"stamp", kOn, kSet}},
    {"enable fails", kApply, "e", "LUTEnable", -1013, 'i', {"stamp", kOn, kBox, "box -1013"}},
    {"read", kRead, "", "", 0, 'r', {kAsked, kSelected, kSelect, kLoad, kGet}},
    {"read, locked", kRead, "ls", "", 0, 'r', {kAsked, "begin", kSelected, kLoad, "end", kGet}},
    {"read, enable", kRead, "es", "", 0, 'r', {kAsked, kSelected, kLoad, kOn, kGet}},
    {"load fails", kRead, "ls", "UserSetLoad", -1013, 'i', {kAsked, "begin", kSelected, kLoad, kBox, "end"}},
    {"read fails", kRead, "s", "LUTValueAll", -1013, '0', {kAsked, kSelected, kLoad, kBox}},
    {"store", kStore, "", "", 0, 'i', {kSelected, kSelect, kSave, kStart}},
    {"store fails", kStore, "s", "UserSetSave", -1013, 'i', {kSelected, kSave, kBox}},
    {"start set fails", kStore, "s", "UserSetDefault", 0, 'i', {kSelected, kSave, kStart, kBox}},
};

} // namespace

class tst_DeviceLut : public QObject
{
    Q_OBJECT

private slots:
    void order_data() { addRows(kRows); }

    void order()
    {
        const Row& row = currentRow(kRows);
        const QString kind = row.camera;
        FakeCamera camera(kind.contains('e'));
        Link link(camera);
        QCOMPARE(link.ProbeLutSupport(), 0);
        MakeIdentity(link.current);
        MakeIdentity(link.base);
        LutImage expected = link.current;
        camera.node<FakeCamera::Register>("LUTValueAll").bytes = QByteArray(kImageBytes, '\x01');
        camera.node<FakeCamera::Integer>("TLParamsLocked").value = kind.contains('l');
        camera.node<FakeCamera::Enumeration>("UserSetSelector").value = kind.contains('s');
        if (*row.fails)
            camera.any(row.fails).failure = FakeCamera::Failure::Camera;
        camera.log.clear();
        QCOMPARE((link.*row.call)(), row.code);
        QCOMPARE(camera.log, row.log);
        if (row.images != 'i')
            memset(&expected, row.images == 'r', sizeof expected);
        QVERIFY(ToBytes(link.current) == ToBytes(expected) && ToBytes(link.base) == ToBytes(expected));
    }
};

QTEST_GUILESS_MAIN(tst_DeviceLut)
#include "tst_DeviceLut.moc"

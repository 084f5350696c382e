#include "contract/ModuleHost.h"

#include <QLibrary>
#include <QMetaMethod>
#include <QProcess>

namespace {

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return "failed: " + process.readAllStandardError();
    return process.readAllStandardOutput();
}

} // namespace

class tst_Module : public QObject
{
    Q_OBJECT

private slots:
    void exportsTwoFunctions();
    void versionResource();
    void metaObject();
    void beforeInit();
    void texts_data();
    void texts();
    void title_data();
    void title();
    void failedInit_data();
    void failedInit();
    void showAndHide();
    void onlyOneInit();
    void loadedAgainAndAgain();
    void severalAtOnce();
};

void tst_Module::exportsTwoFunctions()
{
    const auto lines = outputOf(ORLUNE_NM, {"-D", "--defined-only", ORLUNE_MODULE}).trimmed().split('\n');
    QStringList names;
    for (const QByteArray& line : lines)
        names << QString::fromLatin1(line.mid(line.lastIndexOf(' ') + 1));
    QCOMPARE(names, (QStringList{"CreatePluginObject", "DestoryPluginObject"}));
}

void tst_Module::versionResource()
{
    QTemporaryDir directory;
    const QString object = directory.filePath("version.res");
    outputOf(ORLUNE_WINDRES, {"-O", "coff", ORLUNE_VERSION_RESOURCE, object});
    const QByteArray text = outputOf(ORLUNE_WINDRES, {"-J", "coff", "-O", "rc", object});
    for (const char* line :
         {"FILEVERSION 1, 1, 1907, 8091", "PRODUCTVERSION 1, 1, 1907, 8091",
          "\"FileVersion\", \"1, 1, 1907, 8091\"", "\"ProductVersion\", \"1, 1, 1907, 8091\"",
          "\"OriginalFilename\", \"Orlune.plx\""})
        QVERIFY2(text.contains(line), text);
}

void tst_Module::metaObject()
{
    FakeCamera camera;
    WorkingDirectory directory;
    ModuleHost host(&camera);
    const QMetaObject* meta = host.plugin->metaObject();
    QCOMPARE(meta->className(), "IPlugin");
    QCOMPARE(meta->methodCount() - meta->methodOffset(), 2);
    const QMetaMethod signal = meta->method(meta->indexOfSignal("SigPluginMsg(PLUGIN_MSG)"));
    const QMetaMethod slot = meta->method(meta->indexOfSlot("SlotProcessDemoMsg(PLUGIN_MSG)"));
    QCOMPARE(signal.parameterNames(), QList<QByteArray>{"stPluginMsg"});
    QCOMPARE(slot.parameterNames(), QList<QByteArray>{"stPluginMsg"});
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(host.dialog->metaObject()->className(), "OrluneDlg");
}

void tst_Module::beforeInit()
{
    QLibrary library(QStringLiteral(ORLUNE_MODULE));
    auto create = CreatePluginObjectFunction(library.resolve("CreatePluginObject"));
    auto destroy = DestoryPluginObjectFunction(library.resolve("DestoryPluginObject"));
    QVERIFY(create && destroy);
    IPlugin* plugin = create();
    QCOMPARE(plugin->GetName(), "Orlune");
    QCOMPARE(plugin->GetGuid(), "7B15CF6D-E59B-4a8a-9036-FAD8ADD13EFE");
    QCOMPARE(plugin->GetDisplayName(), "");
    QCOMPARE(plugin->GetDescription(), "");
    QCOMPARE(plugin->GetInterfaceVersion(), 0x10000u);
    const PluginVersion version = plugin->GetVersion();
    const std::uint16_t words[] = {1, 1, 1907, 8091};
    QVERIFY(memcmp(&version, words, sizeof words) == 0);
    QVERIFY(plugin->HasDialog());

    // Without a dialog every operation answers and nothing falls over.
    QVERIFY(!plugin->IsDialogVisible());
    QVERIFY(plugin->IsDialogHidden());
    PLUGIN_MSG message{};
    message.type = MSG_SHOW_DIALOG;
    plugin->SlotProcessDemoMsg(message);
    FrameIn in{};
    FrameOut out{};
    FrameResult result{};
    QCOMPARE(plugin->ProcessFrame(&in, &out, 1, &result), -3);
    QCOMPARE(plugin->InitPlugin(nullptr), -3);
    PluginInitParam param{};
    QCOMPARE(plugin->InitPlugin(&param), -3);
    plugin->UninitPlugin();
    destroy(plugin);
    destroy(nullptr);
    library.unload();
}

void tst_Module::texts_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    const struct
    {
        int code;
        const char* english;
        const char* chinese;
    } rows[] = {{0, "success", "成功"},
                {-1, "General Error", "一般性错误"},
                {-2, "Out of memory", "内存不足"},
                {-3, "Invalid input param", "非法的输入参数"},
                {-4, "Get xml value error", "获取设备查找表信息失败"},
                {-5, "The Lut File is missing, Please Reinstall the installation package",
                 "Lut文件丢失，请重装安装包解决该问题"},
                {-6, "", ""},
                {1, "", ""}};
    for (const auto& row : rows) {
        QTest::addRow("English %d", row.code) << 0 << row.code << QString::fromUtf8(row.english);
        QTest::addRow("Chinese %d", row.code) << 1 << row.code << QString::fromUtf8(row.chinese);
    }
    QTest::newRow("another language") << 2 << -2 << "Out of memory";
}

void tst_Module::texts()
{
    QFETCH(int, language);
    QFETCH(int, code);
    QFETCH(QString, text);
    QTextCodec* before = QTextCodec::codecForLocale();
    FakeCamera camera;
    WorkingDirectory directory;
    ModuleHost host(&camera, language);
    QTextCodec* codec = QTextCodec::codecForName(language == 1 ? "GB2312" : "ISO-8859-1");
    QCOMPARE(codec->toUnicode(host.plugin->GetErrorText(code)), text);
    QCOMPARE(codec->toUnicode(host.plugin->GetDisplayName()),
             language == 1 ? QString::fromUtf8("Orlune插件") : QStringLiteral("Orlune Plugin"));
    QCOMPARE(QTextCodec::codecForLocale(), language == 1 ? codec : before);
    QTextCodec::setCodecForLocale(before);
}

void tst_Module::title_data()
{
    QTest::addColumn<QString>("node"); // type of DeviceDisplayName
    QTest::addColumn<QString>("title");
    QTest::newRow("no map") << "no map"
                            << "Orlune";
    QTest::newRow("no node") << "absent"
                             << "Orlune";
    QTest::newRow("another type") << "integer"
                                  << "Orlune";
    QTest::newRow("throws") << "throws"
                            << "Orlune";
    QTest::newRow("named") << "Cam1"
                           << "Orlune  Cam1";
    QTest::newRow("Latin-1") << QString::fromUtf8("Caméra") << QString::fromUtf8("Orlune  Caméra");
}

void tst_Module::title()
{
    QFETCH(QString, node);
    FakeCamera camera;
    FakeCamera info;
    auto& name = info.add<FakeCamera::String>("DeviceDisplayName");
    name.value = node.toLatin1().toStdString();
    if (node == "absent")
        info.remove("DeviceDisplayName");
    else if (node == "integer")
        info.add<FakeCamera::Integer>("DeviceDisplayName");
    else if (node == "throws")
        name.failure = FakeCamera::Failure::Camera;
    WorkingDirectory directory;
    ModuleHost host(&camera, 0, node == "no map" ? nullptr : &info);
    QCOMPARE(host.initResult, 0);
    QTEST(host.dialog->windowTitle(), "title");
    QCOMPARE(host.boxes, QStringList());
}

void tst_Module::failedInit_data()
{
    QTest::addColumn<QString>("trouble");
    QTest::addColumn<int>("code");
    QTest::newRow("probe fails") << "probe" << -4;
    QTest::newRow("no catalogue") << "catalogue" << -5;
    QTest::newRow("no identity in it") << "identity" << -5;
}

void tst_Module::failedInit()
{
    QFETCH(QString, trouble);
    FakeCamera camera;
    WorkingDirectory directory;
    if (trouble == "probe")
        camera.remove("LUTSelector");
    if (trouble == "catalogue")
        QVERIFY(QDir(WorkingDirectory::standardPath()).removeRecursively());
    if (trouble == "identity")
        QVERIFY(QFile::remove(WorkingDirectory::standardPath() + "/lut4_11.bin"));
    ModuleHost host(&camera);
    QTEST(host.initResult, "code");
    QCOMPARE(host.boxes, QStringList());
    // The dialog is there, unconnected, and works without falling over.
    QVERIFY(host.dialog);
    host.send(MSG_SHOW_DIALOG);
    host.wheel("objGammaSlider", {0, 120});
    QCOMPARE(host.messages, QVector<int>());
    if (trouble == "probe")
        QVERIFY(camera.log.filter("LUTValueAll").isEmpty());
    host.plugin->UninitPlugin();
    QVERIFY(!host.parent.findChild<QDialog*>());
    // The object can be started again.
    camera.add<FakeCamera::Enumeration>("LUTSelector");
    directory.~WorkingDirectory();
    new (&directory) WorkingDirectory;
    host.start();
    QCOMPARE(host.initResult, 0);
}

void tst_Module::showAndHide()
{
    FakeCamera camera;
    WorkingDirectory directory;
    ModuleHost host(&camera);
    QCOMPARE(host.messages, QVector<int>()); // nothing that the start does reaches the host
    QVERIFY(host.plugin->IsDialogHidden());
    for (const int ignored : {3, 0, 10, 1001})
        host.send(ignored);
    QVERIFY(!host.plugin->IsDialogVisible());

    host.send(MSG_SHOW_DIALOG);
    QCOMPARE(host.takeMessages(), QVector<int>{MSG_DIALOG_SHOWN});
    QVERIFY(host.plugin->IsDialogVisible());
    host.send(MSG_SHOW_DIALOG);
    QCOMPARE(host.takeMessages(), QVector<int>());

    host.dialog->showMinimized();
    host.send(MSG_SHOW_DIALOG);
    QVERIFY(!host.dialog->isMinimized());
    host.takeMessages();

    host.send(MSG_HIDE_DIALOG);
    QCOMPARE(host.takeMessages(), QVector<int>{MSG_DIALOG_HIDDEN});
    host.send(MSG_SHOW_DIALOG);
    host.takeMessages();
    host.dialog->close(); // as by its frame
    QCOMPARE(host.takeMessages(), QVector<int>{MSG_DIALOG_HIDDEN});
    QVERIFY(host.plugin->IsDialogHidden());
    QVERIFY(!host.dialog->isModal());
    QVERIFY(host.dialog->windowFlags() & Qt::WindowMinimizeButtonHint);
}

void tst_Module::onlyOneInit()
{
    FakeCamera camera;
    WorkingDirectory directory;
    ModuleHost host(&camera);
    PluginInitParam param{};
    param.remoteDeviceMap = &camera;
    param.languageId = 1;
    QCOMPARE(host.plugin->InitPlugin(&param), -3);
    QCOMPARE(host.plugin->GetErrorText(0), "success");
    QCOMPARE(host.parent.findChildren<QDialog*>().size(), 1);
}

void tst_Module::loadedAgainAndAgain()
{
    FakeCamera camera;
    WorkingDirectory directory;
    for (int i = 0; i < 20; ++i) {
        {
            ModuleHost host(&camera, 1);
            QCOMPARE(host.initResult, 0);
            host.send(MSG_SHOW_DIALOG);
            QCOMPARE(host.dialog->windowTitle(), QStringLiteral("Orlune"));
            QVERIFY(QFile::exists(":/OrlunePlugin_D08DDF08-B172-4e06-B9B3-22822888E027_zh.qm"));
        }
        // The resource goes with the module.
        QVERIFY(!QFile::exists(":/OrlunePlugin_D08DDF08-B172-4e06-B9B3-22822888E027_zh.qm"));
    }
}

void tst_Module::severalAtOnce()
{
    FakeCamera first;
    FakeCamera second(true);
    WorkingDirectory directory;
    ModuleHost a(&first);
    ModuleHost b(&second);
    a.show();
    b.show();
    a.wheel("objGammaSlider", {0, 120});
    QCOMPARE(a.text("objGammaLineEdit"), QStringLiteral("110"));
    QCOMPARE(b.text("objGammaLineEdit"), QStringLiteral("100"));
    QVERIFY(second.log.filter("LUTValueAll.Set").isEmpty());
}

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    tst_Module test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_Module.moc"

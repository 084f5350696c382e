#include "contract/ModuleHost.h"

#include <QLibrary>
#include <QMetaMethod>
#include <QProcess>

using Act = std::function<void(ModuleHost&)>;
Q_DECLARE_METATYPE(Act)

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
    void exportsTwoFunctions()
    {
        const auto lines = outputOf(ORLUNE_NM, {"-D", "--defined-only", ORLUNE_MODULE}).trimmed().split('\n');
        QStringList names;
        for (const QByteArray& line : lines)
            names << QString::fromLatin1(line.mid(line.lastIndexOf(' ') + 1));
        QCOMPARE(names, (QStringList{"CreatePluginObject", "DestoryPluginObject"}));
    }

    void versionResource()
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

    void metaObject()
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

    void beforeInit()
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

    void texts_data()
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

    void texts()
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

    void title_data()
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

    void title()
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

    void failedInit_data()
    {
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<int>("code");
        QTest::newRow("probe fails") << "probe" << -4;
        QTest::newRow("no catalogue") << "catalogue" << -5;
        QTest::newRow("no identity in it") << "identity" << -5;
    }

    void failedInit()
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

    void showAndHide()
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

    void onlyOneInit()
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

    void parentGoesFirst()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.plugin->UninitPlugin();
        auto parent = std::make_unique<QWidget>();
        PluginInitParam param{};
        param.remoteDeviceMap = &camera;
        param.parentWidget = parent.get();
        QCOMPARE(host.plugin->InitPlugin(&param), 0);
        host.send(MSG_SHOW_DIALOG);
        parent.reset();
        QVERIFY(host.plugin->IsDialogHidden());
        host.send(MSG_SHOW_DIALOG);
        std::uint16_t pixel = 0;
        QCOMPARE(process(*host.plugin, kMono12, &pixel, &pixel, 1, 1, nullptr), -3);
        host.plugin->UninitPlugin();
        host.start();
        QCOMPARE(host.initResult, 0);
    }

    // Without UninitPlugin the dialog is its parent's, and works on.
    void objectGoesFirst()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost keepsTheModule(&camera);
        QLibrary library(QStringLiteral(ORLUNE_MODULE));
        IPlugin* plugin = CreatePluginObjectFunction(library.resolve("CreatePluginObject"))();
        QWidget parent;
        PluginInitParam param{};
        param.remoteDeviceMap = &camera;
        param.parentWidget = &parent;
        QCOMPARE(plugin->InitPlugin(&param), 0);
        DestoryPluginObjectFunction(library.resolve("DestoryPluginObject"))(plugin);
        auto* slider = parent.findChild<QSlider*>("objGammaSlider");
        QVERIFY(slider);
        camera.log.clear();
        slider->setValue(150);
        QCOMPARE(camera.log.filter("LUTValueAll.Set").size(), 1);
    }

    void hostLeaves_data()
    {
        QTest::addColumn<int>("moment"); // a message, or 0 for a box or file dialog
        QTest::addColumn<Act>("act");
        const Act step = [](ModuleHost& e) { e.wheel("objGammaSlider", {0, 120}); };
        const auto take = [](int source) { return Act([=](ModuleHost& e) { e.click(kRadios[source]); }); };
        const Act reject = [](ModuleHost& e) { e.type("objLutRangeMinEdit", "4090"); };
        const Act store = [](ModuleHost& e) { e.click("objWriteLutButton"); };
        const Act save = [](ModuleHost& e) { e.click("objSaveLutButton"); };
        const Act close = [](ModuleHost& e) { e.dialog->close(); };
        const Act reopen = [](ModuleHost& e) {
            e.send(MSG_HIDE_DIALOG);
            e.send(MSG_SHOW_DIALOG);
        };
        QTest::newRow("box of a step") << 0 << step;
        QTest::newRow("box of a rejected value") << 0 << reject;
        QTest::newRow("box of a source") << 0 << take(Device);
        QTest::newRow("box of a store") << 0 << store;
        QTest::newRow("file dialog of a source") << 0 << take(LutFile);
        QTest::newRow("file dialog of a save") << 0 << save;
        for (const int message : {MSG_DEVICE_ACCESS_BEGIN, MSG_DEVICE_ACCESS_END}) {
            QTest::addRow("step, message %d", message) << message << step;
            QTest::addRow("source, message %d", message) << message << take(Device);
        }
        QTest::newRow("hidden") << int(MSG_DIALOG_HIDDEN) << close;
        QTest::newRow("shown") << int(MSG_DIALOG_SHOWN) << reopen;
    }

    // A host ends the plug-in while one of its operations runs: the camera is gone, say, and a box tells the
    // person so.
    void hostLeaves()
    {
        QFETCH(int, moment);
        QFETCH(Act, act);
        auto camera = std::make_unique<FakeCamera>();
        camera->node<FakeCamera::Integer>("TLParamsLocked").value = 1;
        WorkingDirectory directory;
        ModuleHost host(camera.get());
        host.show();
        const auto leave = [&] {
            host.end();
            camera.reset();
            host.messages.clear();
        };
        if (moment == 0) {
            camera->mapFailure = FakeCamera::Failure::Camera;
            host.whileBoxOpen = leave;
        }
        host.onCode = [&](int code) {
            if (code == moment)
                leave();
        };
        act(host);
        QVERIFY(!camera);
        QVERIFY(host.boxes.size() <= int(moment == 0));
        QCOMPARE(host.messages, QVector<int>());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!host.parent.findChild<QDialog*>());
    }

    void handlerThatRunsEvents_data()
    {
        QTest::addColumn<int>("outer"); // a source, or -1 for a step
        QTest::addColumn<int>("inner");
        for (const int outer : {-1, int(Device), int(Default)}) {
            for (const int inner : {-1, int(Device), int(Default)})
                QTest::addRow("%d in %d", inner, outer) << outer << inner;
        }
    }

    // A person's next action comes while the host still frees the camera for the one before.
    void handlerThatRunsEvents()
    {
        QFETCH(int, outer);
        QFETCH(int, inner);
        FakeCamera camera;
        auto& locked = camera.node<FakeCamera::Integer>("TLParamsLocked");
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        const auto act = [&](int source, const char* slider) {
            source < 0 ? host.wheel(slider, {0, 120}) : host.click(kRadios[source]);
        };
        locked.value = 1;
        host.onCode = [&](int code) {
            locked.value = code == MSG_DEVICE_ACCESS_END;
            if (code == MSG_DEVICE_ACCESS_BEGIN)
                act(inner, "objBrightnessSlider");
        };
        act(outer, "objGammaSlider");
        QCOMPARE(host.messages, (QVector<int>{MSG_DEVICE_ACCESS_BEGIN, MSG_DEVICE_ACCESS_END}));
        QCOMPARE(host.boxes, QStringList());

        // Whatever came of that, the next action is as good as any.
        locked.value = 0;
        host.click(kRadios[Default]);
        host.type("objContrastLineEdit", "35");
        const QByteArray table = camera.node<FakeCamera::Register>("LUTValueAll").bytes;
        host.fileAnswers << directory.path("table.lut");
        host.click("objSaveLutButton");
        QVERIFY(WorkingDirectory::read(directory.path("table.lut")) == table);
        const char* trailer = table.constData() + 16384;
        for (const Control& control : kControls) {
            trailer += 4;
            QCOMPARE(host.text(control.edit), QString::number(qFromLittleEndian<qint32>(trailer)));
        }
        QCOMPARE(host.text("objGammaLineEdit"), QStringLiteral("100"));
    }

    void loadedAgainAndAgain()
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

    void severalAtOnce()
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
};

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    tst_Module test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_Module.moc"

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

using Act = void (*)(ModuleHost&);
const Act step = [](ModuleHost& e) { e.wheel("objGammaSlider", {0, 120}); };
const Act load = [](ModuleHost& e) { e.take(Device); };
const Act toDefault = [](ModuleHost& e) { e.take(Default); };
const Act store = [](ModuleHost& e) { e.click("objWriteLutButton"); };

// What a host may leave in the middle of.
const struct
{
    const char* name;
    int moment; // a message, or 0 for a box or file dialog
    Act act;
} kMoments[] = {
    {"box of a step", 0, step},
    {"box of a rejected value", 0, [](ModuleHost& e) { e.type("objLutRangeMinEdit", "4090"); }},
    {"box of a source", 0, load},
    {"box of a store", 0, store},
    {"file dialog of a source", 0, [](ModuleHost& e) { e.take(LutFile); }},
    {"file dialog of a save", 0, [](ModuleHost& e) { e.click("objSaveLutButton"); }},
    {"start of a step's access", MSG_DEVICE_ACCESS_BEGIN, step},
    {"end of a step's access", MSG_DEVICE_ACCESS_END, step},
    {"start of a source's access", MSG_DEVICE_ACCESS_BEGIN, load},
    {"end of a source's access", MSG_DEVICE_ACCESS_END, load},
    {"hidden", MSG_DIALOG_HIDDEN, [](ModuleHost& e) { e.dialog->close(); }},
    {"shown", MSG_DIALOG_SHOWN, [](ModuleHost& e) { e.send(MSG_HIDE_DIALOG), e.send(MSG_SHOW_DIALOG); }},
};

// The order of what passes between editor and camera.
const QString kSet = "LUTValueAll.Set+verify", kGet = "LUTValueAll.Get";
const QString kAsked = "TLParamsLocked.GetValue", kOn = "LUTEnable.SetTrue+verify";
const QString kSelected = "UserSetSelector.GetIntValue", kSelect = "UserSetSelector.SetIntValue+verify";
const QString kLoad = "UserSetLoad.Execute+verify", kSave = "UserSetSave.Execute+verify";
const QString kStart = "UserSetDefault.SetIntValue+verify";
const struct
{
    const char* name;
    Act act;
    QString camera;    // e: LUTEnable, l: locked, s: the user set is selected
    const char* fails; // a node
    QStringList log;
} kTransfers[] = {
    {"write", step, "l", nullptr, {kAsked, "begin", kSet, "end"}},
    {"write fails", step, "l", "LUTValueAll", {kAsked, "begin", "box", "end"}},
    {"read", load, "", nullptr, {kAsked, kSelected, kSelect, kLoad, kGet}},
    {"read, locked", load, "ls", nullptr, {kAsked, "begin", kSelected, kLoad, "end", kGet}},
    {"read, enable", load, "es", nullptr, {kAsked, kSelected, kLoad, kOn, kGet}},
    {"load fails", load, "ls", "UserSetLoad", {kAsked, "begin", kSelected, kLoad, "box", "end"}},
    {"store", store, "", nullptr, {kSelected, kSelect, kSave, kStart}},
    {"store fails", store, "s", "UserSetSave", {kSelected, kSave, "box"}},
};

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

    // What the compiler and the linker put into a release against overruns.
    void hardening()
    {
        if (!ORLUNE_IS_RELEASE)
            QSKIP("others are not hardened");
        for (const char* program : {ORLUNE_MODULE, ORLUNE_HOST, ORLUNE_TOOL}) {
            const QString built = outputOf(ORLUNE_READELF, {"--wide", "--file-header", "--program-headers",
                                                            "--dynamic", "--dyn-syms", program});
            for (const char* line : {R"(^ +GNU_RELRO )", R"(\(FLAGS(_1)?\).*NOW)",
                                     R"(^ +GNU_STACK .* RW +0x)", R"(__stack_chk_fail)", R"(Type: +DYN )"})
                QVERIFY2(built.contains(QRegularExpression(line, QRegularExpression::MultilineOption)), line);
            // The module makes no call that needs the check at run time.
            QVERIFY(built.contains("__fprintf_chk") || program == QByteArray(ORLUNE_MODULE));
        }
    }

    void metaObject()
    {
        Session host;
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
        QVERIFY(plugin->HasDialog() && !plugin->IsDialogVisible());
        QCOMPARE(plugin->InitPlugin(nullptr), -3);
        PluginInitParam param{};
        QCOMPARE(plugin->InitPlugin(&param), -3);
        plugin->UninitPlugin();
        destroy(plugin);
        destroy(nullptr);
        library.unload();
    }

    void texts()
    {
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
                    {-6, "", ""}};
        FakeCamera camera, info;
        WorkingDirectory directory;
        auto& name = info.add<FakeCamera::String>("DeviceDisplayName").value;
        for (const int language : {0, 1, 2}) {
            const bool isChinese = language == 1;
            QTextCodec* codec = QTextCodec::codecForName(isChinese ? "GB2312" : "ISO-8859-1");
            const QString device = QString::fromUtf8(isChinese ? "相机" : "Caméra");
            name = codec->fromUnicode(device).toStdString();
            ModuleHost host(&camera, language, &info);
            for (const auto& row : rows)
                QCOMPARE(codec->toUnicode(host.plugin->GetErrorText(row.code)),
                         QString::fromUtf8(isChinese ? row.chinese : row.english));
            QCOMPARE(codec->toUnicode(host.plugin->GetDisplayName()),
                     QString::fromUtf8(isChinese ? "Orlune插件" : "Orlune Plugin"));
            QCOMPARE(host.dialog->windowTitle(), "Orlune  " + device);
            QCOMPARE(QTextCodec::codecForLocale(), isChinese ? codec : QTextCodec::codecForName("UTF-8"));
        }
    }

    void failedInit()
    {
        Session host;
        host.plugin->UninitPlugin();
        const QString standard = WorkingDirectory::standardPath();
        QVERIFY(QDir().rename(standard, "away"));
        host.start();
        QCOMPARE(host.initResult, -5); // no catalogue
        host.plugin->UninitPlugin();
        QVERIFY(QDir().rename("away", standard) && QFile::rename(standard + "/lut4_11.bin", "identity"));
        host.start();
        QCOMPARE(host.initResult, -5); // no identity in it
        host.plugin->UninitPlugin();
        QVERIFY(!host.parent->findChild<QDialog*>());
        QVERIFY(QFile::rename("identity", standard + "/lut4_11.bin"));
        host.start();
        QCOMPARE(host.initResult, 0);
    }

    void showAndHide()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        QCOMPARE(host.messages, QVector<int>()); // nothing that the start does reaches the host
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
        Session host;
        PluginInitParam param{};
        param.remoteDeviceMap = &host.camera;
        param.languageId = 1;
        QCOMPARE(host.plugin->InitPlugin(&param), -3);
        QCOMPARE(host.plugin->GetErrorText(0), "success");
        QCOMPARE(host.parent->findChildren<QDialog*>().size(), 1);
    }

    void parentGoesFirst()
    {
        Session host;
        host.parent = std::make_unique<QWidget>();
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
        QLibrary library(QStringLiteral(ORLUNE_MODULE));
        QVERIFY(library.load()); // and stays while the dialog lives
        {
            Session host;
            host.destroyObject();
            host.moveSlider("objGammaSlider", 150);
            QCOMPARE(host.writes(), 1);
        }
        library.unload();
    }

    void transfers_data() { addRows(kTransfers); }

    void transfers()
    {
        const auto& row = currentRow(kTransfers);
        Session host(kKinds[row.camera.contains('e')]);
        host.camera.node<FakeCamera::Integer>("TLParamsLocked").value = row.camera.contains('l');
        host.camera.node<FakeCamera::Enumeration>("UserSetSelector").value = row.camera.contains('s');
        if (row.fails)
            host.failure(row.fails) = FakeCamera::Failure::Camera;
        host.onCode = [&](int code) {
            host.camera.log << (code == MSG_DEVICE_ACCESS_BEGIN ? "begin" : "end");
        };
        host.whileBoxOpen = [&] { host.camera.log << "box"; };
        row.act(host);
        QCOMPARE(host.camera.log, row.log);
    }

    // Only a register that a table may be in is written and read.
    void registerLengths()
    {
        const QString box = "Error|Invalid parameter! ";
        constexpr qint64 most = 64 * 1024 * 1024;
        const qint64 lengths[] = {41, 44, 16427, most, 0, 40, most + 1, qint64(1) << 62};
        for (const qint64 length : lengths) {
            const bool isTable = length > 40 && length <= most;
            Session host;
            host.camera.node<FakeCamera::Register>("LUTValueAll").claimedLength = length;
            step(host);
            load(host);
            QCOMPARE(host.camera.log.filter("LUTValueAll").size(), isTable ? 2 : 0);
            QCOMPARE(host.boxes, isTable ? QStringList() : QStringList({box, box}));
        }
    }

    void hostLeaves_data() { addRows(kMoments); }

    // A host ends the plug-in while one of its operations runs: the camera is gone, say, and a box tells the
    // person so.
    void hostLeaves()
    {
        const auto& [name, moment, act] = currentRow(kMoments);
        auto camera = std::make_unique<FakeCamera>();
        camera->node<FakeCamera::Integer>("TLParamsLocked").value = 1;
        WorkingDirectory directory;
        ModuleHost host(camera.get());
        host.show();
        const QPointer<QDialog> dialog = host.dialog;
        const auto leave = [&] {
            host.end();
            camera.reset();
            host.parent.reset();
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
        QVERIFY(!dialog);
    }

    // A person's next action comes while the host still frees the camera for the one before.
    void handlerThatRunsEvents()
    {
        for (const Act outer : {step, load, toDefault}) {
            for (const Act inner : {step, load, toDefault}) {
                Session host;
                auto& locked = host.camera.node<FakeCamera::Integer>("TLParamsLocked").value;
                locked = 1;
                host.onCode = [&](int code) {
                    locked = code == MSG_DEVICE_ACCESS_END;
                    if (code == MSG_DEVICE_ACCESS_BEGIN)
                        inner(host);
                };
                outer(host);
                QCOMPARE(host.messages, (QVector<int>{MSG_DEVICE_ACCESS_BEGIN, MSG_DEVICE_ACCESS_END}));

                // Whatever came of that, the next action is as good as any.
                locked = 0;
                toDefault(host);
                host.type("objContrastLineEdit", "35");
                QCOMPARE(host.boxes, QStringList());
                QCOMPARE(host.contradiction(host.table()), QString());
                QVERIFY(host.save() == host.table());
                QCOMPARE(host.text("objGammaLineEdit"), QString("100"));
            }
        }
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
        Session a, b(kKinds[1]);
        a.wheel("objGammaSlider", {0, 120});
        QCOMPARE(a.text("objGammaLineEdit"), QStringLiteral("110"));
        QCOMPARE(b.text("objGammaLineEdit"), QStringLiteral("100"));
        QCOMPARE(b.writes(), 0);
    }
};

QTEST_MAIN(tst_Module)
#include "tst_Module.moc"

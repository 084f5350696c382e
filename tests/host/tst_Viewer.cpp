// The built viewer as a process: what it refuses and how it says so, and the transcripts of its scripts on
// the built module.
#include <QtTest>

class tst_Viewer : public QObject
{
    Q_OBJECT

private slots:
    void wrongStartEndsWithASentence_data();
    void wrongStartEndsWithASentence();
    void wrongCommandEndsTheScript_data();
    void wrongCommandEndsTheScript();
    void viewerNeedsADisplay();
    void transcriptIsAsBefore_data();
    void transcriptIsAsBefore();

private:
    struct Result
    {
        int exitCode;
        QString out;
        QString error;
    };
    Result run(const QStringList& arguments, const QString& folder = ".",
               const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    void write(const QString& name, const QByteArray& text);

    QTemporaryDir m_folder;
};

// In a folder of this test's own.
tst_Viewer::Result tst_Viewer::run(const QStringList& arguments, const QString& folder,
                                   const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder.filePath(folder));
    process.start(ORLUNE_HOST, arguments);
    constexpr int kPatience = 60000; // milliseconds
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, process.errorString() + QString::fromUtf8(process.readAllStandardError())};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void tst_Viewer::write(const QString& name, const QByteArray& text)
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("can't write %s", qPrintable(name));
}

void tst_Viewer::wrongStartEndsWithASentence_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("named");

    write("text.plx", "no library");
    write("quit.txt", "quit\n");
    const auto module = [](const QString& path) {
        return QStringList{"--script", "quit.txt", "--plugin", path};
    };
    QTest::newRow("module missing") << module("nowhere.plx") << 1 << "There is no plug-in module";
    QTest::newRow("module is no library") << module("text.plx") << 1 << "text.plx cannot be loaded";
    QTest::newRow("library is no module")
        << module(ORLUNE_EMPTY_MODULE) << 1 << "no function CreatePluginObject";
    QTest::newRow("module of another interface")
        << module(ORLUNE_STUB_MODULE) << 1 << "interface version 0x20000";
    QTest::newRow("script missing") << QStringList{"--script", "nowhere.txt"} << 1
                                    << "nowhere.txt cannot be read";
    QTest::newRow("command line") << QStringList{"--camera", "lut2"} << 2 << "\"lut2\"";
}

void tst_Viewer::wrongStartEndsWithASentence()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, named);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, exitCode);
    const QStringList sentences = result.error.split('\n').filter("orlune-host: ");
    QCOMPARE(sentences.size(), 1);
    QVERIFY2(sentences.constFirst().contains(named), qPrintable(result.error));
    QVERIFY2(result.out.isEmpty(), qPrintable(result.out));
}

void tst_Viewer::wrongCommandEndsTheScript_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("named");

    QTest::newRow("unknown command") << QByteArray("shout") << "line 3: there is no command \"shout\"";
    QTest::newRow("beyond the slider")
        << QByteArray("set objGammaSlider 401") << "line 3: the slider goes from 0 to 400";
    QTest::newRow("outside of the widget")
        << QByteArray("click objGammaSlider 5000 1") << "line 3: the widget is";
    QTest::newRow("unknown fault") << QByteArray("fault rain on")
                                   << "line 3: This camera has no fault \"rain\"";
    QTest::newRow("file missing") << QByteArray("poke nowhere.bin") << "line 3: nowhere.bin cannot be read";
}

void tst_Viewer::wrongCommandEndsTheScript()
{
    QFETCH(QByteArray, command);
    QFETCH(QString, named);
    write("wrong.txt", "show\n\n" + command + "\nhide\n");
    const Result result = run({"--script", "wrong.txt"});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.error.contains("wrong.txt, " + named), qPrintable(result.error));
    QCOMPARE(result.out.contains("> show"), command != "shout"); // the lines before run
    QVERIFY(!result.out.contains("> hide"));
}

void tst_Viewer::viewerNeedsADisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    const Result viewer = run({}, ".", environment);
    QCOMPARE(viewer.exitCode, 1);
    QVERIFY2(viewer.error.contains("no display"), qPrintable(viewer.error));
    write("quit.txt", "quit\n");
    const Result script = run({"--script", "quit.txt"}, ".", environment);
    QVERIFY2(script.exitCode == 0, qPrintable(script.error));
    environment.insert("DISPLAY", ":4095"); // nobody's
    const Result version = run({"--version"}, ".", environment);
    QVERIFY2(version.exitCode == 0, qPrintable(version.error));
}

void tst_Viewer::transcriptIsAsBefore_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("options");

    const QString shipped = ORLUNE_SHIPPED_SCRIPTS;
    const QString own = ORLUNE_TEST_SCRIPTS;
    QTest::newRow("tour") << shipped + "/tour.txt" << QStringList{};
    QTest::newRow("sources") << shipped + "/sources.txt" << QStringList{};
    QTest::newRow("sources-chinese") << shipped + "/sources.txt" << QStringList{"--language", "zh"};
    QTest::newRow("faults") << shipped + "/faults.txt" << QStringList{};
    QTest::newRow("registers") << own + "/registers.txt" << QStringList{};
    QTest::newRow("chinese") << own + "/chinese.txt"
                             << QStringList{"--camera",  "no-lut",     "--pixel-format",
                                            "BayerRG10", "--language", "zh"};
}

// Each script in an empty folder: it would meet the files of another.
void tst_Viewer::transcriptIsAsBefore()
{
    QFETCH(QString, script);
    QFETCH(QStringList, options);
    QFile expected(QString(ORLUNE_TEST_SCRIPTS "/%1.transcript").arg(QTest::currentDataTag()));
    QVERIFY(expected.open(QIODevice::ReadOnly));
    const QStringList before = QString::fromUtf8(expected.readAll()).split('\n');

    QDir(m_folder.path()).mkdir(QTest::currentDataTag());
    const Result result = run(QStringList{"--script", script} + options, QTest::currentDataTag());
    QVERIFY2(result.exitCode == 0, qPrintable(result.error));
    const QStringList now = result.out.split('\n');
    for (int i = 0; i < qMin(before.size(), now.size()); ++i)
        QVERIFY2(now.at(i) == before.at(i),
                 qPrintable(QString("line %1:\n  is  %2\n  was %3").arg(i + 1).arg(now.at(i), before.at(i))));
    QCOMPARE(now.size(), before.size());
}

QTEST_GUILESS_MAIN(tst_Viewer)
#include "tst_Viewer.moc"

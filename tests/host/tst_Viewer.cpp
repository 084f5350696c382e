// The built viewer as a process: what it refuses and how it says so, and the transcripts of its scripts on
// the built module.
#include <QtTest>

class tst_Viewer : public QObject
{
    Q_OBJECT

    struct Result
    {
        int exitCode;
        QString out;
        QString error;
    };
    // In a folder of this test's own.
    Result run(const QStringList& arguments, const QString& folder = ".",
               const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
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

    void write(const QString& name, const QByteArray& text)
    {
        QFile file(m_folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }

    QTemporaryDir m_folder;

private slots:
    void initTestCase()
    {
        write("text.plx", "no library");
        write("quit.txt", "quit\n");
    }

    void wrongStartEndsWithASentence()
    {
        const std::tuple<QStringList, int, QString> rows[] = {
            {{"--plugin", "nowhere.plx"}, 1, "There is no plug-in module"},
            {{"--plugin", "text.plx"}, 1, "text.plx cannot be loaded"},
            {{"--plugin", ORLUNE_EMPTY_MODULE}, 1, "no function CreatePluginObject"},
            {{"--plugin", ORLUNE_STUB_MODULE}, 1, "interface version 0x20000"},
            {{"--script", "nowhere.txt"}, 1, "nowhere.txt cannot be read"},
            {{"--camera", "lut2"}, 2, "\"lut2\""}};
        for (const auto& [arguments, exitCode, named] : rows) {
            const Result result = run(QStringList{"--script", "quit.txt"} + arguments);
            QVERIFY2(result.error.contains(named), qPrintable(result.error));
            QCOMPARE(result.error.count("orlune-host: "), 1);
            QCOMPARE(result.exitCode, exitCode);
            QCOMPARE(result.out, QString());
        }
    }

    void wrongCommandEndsTheScript()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"shout", "there is no command \"shout\""},
            {"set objGammaSlider 401", "the slider goes from 0 to 400"},
            {"click objGammaSlider 5000 1", "the widget is"},
            {"fault rain on", "This camera has no fault \"rain\""},
            {"poke nowhere.bin", "nowhere.bin cannot be read"}};
        for (const auto& [command, named] : rows) {
            write("wrong.txt", "show\n\n" + command + "\nhide\n");
            const Result result = run({"--script", "wrong.txt"});
            QVERIFY2(result.error.contains("wrong.txt, line 3: " + named), qPrintable(result.error));
            QCOMPARE(result.exitCode, 2);
            QCOMPARE(result.out.contains("> show"), command != "shout"); // the lines before run
            QVERIFY(!result.out.contains("> hide"));
        }
    }

    void viewerNeedsADisplay()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(name);
        const Result viewer = run({}, ".", environment);
        QCOMPARE(viewer.exitCode, 1);
        QVERIFY2(viewer.error.contains("no display"), qPrintable(viewer.error));
        const Result script = run({"--script", "quit.txt"}, ".", environment);
        QVERIFY2(script.exitCode == 0, qPrintable(script.error));
        environment.insert("DISPLAY", ":4095"); // nobody's
        const Result version = run({"--version"}, ".", environment);
        QVERIFY2(version.exitCode == 0, qPrintable(version.error));
    }

    void transcriptIsAsBefore_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("options");
        const auto row = [](const char* name, const char* script, const QString& options = {}) {
            QTest::newRow(name) << script << options;
        };
        row("tour", ORLUNE_SHIPPED_SCRIPTS "/tour.txt");
        row("sources", ORLUNE_SHIPPED_SCRIPTS "/sources.txt");
        row("sources-chinese", ORLUNE_SHIPPED_SCRIPTS "/sources.txt", "--language zh");
        row("faults", ORLUNE_SHIPPED_SCRIPTS "/faults.txt");
        row("registers", ORLUNE_TEST_SCRIPTS "/registers.txt");
        row("chinese", ORLUNE_TEST_SCRIPTS "/chinese.txt",
            "--camera no-lut --pixel-format BayerRG10 --language zh");
    }
    // Each script in an empty folder: it would meet the files of another.
    void transcriptIsAsBefore()
    {
        QFETCH(QString, script);
        QFETCH(QString, options);
        const QString name = QTest::currentDataTag();
        QFile expected(ORLUNE_TEST_SCRIPTS "/" + name + ".transcript");
        QVERIFY(expected.open(QIODevice::ReadOnly));
        const QStringList before = QString::fromUtf8(expected.readAll()).split('\n');

        QDir(m_folder.path()).mkdir(name);
        const Result result =
            run(QStringList{"--script", script} + options.split(' ', Qt::SkipEmptyParts), name);
        QVERIFY2(result.exitCode == 0, qPrintable(result.error));
        const QStringList now = result.out.split('\n');
        const QString differs("line %1:\n  is  %2\n  was %3");
        for (int i = 0; i < qMin(before.size(), now.size()); ++i)
            QVERIFY2(now.at(i) == before.at(i), qPrintable(differs.arg(i + 1).arg(now.at(i), before.at(i))));
        QCOMPARE(now.size(), before.size());
    }
};

QTEST_GUILESS_MAIN(tst_Viewer)
#include "tst_Viewer.moc"

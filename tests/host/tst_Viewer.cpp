// The built viewer as a process: what it refuses and how it says so, and the transcripts of its scripts on
// the built module.
#include "host/ViewerFolder.h"
#include "support/Rows.h"

const struct
{
    const char* name;
    const char* script;
    const char* options;
} kTranscripts[] = {
    {"tour", ORLUNE_SHIPPED_SCRIPTS "/tour.txt", ""},
    {"sources", ORLUNE_SHIPPED_SCRIPTS "/sources.txt", ""},
    {"sources-chinese", ORLUNE_SHIPPED_SCRIPTS "/sources.txt", "--language zh"},
    {"faults", ORLUNE_SHIPPED_SCRIPTS "/faults.txt", ""},
    {"registers", ORLUNE_TEST_SCRIPTS "/registers.txt", "--pixel-format Mono8"},
    {"chinese", ORLUNE_TEST_SCRIPTS "/chinese.txt", "--camera no-lut --pixel-format BayerRG10 --language zh"},
};

class tst_Viewer : public QObject
{
    Q_OBJECT

    // In a folder that a script leaves its files in.
    std::unique_ptr<ViewerFolder> m_folder;

private slots:
    void init()
    {
        m_folder = std::make_unique<ViewerFolder>();
        m_folder->put("quit.txt", "quit\n");
    }

    void wrongStartEndsWithASentence()
    {
        const std::tuple<const char*, int, const char*> rows[] = {
            {"--plugin nowhere.plx", 1, "There is no plug-in module"},
            {"--plugin quit.txt", 1, "quit.txt cannot be loaded"},
            {"--plugin empty.plx", 1, "no function CreatePluginObject"},
            {"--plugin stub.plx", 1, "interface version 0x20000"},
            {"--script nowhere.txt", 1, "nowhere.txt cannot be read"},
            {"--lut-bytes 1048577", 1, "1048576"},
            {"--pixel-format Mono13", 1, "\"Mono13\""},
            {"--lut-bytes 4k", 2, "--lut-bytes"},
            {"--lut-bytes=-1", 2, "--lut-bytes"},
            {"--colour", 2, "colour"},
            {"--camera lut2", 2, "\"lut2\""},
            {"--camera aravis:", 2, "\"aravis:\""},
            {"--camera aravis:127.0.0.1 --frames ramp", 2, "--frames"},
            {"--camera aravis:127.0.0.1 --state s", 2, "--state"},
            {"--size 8193x10", 2, "--size"},
            {"--size 64x48x3", 2, "--size"}};
        QVERIFY(QFile::copy(ORLUNE_EMPTY_MODULE, m_folder->path("empty.plx")));
        QVERIFY(QFile::copy(ORLUNE_STUB_MODULE, m_folder->path("stub.plx")));
        for (const auto& [arguments, exitCode, named] : rows) {
            const auto run = m_folder->run(QString("--script quit.txt ") + arguments);
            QVERIFY2(run.error.contains(named), qPrintable(run.error));
            QCOMPARE(run.error.count("orlune-host: "), 1);
            QCOMPARE(run.exitCode, exitCode);
            QCOMPARE(run.out, QString());
        }
    }

    void wrongCommandEndsTheScript()
    {
        const std::tuple<const char*, bool, const char*> rows[] = {
            // true: the lines before run
            {"shout\nlater", false, "there is no command \"shout\""},
            {"set\tobjGammaSlider", false, "this command is written: set NAME VALUE"},
            {"wheel objGammaSlider up", false, "this command is written: wheel NAME STEPS"},
            {"lock yes", false, "this command is written: lock on|off"},
            {"fault slow", false, "this command is written: fault NAME on|off"},
            {"set objGammaSlider 401", true, "the slider goes from 0 to 400"},
            {"click objGammaSlider 5000 1", true, "the widget is"},
            {"fault rain on", true, "This camera has no fault \"rain\""},
            {"poke nowhere.bin", true, "nowhere.bin cannot be read"}};
        for (const auto& [command, runs, named] : rows) {
            m_folder->put("wrong.txt", QByteArray("# a\r\n  show \r\n\n") + command + "\nhide\n");
            const auto run = m_folder->run("--script wrong.txt");
            QVERIFY2(run.error.contains(QString("wrong.txt, line 4: ") + named), qPrintable(run.error));
            QCOMPARE(run.exitCode, 2);
            QCOMPARE(run.out.contains("> show"), runs);
            QVERIFY(!run.out.contains("> hide"));
        }
    }

    void viewerNeedsADisplay()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(name);
        const auto viewer = m_folder->run("", environment);
        QCOMPARE(viewer.exitCode, 1);
        QVERIFY2(viewer.error.contains("no display"), qPrintable(viewer.error));
        QCOMPARE(m_folder->run("--script quit.txt", environment).exitCode, 0);
        environment.insert("DISPLAY", ":4095"); // nobody's
        QCOMPARE(m_folder->run("--version", environment).exitCode, 0);
    }

    void transcriptIsAsBefore_data() { addRows(kTranscripts); }
    void transcriptIsAsBefore()
    {
        const auto& [name, script, options] = currentRow(kTranscripts);
        QFile expected(QString(ORLUNE_TEST_SCRIPTS "/%1.transcript").arg(name));
        QVERIFY(expected.open(QIODevice::ReadOnly) && QFile::copy(script, m_folder->path("script.txt")));
        const auto run = m_folder->run(QString("--script script.txt ") + options);
        QVERIFY2(run.exitCode == 0, qPrintable(run.error));
        const QStringList before = QString::fromUtf8(expected.readAll()).split('\n');
        const QStringList now = run.out.split('\n');
        QCOMPARE(now.mid(0, before.size()), before.mid(0, now.size())); // names the first that differs
        QCOMPARE(now.size(), before.size());
    }
};

QTEST_GUILESS_MAIN(tst_Viewer)
#include "tst_Viewer.moc"

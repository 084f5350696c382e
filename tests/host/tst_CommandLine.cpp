#include <QtTest>

#include "host/app/CommandLine.h"

using Outcome = host::ParsedCommandLine::Outcome;

static host::ParsedCommandLine parse(const QString& arguments)
{
    return host::parseCommandLine(("orlune-host " + arguments).split(' '), QDir("/start"));
}

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void everyOptionArrives()
    {
        const host::ParsedCommandLine parsed =
            parse("--camera no-lut --lut-bytes 1064 --language zh --plugin a/../b.plx --frames pictures "
                  "--pixel-format BayerRG12 --size 320x200 --state /elsewhere/state --script s.txt");
        QVERIFY2(parsed.outcome == Outcome::Run, qPrintable(parsed.text));
        const host::Options& options = parsed.options;
        QCOMPARE(options.camera.camera, QString("no-lut"));
        QCOMPARE(options.camera.lutBytes, 1064);
        QCOMPARE(options.camera.frames, QString("/start/pictures"));
        QCOMPARE(options.camera.pixelFormat, QString("BayerRG12"));
        QCOMPARE(options.camera.size, QSize(320, 200));
        QCOMPARE(options.camera.stateFile, QString("/elsewhere/state"));
        QCOMPARE(options.chinese, true);
        QCOMPARE(options.pluginPath, QString("/start/b.plx"));
        QCOMPARE(options.scriptFile, QString("/start/s.txt"));
        QCOMPARE(parse("--frames ramp").options.camera.frames, QString("ramp"));
        QVERIFY(parse("--help --camera lut2").outcome == Outcome::Help);
        QVERIFY(parse("--version").outcome == Outcome::Version);
        QVERIFY(parse("--list").outcome == Outcome::List);
        const auto real = parse("--camera aravis:10.0.0.9 --pixel-format Mono12 --size 64x48");
        QVERIFY2(real.outcome == Outcome::Run, qPrintable(real.text));
        QCOMPARE(real.options.camera.camera, QString("aravis:10.0.0.9"));
    }

    void wrongInputIsNamed()
    {
        const std::pair<const char*, const char*> rows[] = {
            {"--colour", "colour"},
            {"--camera lut2", "lut2"},
            {"--camera aravis:", "aravis:"},
            {"--camera aravis:10.0.0.9 --frames ramp", "--frames"},
            {"--camera aravis:10.0.0.9 --state s", "--state"},
            {"--lut-bytes 4k", "--lut-bytes"},
            {"--lut-bytes=-1", "--lut-bytes"},
            {"--size 8193x10", "--size"},
            {"--size 64x48x3", "--size"}};
        for (const auto& [arguments, named] : rows) {
            const host::ParsedCommandLine parsed = parse(arguments);
            QVERIFY2(parsed.outcome == Outcome::Wrong, arguments);
            QVERIFY2(parsed.text.contains(named), qPrintable(parsed.text));
        }
    }
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

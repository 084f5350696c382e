#include <QtTest>

#include "host/app/CommandLine.h"

using Outcome = host::ParsedCommandLine::Outcome;
Q_DECLARE_METATYPE(Outcome)

static host::ParsedCommandLine parse(const QStringList& arguments)
{
    return host::parseCommandLine(QStringList{"orlune-host"} + arguments, QDir("/work"));
}

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void everyOptionArrives();
    void nothingGivenLeavesTheCameraItsOwnValues();
    void wrongInputIsNamed_data();
    void wrongInputIsNamed();
    void helpAndVersionComeFirst();
};

void tst_CommandLine::everyOptionArrives()
{
    const host::ParsedCommandLine parsed =
        parse({"--camera", "no-lut", "--lut-bytes", "1064", "--language", "zh", "--plugin", "a/../b.plx",
               "--frames", "pictures", "--pixel-format", "BayerRG12", "--size", "320x200", "--state",
               "/tmp/state", "--script", "s.txt"});
    QVERIFY2(parsed.outcome == Outcome::Run, qPrintable(parsed.text));
    const host::Options& options = parsed.options;
    QCOMPARE(options.camera.camera, QString("no-lut"));
    QCOMPARE(options.camera.lutBytes, 1064);
    QCOMPARE(options.camera.frames, QString("/work/pictures"));
    QCOMPARE(options.camera.pixelFormat, QString("BayerRG12"));
    QCOMPARE(options.camera.size, QSize(320, 200));
    QCOMPARE(options.camera.stateFile, QString("/tmp/state"));
    QCOMPARE(options.chinese, true);
    QCOMPARE(options.pluginPath, QString("/work/b.plx"));
    QCOMPARE(options.scriptFile, QString("/work/s.txt"));
    QCOMPARE(parse({"--frames", "ramp"}).options.camera.frames, QString("ramp"));
}

void tst_CommandLine::nothingGivenLeavesTheCameraItsOwnValues()
{
    const host::Options options = parse({}).options;
    QVERIFY(options.camera.camera.isEmpty());
    QCOMPARE(options.camera.lutBytes, -1);
    QVERIFY(options.camera.size.isEmpty());
    QVERIFY(options.camera.frames.isEmpty());
    QVERIFY(options.pluginPath.isEmpty());
    QCOMPARE(options.chinese, false);
}

void tst_CommandLine::wrongInputIsNamed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");

    QTest::newRow("unknown option") << QStringList{"--colour"} << "colour";
    QTest::newRow("value missing") << QStringList{"--camera"} << "--camera";
    QTest::newRow("stray word") << QStringList{"picture.png"} << "picture.png";
    QTest::newRow("camera") << QStringList{"--camera", "lut2"} << "lut2";
    QTest::newRow("language") << QStringList{"--language", "de"} << "--language";
    QTest::newRow("length, no number") << QStringList{"--lut-bytes", "4k"} << "--lut-bytes";
    QTest::newRow("length, negative") << QStringList{"--lut-bytes=-1"} << "--lut-bytes";
    QTest::newRow("size, one side") << QStringList{"--size", "640"} << "--size";
    QTest::newRow("size, empty side") << QStringList{"--size", "0x480"} << "--size";
    QTest::newRow("size, too large") << QStringList{"--size", "8193x10"} << "--size";
    QTest::newRow("size, more behind it") << QStringList{"--size", "64x48x3"} << "--size";
}

void tst_CommandLine::wrongInputIsNamed()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    const host::ParsedCommandLine parsed = parse(arguments);
    QVERIFY(parsed.outcome == Outcome::Wrong);
    QVERIFY2(parsed.text.contains(named), qPrintable(parsed.text));
}

void tst_CommandLine::helpAndVersionComeFirst()
{
    const host::ParsedCommandLine help = parse({"--help", "--camera", "lut2"});
    QVERIFY(help.outcome == Outcome::Help);
    for (const char* option : {"--camera", "--lut-bytes", "--language", "--plugin", "--frames",
                               "--pixel-format", "--size", "--state", "--script", "--help", "--version"})
        QVERIFY2(help.text.contains(option), option);
    QVERIFY(parse({"--version"}).outcome == Outcome::Version);
}

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

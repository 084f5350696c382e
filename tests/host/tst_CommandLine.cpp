#include <QtTest>

#include "host/app/CommandLine.h"

using Outcome = host::ParsedCommandLine::Outcome;
Q_DECLARE_METATYPE(Outcome)

static host::ParsedCommandLine parse(const QStringList& arguments)
{
    return host::parseCommandLine(QStringList{"orlune-host"} + arguments, QDir("/start"));
}

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void everyOptionArrives();
    void wrongInputIsNamed_data();
    void wrongInputIsNamed();
    void helpAndVersionComeFirst();
    void realCamera();
};

void tst_CommandLine::everyOptionArrives()
{
    const host::ParsedCommandLine parsed =
        parse({"--camera", "no-lut", "--lut-bytes", "1064", "--language", "zh", "--plugin", "a/../b.plx",
               "--frames", "pictures", "--pixel-format", "BayerRG12", "--size", "320x200", "--state",
               "/elsewhere/state", "--script", "s.txt"});
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
    QCOMPARE(parse({"--frames", "ramp"}).options.camera.frames, QString("ramp"));
}

void tst_CommandLine::wrongInputIsNamed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");

    QTest::newRow("unknown option") << QStringList{"--colour"} << "colour";
    QTest::newRow("camera") << QStringList{"--camera", "lut2"} << "lut2";
    QTest::newRow("real camera without address") << QStringList{"--camera", "aravis:"} << "aravis:";
    QTest::newRow("scene of a real camera")
        << QStringList{"--camera", "aravis:10.0.0.9", "--frames", "ramp"} << "--frames";
    QTest::newRow("state of a real camera")
        << QStringList{"--camera", "aravis:10.0.0.9", "--state", "s"} << "--state";
    QTest::newRow("length, no number") << QStringList{"--lut-bytes", "4k"} << "--lut-bytes";
    QTest::newRow("length, negative") << QStringList{"--lut-bytes=-1"} << "--lut-bytes";
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
    QVERIFY(parse({"--version"}).outcome == Outcome::Version);
    QVERIFY(parse({"--list"}).outcome == Outcome::List);
}

void tst_CommandLine::realCamera()
{
    const host::ParsedCommandLine parsed =
        parse({"--camera", "aravis:10.0.0.9", "--pixel-format", "Mono12", "--size", "64x48"});
    QVERIFY2(parsed.outcome == Outcome::Run, qPrintable(parsed.text));
    QCOMPARE(parsed.options.camera.camera, QString("aravis:10.0.0.9"));
}

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

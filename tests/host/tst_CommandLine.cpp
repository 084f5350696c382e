// Texts that go into the viewer and come out: the command line, the transcript. What is refused, and the
// scripts, are seen in tst_Viewer.
#include <QtTest>

#include "host/app/CommandLine.h"
#include "host/app/Transcript.h"

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
    }

    void transcriptKeepsOneLineAnEvent()
    {
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        host::Transcript transcript(out, QDir("/start"));
        transcript.event("/start/a.png, /starts/a.png");
        transcript.event("box " + host::Transcript::quoted(QString::fromUtf8("a \"b\"\\\nГ")));
        QCOMPARE(QString::fromUtf8(out.data()),
                 QString::fromUtf8("  a.png, /starts/a.png\n  box \"a \\\"b\\\"\\\\\\nГ\"\n"));
    }
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

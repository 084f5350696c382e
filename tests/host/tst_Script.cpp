#include <QtTest>

#include "host/app/Script.h"
#include "host/app/Transcript.h"

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    // The transcripts show what right lines do.
    void wrongLineIsNamed()
    {
        const std::pair<const char*, const char*> rows[] = {{"clik objSaveLutButton", "\"clik\""},
                                                            {"set\tobjGammaSlider", "set NAME VALUE"},
                                                            {"wheel objGammaSlider up", "wheel NAME STEPS"},
                                                            {"lock yes", "lock on|off"},
                                                            {"fault slow", "fault NAME on|off"}};
        for (const auto& [line, named] : rows) {
            const auto script = host::parseScript(QString("# a\r\n  show \r\n\n%1\nnonsense").arg(line));
            QCOMPARE(script.errorLine, 4);
            QVERIFY2(script.error.contains(named), qPrintable(script.error));
        }
    }

    void transcriptKeepsOneLineAnEvent()
    {
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        host::Transcript transcript(out, QDir("/start"));
        transcript.command("show");
        transcript.event("/start/a.png, /starts/a.png");
        transcript.event("box " + host::Transcript::quoted(QString::fromUtf8("a \"b\"\\\nГ")));
        QCOMPARE(QString::fromUtf8(out.data()),
                 QString::fromUtf8("> show\n  a.png, /starts/a.png\n  box \"a \\\"b\\\"\\\\\\nГ\"\n"));
    }
};

QTEST_GUILESS_MAIN(tst_Script)
#include "tst_Script.moc"

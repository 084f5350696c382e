#include <QtTest>

#include "host/app/Script.h"
#include "host/app/Transcript.h"

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    void linesBecomeCommands()
    {
        const host::Script script = host::parseScript("# a comment\r\n\r\n  show  \r\n"
                                                      "set objStandardComboBox  my curve 2\r\n"
                                                      "file a folder/table.lut\nfile\n"
                                                      "type\tobjGammaLineEdit\n"
                                                      "click objGammaSlider 95 10\n"
                                                      "wheel objGammaSlider -3");
        QVERIFY2(script.error.isEmpty(), qPrintable(script.error));
        QStringList seen;
        for (const host::ScriptCommand& command : script.commands)
            seen += QString("%1 %2").arg(command.line).arg(command.words.join('|'));
        QCOMPARE(seen, QStringList({"3 ", "4 objStandardComboBox|my curve 2", "5 a folder/table.lut", "6 ",
                                    "7 objGammaLineEdit", "8 objGammaSlider|95|10", "9 objGammaSlider|-3"}));
        QVERIFY(script.commands.at(3).verb == host::Verb::File);
        QCOMPARE(script.commands.at(0).text, QString("show"));
    }

    void wrongLineIsNamed()
    {
        const std::pair<const char*, const char*> rows[] = {{"clik objSaveLutButton", "\"clik\""},
                                                            {"set objGammaSlider", "set NAME VALUE"},
                                                            {"wheel objGammaSlider up", "wheel NAME STEPS"},
                                                            {"lock yes", "lock on|off"},
                                                            {"fault slow", "fault NAME on|off"}};
        for (const auto& [line, named] : rows) {
            const host::Script script = host::parseScript(QString("show\n\n%1\nnonsense").arg(line));
            QCOMPARE(script.errorLine, 3);
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

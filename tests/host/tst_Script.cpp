#include <QtTest>

#include "host/app/Script.h"
#include "host/app/Transcript.h"

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    void linesBecomeCommands();
    void wrongLineIsNamed_data();
    void wrongLineIsNamed();
    void transcriptKeepsOneLineAnEvent();
};

void tst_Script::linesBecomeCommands()
{
    const host::Script script = host::parseScript("# a comment\r\n"
                                                  "\r\n"
                                                  "  show  \r\n"
                                                  "set objStandardComboBox  my curve 2\r\n"
                                                  "file a folder/table.lut\n"
                                                  "file\n"
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

void tst_Script::wrongLineIsNamed_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("named");

    QTest::newRow("no such command") << "clik objSaveLutButton"
                                     << "\"clik\"";
    QTest::newRow("word missing") << "set objGammaSlider"
                                  << "set NAME VALUE";
    QTest::newRow("no number") << "wheel objGammaSlider up"
                               << "wheel NAME STEPS";
    QTest::newRow("neither on nor off") << "lock yes"
                                        << "lock on|off";
    QTest::newRow("fault without a switch") << "fault slow"
                                            << "fault NAME on|off";
}

void tst_Script::wrongLineIsNamed()
{
    QFETCH(QString, line);
    QFETCH(QString, named);
    const host::Script script = host::parseScript("show\n\n" + line + "\nnonsense");
    QCOMPARE(script.errorLine, 3);
    QVERIFY2(script.error.contains(named), qPrintable(script.error));
}

void tst_Script::transcriptKeepsOneLineAnEvent()
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

QTEST_GUILESS_MAIN(tst_Script)
#include "tst_Script.moc"

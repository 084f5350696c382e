#include <QRegularExpression>
#include <QtTest>

#include "ToolProcess.h"

// Help, manual page and completion tell of the same options.
class tst_ToolTexts : public QObject
{
    Q_OBJECT

private slots:
    void options_data();
    void options();
    void completion_data();
    void completion();

private:
    QStringList complete(const QStringList& words) const;
    ToolFolder m_folder;
};

static const QStringList kCommands{"info", "make", "convert", "diff", "apply", "plot"};

void tst_ToolTexts::options_data()
{
    QTest::addColumn<QString>("command");
    for (const QString& command : kCommands)
        QTest::newRow(qPrintable(command)) << command;
}

void tst_ToolTexts::options()
{
    QFETCH(QString, command);
    const ToolRun help = m_folder.run({command, "-h"});
    QCOMPARE(help.status, 0);

    QStringList told;
    const QRegularExpression option("^  (?:-\\w, )?(--[a-z-]+)", QRegularExpression::MultilineOption);
    for (auto found = option.globalMatch(help.out); found.hasNext();)
        told += found.next().captured(1);
    told.sort();
    QVERIFY(told.contains("--help"));
    QStringList completed = complete({command, "--"});
    completed.sort();
    QCOMPARE(completed, told);

    QFile file(ORLUNE_TOOLS "/orlune-lut.1");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll()).replace("\\-", "-");
    const QString synopsis = page.section(".B orlune-lut " + command + '\n', 1)
                                 .section(QRegularExpression("\n(\\.br|\\.SH)"), 0, 0);
    for (const QString& each : told)
        QVERIFY2(each == "--help" || synopsis.contains(each), qPrintable(each));
    for (const QString& each : told)
        QVERIFY2(page.section(".SH OPTIONS", 1).contains(each), qPrintable(each));
}

// What the shell offers for the last word.
QStringList tst_ToolTexts::complete(const QStringList& words) const
{
    const ToolRun result = m_folder.runProgram(
        "bash", QStringList{"-c",
                            ". " ORLUNE_TOOLS "/orlune-lut.bash-completion; COMP_WORDS=(\"$@\"); "
                            "COMP_CWORD=$(($# - 1)); _orlune_lut; printf '%s\\n' \"${COMPREPLY[@]}\"",
                            "bash", ORLUNE_LUT} +
                    words);
    return QString(result.out).split('\n', Qt::SkipEmptyParts);
}

void tst_ToolTexts::completion_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("command") << QStringList{"co"} << QStringList{"convert"};
    QTest::newRow("form of a table") << QStringList{"convert", "--to", "c"} << QStringList{"csv", "cube"};
    QTest::newRow("file with a blank") << QStringList{"info", "a"} << QStringList{"a b.lut"};
    QTest::newRow("own curve") << QStringList{"make", "--standard-dir", "curves", "--base", "o"}
                               << QStringList{"own"};
}

void tst_ToolTexts::completion()
{
    QFETCH(QStringList, words);
    m_folder.put("a b.lut", "");
    QDir(m_folder.path("")).mkdir("curves");
    m_folder.put("curves/own.bin", "");
    m_folder.put("curves/o.old.bin", "");
    QTEST(complete(words), "expected");
}

QTEST_GUILESS_MAIN(tst_ToolTexts)
#include "tst_ToolTexts.moc"

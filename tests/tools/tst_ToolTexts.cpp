#include <QRegularExpression>
#include <QtTest>

#include "ToolProcess.h"

// Help, manual page and completion tell of the same options.
class tst_ToolTexts : public QObject
{
    Q_OBJECT

    // What the shell offers for the last word, in alphabetical order.
    QStringList complete(const QStringList& words) const
    {
        const QString script = ". " ORLUNE_TOOLS "/orlune-lut.bash-completion; COMP_WORDS=(\"$@\"); "
                               "COMP_CWORD=$(($# - 1)); _orlune_lut; printf '%s\\n' \"${COMPREPLY[@]}\"";
        const ToolRun result =
            m_folder.runProgram("bash", QStringList{"-c", script, "bash", ORLUNE_LUT} + words);
        QStringList offered = QString(result.out).split('\n', Qt::SkipEmptyParts);
        offered.sort();
        return offered;
    }

    ToolFolder m_folder;

private slots:
    void options()
    {
        QFile file(ORLUNE_TOOLS "/orlune-lut.1");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString page = QString::fromUtf8(file.readAll()).replace("\\-", "-");
        const QRegularExpression option("^  (?:-\\w, )?(--[a-z-]+)", QRegularExpression::MultilineOption);
        for (const QString command : {"info", "make", "convert", "diff", "apply", "plot"}) {
            const ToolRun help = m_folder.run(command + " -h");
            QCOMPARE(help.status, 0);
            QStringList told;
            for (auto found = option.globalMatch(help.out); found.hasNext();)
                told += found.next().captured(1);
            told.sort();
            QVERIFY(told.contains("--help"));
            QCOMPARE(complete({command, "--"}), told);
            const QString synopsis = page.section(".B orlune-lut " + command + '\n', 1)
                                         .section(QRegularExpression("\n(\\.br|\\.SH)"), 0, 0);
            for (const QString& each : told) {
                QVERIFY2(each == "--help" || synopsis.contains(each), qPrintable(command + ' ' + each));
                QVERIFY2(page.section(".SH OPTIONS", 1).contains(each), qPrintable(each));
            }
        }
    }

    void completion()
    {
        QDir(m_folder.path()).mkdir("curves");
        for (const char* file : {"a b.lut", "curves/own.bin", "curves/o.old.bin"})
            m_folder.put(file);
        QCOMPARE(complete({"co"}), QStringList{"convert"});
        QCOMPARE(complete({"convert", "--to", "c"}), (QStringList{"csv", "cube"}));
        QCOMPARE(complete({"info", "a"}), QStringList{"a b.lut"});
        QCOMPARE(complete({"make", "--standard-dir", "curves", "--base", "o"}), QStringList{"own"});
    }
};

QTEST_GUILESS_MAIN(tst_ToolTexts)
#include "tst_ToolTexts.moc"

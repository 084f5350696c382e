// What the compiler and the linker put into a release against overruns, read back from what was built.
#include <QtTest>

class tst_Hardening : public QObject
{
    Q_OBJECT

private slots:
    void holds_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("line");
        const struct
        {
            const char* what;
            const char* option;
            const char* line;
        } rows[] = {
            {"read-only relocations", "--program-headers", R"(^ +GNU_RELRO )"},
            {"symbols bound at the start", "--dynamic", R"(\(FLAGS(_1)?\).*NOW)"},
            {"a stack that is not code", "--program-headers", R"(^ +GNU_STACK .* RW +0x)"},
            {"stack protector", "--dyn-syms", R"(__stack_chk_fail)"},
            {"code at any address", "--file-header", R"(Type: +DYN )"},
        };
        const struct
        {
            const char* name;
            const char* file;
        } programs[] = {{"module", ORLUNE_MODULE}, {"viewer", ORLUNE_HOST}, {"tool", ORLUNE_TOOL}};
        for (const auto& program : programs)
            for (const auto& row : rows)
                QTest::addRow("%s, %s", program.name, row.what) << program.file << row.option << row.line;
    }

    void holds()
    {
        QFETCH(QString, file);
        QFETCH(QString, option);
        QFETCH(QString, line);
        QProcess readelf;
        readelf.start(ORLUNE_READELF, {"--wide", option, file});
        QVERIFY(readelf.waitForFinished() && readelf.exitCode() == 0);
        const QRegularExpression wanted(line, QRegularExpression::MultilineOption);
        QVERIFY(wanted.match(readelf.readAllStandardOutput()).hasMatch());
    }
};

QTEST_GUILESS_MAIN(tst_Hardening)
#include "tst_Hardening.moc"

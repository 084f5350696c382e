// What the compiler and the linker put into a release against overruns, read back from what was built.
#include <QtTest>

class tst_Hardening : public QObject
{
    Q_OBJECT

private slots:
    void holds()
    {
        const struct
        {
            const char* what;
            const char* option;
            const char* line;
            bool moduleToo = true;
        } rows[] = {
            {"read-only relocations", "--program-headers", R"(^ +GNU_RELRO )"},
            {"symbols bound at the start", "--dynamic", R"(\(FLAGS(_1)?\).*NOW)"},
            {"a stack that is not code", "--program-headers", R"(^ +GNU_STACK .* RW +0x)"},
            {"stack protector", "--dyn-syms", R"(__stack_chk_fail)"},
            {"code at any address", "--file-header", R"(Type: +DYN )"},
            // The module makes no call that needs the check at run time.
            {"checked library calls", "--dyn-syms", "__fprintf_chk", false},
        };
        for (const char* program : {ORLUNE_MODULE, ORLUNE_HOST, ORLUNE_TOOL}) {
            for (const auto& row : rows) {
                if (!row.moduleToo && QByteArray(program) == ORLUNE_MODULE)
                    continue;
                QProcess readelf;
                readelf.start(ORLUNE_READELF, {"--wide", row.option, program});
                QVERIFY(readelf.waitForFinished() && readelf.exitCode() == 0);
                const QRegularExpression wanted(row.line, QRegularExpression::MultilineOption);
                QVERIFY2(wanted.match(readelf.readAllStandardOutput()).hasMatch(),
                         qPrintable(QString(program) + ": " + row.what));
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_Hardening)
#include "tst_Hardening.moc"

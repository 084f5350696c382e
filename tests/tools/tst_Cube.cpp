#include <QtTest>

#include "tools/Cube.h"
#include "tools/Failure.h"

using namespace tools;
using orlune::LutImage;

class tst_Cube : public QObject
{
    Q_OBJECT

private slots:
    void good_data();
    void good();
    void bad_data();
    void bad();
    void everyEntryComesBack();
};

static QByteArray threeTimes(const QByteArray& value)
{
    return value + ' ' + value + ' ' + value + '\n';
}

// The first, the middle and the last entry.
void tst_Cube::good_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("middle"); // entry 2048
    QTest::addColumn<int>("last");
    const QByteArray two = "LUT_1D_SIZE 2\n";
    const QByteArray ramp = threeTimes("0") + threeTimes("1");
    const auto row = [](const char* name, const QByteArray& text, int first, int middle, int last) {
        QTest::newRow(name) << text << first << middle << last;
    };
    row("ramp", two + ramp, 0, 2048, 4095);
    row("carriage returns", QByteArray(two + ramp).replace("\n", "\r\n"), 0, 2048, 4095);
    row("blanks and tabs", two + "\n  0\t0   0 \n\n\t1 1 1\n", 0, 2048, 4095);
    row("comments and title", "# hello\nTITLE \"LUT_1D_SIZE 9\"\n" + two + "#1 1 1\n" + ramp, 0, 2048, 4095);
    row("exponents", two + threeTimes("1e-3") + threeTimes("1E0"), 4, 2050, 4095);
    row("rounds to an end", two + threeTimes("-0.0001") + threeTimes("1.0001"), 0, 2048, 4095);
    row("three values", "LUT_1D_SIZE 3\n" + threeTimes("0") + threeTimes("0.2") + threeTimes("1"), 0, 820,
        4095);
    row("upper half of the domain", "DOMAIN_MIN 0.5 0.5 0.5\n" + two + ramp, 0, 1, 4095);
    row("wider domain", two + "DOMAIN_MIN -1 -1 -1\nDOMAIN_MAX 2 2 2\n" + ramp, 1365, 2048, 2730);
    row("input range", two + "LUT_1D_INPUT_RANGE 0.0 0.5\n" + ramp, 0, 4095, 4095);
    row("domain between two inputs",
        two + "DOMAIN_MIN 0.50001 0.50001 0.50001\nDOMAIN_MAX 0.50002 0.50002 0.50002\n" + ramp, 0, 4095,
        4095);
}

void tst_Cube::good()
{
    QFETCH(QByteArray, text);
    const LutImage image = parseCube(text, "x.cube");
    QTEST(image.Entries[0], "first");
    QTEST(image.Entries[2048], "middle");
    QTEST(image.Entries[4095], "last");
}

void tst_Cube::bad_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("sentence");
    const QByteArray two = "LUT_1D_SIZE 2\n";
    const QByteArray ramp = threeTimes("0") + threeTimes("1");
    const auto row = [](const char* name, const QByteArray& text, const char* sentence) {
        QTest::newRow(name) << text << sentence;
    };
    row("empty", "", "no LUT_1D_SIZE");
    row("three dimensions", "LUT_3D_SIZE 2\n" + ramp, "three dimensions");
    row("size beyond", "LUT_1D_SIZE 65537\n" + ramp, "2 to 65536");
    row("size twice", two + two + ramp, "once");
    row("too few", two + threeTimes("0"), "ends after 1 of 2");
    row("too many", two + ramp + ramp, "more than 2");
    row("unequal columns", two + "0 0 0\n1 1 0.5\n", "line 3: the three columns differ");
    row("above 1", two + threeTimes("0") + threeTimes("1.001"), "0 to 1");
    row("far above", two + threeTimes("1e300") + threeTimes("1"), "0 to 1");
    row("no number", two + "0 0 0x1\n", "no number");
    row("not a number", two + threeTimes("nan"), "not understood");
    row("unknown keyword", two + "GAMMA 2\n" + ramp, "\"GAMMA\" is not understood");
    row("keyword behind values", two + ramp + "TITLE \"x\"\n", "before the values");
    row("domain reversed", two + "DOMAIN_MIN 1 1 1\nDOMAIN_MAX 0 0 0\n" + ramp, "domain");
    row("domain of three", two + "DOMAIN_MAX 1 1 2\n" + ramp, "differ");
    row("endless domain", two + "DOMAIN_MAX 1e308 1e308 1e308\n" + ramp, "domain");
}

void tst_Cube::bad()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, sentence);
    try {
        parseCube(text, "x.cube");
        QFAIL("taken for a table");
    } catch (const Failure& failure) {
        QCOMPARE(failure.status, kNoTable);
        QVERIFY2(failure.sentence.contains(sentence), qPrintable(failure.sentence));
        QVERIFY2(failure.sentence.contains("x.cube"), qPrintable(failure.sentence));
    }
}

void tst_Cube::everyEntryComesBack()
{
    LutImage image{};
    for (int i = 0; i < 4096; ++i)
        image.Entries[i] = (i * 1237 + 11) % 4096; // each output once
    const QByteArray text = cubeText(image);
    QVERIFY(text.startsWith(
        "TITLE \"Orlune camera table\"\nLUT_1D_SIZE 4096\nDOMAIN_MIN 0 0 0\nDOMAIN_MAX 1 1 1\n"
        "0.002686 0.002686 0.002686\n"));
    QVERIFY(orlune::ToBytes(parseCube(text, "x.cube")) == orlune::ToBytes(image));
}

QTEST_APPLESS_MAIN(tst_Cube)
#include "tst_Cube.moc"

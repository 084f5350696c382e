#include <QtTest>

#include "tools/Cube.h"
#include "tools/Failure.h"

using namespace tools;
using orlune::LutImage;

static QByteArray threeTimes(const QByteArray& value)
{
    return value + ' ' + value + ' ' + value + '\n';
}

class tst_Cube : public QObject
{
    Q_OBJECT

    const QByteArray two = "LUT_1D_SIZE 2\n", ramp = threeTimes("0") + threeTimes("1");

private slots:
    void good_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QVector<int>>("expected"); // entries 0, 2048 and 4095
        const auto row = [](const char* name, const QByteArray& text, int first, int middle, int last) {
            QTest::newRow(name) << text << QVector<int>{first, middle, last};
        };
        row("ramp", two + ramp, 0, 2048, 4095);
        row("carriage returns", QByteArray(two + ramp).replace("\n", "\r\n"), 0, 2048, 4095);
        row("blanks and tabs", two + "\n  0\t0   0 \n\n\t1 1 1\n", 0, 2048, 4095);
        row("comments", "# hello\nTITLE \"LUT_1D_SIZE 9\"\n" + two + "#1 1 1\n" + ramp, 0, 2048, 4095);
        row("exponents", two + threeTimes("1e-3") + threeTimes("1E0"), 4, 2050, 4095);
        row("rounds to an end", two + threeTimes("-0.0001") + threeTimes("1.0001"), 0, 2048, 4095);
        row("three", "LUT_1D_SIZE 3\n0 0 0\n" + threeTimes("0.2") + threeTimes("1"), 0, 820, 4095);
        row("upper half of the domain", "DOMAIN_MIN 0.5 0.5 0.5\n" + two + ramp, 0, 1, 4095);
        row("wider domain", two + "DOMAIN_MIN -1 -1 -1\nDOMAIN_MAX 2 2 2\n" + ramp, 1365, 2048, 2730);
        row("input range", two + "LUT_1D_INPUT_RANGE 0.0 0.5\n" + ramp, 0, 4095, 4095);
        row("between two inputs", two + "LUT_1D_INPUT_RANGE 0.50001 0.50002\n" + ramp, 0, 4095, 4095);
    }
    void good()
    {
        QFETCH(QByteArray, text);
        const LutImage image = parseCube(text, "x.cube");
        QTEST((QVector<int>{image.Entries[0], image.Entries[2048], image.Entries[4095]}), "expected");
    }

    void bad()
    {
        const std::pair<QByteArray, const char*> rows[] = {
            {"", "no LUT_1D_SIZE"},
            {"LUT_3D_SIZE 2\n" + ramp, "three dimensions"},
            {"LUT_1D_SIZE 65537\n" + ramp, "2 to 65536"},
            {two + two + ramp, "once"},
            {two + threeTimes("0"), "ends after 1 of 2"},
            {two + ramp + ramp, "more than 2"},
            {two + "0 0 0\n1 1 0.5\n", "line 3: the three columns differ"},
            {two + threeTimes("0") + threeTimes("1.001"), "0 to 1"},
            {two + threeTimes("1e300") + threeTimes("1"), "0 to 1"},
            {two + "0 0 0x1\n", "no number"},
            {two + threeTimes("nan"), "not understood"},
            {two + "GAMMA 2\n" + ramp, "\"GAMMA\" is not understood"},
            {two + ramp + "TITLE \"x\"\n", "before the values"},
            {two + "DOMAIN_MIN 1 1 1\nDOMAIN_MAX 0 0 0\n" + ramp, "domain"},
            {two + "DOMAIN_MAX 1 1 2\n" + ramp, "differ"},
            {two + "DOMAIN_MAX 1e308 1e308 1e308\n" + ramp, "domain"}};
        for (const auto& [text, words] : rows) {
            try {
                parseCube(text, "x.cube");
                QVERIFY2(false, text);
            } catch (const Failure& failure) {
                QCOMPARE(failure.status, kNoTable);
                QVERIFY2(failure.sentence.contains(words), qPrintable(failure.sentence));
                QVERIFY2(failure.sentence.contains("x.cube"), qPrintable(failure.sentence));
            }
        }
    }

    void everyEntryComesBack()
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
};

QTEST_APPLESS_MAIN(tst_Cube)
#include "tst_Cube.moc"

#include <QtTest>

#include "tools/Cube.h"
#include "tools/Failure.h"

using namespace tools;

static QByteArray threeTimes(const QByteArray& value)
{
    return value + ' ' + value + ' ' + value + '\n';
}

class tst_Cube : public QObject
{
    Q_OBJECT

    const QByteArray two = "LUT_1D_SIZE 2\n", ramp = threeTimes("0") + threeTimes("1");

private slots:
    void good()
    {
        // Entries 0, 2048 and 4095.
        const std::tuple<QByteArray, int, int, int> rows[] = {
            {two + ramp, 0, 2048, 4095},
            {QByteArray(two + ramp).replace("\n", "\r\n"), 0, 2048, 4095},
            {two + "\n  0\t0   0 \n\n\t1 1 1\n", 0, 2048, 4095},
            {"# hello\nTITLE \"LUT_1D_SIZE 9\"\n" + two + "#1 1 1\n" + ramp, 0, 2048, 4095},
            {two + threeTimes("1e-3") + threeTimes("1E0"), 4, 2050, 4095},
            {two + threeTimes("-0.0001") + threeTimes("1.0001"), 0, 2048, 4095}, // rounds to an end
            {"LUT_1D_SIZE 3\n0 0 0\n" + threeTimes("0.2") + threeTimes("1"), 0, 820, 4095},
            {"DOMAIN_MIN 0.5 0.5 0.5\n" + two + ramp, 0, 1, 4095},
            {two + "DOMAIN_MIN -1 -1 -1\nDOMAIN_MAX 2 2 2\n" + ramp, 1365, 2048, 2730},
            {two + "LUT_1D_INPUT_RANGE 0.0 0.5\n" + ramp, 0, 4095, 4095},
            {two + "LUT_1D_INPUT_RANGE 0.50001 0.50002\n" + ramp, 0, 4095, 4095}}; // between two inputs
        for (const auto& [text, first, middle, last] : rows) {
            const auto image = parseCube(text, "x.cube");
            QVERIFY2(image.Entries[0] == first && image.Entries[2048] == middle, text);
            QVERIFY2(image.Entries[4095] == last, text);
        }
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
            {two + "0 0 0\n\n1 1 0.5\n", "line 4: the three columns differ"},
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
                QVERIFY2(failure.sentence.contains(words) && failure.sentence.contains("x.cube"), text);
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_Cube)
#include "tst_Cube.moc"

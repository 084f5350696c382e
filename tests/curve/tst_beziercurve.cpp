#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "PlainCurve.h"
#include "curve/BezierCurve.h"
#include "support/Allocations.h"
#include "support/Rows.h"

using Table = std::vector<std::int32_t>;
using Points = std::vector<TablePoint>;
using Call = int (*)(CBezierCurve& curve, std::int32_t* table);

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

template <typename Value>
Table MakeTable(Value value)
{
    Table table;
    for (int i = 0; i < 4096; ++i)
        table.push_back(value(i));
    return table;
}

const Table kIdentity = MakeTable([](int i) { return i; });

Table Pick(const Table& table, const Table& places)
{
    Table values;
    for (const int place : places)
        values.push_back(table.at(place));
    return values;
}

// Where two tables first differ; empty when they are the same.
QString Difference(const Table& table, const Table& wanted)
{
    const auto [a, b] = std::mismatch(table.begin(), table.end(), wanted.begin(), wanted.end());
    if (a == table.end() || b == wanted.end())
        return table.size() == wanted.size() ? "" : "sizes";
    return QString("[%1] is %2, not %3").arg(a - table.begin()).arg(*a).arg(*b);
}

using C = CBezierCurve&;
using T = std::int32_t*;

int WithPoints(C curve, const Points& points, int bits, T table)
{
    return curve.CreatePointCurve(points.data(), int(points.size()), bits, table);
}

// What a call makes of a table: entries of it, and the plain formulas' whole table.
struct Example
{
    QByteArray name;
    Table base, places, values;
    std::function<int(C, T)> call;
    std::function<void(PlainCurve&, T)> plain;
};
Example Curve(const char* name, int bits, const Points& points, const Table& places, const Table& values)
{
    const auto call = [=](C curve, T table) { return WithPoints(curve, points, bits, table); };
    const auto formulas = [=](PlainCurve& plain, T table) {
        plain.PointCurve(points.data(), int(points.size()), bits, table);
    };
    return {name, Table(1 << bits, -1), places, values, call, formulas};
}
Example Range(const QByteArray& name, double gamma, int b, int c, int lo, int hi, const Table& places,
              const Table& values, const Table& base = kIdentity)
{
    const auto call = [=](C curve, T table) { return curve.AdjustLutRange(b, c, gamma, lo, hi, table); };
    const auto formulas = [=](PlainCurve& plain, T table) { plain.AdjustRange(b, c, gamma, lo, hi, table); };
    return {name, base, places, values, call, formulas};
}
Example Whole(double gamma, int brightness, int contrast, const Table& values)
{
    const QByteArray name = QString("%1, %2, %3").arg(gamma).arg(brightness).arg(contrast).toLatin1();
    return Range(name, gamma, brightness, contrast, 0, 4095,
                 {0, 1, 16, 100, 1024, 2048, 3000, 3500, 4000, 4080, 4095}, values);
}
const Points kSixteen = [] {
    Points points;
    for (int k = 0; k < 16; ++k)
        points.push_back({k * 273, (k * 1237) % 4096});
    return points;
}();
const Example kExamples[] = {
    Curve("identity", 12, {{0, 0}, {4095, 4095}}, kIdentity, kIdentity),
    Curve("no extension", 12, {{1000, 500}, {3000, 3500}}, {0, 999, 1000, 2000, 3000, 3001, 4095},
          {0, 0, 500, 2000, 3500, 0, 0}),
    Curve("falling middle", 12, {{0, 0}, {1000, 3000}, {3000, 1000}, {4095, 4095}},
          {500, 1000, 1500, 2000, 2500, 3000, 3500}, {2000, 3000, 2748, 1995, 1244, 1000, 1895}),
    Curve("cut off", 12, {{1000, 4000}, {3000, 4095}, {3500, 0}},
          {999, 1000, 2000, 3000, 3100, 3400, 3500, 3501}, {0, 4000, 4095, 4095, 3750, 1135, 0, 0}),
    Curve("8 bits", 8, {{0, 0}, {128, 64}, {255, 255}}, {64, 128, 200, 255}, {20, 64, 161, 255}),
    Curve("no way between", 12, {{7, 9}, {8, 4000}}, {6, 7, 8, 9}, {0, 9, 4000, 0}),
    Curve("any height", 16, {{0, kLowest}, {1, kHighest}, {65534, kLowest}, {65535, kHighest}},
          {0, 1, 65534, 65535}, {0, 65535, 0, 65535}),
    Curve("sixteen", 12, kSixteen, {0, 273, 4095}, {0, 1237, 2171}),
    Whole(2.0, 0, 0, {0, 63, 255, 639, 2047, 2906, 3551, 3827, 4056, 4089, 4095}),
    Whole(4.0, 0, 0, {0, 511, 1023, 1618, 2906, 3488, 3829, 3964, 4076, 4092, 4095}),
    Whole(0.5, 0, 0, {0, 0, 0, 2, 256, 1024, 2197, 3009, 3937, 4071, 4095}),
    Whole(0.0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4095}),
    Whole(1.0, 150, 0, {0, 3, 45, 280, 2616, 3857, 4061, 4052, 4079, 4092, 4095}),
    Whole(1.0, -150, 0, {0, 0, 3, 18, 210, 561, 1140, 1580, 3759, 4054, 4095}),
    Whole(1.0, 0, 150, {0, 0, 0, 0, 0, 2048, 4095, 4095, 4095, 4095, 4095}),
    Whole(1.0, 0, -150, {0, 3, 45, 278, 2223, 2048, 1822, 2686, 3885, 4062, 4095}),
    Whole(1.5, 30, -40, {0, 28, 186, 618, 1988, 2642, 3355, 3710, 4037, 4085, 4095}),
    Range("inner", 2.0, 0, 0, 100, 1000, {99, 100, 101, 200, 500, 900, 999, 1000, 1001},
          {99, 100, 127, 400, 700, 956, 999, 1000, 1001}),
    Range("inner step", 0.0, 0, 0, 100, 1000, {99, 100, 101, 999, 1000, 1001},
          {99, 100, 100, 100, 1000, 1001}),
    Range("5000 outside", 2.0, 0, 0, 100, 1000, {50, 500}, {5000, 700},
          MakeTable([](int i) { return i == 50 ? 5000 : i; })),
    Range("scattered", 0.7, 0, 0, 7, 70, {1}, {1237}, MakeTable([](int i) { return i * 1237 % 4096; })),
    Range("neutral, any range", 1.00005, 0, 0, 10, 0, {3, 3000}, {3, 3000}),
};

const Points kUp{{0, 0}, {9, 9}}, kFalling{{0, 0}, {9, 7}, {7, 9}}, kBeyond{{0, 0}, {256, 9}};

// What is refused, on a table of wrong entries.
const struct
{
    const char* name;
    int code;
    Call call;
} kRefused[] = {
    {"points null", -101, [](C c, T t) { return c.CreatePointCurve(nullptr, 2, 7, t); }},
    {"points out null", -101, [](C c, T) { return WithPoints(c, kUp, 7, nullptr); }},
    {"points bits 17", -102, [](C c, T t) { return WithPoints(c, kUp, 17, t); }},
    {"one point", -102, [](C c, T t) { return WithPoints(c, Points(1), 12, t); }},
    {"seventeen points", -102, [](C c, T t) { return WithPoints(c, Points(17), 12, t); }},
    {"x falls", -102, [](C c, T t) { return WithPoints(c, kFalling, 12, t); }},
    {"x behind", -102, [](C c, T t) { return WithPoints(c, kBeyond, 8, t); }},
    {"gamma below", -102, [](C c, T t) { return c.CreateGammaLut(-0.01, 12, t); }},
    {"gamma no number", -102, [](C c, T t) { return c.CreateGammaLut(kNaN, 12, t); }},
    {"gamma null", -101, [](C c, T) { return c.CreateGammaLut(1.0, 12, nullptr); }},
    {"brightness", -102, [](C c, T t) { return c.CreateBrightnessLut(-151, 12, t); }},
    {"contrast", -102, [](C c, T t) { return c.CreateContrastLut(kHighest, 12, t); }},
    {"all brightness", -102, [](C c, T) { return c.CreateCompositeLut(151, 0, 1.0, 12, nullptr); }},
    {"all gamma", -102, [](C c, T) { return c.CreateCompositeLut(0, 0, 4.01, 12, nullptr); }},
    {"all null", -101, [](C c, T) { return c.CreateCompositeLut(0, 0, 1.0, 12, nullptr); }},
    {"range null", -101, [](C c, T) { return c.AdjustLutRange(0, 0, 1.0, 0, 4095, nullptr); }},
    {"range of 63", -102, [](C c, T t) { return c.AdjustLutRange(1, 0, 1.0, 0, 62, t); }},
    {"range brightness", -102, [](C c, T t) { return c.AdjustLutRange(151, 0, 1.0, 0, 100, t); }},
    {"entry -7", -102, [](C c, T t) { return c.AdjustLutRange(1, 0, 1.0, 1100, 2000, t); }},
    {"entries far apart", -102, [](C c, T t) { return c.AdjustLutRange(1, 0, 1.0, 2900, 3200, t); }},
};

} // namespace

class TestBezierCurve : public QObject
{
    Q_OBJECT

    CBezierCurve m_curve; // one object throughout: no result may depend on the calls before
    PlainCurve m_plain;

private slots:
    void intPow()
    {
        QCOMPARE(IntPow(kNaN, 0), 1.0);
        QCOMPARE(IntPow(3.0, 5), 243.0);
        QCOMPARE(IntPow(2.0, -2), 0.25);
        QCOMPARE(IntPow(-1.0, kLowest), 1.0);
        QCOMPARE(IntPow(-1.0, kHighest), -1.0);
    }

    void examples_data() { addRows(kExamples); }

    void examples()
    {
        const Example& row = currentRow(kExamples);
        Table table = row.base, plain = row.base;
        QCOMPARE(row.call(m_curve, table.data()), 0);
        QCOMPARE(Difference(Pick(table, row.places), row.values), QString());
        row.plain(m_plain, plain.data());
        QCOMPARE(Difference(table, plain), QString());
    }

    // Segments that meet the table's borders, or that make no sense, with room on both sides of the table.
    void segment()
    {
        const struct
        {
            double x1, x2;
            int first, count;
        } rows[] = {{0.8, 1.7, 8, 3},  {0.0, kInfinite, 0, 11}, {-0.1, 0.1, 0, 3},
                    {-0.2, 0.5, 0, 0}, {0.3, 0.3, 0, 0},        {kNaN, 0.2, 0, 0}};
        for (const auto& [x1, x2, first, count] : rows) {
            const CurvePoint points[] = {{x1, 7.0}, {x2, 7.0}};
            std::vector<double> wanted(33, -1.0), table(wanted);
            std::fill_n(wanted.begin() + 11 + first, count, 1.0);
            m_curve.BezierSegment({points, table.data() + 11, 11}, 0, 0, 1, 1);
            QVERIFY2(table == wanted, qPrintable(QString("%1 to %2").arg(x1).arg(x2)));
        }
    }

    void wholeTables_data()
    {
        QTest::addColumn<int>("bits");
        for (int bits = CBezierCurve::kMinBits; bits <= CBezierCurve::kMaxBits; ++bits)
            QTest::addRow("%d bits", bits) << bits;
    }

    void wholeTables()
    {
        QFETCH(int, bits);
        const int step = bits == 12 ? 1 : 1 << (bits / 3);
        Table table(1 << bits), plain(1 << bits);
        const auto compare = [&](const char* control, auto call, auto formulas, auto... arguments) {
            QCOMPARE((m_curve.*call)(arguments..., bits, table.data()), 0);
            (m_plain.*formulas)(arguments..., bits, plain.data());
            QVERIFY2(table == plain, qPrintable(control + Difference(table, plain)));
            QCOMPARE(table.front(), 0);
            QCOMPARE(table.back(), (1 << bits) - 1);
        };
        std::vector<double> gammas{1e-310, 0.002, 0.00999, 0.01, 0.5, 1.0, 1.0 + 1e-12, 3.14159, 4.0};
        for (int setting = 0; setting <= 400; setting += step)
            gammas.push_back(setting / 100.0);
        for (const double gamma : gammas)
            compare("gamma", &CBezierCurve::CreateGammaLut, &PlainCurve::GammaLut, gamma);
        for (int tone = -150; tone <= 150; tone += step) {
            compare("brightness", &CBezierCurve::CreateBrightnessLut, &PlainCurve::BrightnessLut, tone);
            compare("contrast", &CBezierCurve::CreateContrastLut, &PlainCurve::ContrastLut, tone);
            compare("all", &CBezierCurve::CreateCompositeLut, &PlainCurve::CompositeLut, tone, -tone, 2.2);
        }
    }

    void singleStages()
    {
        Table table(4096);
        QCOMPARE(m_curve.CreateGammaLut(1.0, 12, table.data()), 0);
        QCOMPARE(Difference(table, kIdentity), QString());
        QCOMPARE(m_curve.CreateGammaLut(2.0, 12, table.data()), 0);
        QCOMPARE(table[2048], 2895);
        QCOMPARE(m_curve.CreateGammaLut(-0.0, 12, table.data()), 0);
        QVERIFY(Pick(table, {0, 4094, 4095}) == (Table{0, 0, 4095}));
        QCOMPARE(m_curve.CreateBrightnessLut(0, 12, table.data()), 0);
        QVERIFY(std::equal(kIdentity.begin(), kIdentity.begin() + 2622, table.begin()));
        QVERIFY(Pick(table, {2622, 3000, 3530, 4000, 4094}) == (Table{2623, 3019, 3578, 4018, 4094}));
        QCOMPARE(m_curve.CreateContrastLut(0, 12, table.data()), 0);
        Table below; // the entries that are one less than the identity
        for (int i = 0; i < 4096; ++i) {
            QVERIFY(table[i] == i || table[i] == i - 1);
            if (table[i] != i)
                below.push_back(i);
        }
        QVERIFY(below.size() == 235 && below.front() == 2073 && below.back() == 3053);

        Table neutral(256), small(256); // half a step of contrast is cut off
        QCOMPARE(m_curve.CreateContrastLut(0, 8, neutral.data()), 0);
        QCOMPARE(m_curve.CreateContrastLut(-1, 8, small.data()), 0);
        QCOMPARE(Difference(small, neutral), QString());
    }

    // Stretching and squeezing are exact for every width and place of the values.
    void everyWidth()
    {
        for (int width = 0; width < 4096; width += width < 5 ? 1 : 5) {
            const int low = (4095 - width) / 2;
            Table table = MakeTable([&](int i) { return low + i % (width + 1); }), plain = table;
            QCOMPARE(m_curve.AdjustLutRange(width % 150, 0, 1.0, 0, 4095, table.data()), 0);
            m_plain.AdjustRange(width % 150, 0, 1.0, 0, 4095, plain.data());
            QCOMPARE(Difference(table, plain), QString());
        }
    }

    void extremes()
    {
        std::int32_t max = 1, min = 2;
        Table table = kIdentity;
        table[200] = kLowest;
        table[263] = kHighest;
        QCOMPARE(m_curve.FindRangeExtremes(200, 263, table.data(), &max, &min), 0);
        for (const auto& [lo, hi] :
             {std::pair{7, 69}, {-1, 4095}, {0, 4096}, {kHighest, kLowest}, {kLowest, kHighest}})
            QCOMPARE(m_curve.FindRangeExtremes(lo, hi, table.data(), &max, &min), -102);
        QCOMPARE(m_curve.FindRangeExtremes(0, 4095, nullptr, &max, &min), -101);
        QVERIFY(max == kHighest && min == kLowest);
    }

    void refused_data() { addRows(kRefused); }

    void refused()
    {
        const auto& [name, code, call] = currentRow(kRefused);
        Table table = kIdentity;
        table[500] = 5000;
        table[1500] = -7;
        table[3000] = kLowest;
        table[3001] = kHighest;
        const Table before = table;
        QCOMPARE(call(m_curve, table.data()), code);
        QCOMPARE(Difference(table, before), QString());
    }

    // The range's adjustment calls all operations but the points' one.
    void failedAllocation()
    {
        const std::tuple<int, int, Call> rows[] = {
            // Allocations of an object's first call, and of every later one.
            {1, 0, [](C c, T t) { return WithPoints(c, kUp, 12, t); }},
            {5, 1, [](C c, T t) { return c.AdjustLutRange(7, 7, 2.2, 0, 4095, t); }}};
        const Table base = MakeTable([](int i) { return 4095 - i; });
        for (const auto& [first, later, operation] : rows) {
            Table wanted, table;
            for (int failing = -1; failing < first; ++failing) {
                auto curve = std::make_unique<CBezierCurve>();
                const auto call = [&, run = operation](int refused) {
                    table = base;
                    int result = 0;
                    watch(refused, [&] { result = run(*curve, table.data()); });
                    return result;
                };
                QCOMPARE(call(failing), failing < 0 ? 0 : -103);
                if (failing < 0) {
                    QCOMPARE(g_asked, first);
                    wanted = table;
                } else {
                    QCOMPARE(Difference(table, base), QString());
                }
                for (int again = 0; again < 2; ++again) {
                    QCOMPARE(call(-1), 0);
                    QCOMPARE(Difference(table, wanted), QString());
                }
                QCOMPARE(g_asked, later);
                curve.reset();
                QCOMPARE(g_alive, 0);
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestBezierCurve)
#include "tst_beziercurve.moc"

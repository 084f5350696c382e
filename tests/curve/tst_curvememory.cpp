// What the curve engine does with memory: when it allocates, and what a failed allocation leaves behind.
#include <QtTest>

#include <cstdlib>
#include <new>
#include <vector>

#include "curve/BezierCurve.h"

namespace {

int g_alive = 0;    // arrays
int g_requests = 0; // for arrays, without exceptions
int g_failing = -1; // the request that fails

} // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    void* memory = g_requests++ == g_failing ? nullptr : std::malloc(size);
    g_alive += memory ? 1 : 0;
    return memory;
}

void* operator new[](std::size_t size)
{
    void* memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    ++g_alive;
    return memory;
}

void operator delete[](void* memory) noexcept
{
    g_alive -= memory ? 1 : 0;
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    operator delete[](memory);
}

using Call = int (*)(CBezierCurve& curve, std::int32_t* table);
Q_DECLARE_METATYPE(Call)

class TestCurveMemory : public QObject
{
    Q_OBJECT

private slots:
    void failedAllocation_data()
    {
        QTest::addColumn<Call>("call");
        QTest::addColumn<int>("first"); // allocations of an object's first call, and of every later one
        QTest::addColumn<int>("later");
        const auto row = [](const char* name, int first, int later, Call call) {
            QTest::newRow(name) << call << first << later;
        };
        row("points", 1, 0, [](CBezierCurve& c, std::int32_t* t) {
            const TablePoint points[] = {{0, 0}, {4095, 4095}};
            return c.CreatePointCurve(points, 2, 12, t);
        });
        row("gamma", 0, 0, [](CBezierCurve& c, std::int32_t* t) { return c.CreateGammaLut(2.2, 12, t); });
        row("brightness", 1, 0,
            [](CBezierCurve& c, std::int32_t* t) { return c.CreateBrightnessLut(7, 12, t); });
        row("contrast", 1, 0, [](CBezierCurve& c, std::int32_t* t) { return c.CreateContrastLut(7, 12, t); });
        row("composite", 4, 0,
            [](CBezierCurve& c, std::int32_t* t) { return c.CreateCompositeLut(7, 7, 2.2, 12, t); });
        row("range", 5, 1,
            [](CBezierCurve& c, std::int32_t* t) { return c.AdjustLutRange(7, 7, 2.2, 0, 4095, t); });
    }

    void failedAllocation()
    {
        QFETCH(Call, call);
        QFETCH(int, first);
        QFETCH(int, later);
        std::vector<std::int32_t> base(4096), wanted, table;
        for (int i = 0; i < 4096; ++i)
            base[i] = 4095 - i;
        const int alive = g_alive;
        for (int failing = -1; failing < first; ++failing) {
            CBezierCurve curve;
            QCOMPARE(g_alive, alive);
            table = base;
            g_requests = 0;
            g_failing = failing;
            const int result = call(curve, table.data());
            g_failing = -1;
            if (failing < 0) {
                QCOMPARE(g_requests, first);
                wanted = table;
            } else {
                QVERIFY(table == base);
            }
            QCOMPARE(result, failing < 0 ? 0 : -103);
            for (int again = 0; again < 2; ++again) {
                g_requests = 0;
                table = base;
                QCOMPARE(call(curve, table.data()), 0);
                QVERIFY(table == wanted);
            }
            QCOMPARE(g_requests, later);
        }
        QCOMPARE(g_alive, alive);
    }
};

QTEST_GUILESS_MAIN(TestCurveMemory)
#include "tst_curvememory.moc"

// A slider step without drawing: the base table is copied and AdjustLutRange maps it. The peer is the
// formulas as they are written down.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "PlainCurve.h"
#include "curve/BezierCurve.h"

namespace {

using Table = std::vector<std::int32_t>;

struct Controls
{
    int gamma; // hundredths
    int brightness;
    int contrast;
};

Table Identity()
{
    Table table(CBezierCurve::kRangeTableSize);
    std::iota(table.begin(), table.end(), 0);
    return table;
}

void StepOrlune(CBezierCurve& curve, const Controls& c, Table& table)
{
    curve.AdjustLutRange(c.brightness, c.contrast, c.gamma / 100.0, 0, CBezierCurve::kRangeTableSize - 1,
                         table.data());
}

void StepPlain(PlainCurve& curve, const Controls& c, Table& table)
{
    curve.AdjustRange(c.brightness, c.contrast, c.gamma / 100.0, 0, CBezierCurve::kRangeTableSize - 1,
                      table.data());
}

template <typename Curve, void (*Step)(Curve&, const Controls&, Table&)>
void Measure(benchmark::State& state, const Controls& controls)
{
    const Table base = Identity();
    Table current = base;
    Curve curve;

    Table wanted = base;
    PlainCurve plain;
    StepPlain(plain, controls, wanted);
    Step(curve, controls, current);
    if (current != wanted)
        state.SkipWithError("the tables differ");

    for (auto _ : state) {
        std::copy(base.begin(), base.end(), current.begin());
        Step(curve, controls, current);
        benchmark::DoNotOptimize(current.data());
        benchmark::ClobberMemory();
    }
}

} // namespace

int main(int argc, char** argv)
{
    for (const int gamma : {100, 0, 1, 50, 220, 400}) {
        for (const Controls& c :
             {Controls{gamma, 30, 0}, Controls{gamma, 0, -40}, Controls{gamma, 30, -40}}) {
            const std::string name = "tone gamma " + std::to_string(c.gamma) + " brightness " +
                                     std::to_string(c.brightness) + " contrast " + std::to_string(c.contrast);
            benchmark::RegisterBenchmark((name + "/orlune").c_str(), Measure<CBezierCurve, StepOrlune>, c);
            benchmark::RegisterBenchmark((name + "/plain").c_str(), Measure<PlainCurve, StepPlain>, c);
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}

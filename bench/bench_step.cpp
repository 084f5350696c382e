// A slider step with drawing, and what it is made of: the table, the polyline (with the publishing of the
// table), and both with the picture.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "curve/BezierCurve.h"
#include "editor/Plotter.h"

namespace {

constexpr int kGammas[] = {150, 220}; // each step has something to do

std::unique_ptr<Plotter> MakeView()
{
    auto view = std::make_unique<Plotter>(nullptr);
    view->resize(260, 260);
    view->Init();
    view->SetBrightness(30);
    return view;
}

void Whole(benchmark::State& state)
{
    const auto view = MakeView();
    int step = 0;
    for (auto _ : state)
        view->SetGamma(kGammas[++step % 2]);
}

void Recompute(benchmark::State& state)
{
    orlune::LutImage base;
    orlune::MakeIdentity(base);
    orlune::LutImage current;
    CBezierCurve curve;
    int step = 0;
    for (auto _ : state) {
        current = base;
        curve.AdjustLutRange(30, 0, kGammas[++step % 2] / 100.0, 0, orlune::kLutMaxOutput, current.Entries);
        benchmark::DoNotOptimize(current);
    }
}

void Drawing(benchmark::State& state)
{
    const auto view = MakeView();
    for (auto _ : state)
        view->RefreshCurve();
}

// A view without a size makes no picture.
void Polyline(benchmark::State& state)
{
    const auto view = MakeView();
    view->resize(0, 0);
    for (auto _ : state)
        view->RefreshCurve();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::RegisterBenchmark("slider step with drawing/orlune", Whole);
    benchmark::RegisterBenchmark("slider step with drawing/recompute", Recompute);
    benchmark::RegisterBenchmark("slider step with drawing/polyline", Polyline);
    benchmark::RegisterBenchmark("slider step with drawing/all drawing", Drawing);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}

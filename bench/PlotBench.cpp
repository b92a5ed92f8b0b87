// The plot at the dialog's size: the grid alone, all curves, and what a moving knot costs.
#include <memory>

#include <benchmark/benchmark.h>

#include "SyntheticSpeaker.h"
#include "app/ConsoleMessages.h"
#include "design/DesignGrid.h"
#include "graph/cairo/CairoCanvas.h"
#include "ui/CurveDisplay.h"

namespace tonvane::bench {
namespace {

constexpr int32_t plotWidth = 750;
constexpr int32_t plotHeight = 234;
constexpr double fontSize = 11.0;

// A designed run and its plot.
struct Plot {
    explicit Plot(FitMethod method = FitMethod::iterated)
        : run(std::make_unique<TuningRun>(values, messages)), window(host, kind) {
        values.fitMethod = method;
        values.ResponseIsCsv = false;
        values.DefaultTargetCurve = tiltedTarget;
        values.TargetCurveKind = savedCurve;
        values.InitialGainClamp = static_cast<int32_t>(gainClampDb);
        run->InitTuningState();
        run->takeImpulse(sampleRate, SyntheticResponse());
        run->responseReady = true;
        run->RunDesign();
        SetUpPlot(window);
        window.Create(canvas, plotWidth, plotHeight);
        window.record = tiltedTarget;
    }

    ProgramValues values;
    ConsoleMessages messages;
    std::unique_ptr<TuningRun> run;
    CairoCanvas canvas{plotWidth, plotHeight, fontSize};
    GraphHost host;
    int32_t kind = savedCurve;
    CCurveGraphWindow window;
};

void PlotGrid(benchmark::State& state) {
    Plot plot;
    RedrawCurves(*plot.run, plot.values, {}, plot.window);
    for (auto _ : state) {
        plot.window.DrawGrid();
    }
}

void PlotAllCurves(benchmark::State& state) {
    Plot plot;
    const ShownCurves all{1, 1, 1, 1, 1, 1, 1, 1};
    for (auto _ : state) {
        RedrawCurves(*plot.run, plot.values, all, plot.window);
        plot.window.Paint(plot.canvas);
    }
}

void PlotDrag(benchmark::State& state) {
    Plot plot;
    CurveDisplay display(*plot.run, plot.values, plot.window);
    int32_t level = 0;
    for (auto _ : state) {
        TargetRecord record = plot.window.record;
        record.points[2].level = level = (level + 1) % 6;
        plot.window.SetRecord(record);
        display.ApplyCurveEdit(false);
        plot.window.Paint(plot.canvas);
    }
}

// From a move of the mouse to the filter of the lab that follows it, drawn.
void LiveStep(benchmark::State& state) {
    Plot plot(FitMethod::refined);
    CurveDisplay display(*plot.run, plot.values, plot.window);
    TuningRun& run = *plot.run;
    int32_t level = 0;
    for (auto _ : state) {
        TargetRecord record = plot.window.record;
        record.points[2].level = level = (level + 1) % 6;
        plot.window.SetRecord(record);
        run.curves[0] = record;
        run.followMove(savedCurve);
        display.RedrawCurves();
        plot.window.Paint(plot.canvas);
    }
}

BENCHMARK(PlotGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(PlotAllCurves)->Unit(benchmark::kMillisecond);
BENCHMARK(PlotDrag)->Unit(benchmark::kMillisecond);
BENCHMARK(LiveStep)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench

// The analysis, one design and its parts.
#include <memory>

#include <benchmark/benchmark.h>

#include "SyntheticSpeaker.h"
#include "design/DesignGrid.h"

namespace tonvane::bench {
namespace {

// The objects of a run, with the synthetic response analysed.
struct Run {
    Run()
        : analyzer(std::make_unique<ResponseAnalyzer>()), designer(std::make_unique<EqDesigner>()) {
        analyzer->loadImpulse(sampleRate, responseLength, response);
    }

    std::vector<double> response = SyntheticResponse();
    std::unique_ptr<ResponseAnalyzer> analyzer;
    std::unique_ptr<EqDesigner> designer;
    IirFitter fitter;
};

void Analysis(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        run.analyzer->reset();
        run.analyzer->loadImpulse(sampleRate, responseLength, run.response);
        benchmark::DoNotOptimize(run.analyzer->polarity() + run.analyzer->cutoffHz());
        benchmark::DoNotOptimize(run.analyzer->phaseDegrees()[1]);
    }
}

void FirDesign(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        DesignTaps(*run.analyzer, *run.designer);
    }
}

void Fit(benchmark::State& state) {
    Run run;
    DesignTaps(*run.analyzer, *run.designer);
    for (auto _ : state) {
        run.fitter.configure(sampleRate, run.designer->firTaps.first(tapCount), sectionCount,
                             designLength, gainClampDb);
        run.fitter.fit();
    }
}

void WholeDesign(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        DesignWhole(*run.analyzer, *run.designer, run.fitter);
    }
}

// A knot is dragged up and down.
void MovedTarget(benchmark::State& state) {
    Run run;
    DesignTaps(*run.analyzer, *run.designer);
    TargetRecord target = tiltedTarget;
    for (auto _ : state) {
        target.points[3].level = (target.points[3].level + 1) % 4;
        DesignForTarget(target, *run.designer, run.fitter);
    }
}

BENCHMARK(Analysis)->Unit(benchmark::kMillisecond);
BENCHMARK(FirDesign)->Unit(benchmark::kMillisecond);
BENCHMARK(Fit)->Unit(benchmark::kMillisecond);
BENCHMARK(WholeDesign)->Unit(benchmark::kMillisecond);
BENCHMARK(MovedTarget)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench

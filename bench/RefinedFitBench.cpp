// The refined fit of the synthetic speaker to targets of several kinds, whole and from one moved
// target to the next.
#include <memory>

#include <benchmark/benchmark.h>

#include "SyntheticSpeaker.h"
#include "refine/RefinedFit.h"

namespace tonvane::bench {
namespace {

// The designs of 12 targets: the tilted one with its knots moved up and down in turn, at gain
// clamps from -1 to -12 dB.
constexpr int32_t targets = 12;

struct Corrections {
    Corrections()
        : analyzer(std::make_unique<ResponseAnalyzer>()), designer(std::make_unique<EqDesigner>()) {
        analyzer->loadImpulse(sampleRate, responseLength, SyntheticResponse());
        DesignTaps(*analyzer, *designer);
    }

    // With the third knot moved.
    WantedCorrection of(int32_t number, int32_t movedDb = 0) {
        TargetRecord target = tiltedTarget;
        for (int32_t knot = 0; knot < TargetRecord::knotCount; ++knot) {
            target.points[static_cast<size_t>(knot)].level += number * (knot % 3 - 1) / 2;
        }
        target.points[2].level += movedDb;
        designer->setTarget(target, savedCurve);
        designer->gainClampDb = -1.0 - number;
        designer->designFir(sampleRate);
        return {designer->designPower, sampleRate, designer->gainClampDb};
    }

    std::unique_ptr<ResponseAnalyzer> analyzer;
    std::unique_ptr<EqDesigner> designer;
};

void WholeRefinedFit(benchmark::State& state) {
    Corrections corrections;
    RefinedFitter fitter;
    const WantedCorrection wanted = corrections.of(static_cast<int32_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(fitter.fit(wanted));
    }
}

void RefinedStep(benchmark::State& state) {
    Corrections corrections;
    RefinedFitter fitter;
    const auto first = fitter.fit(corrections.of(5));
    const WantedCorrection moved = corrections.of(5, 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(fitter.goOn(*first, moved));
    }
}

BENCHMARK(WholeRefinedFit)->DenseRange(0, targets - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(RefinedStep)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench

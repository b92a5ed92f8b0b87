// The real transform in both directions beside FFTW's of the same length. FFTW's plans are made by
// estimate, since ours has no plan at all, and preserve their input, as ours does.
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include "SyntheticSpeaker.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane::bench {
namespace {

SpectrumBuffer filledBuffer(int32_t length) {
    SpectrumBuffer buffer;
    buffer.resize(length);
    const std::vector<double> response = SyntheticResponse();
    buffer.setSamplesPadded(std::span(response).first(length));
    buffer.forward();
    return buffer;
}

void Forward(benchmark::State& state) {
    SpectrumBuffer buffer = filledBuffer(static_cast<int32_t>(state.range(0)));
    for (auto _ : state) {
        buffer.forward();
        benchmark::DoNotOptimize(buffer.spectrum.data());
        benchmark::ClobberMemory();
    }
}

void Inverse(benchmark::State& state) {
    SpectrumBuffer buffer = filledBuffer(static_cast<int32_t>(state.range(0)));
    for (auto _ : state) {
        buffer.inverse();
        benchmark::DoNotOptimize(buffer.samples.data.get());
        benchmark::ClobberMemory();
    }
}

struct FftwFree {
    void operator()(void* memory) const { fftw_free(memory); }
};
struct PlanFree {
    void operator()(fftw_plan plan) const { fftw_destroy_plan(plan); }
};
using FftwPlan = std::unique_ptr<std::remove_pointer_t<fftw_plan>, PlanFree>;

// FFTW's own aligned memory with the values of a buffer.
struct FftwBuffer {
    explicit FftwBuffer(int32_t length)
        : samples(fftw_alloc_real(length)), bins(fftw_alloc_complex(length / 2 + 1)) {
        const SpectrumBuffer values = filledBuffer(length);
        for (int32_t i = 0; i < length; ++i) {
            samples[i] = values.samples[i];
        }
        for (int32_t k = 0; k < values.bins; ++k) {
            bins[k][0] = values.spectrum[k].real();
            bins[k][1] = values.spectrum[k].imag();
        }
    }

    std::unique_ptr<double[], FftwFree> samples;
    std::unique_ptr<fftw_complex[], FftwFree> bins;
};

constexpr unsigned planFlags = FFTW_ESTIMATE | FFTW_PRESERVE_INPUT;

void FftwForward(benchmark::State& state) {
    const auto length = static_cast<int32_t>(state.range(0));
    const FftwBuffer buffer(length);
    const FftwPlan plan(
        fftw_plan_dft_r2c_1d(length, buffer.samples.get(), buffer.bins.get(), planFlags));
    for (auto _ : state) {
        fftw_execute(plan.get());
        benchmark::ClobberMemory();
    }
}

void FftwInverse(benchmark::State& state) {
    const auto length = static_cast<int32_t>(state.range(0));
    const FftwBuffer buffer(length);
    const FftwPlan plan(
        fftw_plan_dft_c2r_1d(length, buffer.bins.get(), buffer.samples.get(), planFlags));
    for (auto _ : state) {
        fftw_execute(plan.get());
        benchmark::ClobberMemory();
    }
}

void lengths(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1024)->Arg(4096)->Arg(32768)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(Forward)->Apply(lengths);
BENCHMARK(FftwForward)->Apply(lengths);
BENCHMARK(Inverse)->Apply(lengths);
BENCHMARK(FftwInverse)->Apply(lengths);

}  // namespace
}  // namespace tonvane::bench

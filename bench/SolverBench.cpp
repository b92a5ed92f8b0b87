// The fifty equations that the fit of the synthetic response sets up: bare calls of dgelsd, the
// measure of the designs, and the lattice that takes their place.
#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include <benchmark/benchmark.h>

#include "SyntheticSpeaker.h"
#include "design/DesignGrid.h"
#include "design/Lapack.h"
#include "design/LapackPasses.h"
#include "design/LatticeSolver.h"

namespace tonvane::bench {
namespace {

constexpr int32_t order = 2 * sectionCount;

struct Equation {
    std::vector<double> matrix;  // column by column
    std::vector<double> rhs;
    int rows;
    int cols;
};

std::vector<Equation> equationsOfTheFit() {
    std::vector<Equation> equations;
    const auto analyzer = std::make_unique<ResponseAnalyzer>();
    const auto designer = std::make_unique<EqDesigner>();
    analyzer->loadImpulse(sampleRate, responseLength, SyntheticResponse());
    DesignTaps(*analyzer, *designer);
    LapackPasses passes;
    passes.observer = [&](std::span<const double> matrix, std::span<const double> rhs, int32_t rows,
                          int32_t cols) {
        equations.push_back({{matrix.begin(), matrix.end()}, {rhs.begin(), rhs.end()}, rows, cols});
    };
    std::vector<double> numerator(order + 1);
    std::vector<double> denominator(order + 1);
    denominator[0] = 1.0;
    passes.start(sampleRate, designer->firTaps.first(tapCount), order);
    for (int32_t pass = 0; pass < IirFitter::passes; ++pass) {
        passes.run(numerator, denominator);
    }
    return equations;
}

// The solver's work memory, allocated once for all calls.
class BareSolver {
  public:
    explicit BareSolver(const Equation& first)
        : matrix_(first.matrix), rhs_(first.rhs), singularValues_(first.cols) {
        double workSize = 0.0;
        int integers = 0;
        int query = -1;
        call(first, &workSize, &query, &integers);
        work_.resize(static_cast<size_t>(workSize));
        integers_.resize(integers);
    }

    double solve(const Equation& equation) {
        std::ranges::copy(equation.matrix, matrix_.begin());
        std::ranges::copy(equation.rhs, rhs_.begin());
        int workSize = static_cast<int>(work_.size());
        call(equation, work_.data(), &workSize, integers_.data());
        return rhs_[0];
    }

  private:
    void call(const Equation& equation, double* work, const int* workSize, int* integers) {
        const int one = 1;
        const double machinePrecision = -1.0;
        int rank = 0;
        int info = 0;
        dgelsd_(&equation.rows, &equation.cols, &one, matrix_.data(), &equation.rows, rhs_.data(),
                &equation.rows, singularValues_.data(), &machinePrecision, &rank, work, workSize,
                integers, &info);
    }

    std::vector<double> matrix_;
    std::vector<double> rhs_;
    std::vector<double> singularValues_;
    std::vector<double> work_;
    std::vector<int> integers_;
};

void FiftySolves(benchmark::State& state) {
    const std::vector<Equation> equations = equationsOfTheFit();
    BareSolver solver(equations.front());
    for (auto _ : state) {
        for (const Equation& equation : equations) {
            benchmark::DoNotOptimize(solver.solve(equation));
        }
    }
}

// What the lattice takes: the prefilter, the rest of the prefiltered FIR, and the FIR's first tap.
struct Signals {
    std::vector<double> p;
    std::vector<double> y;
    double first;
};

std::vector<Signals> signalsOf(const std::vector<Equation>& equations) {
    std::vector<Signals> signals;
    for (const Equation& equation : equations) {
        Signals& s = signals.emplace_back();
        s.p.assign(equation.matrix.begin(), equation.matrix.begin() + FitPasses::prefilterLength);
        s.y.assign(equation.rhs.begin(), equation.rhs.end() - order);
        s.first = s.y[0] / s.p[0];
        for (size_t t = 0; t < s.p.size(); ++t) {
            s.y[t] -= s.first * s.p[t];
        }
    }
    return signals;
}

void FiftyLattices(benchmark::State& state) {
    const std::vector<Signals> signals = signalsOf(equationsOfTheFit());
    std::vector<double> numerator(order + 1);
    std::vector<double> denominator(order + 1);
    LatticeSolver solver;
    solver.resize(order, static_cast<int32_t>(signals[0].y.size()));
    for (auto _ : state) {
        for (const Signals& s : signals) {
            solver.solve(s.p, s.y, s.first, numerator, denominator);
            benchmark::DoNotOptimize(numerator[0]);
        }
    }
}

BENCHMARK(FiftyLattices)->Unit(benchmark::kMillisecond);
BENCHMARK(FiftySolves)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench

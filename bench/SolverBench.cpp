// What a design cannot do without: the fifty bare calls of dgelsd, on the equations that the fit
// of the synthetic response sets up.
#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include <benchmark/benchmark.h>

#include "SyntheticSpeaker.h"
#include "design/DesignGrid.h"
#include "design/Lapack.h"

namespace tonvane::bench {
namespace {

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
    IirFitter fitter;
    fitter.equationObserver = [&](std::span<const double> matrix, std::span<const double> rhs,
                                  int32_t rows, int32_t cols) {
        equations.push_back({{matrix.begin(), matrix.end()}, {rhs.begin(), rhs.end()}, rows, cols});
    };
    analyzer->loadImpulse(sampleRate, responseLength, SyntheticResponse());
    DesignWhole(*analyzer, *designer, fitter);
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

BENCHMARK(FiftySolves)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tonvane::bench

// A filter as pairs of zeros and poles, each by the logarithms of its frequency and its damping.
//
// A pair stands for s^2 + s*w0/Q + w0^2 with s = j*tan(w/2) and has u = ln w0, v = ln(1/Q). With
// b = e^(2u), a^2 = e^(2(u + v)) and T = tan^2(w/2) its power is (T - b)^2 + a^2*T, so that every
// such filter is stable and of minimum phase. The level in dB is a gain plus 10*log10 of the
// product of the zeros' powers over the poles'.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "refine/FitGrid.h"

namespace tonvane {

constexpr size_t mostPairs = 7;
constexpr size_t mostParameters = 4 * mostPairs + 1;

// 10/ln(10): decibels of a power from its natural logarithm.
constexpr double decibelsPerNeper = 4.3429448190325182765;

struct PairModel {
    enum Block : size_t { zeroFrequency, zeroDamping, poleFrequency, poleDamping, blocks };

    size_t pairs = 0;  // of zeros, and of poles
    // Four blocks of `pairs` values each, and the gain in dB behind them.
    std::array<double, mostParameters> values{};

    [[nodiscard]] size_t parameters() const { return blocks * pairs + 1; }
    [[nodiscard]] double& at(Block block, size_t i) { return values[block * pairs + i]; }
    [[nodiscard]] double at(Block block, size_t i) const { return values[block * pairs + i]; }
    [[nodiscard]] double& gainDb() { return values[blocks * pairs]; }
    [[nodiscard]] double gainDb() const { return values[blocks * pairs]; }
};

// One pair of zeros and one of poles.
struct PairParameters {
    std::array<double, PairModel::blocks> values;
};

// The model with one pair more of each, behind the others.
PairModel WithPair(const PairModel& model, const PairParameters& pair);

// The model without a pair of zeros and a pair of poles.
PairModel WithoutPairs(const PairModel& model, size_t zeros, size_t poles);

// b and a^2 of a pair.
struct PairShape {
    double b;
    double aa;

    [[nodiscard]] double power(double tangent) const {
        const double x = tangent - b;
        return x * x + aa * tangent;
    }
};
PairShape ShapeOf(double frequency, double damping);

// A model on a grid, with what its derivatives need. Kept from call to call for its memory.
struct ModelCurve {
    std::vector<double> levels;  // dB
    std::vector<double> above;   // powers of the zeros, pair by pair
    std::vector<double> below;   // powers of the poles
    std::vector<double> products;
    std::array<PairShape, mostPairs> zeros;
    std::array<PairShape, mostPairs> poles;
};
void EvaluateModel(const PairModel& model, const FitGrid& grid, ModelCurve& curve);

// The weighted sum of squared errors, and 100 times the squares of what lies above the limit.
double CostOf(const ModelCurve& curve, const FitGrid& grid);

// Half of the cost's gradient and its Gauss-Newton matrix; rows and columns in the order of the
// values. The derivatives of the level are 2K*a^2*T/N in v and that + 4K*b*(b - T)/N in u with
// K = 10/ln(10), negative for poles, and 1 in the gain.
struct NormalEquations {
    static constexpr size_t stride = 32;
    std::array<std::array<double, stride>, mostParameters> matrix;  // symmetric
    std::array<double, stride> gradient;
};
void FormNormalEquations(const PairModel& model, const ModelCurve& curve, const FitGrid& grid,
                         NormalEquations& equations);

// The errors of the model on the grid, dB.
std::vector<double> ErrorsOf(const PairModel& model, const FitGrid& grid, ModelCurve& curve);

}  // namespace tonvane

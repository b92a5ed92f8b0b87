#include "refine/PairModel.h"

#include <algorithm>
#include <functional>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

constexpr double excessWeight = 100.0;  // of a squared excess over the limit

// Points whose rows are added to the matrix together.
constexpr size_t rowsAtOnce = 4;
using JacobianRow = std::array<double, NormalEquations::stride>;

double excessOf(double level, const FitGrid& grid) {
    return level > grid.limitDb ? level - grid.limitDb : 0.0;
}

// The powers of a pair into `powers`, and their products with `product` into that.
void multiplyPowers(const PairShape& shape, const std::vector<double>& tangents, double* powers,
                    std::vector<double>& product) {
    for (size_t t = 0; t < tangents.size(); ++t) {
        powers[t] = shape.power(tangents[t]);
        product[t] *= powers[t];
    }
}

// The derivatives of the level at point t.
void fillRow(const PairModel& model, const ModelCurve& curve, const FitGrid& grid, size_t t,
             JacobianRow& row) {
    const size_t points = grid.size();
    const size_t pairs = model.pairs;
    const double tangent = grid.tangents[t];
    const auto put = [&](const PairShape& shape, double scale, size_t frequency, size_t damping) {
        const double inDamping = scale * shape.aa * tangent;
        row[damping] = inDamping;
        row[frequency] = inDamping + 2.0 * scale * shape.b * (shape.b - tangent);
    };
    for (size_t i = 0; i < pairs; ++i) {
        put(curve.zeros[i], 2.0 * decibelsPerNeper / curve.above[i * points + t], i, pairs + i);
        put(curve.poles[i], -2.0 * decibelsPerNeper / curve.below[i * points + t], 2 * pairs + i,
            3 * pairs + i);
    }
    row[4 * pairs] = 1.0;
}

// Adds the rows, weighted, to the lower triangle.
void addRows(const std::array<JacobianRow, rowsAtOnce>& rows,
             const std::array<double, rowsAtOnce>& weights, size_t parameters,
             NormalEquations& equations) {
    for (size_t i = 0; i < parameters; ++i) {
        const double a = weights[0] * rows[0][i];
        const double b = weights[1] * rows[1][i];
        const double c = weights[2] * rows[2][i];
        const double d = weights[3] * rows[3][i];
        double* const sums = equations.matrix[i].data();
        for (size_t j = 0; j <= i; ++j) {
            sums[j] += (a * rows[0][j] + b * rows[1][j]) + (c * rows[2][j] + d * rows[3][j]);
        }
    }
}

}  // namespace

PairModel WithPair(const PairModel& model, const PairParameters& pair) {
    PairModel result;
    result.pairs = model.pairs + 1;
    for (size_t block = 0; block < PairModel::blocks; ++block) {
        const auto kind = static_cast<PairModel::Block>(block);
        for (size_t i = 0; i < model.pairs; ++i) {
            result.at(kind, i) = model.at(kind, i);
        }
        result.at(kind, model.pairs) = pair.values[block];
    }
    result.gainDb() = model.gainDb();
    return result;
}

PairModel WithoutPairs(const PairModel& model, size_t zeros, size_t poles) {
    PairModel result;
    result.pairs = model.pairs - 1;
    size_t out = 0;
    for (size_t block = 0; block < PairModel::blocks; ++block) {
        const size_t removed = block < PairModel::poleFrequency ? zeros : poles;
        for (size_t i = 0; i < model.pairs; ++i) {
            if (i != removed) {
                result.values[out++] = model.values[block * model.pairs + i];
            }
        }
    }
    result.values[out] = model.gainDb();
    return result;
}

PairShape ShapeOf(double frequency, double damping) {
    return {elementary::Exp(2.0 * frequency), elementary::Exp(2.0 * (frequency + damping))};
}

void EvaluateModel(const PairModel& model, const FitGrid& grid, ModelCurve& curve) {
    const size_t points = grid.size();
    curve.levels.assign(points, 1.0);
    curve.products.assign(points, 1.0);
    curve.above.resize(mostPairs * points);
    curve.below.resize(mostPairs * points);
    for (size_t i = 0; i < model.pairs; ++i) {
        curve.zeros[i] =
            ShapeOf(model.at(PairModel::zeroFrequency, i), model.at(PairModel::zeroDamping, i));
        curve.poles[i] =
            ShapeOf(model.at(PairModel::poleFrequency, i), model.at(PairModel::poleDamping, i));
        multiplyPowers(curve.zeros[i], grid.tangents, &curve.above[i * points], curve.levels);
        multiplyPowers(curve.poles[i], grid.tangents, &curve.below[i * points], curve.products);
    }
    const double gain = model.gainDb();
    for (size_t t = 0; t < points; ++t) {
        curve.levels[t] =
            gain + decibelsPerNeper * elementary::Log(curve.levels[t] / curve.products[t]);
    }
}

double CostOf(const ModelCurve& curve, const FitGrid& grid) {
    double cost = 0.0;
    for (size_t t = 0; t < grid.size(); ++t) {
        const double error = curve.levels[t] - grid.wanted[t];
        const double excess = excessOf(curve.levels[t], grid);
        cost += grid.weights[t] * error * error + excessWeight * excess * excess;
    }
    return cost;
}

void FormNormalEquations(const PairModel& model, const ModelCurve& curve, const FitGrid& grid,
                         NormalEquations& equations) {
    const size_t parameters = model.parameters();
    const size_t points = grid.size();
    equations.gradient.fill(0.0);
    for (size_t i = 0; i < parameters; ++i) {
        equations.matrix[i].fill(0.0);
    }
    std::array<JacobianRow, rowsAtOnce> rows{};
    for (size_t first = 0; first < points; first += rowsAtOnce) {
        std::array<double, rowsAtOnce> weights{};
        for (size_t q = 0; q < rowsAtOnce && first + q < points; ++q) {
            const size_t t = first + q;
            fillRow(model, curve, grid, t, rows[q]);
            const double excess = excessOf(curve.levels[t], grid);
            const double error = curve.levels[t] - grid.wanted[t];
            weights[q] = grid.weights[t] + (excess > 0.0 ? excessWeight : 0.0);
            const double pull = grid.weights[t] * error + excessWeight * excess;
            for (size_t i = 0; i < parameters; ++i) {
                equations.gradient[i] += pull * rows[q][i];
            }
        }
        addRows(rows, weights, parameters, equations);
    }
    for (size_t i = 0; i < parameters; ++i) {
        for (size_t j = 0; j < i; ++j) {
            equations.matrix[j][i] = equations.matrix[i][j];
        }
    }
}

std::vector<double> ErrorsOf(const PairModel& model, const FitGrid& grid, ModelCurve& curve) {
    EvaluateModel(model, grid, curve);
    std::vector<double> errors(grid.size());
    std::ranges::transform(curve.levels, grid.wanted, errors.begin(), std::minus<>());
    return errors;
}

}  // namespace tonvane

#include "refine/LevenbergMarquardt.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvane {

namespace {

constexpr double firstLambda = 0.01;
constexpr double smallestLambda = 1e-9;
constexpr double largestLambda = 1e9;
constexpr double smallestDiagonal = 1e-6;  // of the largest
constexpr double longestStep = 1.0;
constexpr int32_t triesPerStep = 8;
constexpr double widestGainDb = 300.0;

using Row = std::array<double, NormalEquations::stride>;

struct Box {
    Row low{};
    Row high{};
};

Box boxOf(const PairModel& model, const FitGrid& grid) {
    Box box;
    for (size_t i = 0; i < 4 * model.pairs; ++i) {
        const bool isFrequency = i / model.pairs % 2 == 0;
        box.low[i] = isFrequency ? grid.lowestFrequency : grid.lowestDamping;
        box.high[i] = isFrequency ? grid.highestFrequency : grid.highestDamping;
    }
    box.low[4 * model.pairs] = -widestGainDb;
    box.high[4 * model.pairs] = widestGainDb;
    return box;
}

// The parameters that may move.
struct Free {
    std::array<size_t, mostParameters> places;
    size_t count = 0;
};

Free freeOf(const PairModel& model, const Box& box, const Row& gradient) {
    Free free;
    for (size_t i = 0; i < model.parameters(); ++i) {
        const bool leavesLow = model.values[i] <= box.low[i] && gradient[i] > 0.0;
        const bool leavesHigh = model.values[i] >= box.high[i] && gradient[i] < 0.0;
        if (!leavesLow && !leavesHigh) {
            free.places[free.count++] = i;
        }
    }
    return free;
}

// The step of (matrix + lambda*damping) * step = -gradient over the free parameters, by Cholesky's
// decomposition, column by column; false if that is not positive definite.
bool solveStep(const NormalEquations& equations, const Free& free, const Row& damping,
               double lambda, Row& step) {
    const size_t n = free.count;
    std::array<Row, mostParameters> columns;  // of the lower triangle
    Row x;
    for (size_t k = 0; k < n; ++k) {
        const Row& source = equations.matrix[free.places[k]];
        for (size_t i = k; i < n; ++i) {
            columns[k][i] = source[free.places[i]];
        }
        columns[k][k] += lambda * damping[free.places[k]];
        x[k] = -equations.gradient[free.places[k]];
    }
    for (size_t k = 0; k < n; ++k) {
        Row& pivot = columns[k];
        if (!(pivot[k] > 0.0)) {
            return false;
        }
        const double root = std::sqrt(pivot[k]);
        pivot[k] = root;
        for (size_t i = k + 1; i < n; ++i) {
            pivot[i] /= root;
        }
        for (size_t j = k + 1; j < n; ++j) {
            const double factor = pivot[j];
            double* const target = columns[j].data();
            for (size_t i = j; i < n; ++i) {
                target[i] -= factor * pivot[i];
            }
        }
        x[k] /= root;
        for (size_t i = k + 1; i < n; ++i) {
            x[i] -= x[k] * pivot[i];
        }
    }
    step.fill(0.0);
    for (size_t k = n; k-- > 0;) {
        double value = x[k];
        for (size_t i = k + 1; i < n; ++i) {
            value -= columns[k][i] * x[i];
        }
        x[k] = value / columns[k][k];
        step[free.places[k]] = x[k];
    }
    return true;
}

PairModel moved(const PairModel& model, const Row& step, const Box& box) {
    PairModel result = model;
    double largest = longestStep;
    for (size_t i = 0; i + 1 < model.parameters(); ++i) {
        largest = std::max(largest, std::fabs(step[i]));
    }
    for (size_t i = 0; i < model.parameters(); ++i) {
        result.values[i] = std::clamp(model.values[i] + step[i] * (longestStep / largest),
                                      box.low[i], box.high[i]);
    }
    return result;
}

// The decrease of the cost that the quadratic model promises for a move.
double predictedDecrease(const NormalEquations& equations, const PairModel& from,
                         const PairModel& to) {
    const size_t n = from.parameters();
    double decrease = 0.0;
    for (size_t i = 0; i < n; ++i) {
        double slope = 2.0 * equations.gradient[i];
        for (size_t j = 0; j < n; ++j) {
            slope += equations.matrix[i][j] * (to.values[j] - from.values[j]);
        }
        decrease -= (to.values[i] - from.values[i]) * slope;
    }
    return decrease;
}

struct Damping {
    double lambda = firstLambda;
    double growth = 2.0;

    void refused() {
        lambda = std::min(lambda * growth, largestLambda);
        growth *= 2.0;
    }
    // `share`: the decrease against what was predicted.
    void accepted(double share) {
        const double z = 2.0 * share - 1.0;
        lambda = std::max(lambda * std::max(1.0 / 3.0, 1.0 - z * z * z), smallestLambda);
        growth = 2.0;
    }
};

}  // namespace

double Improve(PairModel& model, const FitGrid& grid, int32_t steps, double tolerance,
               LevenbergMemory& memory) {
    const Box box = boxOf(model, grid);
    const size_t parameters = model.parameters();
    NormalEquations& equations = memory.equations;
    Row step{};
    model = moved(model, step, box);
    EvaluateModel(model, grid, memory.curve);
    double cost = CostOf(memory.curve, grid);
    Damping damping;
    // The cost's decrease by one step; 0 when there is none.
    const auto tryStep = [&](const Free& free, const Row& diagonal) {
        for (int32_t t = 0; t < triesPerStep; ++t) {
            if (solveStep(equations, free, diagonal, damping.lambda, step)) {
                const PairModel next = moved(model, step, box);
                EvaluateModel(next, grid, memory.trial);
                const double nextCost = CostOf(memory.trial, grid);
                if (nextCost < cost) {
                    const double predicted = predictedDecrease(equations, model, next);
                    const double gained = cost - nextCost;
                    damping.accepted(predicted > 0.0 ? std::min(gained / predicted, 1.0) : 0.0);
                    model = next;
                    cost = nextCost;
                    std::swap(memory.curve, memory.trial);
                    return gained;
                }
            }
            damping.refused();
        }
        return 0.0;
    };
    for (int32_t i = 0; i < steps; ++i) {
        FormNormalEquations(model, memory.curve, grid, equations);
        Row diagonal{};
        for (size_t k = 0; k < parameters; ++k) {
            diagonal[k] = equations.matrix[k][k];
        }
        const double least = smallestDiagonal * *std::ranges::max_element(diagonal);
        std::ranges::transform(diagonal, diagonal.begin(),
                               [least](double value) { return std::max(value, least); });
        const double gained = tryStep(freeOf(model, box, equations.gradient), diagonal);
        if (gained == 0.0 || gained < tolerance * cost) {
            break;
        }
    }
    return cost;
}

}  // namespace tonvane

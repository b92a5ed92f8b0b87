#include "design/LeastSquares.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "design/Lapack.h"

// LAPACK's handler of wrong arguments. Its own ends the program, with the exit code of success.
extern "C" void xerbla_(const char* /*routine*/, const int* /*argument*/, size_t /*length*/) {}

namespace tonvane {

namespace {

// Counted without an early exit, so that the compiler can take several values at a time.
bool allFinite(std::span<const double> values) {
    int64_t others = 0;
    for (const double value : values) {
        others += std::fabs(value) <= std::numeric_limits<double>::max() ? 0 : 1;
    }
    return others == 0;
}

}  // namespace

void LeastSquaresSolve(std::span<double> columns, std::span<double> rhs, int32_t rows,
                       int32_t cols) {
    if (!allFinite(columns) || !allFinite(rhs.first(rows))) {
        // LAPACK ends the program on a norm that is no number.
        std::ranges::fill(rhs.first(cols), std::numeric_limits<double>::quiet_NaN());
        return;
    }
    const int32_t longer = std::max(rows, cols);
    std::vector<double> singularValues(std::max(std::min(rows, cols), 1));

    const int one = 1;
    const double machinePrecision = -1.0;
    int rank = 0;
    int info = 0;
    const auto solve = [&](double* work, int workSize, int* integers) {
        dgelsd_(&rows, &cols, &one, columns.data(), &rows, rhs.data(), &longer,
                singularValues.data(), &machinePrecision, &rank, work, &workSize, integers, &info);
    };
    // A size of -1 asks for the sizes of both workspaces.
    double bestSize = 0.0;
    int integerSize = 0;
    solve(&bestSize, -1, &integerSize);
    std::vector<double> work(static_cast<size_t>(bestSize));
    std::vector<int> integers(integerSize);
    solve(work.data(), static_cast<int>(work.size()), integers.data());
}

}  // namespace tonvane

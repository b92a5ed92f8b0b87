// Linear least squares.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// The minimum-norm solution of min |A*x - b|, by LAPACK's dgelsd (singular values, divide and
// conquer) with the rank decided at machine precision. `matrix` is A row by row, element (r, c) at
// r*cols + c; `rhs` has `rows` values; `solution` receives `cols` values, all NaN when a value of
// A or b is not finite. A failure of the solver is not reported: what it leaves is the result.
void LeastSquaresSolve(std::span<const double> matrix, std::span<const double> rhs,
                       std::span<double> solution, int32_t rows, int32_t cols);

// The same in place, with A column by column: element (r, c) at c*rows + r. `rhs` has room for
// max(rows, cols) values, of which the first `cols` receive the solution; A is used up.
void LeastSquaresSolveColumns(std::span<double> columns, std::span<double> rhs, int32_t rows,
                              int32_t cols);

}  // namespace tonvane

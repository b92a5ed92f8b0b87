// Linear least squares.
#pragma once

#include <cstdint>
#include <span>

namespace tonvane {

// The minimum-norm solution of min |A*x - b|, by LAPACK's dgelsd (singular values, divide and
// conquer) with the rank decided at machine precision. In place: `columns` is A column by column,
// element (r, c) at c*rows + r, and is used up; `rhs` has room for max(rows, cols) values, b in the
// first `rows`, of which the first `cols` receive the solution, all NaN when a value of A or b is
// not finite. A failure of the solver is not reported: what it leaves is the result.
void LeastSquaresSolve(std::span<double> columns, std::span<double> rhs, int32_t rows,
                       int32_t cols);

}  // namespace tonvane

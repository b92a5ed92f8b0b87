// Squared magnitudes of real polynomials at fixed points of the unit circle.
//
// By the recursion of second order in Reinsch's form, a multiplication and three additions a
// coefficient and point: with u = 2*cos(w) - 2 it is as exact near w = 0 as Horner's rule, with
// u = 2*cos(w) + 2 near pi (Stoer and Bulirsch, Introduction to Numerical Analysis, 2.3.2).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

class PowerGrid {
  public:
    // Takes the points exp(j*angles[i]); neighbours are close together.
    void build(std::span<const double> angles);

    // out[i] = |sum of coefficients[n]*exp(j*n*angles[i])|^2. Next to a zero of the polynomial it
    // may come out as 0 or a little below.
    void power(std::span<const double> coefficients, std::span<double> out) const;

  private:
    static constexpr size_t width =
        16;  // points side by side, whose recursions do not wait for each other

    struct Block {
        double u[width];
        bool isLow;  // near 0
    };

    size_t count_ = 0;
    std::vector<Block> blocks_;
};

}  // namespace tonvane

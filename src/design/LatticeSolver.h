// Least squares of delayed copies of two signals, by a two-channel lattice.
//
// The matrix of such a problem is two Toeplitz blocks with full tails. A lattice (Whittle 1963,
// Makhoul 1977) goes from each number of delays to the next by turning the residuals of prediction
// forward and backward in time, in 2 x 2 blocks. Here it keeps the residual signals themselves and
// takes its inner products from them, as in Cybenko's orthogonalization (SIAM J. Sci. Stat. Comput.
// 8, 1987, 734-740): recursions of the inner products alone lose all digits on the problems of the
// fit, and this loses fewer than an orthogonal factorisation of the matrix. All sums have a fixed
// order.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

class LatticeSolver {
  public:
    // Makes room for problems of `order` delays and signals of up to `samples`.
    void resize(int32_t order, int32_t samples);

    // Finds b and a, order + 1 coefficients each with a[0] = 1, that minimise |a*h - b*p|^2 over
    // all samples of the convolutions, for h = y + first*p; y is at least as long as p. Leaving the
    // common part out of y is what keeps the digits where y and p are almost alike.
    //
    // The order ends where what is left of a signal, as energy over the whole's, is below 1e-24:
    // that is rounding, and coefficients beyond are 0. Returns the order reached. What is no number
    // in the signals gives NaN.
    int32_t solve(std::span<const double> p, std::span<const double> y, double first,
                  std::span<double> b, std::span<double> a);

  private:
    struct Channels {
        double p = 0.0;
        double y = 0.0;
    };

    // The rows are the coefficients of the residuals of p and y, by delay and channel.
    struct Polynomials {
        std::vector<Channels> p;
        std::vector<Channels> y;
    };

    struct Gram;
    struct Cross;
    struct Reflection;
    struct Energies;

    Energies start(std::span<const double> p, std::span<const double> y);
    void stepUp(int32_t stage, const Reflection& forward, const Reflection& backward);
    Energies advance(int32_t end, const Reflection& forward, const Reflection& backward);
    Energies finish(int32_t end, const Reflection& forward);

    int32_t order_ = 0;
    std::vector<double> forwardP_;
    std::vector<double> forwardY_;
    std::vector<double> delayedP_;  // backward residuals, one sample late
    std::vector<double> delayedY_;
    Polynomials forward_;
    Polynomials backward_;
};

}  // namespace tonvane

// The fast way of the fit: the lattice against LAPACK, its distances, and what it makes of filters
// that are flat but for rounding.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>

#include <gmock/gmock.h>

#include "design/CascadeResponse.h"
#include "design/EqDesigner.h"
#include "design/IirFitter.h"
#include "design/LatticeSolver.h"
#include "design/LeastSquares.h"
#include "design/PowerGrid.h"
#include "support/Signals.h"

namespace tonvane {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

// Noise that fades to 1/e in a ninth of its length.
std::vector<double> fading(int32_t n, uint32_t seed) {
    std::vector<double> x = tests::Noise(n, seed);
    for (int32_t t = 0; t < n; ++t) {
        x[t] *= std::exp(-9.0 * t / n);
    }
    return x;
}

// b and then a of min |a*(y + first*p) - b*p|, a[0] = 1, as one matrix.
std::vector<double> byLapack(const std::vector<double>& p, const std::vector<double>& y,
                             double first, size_t order) {
    const size_t rows = y.size() + order;
    std::vector<double> whole(rows);
    std::ranges::copy(y, whole.begin());
    std::ranges::transform(p, whole, whole.begin(),
                           [first](double a, double b) { return first * a + b; });
    std::vector<double> matrix(rows * (2 * order + 1));
    for (size_t i = 0; i <= order; ++i) {
        std::ranges::copy(p, &matrix[rows * i + i]);
        if (i > 0) {
            std::copy_n(whole.begin(), y.size(), &matrix[rows * (order + i) + i]);
        }
    }
    LeastSquaresSolve(matrix, whole, static_cast<int32_t>(rows),
                      static_cast<int32_t>(2 * order + 1));
    for (size_t i = 1; i <= order; ++i) {
        whole[order + i] *= -1.0;
    }
    whole.resize(2 * order + 1);
    whole.insert(whole.begin() + static_cast<std::ptrdiff_t>(order) + 1, 1.0);
    return whole;
}

TEST(LatticeSolver, FindsWhatLapackFinds) {
    LatticeSolver solver;
    for (const auto& [p, y, order] :
         {std::tuple{37, 52, 3}, {64, 64, 5}, {40, 45, 1}, {1024, 1279, 14}}) {
        std::vector<double> found(2 * order + 2);
        solver.resize(order, y);
        EXPECT_EQ(solver.solve(fading(p, 1), fading(y, 2), 0.7, std::span(found).first(order + 1),
                               std::span(found).subspan(order + 1)),
                  order);
        EXPECT_THAT(found,
                    Pointwise(DoubleNear(1e-12), byLapack(fading(p, 1), fading(y, 2), 0.7, order)));
    }
}

TEST(LatticeSolver, EndsWhereNothingIsLeftAndLetsNaNThrough) {
    LatticeSolver solver;
    solver.resize(3, 52);
    const std::vector<double> p = fading(37, 1);
    std::vector<double> y(52), b(4), a(4);
    std::ranges::transform(p, y.begin() + 2, [](double x) { return 0.5 * x; });
    EXPECT_EQ(solver.solve(p, y, 0.25, b, a), 2);
    EXPECT_THAT(b, Pointwise(DoubleNear(1e-14), {0.25, 0.0, 0.5, 0.0}));
    EXPECT_THAT(a, Pointwise(DoubleNear(1e-14), {1.0, 0.0, 0.0, 0.0}));
    y[30] = std::numeric_limits<double>::quiet_NaN();
    solver.solve(p, y, 0.25, b, a);
    EXPECT_THAT(b, testing::Each(testing::IsNan()));
}

TEST(PowerGrid, IsExactAtBothEndsOfTheBandAndBeyond) {
    std::vector<double> angles, powers(700);
    for (int i = 0; i < 700; ++i) {
        angles.push_back(-0.001 - 0.01 * i);
    }
    PowerGrid grid;
    grid.build(angles);
    for (const std::vector<double>& c : {std::vector{1.0, -2.97, 2.9403, -0.970299},
                                         {1.0, 2.97, 2.9403, 0.970299},
                                         tests::Noise(256)}) {
        grid.power(c, powers);
        for (size_t i = 0; i < angles.size(); ++i) {
            const auto z = tests::PolynomialAt(c, angles[i] / (2.0 * std::numbers::pi), 1.0);
            ASSERT_NEAR(powers[i] / std::norm(z), 1.0, 2e-9) << c.size() << " " << angles[i];
        }
    }
}

class FlatFit : public tests::WithFftTables {
  protected:
    const std::vector<int32_t>& wordsOf(const ComplexVector& spectrum, double clampDb) {
        designer->sampleRate = 48000;
        designer->setTapCount(256);
        designer->setTarget(BuiltInTargetCurve, zeroCurve);
        designer->gainClampDb = clampDb;
        designer->prepareFromSpectrum(spectrum);
        designer->designFir(48000);
        fitter.configure(48000, designer->firTaps.first(256), 7, designLength, clampDb);
        fitter.fit();
        return fitter.coefficientWords;
    }

    std::unique_ptr<EqDesigner> designer = std::make_unique<EqDesigner>();
    IirFitter fitter;
};

// Ripples so small that the rank of the equations is a matter of rounding: the last one has a pole
// of radius 3.3 by LAPACK.
TEST_F(FlatFit, IsStableWhateverRoundingLeaves) {
    const auto hertz = IirFitter::comparisonFrequencies();
    for (const auto& [depthDb, perOctave, clampDb] :
         {std::tuple{0.001, 3.0, -3.0}, {0.003, 11.0, -1.0}, {0.0003, 4.0, -6.0}}) {
        ComplexVector ripple(responseBins);
        for (int32_t k = 0; k < responseBins; ++k) {
            ripple[k] =
                std::pow(10.0, depthDb / 20.0 * std::sin(perOctave * std::log((k + 1) / 14.0)));
        }
        EXPECT_LT(LargestPoleRadius(wordsOf(ripple, clampDb)), 1.0) << depthDb;
        EXPECT_THAT(CascadeResponseDb(fitter.coefficientWords, hertz, 48000),
                    testing::Each(DoubleNear(0.0, 0.005)));
    }
}

TEST_F(FlatFit, IsUnityWhereNothingIsCut) {
    for (const double amplitude : {1.0, 0.3}) {
        const std::vector<int32_t>& words = wordsOf(ComplexVector(responseBins, amplitude), 0.0);
        for (size_t i = 0; i < words.size(); ++i) {
            EXPECT_EQ(words[i], i % 5 == 0 ? 0x800000 : 0) << i;
        }
    }
}

}  // namespace
}  // namespace tonvane

// The elementary functions against long double references, their special values, and the complex
// helpers at the ends of the range.
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "elementary/Elementary.h"
#include "elementary/FastFunctions.h"

namespace tonvane::elementary {
namespace {

using Complex = std::complex<double>;
using Real = long double;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double subnormal = std::numeric_limits<double>::denorm_min();

const std::vector<double> ends{0.0, -0.0, infinity, -infinity, nan};

// Values from low to high, as many around a point at all distances, and the ends.
std::vector<double> spread(double low, double high, double around) {
    std::vector<double> values = ends;
    for (int i = 0; i <= 4000; ++i) {
        values.push_back(low + (high - low) * i / 4000.0);
        values.push_back(around + (i - 2000) * std::ldexp(1.0, -12 - i % 40));
    }
    return values;
}

// The same, and values of every exponent, a third of them negative.
std::vector<double> everywhere(double low, double high, double around) {
    std::vector<double> values = spread(low, high, around);
    for (int e = -1074; e <= 1023; ++e) {
        values.push_back(std::ldexp(1.0 + (e & 7) / 9.0, e) * (e % 3 == 0 ? -1 : 1));
    }
    return values;
}

// Zeros, infinities and what is no number as in the C library; elsewhere within the distance of the
// exact value's nearest double from the next one, or so many times that.
void expectLike(double actual, Real exact, double ulps = 1.0) {
    const auto nearest = static_cast<double>(exact);
    if (std::isnan(nearest)) {
        EXPECT_TRUE(std::isnan(actual));
    } else if (nearest == 0.0 || std::isinf(nearest)) {
        EXPECT_EQ(actual, nearest);
        EXPECT_EQ(std::signbit(actual), std::signbit(nearest));
    } else {
        const double size = std::fabs(nearest);
        EXPECT_LE(std::fabs(actual - exact), ulps * (std::nextafter(size, infinity) - size));
    }
}

// Beside what the fast way cannot take: a result does not depend on its neighbour.
double fastLog(double x) {
    double values[] = {-1.0, x};
    FastLog(values);
    return values[1];
}

Complex fastExp(double re, double im) {
    Complex values[] = {{1e9, 1e9}, {re, im}};
    FastExp(values);
    return values[1];
}

TEST(Elementary, FunctionsAreThoseOfTheCLibraryWithinOneUlp) {
    const std::vector<double> angles = everywhere(-1e15, 1e15, std::numbers::pi / 2);
    const std::vector<double> numbers = everywhere(-1e300, 1e300, 1.0);
    constexpr double seventh = 1.0 / 7.0;
    const struct {
        double (*ours)(double);
        Real (*exact)(Real);
        std::vector<double> arguments;
        double ulps = 1.0;
    } cases[] = {
        {Exp, std::exp, everywhere(-1000, 1000, 0)},
        {Exp10, [](Real x) { return std::pow(10.0L, x); }, everywhere(-1000, 1000, 0)},
        {Log, std::log, numbers},
        {Log10, std::log10, numbers},
        {[](double x) { return SinCos(x).sine; }, std::sin, angles},
        {[](double x) { return SinCos(x).cosine; }, std::cos, angles},
        {Tan, std::tan, angles},
        {Cosh, std::cosh, spread(-710, 710, 0)},
        {Tanh, std::tanh, spread(-25, 25, 0)},
        {[](double x) { return Pow(x, seventh); },
         [](Real x) { return x < 0 ? Real{nan} : std::pow(x, Real{seventh}); }, numbers},
        {[](double x) { return Pow(x, 0); }, [](Real /*x*/) { return Real{1}; }, ends},
        {[](double x) { return Pow(300, x); }, [](Real x) { return std::pow(300.0L, x); },
         spread(-120, 120, 0)},
        {[](double x) { return Atan2(x, -0.75); }, [](Real x) { return std::atan2(x, -0.75L); },
         spread(-20, 20, 0)},
        {fastLog, std::log, numbers, 1.5},
        {[](double x) { return fastExp(x, 0).real(); }, std::exp, everywhere(-1000, 1000, 0), 1.5},
        {[](double x) { return fastExp(0, x).real(); }, std::cos, angles, 1.5},
        {[](double x) { return x == 0 ? x : fastExp(0, x).imag(); }, std::sin, angles, 1.5},
    };
    for (const auto& c : cases) {
        for (const double x : c.arguments) {
            expectLike(c.ours(x), c.exact(x), c.ulps);
            ASSERT_FALSE(HasFailure()) << "function " << &c - cases << " of " << x;
        }
    }
    for (const double x : ends) {
        for (const double y : ends) {
            expectLike(Atan2(y, x), std::atan2(y, x));
        }
    }
    EXPECT_EQ(SinCos(subnormal).sine, subnormal);
}

TEST(Elementary, QuotientAndMagnitudeHoldFromEndToEndOfTheRange) {
    for (int i = 0; i < 1000; ++i) {
        const Complex dividend = std::polar(1.0 + i, 0.37 * i);
        const Complex divisor = std::polar(std::ldexp(1.0, i % 61 - 30), 1.13 * i);
        const auto exact = std::complex<Real>(dividend) / std::complex<Real>(divisor);
        const auto error = std::complex<Real>(Quotient(dividend, divisor)) - exact;
        ASSERT_LT(std::abs(error), 8e-16L * std::abs(exact)) << dividend << divisor;
    }
    EXPECT_EQ(Quotient({1e300, 1e300}, {1e300, 1e300}), Complex(1, 0));
    EXPECT_EQ(Quotient({1e-300, 0}, {0, 1e-300}), Complex(0, -1));
    for (const Complex divisor : {Complex(-0.0, 0), Complex(infinity, 1), Complex(1, nan)}) {
        const Complex quotient = Quotient({1, 1}, divisor);
        EXPECT_TRUE(std::isnan(quotient.real()) && std::isnan(quotient.imag())) << divisor;
    }
    EXPECT_DOUBLE_EQ(Magnitude({-4e300, 3e300}), 5e300);
    EXPECT_DOUBLE_EQ(Magnitude({3e-300, 4e-300}), 5e-300);
    EXPECT_EQ(Magnitude({0, -subnormal}), subnormal);
    EXPECT_EQ(Magnitude({-infinity, 1}), infinity);
    EXPECT_TRUE(std::isnan(Magnitude({nan, 1}) + Magnitude({1, nan})));
}

TEST(Elementary, TruncationStopsAtTheEndsOfTheRange) {
    using Range = std::numeric_limits<int32_t>;
    for (const auto& [value, truncated] : {std::pair{1.999, 1},
                                           {-1.999, -1},
                                           {2147483646.9, Range::max() - 1},
                                           {-2147483647.9, Range::min() + 1},
                                           {2147483648.0, Range::max()},
                                           {-infinity, Range::min()},
                                           {nan, 0}}) {
        EXPECT_EQ(TruncateToInt(value), truncated) << value;
    }
}

}  // namespace
}  // namespace tonvane::elementary

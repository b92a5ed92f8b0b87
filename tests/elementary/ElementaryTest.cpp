// The elementary functions against long double references, their special values, and the complex
// helpers at the ends of the range.
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "elementary/Elementary.h"

namespace tonvane::elementary {
namespace {

using Complex = std::complex<double>;
using Real = long double;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double subnormal = std::numeric_limits<double>::denorm_min();

// A unit is the distance of the exact value's nearest double from the next one.
template <typename Ours, typename Exact>
void expectOneUlp(Ours ours, Exact exact, const std::vector<double>& arguments) {
    for (const double x : arguments) {
        const Real expected = exact(x);
        const double rounded = std::fabs(static_cast<double>(expected));
        const Real unit = std::nextafter(rounded, infinity) - rounded;
        ASSERT_LE(std::fabs(ours(x) - expected), unit) << x;
    }
}

// Values from low to high, and as many around a point at all distances.
std::vector<double> spread(double low, double high, double around) {
    std::vector<double> values;
    for (int i = 0; i <= 4000; ++i) {
        values.push_back(low + (high - low) * i / 4000.0);
        values.push_back(around + (i - 2000) * std::ldexp(1.0, -12 - i % 40));
    }
    return values;
}

TEST(Elementary, ResultsLieWithinOneUlp) {
    std::vector<double> angles = spread(-1e15, 1e15, std::numbers::pi / 2);
    for (int e = -1074; e <= 1023; ++e) {
        angles.push_back(std::ldexp(1.0 + (e & 7) / 9.0, e));
    }
    std::vector<double> positive = spread(1e-300, 1e300, 1.0);
    for (int e = -1074; e <= 1023; ++e) {
        positive.push_back(std::ldexp(1.0 + (e & 7) / 9.0, e));
    }
    constexpr double seventh = 1.0 / 7.0;
    expectOneUlp(
        Exp, [](Real x) { return std::exp(x); }, spread(-745, 709, 0));
    expectOneUlp(
        Exp10, [](Real x) { return std::pow(10.0L, x); }, spread(-323, 308, 0));
    expectOneUlp(
        Log, [](Real x) { return std::log(x); }, positive);
    expectOneUlp(
        Log10, [](Real x) { return std::log10(x); }, positive);
    expectOneUlp([](double x) { return SinCos(x).sine; }, [](Real x) { return std::sin(x); },
                 angles);
    expectOneUlp([](double x) { return SinCos(x).cosine; }, [](Real x) { return std::cos(x); },
                 angles);
    expectOneUlp(
        Tan, [](Real x) { return std::tan(x); }, angles);
    expectOneUlp(
        Cosh, [](Real x) { return std::cosh(x); }, spread(-710, 710, 0));
    expectOneUlp(
        Tanh, [](Real x) { return std::tanh(x); }, spread(-25, 25, 0));
    expectOneUlp([](double x) { return Pow(x, seventh); },
                 [](Real x) { return std::pow(x, Real{seventh}); }, positive);
    expectOneUlp([](double x) { return Pow(300, x); }, [](Real x) { return std::pow(300.0L, x); },
                 spread(-120, 120, 0));
    expectOneUlp([](double x) { return Atan2(x, -0.75); },
                 [](Real x) { return std::atan2(x, -0.75L); }, spread(-20, 20, 0));
}

void expectSame(double actual, double expected) {
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(actual));
    } else {
        EXPECT_EQ(actual, expected);
        EXPECT_EQ(std::signbit(actual), std::signbit(expected));
    }
}

TEST(Elementary, SpecialValuesGoAsInTheCLibrary) {
    const std::vector<double> ends = {0.0, -0.0, infinity, -infinity, nan};
    for (const double x : ends) {
        expectSame(SinCos(x).sine, std::sin(x));
        expectSame(SinCos(x).cosine, std::cos(x));
        expectSame(Tan(x), std::tan(x));
        expectSame(Cosh(x), std::cosh(x));
        expectSame(Tanh(x), std::tanh(x));
        expectSame(Pow(x, 0.0), 1.0);
        expectSame(Pow(std::fabs(x), -1.0), 1.0 / std::fabs(x));
        for (const double y : ends) {
            expectSame(Atan2(y, x), std::atan2(y, x));
        }
    }
    for (const double x : {0.0, -0.0, infinity, -infinity, nan, 1e308, -1e308, -1000.0}) {
        expectSame(Exp(x), std::exp(x));
        expectSame(Exp10(x), std::pow(10.0, x));
    }
    for (const double x : {0.0, -0.0, 1.0, infinity, -infinity, nan, -1.0, -subnormal}) {
        expectSame(Log(x), std::log(x));
        expectSame(Log10(x), std::log10(x));
    }
    expectSame(SinCos(subnormal).sine, subnormal);
    expectSame(Pow(-2.0, 1.0 / 7.0), nan);
}

TEST(Elementary, QuotientHoldsFromEndToEndOfTheRange) {
    for (int i = 0; i < 1000; ++i) {
        const Complex dividend = std::polar(1.0 + i, 0.37 * i);
        const Complex divisor = std::polar(std::ldexp(1.0, i % 61 - 30), 1.13 * i);
        const auto exact = std::complex<Real>(dividend) / std::complex<Real>(divisor);
        const auto error = std::complex<Real>(Quotient(dividend, divisor)) - exact;
        ASSERT_LT(std::abs(error), 8e-16L * std::abs(exact)) << dividend << divisor;
    }
    EXPECT_EQ(Quotient({8, -4}, {0, 2}), Complex(-2, -4));
    EXPECT_EQ(Quotient({1e300, 1e300}, {1e300, 1e300}), Complex(1, 0));
    EXPECT_EQ(Quotient({1e-300, 0}, {0, 1e-300}), Complex(0, -1));
    for (const Complex divisor : {Complex(0, 0), Complex(-0.0, 0), Complex(infinity, 1),
                                  Complex(1, -infinity), Complex(nan, 1), Complex(1, nan)}) {
        const Complex quotient = Quotient({1, 1}, divisor);
        EXPECT_TRUE(std::isnan(quotient.real()) && std::isnan(quotient.imag())) << divisor;
    }
}

TEST(Elementary, MagnitudeNeitherOverflowsNorVanishes) {
    EXPECT_EQ(Magnitude({3, -4}), 5);
    EXPECT_DOUBLE_EQ(Magnitude({-4e300, 3e300}), 5e300);
    EXPECT_DOUBLE_EQ(Magnitude({3e-300, 4e-300}), 5e-300);
    EXPECT_EQ(Magnitude({0, -subnormal}), subnormal);
    EXPECT_EQ(Magnitude({0, -0.0}), 0);
    EXPECT_EQ(Magnitude({-infinity, 1}), infinity);
    EXPECT_TRUE(std::isnan(Magnitude({nan, 1}) + Magnitude({1, nan})));
}

TEST(Elementary, TruncationStopsAtTheEndsOfTheRange) {
    constexpr int32_t lowest = std::numeric_limits<int32_t>::min();
    constexpr int32_t highest = std::numeric_limits<int32_t>::max();
    EXPECT_EQ(TruncateToInt(1.999), 1);
    EXPECT_EQ(TruncateToInt(-1.999), -1);
    EXPECT_EQ(TruncateToInt(2147483646.9), highest - 1);
    EXPECT_EQ(TruncateToInt(-2147483647.9), lowest + 1);
    EXPECT_EQ(TruncateToInt(2147483648.0), highest);
    EXPECT_EQ(TruncateToInt(-infinity), lowest);
    EXPECT_EQ(TruncateToInt(nan), 0);
}

}  // namespace
}  // namespace tonvane::elementary

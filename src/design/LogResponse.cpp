#include "design/LogResponse.h"

#include <algorithm>
#include <array>
#include <numbers>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

// Points evaluated side by side: their sums do not wait for each other.
constexpr size_t lanes = 4;

struct Lanes {
    std::array<double, lanes> re;
    std::array<double, lanes> im;
};

// |polynomial| at each of the points, by Horner's rule.
void magnitudesAt(std::span<const double> coefficients, const Lanes& z,
                  std::array<double, lanes>& out) {
    Lanes sum{};
    for (size_t n = coefficients.size(); n-- > 0;) {
        for (size_t i = 0; i < lanes; ++i) {
            const double re = sum.re[i] * z.re[i] - sum.im[i] * z.im[i];
            const double im = sum.re[i] * z.im[i] + sum.im[i] * z.re[i];
            sum.re[i] = re + coefficients[n];
            sum.im[i] = im;
        }
    }
    for (size_t i = 0; i < lanes; ++i) {
        out[i] = elementary::Magnitude({sum.re[i], sum.im[i]});
    }
}

// Calls put(i, |B|/|A| at point(i)) for i = 0 .. count - 1.
void eachRatio(std::span<const double> b, std::span<const double> a, size_t count,
               const auto& point, const auto& put) {
    std::array<double, lanes> above;
    std::array<double, lanes> below;
    below.fill(1.0);
    for (size_t first = 0; first < count; first += lanes) {
        const size_t used = std::min(lanes, count - first);
        Lanes z{};
        for (size_t i = 0; i < used; ++i) {
            const std::complex<double> value = point(first + i);
            z.re[i] = value.real();
            z.im[i] = value.imag();
        }
        magnitudesAt(b, z, above);
        if (!a.empty()) {
            magnitudesAt(a, z, below);
        }
        for (size_t i = 0; i < used; ++i) {
            put(first + i, above[i] / below[i]);
        }
    }
}

}  // namespace

ComplexVector UnitCirclePoints(std::span<const double> omega) {
    ComplexVector points(omega.size());
    std::ranges::transform(omega, points.begin(), elementary::UnitPhasor);
    return points;
}

void logResponse(std::span<const double> b, std::span<const double> a,
                 std::span<const double> omega, std::span<double> out) {
    logResponseAt(b, a, UnitCirclePoints(omega), out);
}

void logResponseAt(std::span<const double> b, std::span<const double> a,
                   std::span<const std::complex<double>> points, std::span<double> out) {
    eachRatio(
        b, a, points.size(), [&](size_t i) { return points[i]; },
        [&](size_t i, double ratio) { out[i] = elementary::Log10(ratio); });
}

void multiplyResponseAt(std::span<const double> b, std::span<const double> a,
                        std::span<const std::complex<double>> points, std::span<double> out) {
    eachRatio(
        b, a, points.size(), [&](size_t i) { return points[i]; },
        [&](size_t i, double ratio) { out[i] *= ratio; });
}

void magnitudeCurve(std::span<const double> b, std::span<const double> a, ComplexVector& out) {
    const auto last = static_cast<double>(out.size() - 1);
    eachRatio(
        b, a, out.size(),
        [last](size_t i) {
            return elementary::UnitPhasor(static_cast<double>(i) * std::numbers::pi / last);
        },
        [&](size_t i, double ratio) {
            out[i] = {ratio, 0.0};
        });
}

}  // namespace tonvane

#include "filters/ClassicPrototypes.h"

#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

// Half the angle between neighbouring poles, times k = 1, 3, 5, ...
double poleAngle(int32_t k, int32_t order) {
    return k * std::numbers::pi * 0.5 / order;
}

// The smaller half axis of the ellipse of Chebyshev poles, sinh(asinh(1/epsilon)/N).
double minorAxis(int32_t order, double epsilon) {
    const double y =
        elementary::Pow((1.0 + std::sqrt(1.0 + epsilon * epsilon)) / epsilon, 1.0 / order);
    return 0.5 * (y * y - 1.0) / y;
}

// Brings an even order's response at s = 0 down by the ripple.
void lowerEvenOrder(CRationalFunction& h, int32_t order, double epsilon) {
    if (order % 2 == 0) {
        h.denominator *= std::sqrt(1.0 + epsilon * epsilon);
    }
}

// Theta_N by B_k = (2k - 1) B_(k-1) + x^2 B_(k-2).
CPolynomial reverseBesselPolynomial(int32_t order) {
    const CPolynomial x = CPolynomial::Identity();
    CPolynomial before = 1.0;
    CPolynomial last = 1.0 + x;
    for (int32_t k = 2; k <= order; ++k) {
        const CPolynomial next = (2.0 * k - 1.0) * last + x * x * before;
        before = last;
        last = next;
    }
    return last;
}

// The frequency at which |p(jw)| reaches `target`, for p(0) = 1 and a rising magnitude.
double frequencyOfMagnitude(const CPolynomial& p, double target) {
    const CComplexPolynomial complexForm(p);
    const auto isBelow = [&](double w) {
        return elementary::Magnitude(complexForm.Evaluate(0.0, w)) < target;
    };
    double low = 0.0;
    double high = 1.0;
    while (isBelow(high)) {
        low = high;
        high *= 2.0;
    }
    while ((high + low) * 1e-13 < high - low) {
        const double middle = (high + low) / 2.0;
        (isBelow(middle) ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

}  // namespace

double EpsilonOfDecibels(double decibels) {
    return std::sqrt(elementary::Exp10(decibels / 10.0) - 1.0);
}

CRationalFunction ButterworthPrototype(int32_t order, double epsilon) {
    if (!IsDesignableOrder(order)) {
        return {};
    }
    CRationalFunction h = 1.0;
    const double v = elementary::Pow(epsilon, 1.0 / order);
    for (int32_t k = 1; k < order; k += 2) {
        const double sine = elementary::SinCos(poleAngle(k, order)).sine;
        h *= {1.0, {1.0, 2.0 * v * sine, v * v}};
    }
    if (order % 2 != 0) {
        h *= {1.0, {1.0, v}};
    }
    return h;
}

CRationalFunction Chebyshev1Prototype(int32_t order, double epsilon) {
    if (!IsDesignableOrder(order)) {
        return {};
    }
    CRationalFunction h = 1.0;
    lowerEvenOrder(h, order, epsilon);
    const double c = minorAxis(order, epsilon);
    for (int32_t k = 1; k < order; k += 2) {
        const auto [sine, cosine] = elementary::SinCos(poleAngle(k, order));
        const double q = cosine * cosine + c * c;
        h *= {q, {q, 2.0 * c * sine, 1.0}};
    }
    if (order % 2 != 0) {
        h *= {c, {c, 1.0}};
    }
    return h;
}

CRationalFunction Chebyshev2Prototype(int32_t order, double epsilon) {
    if (!IsDesignableOrder(order)) {
        return {};
    }
    CRationalFunction h = 1.0;
    const double u = 1.0 / epsilon;
    lowerEvenOrder(h, order, u);
    const double c = minorAxis(order, u);
    for (int32_t k = 1; k < order; k += 2) {
        const auto [sine, cosine] = elementary::SinCos(poleAngle(k, order));
        const double p = cosine * cosine;
        h *= {{1.0, 0.0, p}, {1.0, 2.0 * c * sine, c * c + p}};
    }
    if (order % 2 != 0) {
        h *= {1.0, {1.0, c}};
    }
    return h;
}

CRationalFunction BesselPrototype(int32_t order, double edgeDecibels) {
    if (!IsDesignableOrder(order)) {
        return {};
    }
    CPolynomial p = reverseBesselPolynomial(order);
    if (order == 1) {
        return {1.0, p};
    }
    p /= p[0];
    const double w = frequencyOfMagnitude(p, elementary::Exp10(edgeDecibels / 20.0));
    return {1.0, p.Substitute(w * CPolynomial::Identity())};
}

}  // namespace tonvane

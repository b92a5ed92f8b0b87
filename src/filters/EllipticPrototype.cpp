#include "filters/EllipticPrototype.h"

#include <cmath>

#include "elementary/Elementary.h"
#include "filters/ClassicPrototypes.h"
#include "filters/EllipticFunctions.h"

namespace tonvane {

namespace {

struct JacobiValues {
    double sn;
    double cn;
    double dn;
};

JacobiValues jacobi(double u, double mc) {
    JacobiValues v{};
    JacobiSnCnDn(u, mc, v.sn, v.cn, v.dn);
    return v;
}

// The point of (0, limit) at which isAbove changes from false to true. Both ends must have moved
// before the width counts. On NaN one end may never move, hence the cap; a search that makes sense
// needs below 100 steps.
template <class Predicate>
double bisect(double limit, const Predicate& isAbove) {
    constexpr int32_t maximumSteps = 200;
    double low = 0.0;
    double high = limit;
    for (int32_t step = 0; step < maximumSteps; ++step) {
        if (low != 0.0 && high != limit && !((high + low) * 1e-13 < high - low)) {
            break;
        }
        const double middle = (high + low) / 2.0;
        if (middle == low || middle == high) {
            break;  // the point lies within a last bit of the limit
        }
        (isAbove(middle) ? high : low) = middle;
    }
    return (high + low) / 2.0;
}

// The modulus k with K'(k)/K(k) = ratio; the quotient falls as k rises.
double modulusOfRatio(double ratio) {
    return bisect(1.0, [&](double k) {
        const double m = 1.0 - k * k;
        const double q = std::sqrt(m);
        return !(CarlsonRF(0.0, 1.0 - q * q, 1.0) / CarlsonRF(0.0, m, 1.0) > ratio);
    });
}

}  // namespace

CRationalFunction EllipticPrototype(int32_t order, double epsilon, double stopDecibels) {
    if (!IsDesignableOrder(order)) {
        return {};
    }
    CRationalFunction h = 1.0;
    if (order % 2 == 0) {
        h.denominator *= std::sqrt(1.0 + epsilon * epsilon);
    }

    // Discrimination and selectivity, tied by the degree equation.
    const double discrimination = epsilon / EpsilonOfDecibels(stopDecibels);
    const double m1 = discrimination * discrimination;
    const double q1 = std::sqrt(1.0 - m1);
    const double k1 = CarlsonRF(0.0, 1.0 - m1, 1.0);
    const double k1Complement = CarlsonRF(0.0, 1.0 - q1 * q1, 1.0);
    const double selectivity = modulusOfRatio(k1Complement / k1 / order);
    const double m = selectivity * selectivity;
    const double k = CarlsonRF(0.0, 1.0 - m, 1.0);

    // sc(u | 1 - m1) = 1/epsilon places the poles.
    const double poleArgument = bisect(k1Complement, [&](double u) {
        const JacobiValues j = jacobi(u, m1);
        return j.sn / j.cn > 1.0 / epsilon;
    });
    const JacobiValues pole = jacobi(poleArgument * k / k1 / order, m);

    for (int32_t i = order - 1; i > 0; i -= 2) {
        const JacobiValues zero = jacobi(i * k / order, 1.0 - m);
        const double dnS0 = zero.dn * pole.sn;
        const double d0Sn = pole.dn * zero.sn;
        const double p = 1.0 - dnS0 * dnS0;
        const double t = pole.cn * pole.sn * zero.cn * zero.dn;
        const double w = d0Sn * d0Sn + t * t;
        h *= {{1.0, 0.0, m * zero.sn * zero.sn}, {1.0, 2.0 * t * p / w, p * p / w}};
    }
    if (order % 2 != 0) {
        h *= {1.0, {1.0, pole.cn / pole.sn}};
    }
    return h;
}

}  // namespace tonvane

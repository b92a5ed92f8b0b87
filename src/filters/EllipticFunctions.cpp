#include "filters/EllipticFunctions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <utility>

#include "elementary/Elementary.h"

namespace tonvane {

double CarlsonRF(double x, double y, double z) {
    constexpr double tolerance = 0.0012;  // the series' error goes with its sixth power
    constexpr double smallestSum = 1.5e-38;
    constexpr double largestArgument = 3e37;
    if (std::min({x, y, z}) < 0.0 || std::min({x + y, x + z, y + z}) < smallestSum ||
        std::max({x, y, z}) > largestArgument) {
        std::cerr << "invalid arguments in rf\n";
    }

    double mean = 0.0;
    double dx = 0.0;
    double dy = 0.0;
    double dz = 0.0;
    do {
        const double s = std::sqrt(x * y) + std::sqrt(y * z) + std::sqrt(x * z);
        x = (x + s) / 4.0;
        y = (y + s) / 4.0;
        z = (z + s) / 4.0;
        mean = (x + y + z) / 3.0;
        dx = (mean - x) / mean;
        dy = (mean - y) / mean;
        dz = (mean - z) / mean;
    } while (std::max({std::fabs(dx), std::fabs(dy), std::fabs(dz)}) > tolerance);

    const double e2 = dx * dy - dz * dz;
    const double e3 = dx * dy * dz;
    return (1.0 + (e2 / 24.0 - 0.1 - 3.0 / 44.0 * e3) * e2 + e3 / 14.0) / std::sqrt(mean);
}

void JacobiSnCnDn(double u, double mc, double& sn, double& cn, double& dn) {
    constexpr double levelTolerance = 1e-7;
    constexpr int32_t levelCount = 13;
    if (mc == 0.0) {
        cn = dn = 1.0 / elementary::Cosh(u);
        sn = elementary::Tanh(u);
        return;
    }
    const bool isNegative = mc < 0.0;
    double d = 1.0;
    if (isNegative) {
        d = 1.0 - mc;
        mc /= -1.0 / d;  // a textbook has mc /= -d
        d = std::sqrt(d);
        u *= d;
    }

    std::array<double, levelCount + 1> em{};
    std::array<double, levelCount + 1> en{};
    double a = 1.0;
    double c = 0.0;
    int32_t lastLevel = 0;
    for (int32_t level = 1; level <= levelCount; ++level) {
        lastLevel = level;
        em[level] = a;
        mc = std::sqrt(mc);
        en[level] = mc;
        c = (a + mc) / 2.0;
        if (std::fabs(a - mc) <= levelTolerance * a) {
            break;
        }
        mc *= a;
        a = c;
    }

    dn = 1.0;
    const auto [sine, cosine] = elementary::SinCos(u * c);
    sn = sine;
    cn = cosine;
    if (sn != 0.0) {
        a = cn / sn;
        c *= a;
        for (int32_t level = lastLevel; level >= 1; --level) {
            const double b = em[level];
            a *= c;
            c *= dn;
            dn = (en[level] + a) / (b + a);
            a = c / b;
        }
        a = 1.0 / std::sqrt(c * c + 1.0);
        sn = sn >= 0.0 ? a : -a;
        cn = c * sn;
    }
    if (isNegative) {
        std::swap(cn, dn);
        sn /= d;
    }
}

}  // namespace tonvane

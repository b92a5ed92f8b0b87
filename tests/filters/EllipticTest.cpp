#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "filters/ClassicPrototypes.h"
#include "filters/EllipticFunctions.h"
#include "filters/EllipticPrototype.h"
#include "filters/Magnitude.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(CarlsonRF, InvalidArgumentsAreSilentOrNeverEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::array<double, 3>> invalid{
        {-1.0, 1.0, 1.0}, {0.0, 0.0, 1.0}, {1.0, 1.0, 1e38}, {0.0, 0.0, 0.0}, {1.0, infinity, 0.0}};
    for (const auto& [x, y, z] : invalid) {
        CaptureStderr();
        CarlsonRF(x, y, z);
        EXPECT_EQ(GetCapturedStderr(), "invalid arguments in rf\n") << x << " " << y << " " << z;
    }
    EXPECT_TRUE(std::isnan(CarlsonRF(nan, 1.0, 1.0)));
    CaptureStderr();
    CarlsonRF(0.0, 1.5e-38, 3e37);
    EXPECT_EQ(GetCapturedStderr(), "");
}

struct Jacobi {
    Jacobi(double u, double mc) { JacobiSnCnDn(u, mc, sn, cn, dn); }
    double sn = 0.0;
    double cn = 0.0;
    double dn = 0.0;
};

TEST(JacobiSnCnDn, DegenerateModuliAreWrong) {
    for (const double u : {-2.0, -0.3, 0.0, 0.7, 1.5}) {
        const Jacobi circular(u, 1.0);
        EXPECT_NEAR(circular.sn, std::sin(u), 1e-15);
        EXPECT_NEAR(circular.cn, std::cos(u), 1e-15);
        EXPECT_EQ(circular.dn, 1.0);
        const Jacobi hyperbolic(u, 0.0);
        EXPECT_NEAR(hyperbolic.sn, std::tanh(u), 1e-15);
        EXPECT_NEAR(hyperbolic.cn, 1.0 / std::cosh(u), 1e-15);
        EXPECT_EQ(hyperbolic.dn, hyperbolic.cn);
    }
}

// For k > 1 Jacobi's real transformation, sn(u, k) = sn(ku, 1/k)/k with cn and dn exchanged, has
// the complementary parameter -mc/k^2. Here it is -mc k^2: no Jacobian functions of k.
TEST(JacobiSnCnDn, NegativeParameterIsDividedWhereItIsMultiplied) {
    const double modulus = std::sqrt(1.25);
    for (const double u : {-0.6, 0.2, 0.9}) {
        const Jacobi outer(u, -0.25);
        const Jacobi inner(modulus * u, 0.25 * 1.25);
        EXPECT_NEAR(outer.sn, inner.sn / modulus, 1e-14);
        EXPECT_NEAR(outer.cn, inner.dn, 1e-14);
        EXPECT_NEAR(outer.dn, inner.cn, 1e-14);
    }
}

struct EllipticCase {
    int32_t order;
    double passDb;
    double stopDb;
};

TEST(EllipticPrototype, RippleIsNotEqualInPassAndStopBand) {
    for (const auto& [order, passDb, stopDb] : std::vector<EllipticCase>{
             {2, 3.0, 20.0}, {3, 0.1, 50.0}, {4, 1.0, 40.0}, {5, 1.0, 40.0}, {7, 0.5, 80.0}}) {
        SCOPED_TRACE(order);
        const auto h = EllipticPrototype(order, EpsilonOfDecibels(passDb), stopDb);
        EXPECT_NEAR(tests::AnalogDecibels(h, 0.0), order % 2 == 0 ? -passDb : 0.0, 1e-9);
        EXPECT_NEAR(tests::AnalogDecibels(h, 1.0), -passDb, 1e-8);

        // The ripple of the pass band touches both limits.
        constexpr int32_t steps = 20000;
        double lowest = 0.0;
        double highest = -passDb;
        for (int32_t i = 0; i <= steps; ++i) {
            const double level = tests::AnalogDecibels(h, static_cast<double>(i) / steps);
            lowest = std::min(lowest, level);
            highest = std::max(highest, level);
        }
        EXPECT_NEAR(lowest, -passDb, 1e-5);
        EXPECT_NEAR(highest, 0.0, 1e-5);

        double w = 1.0;
        while (tests::AnalogDecibels(h, w) > -stopDb) {
            w += 1e-4;
        }
        double stopLevel = -stopDb - 1.0;
        for (w += 1e-3; w < 1000.0; w *= 1.0002) {
            stopLevel = std::max(stopLevel, tests::AnalogDecibels(h, w));
        }
        // An even order ends on the limit, an odd one (but the first) has a ripple that reaches it.
        EXPECT_NEAR(stopLevel, -stopDb, 1e-4);
    }
}

TEST(EllipticPrototype, StopBandAboveThePassBandIsSilentOrNeverEnds) {
    for (const int32_t order : {1, 4, 5}) {
        CaptureStderr();
        const auto h = EllipticPrototype(order, EpsilonOfDecibels(3.0), 1.0);
        EXPECT_THAT(GetCapturedStderr(), HasSubstr("invalid arguments in rf\n"));
        EXPECT_EQ(h.denominator.degree, order);
    }
    CaptureStderr();
    EllipticPrototype(6, EpsilonOfDecibels(0.1), 100.0);
    EXPECT_EQ(GetCapturedStderr(), "");
}

}  // namespace
}  // namespace tonvane

// The methods of Exponentials.cpp and Angles.cpp in plain doubles, without what comes behind the
// last place.
#include "elementary/FastFunctions.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "elementary/DoubleDouble.h"
#include "elementary/DoublePair.h"
#include "elementary/Elementary.h"
#include "elementary/ExponentialTables.h"

namespace tonvane::elementary {

namespace {

using BitPair = uint64_t __attribute__((vector_size(16)));

BitPair bitsOf(DoublePair x) {
    BitPair bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

DoublePair pairOfBits(BitPair bits) {
    DoublePair x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}

// As Nearest of DoubleDouble.h.
DoublePair nearestOf(DoublePair x) {
    constexpr double unitInTheLastPlace = 0x1.8p52;
    return (x + unitInTheLastPlace) - unitInTheLastPlace;
}

bool isPositiveNormal(double x) {
    return x >= std::numeric_limits<double>::min() && x <= std::numeric_limits<double>::max();
}

// Of positive normal numbers: x = 2^e * c * (1 + q), c = i/128 next to it.
DoublePair fastLogarithms(DoublePair x) {
    constexpr double bias = 1023.0;
    constexpr uint64_t mantissa = 0x000FFFFFFFFFFFFF;
    constexpr uint64_t one = 0x3FF0000000000000;
    constexpr uint64_t twoToThe52 = 0x4330000000000000;
    const BitPair bits = bitsOf(x);
    DoublePair e = pairOfBits((bits >> 52U) | twoToThe52) - (0x1p52 + bias);
    DoublePair m = pairOfBits((bits & mantissa) | one);
    const auto isHigh = m > (lastLogStep - 0.5) / logSteps;
    BitPair high;
    std::memcpy(&high, &isHigh, sizeof high);
    const DoublePair oneIfHigh = pairOfBits(high & one);
    e += oneIfHigh;
    m -= m * (oneIfHigh * 0.5);

    const DoublePair i = nearestOf(m * static_cast<double>(logSteps));
    const LogStep& step0 = logTable[static_cast<size_t>(i[0]) - firstLogStep];
    const LogStep& step1 = logTable[static_cast<size_t>(i[1]) - firstLogStep];
    const DoublePair logOfC{step0.log.hi, step1.log.hi};
    const DoublePair q = (m - i * (1.0 / logSteps)) * DoublePair{step0.inverse, step1.inverse};
    const DoublePair series =
        q * q *
        (-1.0 / 2 +
         q * (1.0 / 3 + q * (-1.0 / 4 + q * (1.0 / 5 + q * (-1.0 / 6 + q * (1.0 / 7))))));
    constexpr double ln2High = 0x1.62e42fefa3800p-1;  // products with e are exact
    constexpr double ln2Low = 0x1.ef35793c76730p-45;
    return (e * ln2High + logOfC) + (q + (series + e * ln2Low));
}

DoublePair anyLogarithms(DoublePair x) {
    if (isPositiveNormal(x[0]) && isPositiveNormal(x[1])) {
        return fastLogarithms(x);
    }
    const auto one = [](double v) {
        return isPositiveNormal(v) ? fastLogarithms(Twice(v))[0] : Log(v);
    };
    return DoublePair{one(x[0]), one(x[1])};
}

// Beyond these the fast functions are not as exact, or their results not normal.
constexpr double fastExponents = 700.0;
constexpr double fastAngles = 0x1p20;

// x = k*ln2/64 + r.
DoublePair fastExponentials(DoublePair x) {
    constexpr double stepsPerUnit = 0x1.71547652b82fep+6;  // 64/ln2
    constexpr double stepHigh = 0x1.62e42fefa0000p-7;      // products with k are exact
    constexpr double stepLow = 0x1.cf79abc9e3b3ap-46;
    const DoublePair k = nearestOf(x * stepsPerUnit);
    const DoublePair r = (x - k * stepHigh) - k * stepLow;
    const DoublePair rest =
        r + r * r * (1.0 / 2 + r * (1.0 / 6 + r * (1.0 / 24 + r * (1.0 / 120))));

    const auto step0 = static_cast<int32_t>(k[0]);
    const auto step1 = static_cast<int32_t>(k[1]);
    const DoubleDouble& power0 = powerTable[static_cast<size_t>(step0 & (powerSteps - 1))];
    const DoubleDouble& power1 = powerTable[static_cast<size_t>(step1 & (powerSteps - 1))];
    const DoublePair high{power0.hi, power1.hi};
    const DoublePair low{power0.lo, power1.lo};
    const DoublePair value = high + (low + high * rest);
    const auto shifted = [](int32_t step) {
        return static_cast<uint64_t>(static_cast<int64_t>(step >> 6)) << 52U;
    };
    return pairOfBits(bitsOf(value) + BitPair{shifted(step0), shifted(step1)});
}

struct SineCosinePair {
    DoublePair sine;
    DoublePair cosine;
};

// x = k*pi/2 + r.
SineCosinePair fastSineCosines(DoublePair x) {
    constexpr double turnsPerUnit = 0x1.45f306dc9c883p-1;  // 2/pi
    constexpr double piHigh = 0x1.921fb54400000p+0;        // products with k are exact
    constexpr double piMid = 0x1.0b4611a600000p-34;
    constexpr double piLow = 0x1.3198a2e037073p-69;
    const DoublePair k = nearestOf(x * turnsPerUnit);
    const DoublePair r = ((x - k * piHigh) - k * piMid) - k * piLow;
    const DoublePair z = r * r;
    const DoublePair sine =
        r +
        r * z *
            (-1.0 / 6 +
             z * (1.0 / 120 +
                  z * (-1.0 / 5040 + z * (1.0 / 362880 + z * (-1.0 / 39916800 +
                                                              z * (1.0 / 6227020800 +
                                                                   z * (-1.0 / 1307674368000)))))));
    const DoublePair cosine =
        1.0 -
        (0.5 * z -
         z * z *
             (1.0 / 24 +
              z * (-1.0 / 720 + z * (1.0 / 40320 + z * (-1.0 / 3628800 +
                                                        z * (1.0 / 479001600 +
                                                             z * (-1.0 / 87178291200 +
                                                                  z * (1.0 / 20922789888000))))))));

    // An odd k exchanges the two, a k of 2 or 3 modulo 4 turns the sine over, one of 1 or 2 the
    // cosine. The last bits of k + 1.5*2^52 are those of k.
    const BitPair quarter = bitsOf(k + 0x1.8p52);
    const BitPair odd = BitPair{} - (quarter & 1U);
    const BitPair s = bitsOf(sine);
    const BitPair c = bitsOf(cosine);
    return {pairOfBits(((s & ~odd) | (c & odd)) ^ ((quarter & 2U) << 62U)),
            pairOfBits(((c & ~odd) | (s & odd)) ^ (((quarter + 1U) & 2U) << 62U))};
}

bool isFast(std::complex<double> z) {
    return std::fabs(z.real()) < fastExponents && std::fabs(z.imag()) < fastAngles;
}

// The exponentials of a and b into them.
void fastExponentialsOf(std::complex<double>& a, std::complex<double>& b) {
    const DoublePair size = fastExponentials(DoublePair{a.real(), b.real()});
    const SineCosinePair angle = fastSineCosines(DoublePair{a.imag(), b.imag()});
    const DoublePair re = size * angle.cosine;
    const DoublePair im = size * angle.sine;
    a = {re[0], im[0]};
    b = {re[1], im[1]};
}

void anyExponentialOf(std::complex<double>& z) {
    if (isFast(z)) {
        std::complex<double> same = z;
        fastExponentialsOf(z, same);
    } else {
        z = Exp(z.real()) * UnitPhasor(z.imag());
    }
}

}  // namespace

void FastLog(std::span<double> values) {
    size_t i = 0;
    for (; i + 1 < values.size(); i += 2) {
        StoreDoubles(&values[i], anyLogarithms(LoadDoubles(&values[i])));
    }
    if (i < values.size()) {
        values[i] = anyLogarithms(Twice(values[i]))[0];
    }
}

void FastExp(std::span<std::complex<double>> values) {
    size_t i = 0;
    for (; i + 1 < values.size(); i += 2) {
        if (isFast(values[i]) && isFast(values[i + 1])) {
            fastExponentialsOf(values[i], values[i + 1]);
        } else {
            anyExponentialOf(values[i]);
            anyExponentialOf(values[i + 1]);
        }
    }
    if (i < values.size()) {
        anyExponentialOf(values[i]);
    }
}

}  // namespace tonvane::elementary

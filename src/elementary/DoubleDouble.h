// Numbers of about 106 bits as the unevaluated sum of two doubles (Dekker 1971, Knuth's two-sum).
//
// The functions are exact or nearly so as long as nothing over- or underflows, and rest on nothing
// but correctly rounded additions, multiplications and divisions, which are the same on every
// machine.
#pragma once

#include <limits>

namespace tonvane::elementary {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// |lo| is at most half a unit in the last place of hi.
struct DoubleDouble {
    double hi;
    double lo;
};

// a + b without error, for |a| >= |b| or a = 0.
constexpr DoubleDouble FastSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

// a + b without error.
constexpr DoubleDouble ExactSum(double a, double b) {
    const double sum = a + b;
    const double part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

// x as the sum of two numbers of 26 bits (Veltkamp), for |x| below 2^990.
constexpr DoubleDouble Halves(double x) {
    constexpr double splitter = 134217729.0;  // 2^27 + 1
    const double big = splitter * x;
    const double high = big - (big - x);
    return {high, x - high};
}

// a * b without error.
constexpr DoubleDouble ExactProduct(double a, double b) {
    const DoubleDouble x = Halves(a);
    const DoubleDouble y = Halves(b);
    const double product = a * b;
    return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

// x * x without error, given its halves.
constexpr DoubleDouble Square(double x, DoubleDouble halves) {
    const double square = x * x;
    return {square, ((halves.hi * halves.hi - square) + 2.0 * halves.hi * halves.lo) +
                        halves.lo * halves.lo};
}

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble high = ExactSum(a.hi, b.hi);
    const DoubleDouble low = ExactSum(a.lo, b.lo);
    const DoubleDouble sum = FastSum(high.hi, high.lo + low.hi);
    return FastSum(sum.hi, sum.lo + low.lo);
}

constexpr DoubleDouble operator-(DoubleDouble a) {
    return {-a.hi, -a.lo};
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
    return a + -b;
}

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble product = ExactProduct(a.hi, b.hi);
    return FastSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
    const double first = a.hi / b.hi;
    const DoubleDouble rest = a - b * DoubleDouble{first, 0.0};
    const double second = rest.hi / b.hi;
    const DoubleDouble left = rest - b * DoubleDouble{second, 0.0};
    const DoubleDouble quotient = FastSum(first, second);
    return FastSum(quotient.hi, quotient.lo + left.hi / b.hi);
}

// The nearest whole number, for |x| below 2^51; ties go to the even one.
constexpr double Nearest(double x) {
    constexpr double unitInTheLastPlace = 0x1.8p52;
    return (x + unitInTheLastPlace) - unitInTheLastPlace;
}

constexpr DoubleDouble pi{0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53};
constexpr DoubleDouble halfPi{0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
constexpr DoubleDouble naturalLogOf2{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};
constexpr DoubleDouble naturalLogOf10{0x1.26bb1bbb55516p+1, -0x1.f48ad494ea3e9p-53};
constexpr DoubleDouble decimalLogOfE{0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};

}  // namespace tonvane::elementary

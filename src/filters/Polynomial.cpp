#include "filters/Polynomial.h"

#include <algorithm>

#include "elementary/Elementary.h"

namespace tonvane {

CPolynomial::CPolynomial(std::initializer_list<double> ascending) {
    const auto wantedDegree = static_cast<int32_t>(ascending.size()) - 1;
    Reserve(wantedDegree);
    if (Holds(wantedDegree)) {
        degree = wantedDegree;
        std::ranges::copy(ascending, coefficients.get());
    }
}

void CPolynomial::ZeroRange(int32_t first, int32_t last) {
    const int32_t end = std::min(last == -1 ? degree : last, capacity - 1);
    for (int32_t power = std::max(first, 0); power <= end; ++power) {
        (*this)[power] = 0.0;
    }
}

void CPolynomial::Trim() {
    while (degree > 0 && (*this)[degree] == 0.0) {
        --degree;
    }
}

void CPolynomial::operator+=(const CPolynomial& other) {
    Reserve(other.degree);
    if (!Holds(other.degree)) {
        return;
    }
    if (other.degree > degree) {
        ZeroRange(degree + 1, other.degree);
        degree = other.degree;
    }
    for (int32_t power = 0; power <= other.degree; ++power) {
        (*this)[power] += other[power];
    }
    Trim();
}

void CPolynomial::operator-=(const CPolynomial& other) {
    Reserve(other.degree);
    if (!Holds(other.degree)) {
        return;
    }
    if (other.degree > degree) {
        ZeroRange(degree + 1, other.degree);
        degree = other.degree;
    }
    for (int32_t power = 0; power <= other.degree; ++power) {
        (*this)[power] -= other[power];
    }
    Trim();
}

CPolynomial CPolynomial::operator*=(const CPolynomial& other) {
    CPolynomial product;
    const int32_t productDegree = std::max(degree + other.degree, -1);
    product.Reserve(productDegree);
    if (!product.Holds(productDegree)) {
        return *this;
    }
    product.degree = productDegree;
    for (int32_t i = 0; i <= productDegree; ++i) {
        double sum = 0.0;
        const int32_t last = std::min(i, degree);
        for (int32_t j = std::max(0, i - other.degree); j <= last; ++j) {
            sum += (*this)[j] * other[i - j];
        }
        product[i] = sum;
    }
    product.Trim();
    return *this = product;
}

CPolynomial CPolynomial::operator/=(double divisor) {
    for (int32_t power = 0; power <= degree; ++power) {
        (*this)[power] /= divisor;
    }
    return *this;
}

CPolynomial CPolynomial::Substitute(const CPolynomial& inner) const {
    CPolynomial result = 0.0;
    CPolynomial innerPower = 1.0;
    for (int32_t power = 0; power <= degree; ++power) {
        result += (*this)[power] * innerPower;
        innerPower *= inner;
    }
    return result;
}

CPolynomial operator+(CPolynomial left, const CPolynomial& right) {
    left += right;
    return left;
}

CPolynomial operator-(CPolynomial left, const CPolynomial& right) {
    left -= right;
    return left;
}

CPolynomial operator*(CPolynomial left, const CPolynomial& right) {
    left *= right;
    return left;
}

CPolynomial operator/(CPolynomial left, double divisor) {
    left /= divisor;
    return left;
}

CComplexPolynomial::CComplexPolynomial(const CPolynomial& real) {
    Reserve(real.degree);
    if (Holds(real.degree)) {
        degree = real.degree;
        std::copy_n(real.coefficients.get(), degree + 1, coefficients.get());
    }
}

// Powers carried along, not Horner's scheme, which would round differently.
std::complex<double> CComplexPolynomial::Evaluate(double re, double im) const {
    const std::complex<double> z(re, im);
    std::complex<double> sum = 0.0;
    std::complex<double> zPower = 1.0;
    for (int32_t power = 0; power <= degree; ++power) {
        sum += elementary::Product((*this)[power], zPower);
        zPower = elementary::Product(zPower, z);
    }
    return sum;
}

}  // namespace tonvane

#include "elementary/AngleReduction.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace tonvane::elementary {

namespace {

constexpr double quarterTurnsPerRadian = 0x1.45f306dc9c883p-1;  // 2/pi
constexpr int32_t limbBits = 32;

// 2/pi after the binary point.
constexpr std::array<uint32_t, 40> twoOverPi{
    0xA2F9836E, 0x4E441529, 0xFC2757D1, 0xF534DDC0, 0xDB629599, 0x3C439041, 0xFE5163AB, 0xDEBBC561,
    0xB7246E3A, 0x424DD2E0, 0x06492EEA, 0x09D1921C, 0xFE1DEB1C, 0xB129A73E, 0xE88235F5, 0x2EBB4484,
    0xE99C7026, 0xB45F7E41, 0x3991D639, 0x835339F4, 0x9C845F8B, 0xBDF9283B, 0x1FF897FF, 0xDE05980F,
    0xEF2F118B, 0x5A0A6D1F, 0x6D367ECF, 0x27CB09B7, 0x4F463F66, 0x9E5FEA2D, 0x7527BAC7, 0xEBE5F17B,
    0x3D0739F7, 0x8A5292EA, 0x6BFB5FB1, 0x1F8D5D08, 0x56033046, 0xFC7B6BAB, 0xF0CFBC20, 0x9AF4361D};

// 32 bits of 2/pi from bit `first` (0 is the one behind the point).
uint32_t bitsOfTwoOverPi(int32_t first) {
    const auto limb = static_cast<size_t>(first / limbBits);
    const int32_t shift = first % limbBits;
    const uint64_t pair = static_cast<uint64_t>(twoOverPi[limb]) << 32U |
                          (limb + 1 < twoOverPi.size() ? twoOverPi[limb + 1] : 0U);
    return static_cast<uint32_t>(pair >> (limbBits - shift));
}

// The product of the angle's 53 bits with the 256 bits of 2/pi that matter for it, the lowest limb
// first (Payne and Hanek 1983): bits above them give whole turns, bits below cannot be seen.
using Product = std::array<uint32_t, 10>;
constexpr int32_t keptBits = 256;

Product productWithTwoOverPi(uint64_t mantissa, int32_t first) {
    Product product{};
    for (int32_t i = 0; i < keptBits / limbBits; ++i) {
        const uint64_t factor = bitsOfTwoOverPi(first + keptBits - limbBits * (i + 1));
        uint64_t carry = 0;
        for (size_t j = 0; j < 2; ++j) {
            const uint64_t part = mantissa >> (32 * j) & 0xFFFFFFFFU;
            uint32_t& limb = product[static_cast<size_t>(i) + j];
            const uint64_t sum = factor * part + limb + carry;
            limb = static_cast<uint32_t>(sum);
            carry = sum >> 32U;
        }
        product[static_cast<size_t>(i) + 2] = static_cast<uint32_t>(carry);
    }
    return product;
}

// 32 bits of the product from `first` upward; -31 and more, with zeros below the product.
uint32_t bitsFrom(const Product& product, int32_t first) {
    if (first < 0) {
        return product[0] << -first;
    }
    const auto limb = static_cast<size_t>(first / limbBits);
    const auto at = [&](size_t i) { return i < product.size() ? product[i] : 0U; };
    const uint64_t pair = static_cast<uint64_t>(at(limb + 1)) << 32U | at(limb);
    return static_cast<uint32_t>(pair >> (first % limbBits));
}

ReducedAngle reduceLarge(double radians) {
    const auto bits = std::bit_cast<uint64_t>(radians);
    const auto exponent = static_cast<int32_t>(bits >> 52U & 0x7FFU) - 1075;
    const uint64_t mantissa = (bits & 0x000FFFFFFFFFFFFFU) | 0x0010000000000000U;
    const int32_t first = std::max(exponent - 2, 0);
    const Product product = productWithTwoOverPi(mantissa, first);
    const int32_t point = first + keptBits - exponent;  // the product's bits below the point

    // To the nearest whole number. The sum begins with the one that is taken off: after it, the
    // limbs could not be told from one.
    const uint32_t whole = bitsFrom(product, point);
    const uint32_t half = bitsFrom(product, point - 1) & 1U;
    DoubleDouble fraction{half == 0 ? 0.0 : -1.0, 0.0};
    double weight = 1.0;
    for (int32_t i = 1; i <= keptBits / limbBits; ++i) {
        weight *= 0x1p-32;
        fraction = fraction + DoubleDouble{bitsFrom(product, point - limbBits * i) * weight, 0.0};
    }
    const DoubleDouble rest = fraction * halfPi;
    const auto turns = static_cast<int32_t>((whole + half) & 3U);
    const bool isNegative = radians < 0.0;
    return {isNegative ? -rest : rest, isNegative ? -turns & 3 : turns};
}

}  // namespace

ReducedAngle ReduceAngle(double radians) {
    constexpr double quarterPi = 0x1.921fb54442d18p-1;
    constexpr double large = 0x1p20;
    if (std::fabs(radians) <= quarterPi) {
        return {{radians, 0.0}, 0};
    }
    if (std::fabs(radians) >= large) {
        return reduceLarge(radians);
    }
    // pi/2 in parts whose products with k are exact (Cody and Waite 1980).
    constexpr double part1 = 0x1.921fb54400000p+0;
    constexpr double part2 = 0x1.0b4611a600000p-34;
    constexpr double part3 = 0x1.3198a2e000000p-69;
    constexpr double part4 = 0x1.b839a252049c1p-104;
    const double k = Nearest(radians * quarterTurnsPerRadian);
    const DoubleDouble rest = ExactSum(radians - k * part1, -k * part2);
    return {rest + ExactSum(-k * part3, -k * part4), static_cast<int32_t>(k) & 3};
}

}  // namespace tonvane::elementary

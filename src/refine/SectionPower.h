// The power of sections as a function of T = tan^2(w/2).
#pragma once

#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"

namespace tonvane {

// |c0 + c1*s + c2*s^2|^2 at s = j*tan(w/2). What the bilinear transform divides both sides of a
// section by falls out of their quotient.
struct QuadraticPower {
    double c0;
    double c1;
    double c2;

    [[nodiscard]] double at(double tangent) const {
        const double x = c0 - c2 * tangent;
        return x * x + c1 * c1 * tangent;
    }
};

struct SectionPower {
    QuadraticPower above;
    QuadraticPower below;
};
SectionPower PowerOf(const Biquad& section);

// out[t] *= the power of the section at each T.
void MultiplyPower(const Biquad& section, std::span<const double> tangents, std::span<double> out);

// out[t] = the power of the chain of sections at each T.
void CascadePower(std::span<const Biquad> sections, std::span<const double> tangents,
                  std::vector<double>& out);

// The same in dB.
std::vector<double> CascadeLevels(std::span<const Biquad> sections,
                                  std::span<const double> tangents);

}  // namespace tonvane

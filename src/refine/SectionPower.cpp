#include "refine/SectionPower.h"

#include <algorithm>

#include "elementary/Elementary.h"
#include "refine/PairModel.h"

namespace tonvane {

namespace {

QuadraticPower quadraticOf(double p0, double p1, double p2) {
    return {p0 + p1 + p2, 2.0 * (p0 - p2), p0 - p1 + p2};
}

}  // namespace

SectionPower PowerOf(const Biquad& section) {
    return {quadraticOf(section.b0, section.b1, section.b2),
            quadraticOf(1.0, section.a1, section.a2)};
}

void MultiplyPower(const Biquad& section, std::span<const double> tangents, std::span<double> out) {
    const SectionPower power = PowerOf(section);
    for (size_t t = 0; t < tangents.size(); ++t) {
        out[t] *= power.above.at(tangents[t]) / power.below.at(tangents[t]);
    }
}

void CascadePower(std::span<const Biquad> sections, std::span<const double> tangents,
                  std::vector<double>& out) {
    out.assign(tangents.size(), 1.0);
    for (const Biquad& section : sections) {
        MultiplyPower(section, tangents, out);
    }
}

std::vector<double> CascadeLevels(std::span<const Biquad> sections,
                                  std::span<const double> tangents) {
    std::vector<double> levels;
    CascadePower(sections, tangents, levels);
    std::ranges::transform(levels, levels.begin(),
                           [](double power) { return decibelsPerNeper * elementary::Log(power); });
    return levels;
}

}  // namespace tonvane

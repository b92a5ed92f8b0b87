#include "tuning/FilterFigures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "design/CascadeResponse.h"
#include "refine/FitGrid.h"
#include "refine/SectionPower.h"

namespace tonvane {

namespace {

constexpr int32_t evenPoints = 32768;

// Low poles are narrow in hertz and wide in octaves: both spacings together leave no gap. Shares of
// half the sample rate; the even ones come first.
std::vector<double> denseGrid() {
    constexpr int32_t geometric = 8192;
    constexpr double decades = 5.0;
    std::vector<double> grid;
    grid.reserve(evenPoints + 1 + geometric);
    for (int32_t i = 0; i <= evenPoints; ++i) {
        grid.push_back(static_cast<double>(i) / evenPoints);
    }
    for (int32_t i = 0; i < geometric; ++i) {
        grid.push_back(std::pow(10.0, -decades * i / geometric));
    }
    return grid;
}

struct DenseGrid {
    explicit DenseGrid(int32_t sampleRate)
        : shares(denseGrid()), tangents(shares.size()), half(sampleRate / 2.0) {
        std::ranges::transform(shares, tangents.begin(),
                               [](double share) { return TangentSquare(share, 2.0); });
    }

    std::vector<double> shares;
    std::vector<double> tangents;  // tan^2(w/2)
    double half;                   // Hz
};

struct Peak {
    double power = 0.0;
    size_t place = 0;
};

Peak peakOf(const std::vector<double>& powers) {
    const auto highest = std::ranges::max_element(powers);
    return {*highest, static_cast<size_t>(highest - powers.begin())};
}

HighestGain gainAt(const Peak& peak, const DenseGrid& grid) {
    return {10.0 * std::log10(peak.power), grid.shares[peak.place] * grid.half,
            static_cast<int32_t>(grid.shares.size())};
}

// Of c0 + c1*s + c2*s^2.
double qualityOf(const QuadraticPower& pair) {
    const double product = pair.c0 * pair.c2;
    return product > 0.0 ? std::sqrt(product) / std::fabs(pair.c1) : 0.0;
}

// The mean over frequency of each section's 1/|A|^2 times the power of the sections behind it.
double noiseOf(const std::vector<Biquad>& sections, const DenseGrid& grid) {
    std::vector<double> behind(evenPoints + 1, 1.0);
    double sum = 0.0;
    for (size_t k = sections.size(); k-- > 0;) {
        const SectionPower power = PowerOf(sections[k]);
        for (size_t t = 0; t < behind.size(); ++t) {
            const double tangent = grid.tangents[t];
            const double below = power.below.at(tangent);
            const double isAtEnd = t == 0 || t == evenPoints ? 0.5 : 1.0;
            sum += isAtEnd * behind[t] * (1.0 + tangent) * (1.0 + tangent) / below;
            behind[t] *= power.above.at(tangent) / below;
        }
    }
    return sum / evenPoints;
}

}  // namespace

HighestGain HighestGainOf(std::span<const int32_t> words, int32_t sampleRate) {
    const DenseGrid grid(sampleRate);
    std::vector<double> powers;
    CascadePower(DecodeBiquads(words), grid.tangents, powers);
    return gainAt(peakOf(powers), grid);
}

ChainFigures ChainFiguresOf(std::span<const int32_t> words, int32_t sampleRate) {
    const DenseGrid grid(sampleRate);
    const std::vector<Biquad> sections = DecodeBiquads(words);
    std::vector<double> powers(grid.tangents.size(), 1.0);
    ChainFigures figures;
    Peak inside;
    for (size_t k = 0; k < sections.size(); ++k) {
        MultiplyPower(sections[k], grid.tangents, powers);
        const Peak peak = peakOf(powers);
        if (peak.power > inside.power) {
            inside = peak;
            figures.insideSection = static_cast<int32_t>(k) + 1;
        }
        const SectionPower power = PowerOf(sections[k]);
        figures.largestQ =
            std::max({figures.largestQ, qualityOf(power.above), qualityOf(power.below)});
    }
    figures.highestGain = gainAt(peakOf(powers), grid);
    const HighestGain highestInside = gainAt(inside, grid);
    figures.insideDb = highestInside.db - figures.highestGain.db;
    figures.insideHertz = highestInside.hertz;
    figures.noiseDb = LargestPoleRadius(words) < 1.0 ? 10.0 * std::log10(noiseOf(sections, grid))
                                                     : std::numeric_limits<double>::infinity();
    return figures;
}

}  // namespace tonvane

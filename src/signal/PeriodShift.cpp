#include "signal/PeriodShift.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "elementary/Elementary.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

namespace {

constexpr int32_t stretch = 2048;
constexpr int32_t driftFrames = 8;
constexpr double leastPower = 0.1;     // of a stretch, of the mean
constexpr double mostLeftOver = 0.05;  // of a stretch's power, in the place where it is found
constexpr double mostOfOwnPlace = 0.25;

double powerOf(std::span<const double> x) {
    return std::inner_product(x.begin(), x.end(), x.begin(), 0.0);
}

// One period, in which stretches are looked for.
class PeriodSearch {
  public:
    explicit PeriodSearch(std::span<const double> period) : powers_(period.size()) {
        reference_.resize(static_cast<int32_t>(period.size()));
        reference_.setSamplesPadded(period);
        reference_.forward();
        buffer_.resize(reference_.length);
        leastPower_ = leastPower * powerOf(period) / static_cast<double>(period.size()) * stretch;
        double power = powerOf(period.first(stretch));
        for (size_t i = 0; i < period.size(); ++i) {
            powers_[i] = power;
            const double out = period[i];
            const double in = period[(i + stretch) % period.size()];
            power += in * in - out * out;
        }
    }

    // What is left over of a stretch, of its power, when the period at each place is taken out of
    // it at the best level above 0. Nothing is found where the period is silent.
    std::span<const double> leftOver(std::span<const double> part) {
        buffer_.setSamplesPadded(part);
        buffer_.forward();
        for (int32_t k = 0; k < buffer_.bins; ++k) {
            buffer_.spectrum[k] =
                elementary::Product(std::conj(buffer_.spectrum[k]), reference_.spectrum[k]);
        }
        buffer_.inverse();
        const double power = powerOf(part);
        const std::span<double> places = buffer_.time();
        for (size_t i = 0; i < places.size(); ++i) {
            const double likeness = std::max(places[i], 0.0) / buffer_.length;
            places[i] =
                powers_[i] > leastPower_ ? 1.0 - likeness * likeness / (powers_[i] * power) : 1.0;
        }
        return places;
    }

  private:
    SpectrumBuffer reference_;
    SpectrumBuffer buffer_;
    std::vector<double> powers_;  // of the stretch at each place
    double leastPower_ = 0.0;
};

}  // namespace

int32_t FindPeriodShift(std::span<const double> capture, int32_t period) {
    const auto length = static_cast<size_t>(period);
    const size_t middle = capture.size() / length / 2 * length;
    PeriodSearch search(capture.subspan(middle, length));
    const double meanPower = powerOf(capture) / static_cast<double>(capture.size()) * stretch;
    for (size_t first = 0; first + stretch <= capture.size(); first += stretch) {
        const auto part = capture.subspan(first, stretch);
        if (powerOf(part) <= leastPower * meanPower) {
            continue;
        }
        const auto left = search.leftOver(part);
        const auto best = std::ranges::min_element(left) - left.begin();
        const auto own = static_cast<std::ptrdiff_t>(first % length);
        const auto away = std::abs(static_cast<int32_t>(own - best));
        const int32_t shift = std::min(away, period - away);
        if (shift > driftFrames && left[best] < mostLeftOver &&
            left[best] < mostOfOwnPlace * left[own]) {
            return shift;
        }
    }
    return 0;
}

}  // namespace tonvane

#include "system/MeasuredFile.h"

#include <algorithm>
#include <cmath>

#include "files/ResponseFile.h"
#include "support/Signals.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane::tests {

MeasuredFile JudgeMeasuredFile(const std::string& path) {
    const SpeakerResponse response = ReadCheckedResponseFile(path);
    SpectrumBuffer spectrum;
    spectrum.resize(32768);
    std::ranges::copy(response.samples, spectrum.time().begin());
    spectrum.forward();
    const auto binAt = [](double hertz) { return std::lround(hertz * 32768 / 48000.0); };
    const double reference = std::abs(spectrum.spectrum[binAt(1000.0)]);
    MeasuredFile measured{0.0, 0};
    for (int64_t k = binAt(40.0); k <= binAt(20000.0); ++k) {
        const double level = Decibels(std::abs(spectrum.spectrum[k]) / reference);
        measured.flatnessDb = std::max(measured.flatnessDb, std::fabs(level));
    }
    const auto highest = std::ranges::max_element(response.samples, {},
                                                  [](double sample) { return std::fabs(sample); });
    measured.peak = static_cast<int32_t>(highest - response.samples.begin());
    return measured;
}

}  // namespace tonvane::tests

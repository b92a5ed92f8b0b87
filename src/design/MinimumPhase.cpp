#include "design/MinimumPhase.h"

#include <algorithm>
#include <complex>

#include "elementary/Elementary.h"
#include "elementary/FastFunctions.h"

namespace tonvane {

namespace {

// From the log magnitude in the bins of `shape` to the log spectrum of the minimum-phase filter in
// those of `work`: the real cepstrum is symmetric; doubling its first half and dropping the second
// adds the phase.
void foldCepstrum(SpectrumBuffer& shape, SpectrumBuffer& work) {
    const int32_t n = shape.length;
    const int32_t half = n / 2;
    const double scale = 1.0 / n;
    shape.inverse();
    work.samples[0] = shape.samples[0] * scale;
    work.samples[half] = shape.samples[half] * scale;
    for (int32_t i = 1; i < half; ++i) {
        work.samples[i] = shape.samples[i] * (2.0 * scale);
        work.samples[n - i] = 0.0;
    }
    work.forward();
}

}  // namespace

void MinimumPhaseFromLog(SpectrumBuffer& shape, SpectrumBuffer& work) {
    foldCepstrum(shape, work);
    const double scale = 1.0 / shape.length;
    for (int32_t k = 0; k < shape.bins; ++k) {
        const std::complex<double> log = work.spectrum[k];
        shape.spectrum[k] =
            (elementary::Exp(log.real()) * scale) * elementary::UnitPhasor(log.imag());
    }
    shape.inverse();
}

void FastMinimumPhaseFromLog(SpectrumBuffer& shape, SpectrumBuffer& work) {
    foldCepstrum(shape, work);
    const double scale = 1.0 / shape.length;
    elementary::FastExp(work.spectrum);
    std::ranges::transform(work.spectrum, shape.spectrum.begin(),
                           [scale](std::complex<double> bin) { return bin * scale; });
    shape.inverse();
}

}  // namespace tonvane

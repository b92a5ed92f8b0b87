#include "design/MinimumPhase.h"

#include <complex>

#include "elementary/Elementary.h"

namespace tonvane {

void MinimumPhaseFromLog(SpectrumBuffer& shape, SpectrumBuffer& work) {
    const int32_t n = shape.length;
    const int32_t half = n / 2;
    const double scale = 1.0 / n;

    // The real cepstrum is symmetric; doubling its first half and dropping the second turns the log
    // magnitude into the log spectrum of the minimum-phase filter.
    shape.inverse();
    work.samples[0] = shape.samples[0] * scale;
    work.samples[half] = shape.samples[half] * scale;
    for (int32_t i = 1; i < half; ++i) {
        work.samples[i] = shape.samples[i] * (2.0 * scale);
        work.samples[n - i] = 0.0;
    }
    work.forward();

    for (int32_t k = 0; k < shape.bins; ++k) {
        const std::complex<double> log = work.spectrum[k];
        shape.spectrum[k] =
            (elementary::Exp(log.real()) * scale) * elementary::UnitPhasor(log.imag());
    }
    shape.inverse();
}

}  // namespace tonvane

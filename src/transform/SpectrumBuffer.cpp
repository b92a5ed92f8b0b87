#include "transform/SpectrumBuffer.h"

#include <algorithm>
#include <bit>
#include <complex>
#include <cstring>

#include "transform/ComplexPair.h"
#include "transform/FftStages.h"
#include "transform/FftTables.h"

namespace tonvane {

namespace {

using Complex = std::complex<double>;

// The stages stay inside the buffers at a length that is no power of two and has no transform.
int32_t stagePoints(int32_t n) {
    return static_cast<int32_t>(std::bit_floor(static_cast<uint32_t>(n)));
}

// Sine and cosine of 2*pi*k/N for k = 0 .. N/4, read from the quarter wave of the longest length.
class QuarterWave {
  public:
    QuarterWave(const FftTables& tables, int32_t length)
        : sine_(tables.sineTable.data()),
          stride_(tables.maxLength / length),
          quarter_(length / 4) {}

    [[nodiscard]] double sine(int32_t k) const { return sine_[k * stride_]; }
    [[nodiscard]] double cosine(int32_t k) const { return sine_[(quarter_ - k) * stride_]; }

  private:
    const double* sine_;
    int32_t stride_;
    int32_t quarter_;
};

}  // namespace

bool SpectrumBuffer::resize(int32_t n) {
    if (n < 2 || n % 2 != 0 || n > CurrentFftTables().maxLength) {
        return false;
    }
    if (!samples.ensure(n)) {
        return false;
    }
    length = n;
    bins = n / 2 + 1;
    spectrum.resize(bins);
    return true;
}

void SpectrumBuffer::forward() {
    const FftTables& tables = CurrentFftTables();
    const int32_t n = length / 2;
    Complex* z = spectrum.data();

    // Even samples are the real parts, odd ones the imaginary parts of n complex values.
    ForwardStages(reinterpret_cast<const Complex*>(samples.data.get()), z, stagePoints(n),
                  tables.twiddleTable.data());

    // Split the transform of the pairs into that of the real signal.
    const QuarterWave wave(tables, length);
    const Complex first = z[0];
    z[0] = {first.real() + first.imag(), 0.0};
    z[n] = {first.real() - first.imag(), 0.0};
    for (int32_t k = 1; k < length / 4; ++k) {
        const ComplexPair a = LoadPair(z + k);
        const ComplexPair b = Conjugate(LoadPair(z + n - k));
        const ComplexPair sum = a + b;
        const ComplexPair turned = (b - a) * Factor({wave.sine(k), wave.cosine(k)});
        StorePair(z + k, 0.5 * (sum + turned));
        StorePair(z + n - k, Conjugate(0.5 * (sum - turned)));
    }
    if (length >= 4) {
        z[length / 4] = std::conj(z[length / 4]);
    }
}

void SpectrumBuffer::inverse() {
    const FftTables& tables = CurrentFftTables();
    const int32_t n = length / 2;
    const Complex* x = spectrum.data();
    auto* z = reinterpret_cast<Complex*>(samples.data.get());

    // Merge the real signal's bins into those of the pairs, times 2.
    const QuarterWave wave(tables, length);
    z[0] = {x[0].real() + x[n].real(), x[0].real() - x[n].real()};
    for (int32_t k = 1; k < length / 4; ++k) {
        const ComplexPair a = LoadPair(x + k);
        const ComplexPair b = Conjugate(LoadPair(x + n - k));
        const ComplexPair sum = a + b;
        const ComplexPair turned = (a - b) * Factor({-wave.sine(k), wave.cosine(k)});
        StorePair(z + k, sum + turned);
        StorePair(z + n - k, Conjugate(sum - turned));
    }
    if (length >= 4) {
        z[length / 4] = 2.0 * std::conj(x[length / 4]);
    }

    InverseStages(z, stagePoints(n), tables.twiddleTable.data());
}

void SpectrumBuffer::setSpectrumReal(std::span<const double> values) {
    for (int32_t k = 0; k < bins; ++k) {
        spectrum[k] = {values[k], 0.0};
    }
}

void SpectrumBuffer::setSamplesPadded(std::span<const double> values) {
    const std::span<double> all = time();
    std::copy(values.begin(), values.end(), all.begin());
    std::fill(all.begin() + static_cast<std::ptrdiff_t>(values.size()), all.end(), 0.0);
}

}  // namespace tonvane

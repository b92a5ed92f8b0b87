// The fit of seven biquads to a FIR.
//
// B(z)/A(z) with 15 coefficients each is fitted to the FIR by fifty linear least-squares passes in
// the manner of the Steiglitz-McBride iteration: the equation error A*H - B is filtered by about
// 1/A of the passes before, with more weight on low frequencies, so that it comes close to the true
// error H - B/A. The pass with the smallest squared log-magnitude distance to the FIR, on a
// geometric row of frequencies from 50 Hz to 15 kHz, is kept. Nothing is reported, and a pole
// outside the unit circle is kept as it comes; look at LargestPoleRadius (CascadeResponse.h).
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "transform/SampleArray.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class IirFitter {
  public:
    static constexpr int32_t passes = 50;
    static constexpr int32_t comparisonPoints = 513;

    // The equation of one pass, A column by column; for benchmarks.
    using EquationObserver = std::function<void(
        std::span<const double> matrix, std::span<const double> rhs, int32_t rows, int32_t cols)>;

    // Takes the FIR and the sizes and frees an earlier result. sampleRate in Hz, above 0;
    // curvePoints is the transform length of the magnitude curves; gainClampDb is the level drop
    // that the sections leave out.
    void configure(int32_t sampleRate, std::span<const double> taps, int32_t sectionCount,
                   int32_t curvePoints, double gainClampDb);

    // Runs the fit. The transform tables must serve the convolution of 1024 samples with the taps.
    void fit();

    // Frequencies of the comparison, Hz: 50*300^(i/512).
    static std::array<double, comparisonPoints> comparisonFrequencies();

    int32_t sampleRate = 0;    // Hz
    int32_t sectionCount = 0;  // K
    int32_t tapCount = 0;      // length of the FIR
    double gain = 1.0;         // level of the FIR relative to unity, amplitude
    SampleArray taps;          // own copy of the FIR
    double rootTolerance = 1e-15;

    // [0] the best pass, [1] the last pass. 2*K + 1 coefficients each, that of z^-n at index n,
    // denominator[i][0] = 1; empty before fit.
    std::array<std::vector<double>, 2> numerator;
    std::array<std::vector<double>, 2> denominator;
    std::array<ComplexVector, 2> curve;  // their magnitudes in the real parts, 0 to fs/2

    // K sections: complex roots first, by rising frequency. The gain is shared evenly among them,
    // without the level drop; NaN where its root does not exist.
    std::vector<Biquad> sections;
    std::vector<int32_t> coefficientWords;  // the same as 5*K words, section after section

    std::array<double, passes> distances{};  // of each pass, squared decimal logs summed
    double bestDistance = 0.0;
    int32_t bestPass = -1;  // 0 to 49; -1 when no pass gave a number
    EquationObserver equationObserver;

  private:
    struct Workspace;

    void shapePrefilter(Workspace& work);
    void filterFir(Workspace& work);
    void solvePass(Workspace& work);
    void encodeSections();

    SpectrumBuffer denominatorWork_;
    SpectrumBuffer shape_;
    SpectrumBuffer firLong_;
    SpectrumBuffer shapeLong_;
    SpectrumBuffer filtered_;
};

}  // namespace tonvane

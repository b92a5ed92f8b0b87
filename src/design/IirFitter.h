// The fit of seven biquads to a FIR.
//
// B(z)/A(z) with 15 coefficients each is fitted to the FIR by fifty linear least-squares passes in
// the manner of the Steiglitz-McBride iteration: the equation error A*H - B is filtered by about
// 1/A of the passes before, with more weight on low frequencies, so that it comes close to the true
// error H - B/A. The pass with the smallest squared log-magnitude distance to the FIR, on a
// geometric row of frequencies from 50 Hz to 15 kHz, is kept. Nothing is reported, and a pole
// outside the unit circle is kept as it comes; look at LargestPoleRadius (CascadeResponse.h).
// docs/numerics.md tells what the fast passes were held against.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "amplifier/BiquadWords.h"
#include "design/FitPasses.h"
#include "transform/ComplexVector.h"
#include "transform/SampleArray.h"

namespace tonvane {

class IirFitter {
  public:
    static constexpr int32_t passes = 50;
    static constexpr int32_t comparisonPoints = FitPasses::comparisonPoints;

    // Takes the FIR and the sizes and frees an earlier result. sampleRate in Hz, above 0;
    // curvePoints is the transform length of the magnitude curves; gainClampDb is the level drop
    // that the sections leave out.
    void configure(int32_t sampleRate, std::span<const double> taps, int32_t sectionCount,
                   int32_t curvePoints, double gainClampDb);

    // Runs the fit. The transform tables must serve the convolution of 1024 samples with the taps.
    void fit();

    // Frequencies of the comparison, Hz: 50*300^(i/512).
    static std::array<double, comparisonPoints> comparisonFrequencies();

    // |numerator[i]/denominator[i]| from 0 to half the rate in the real parts, made when it is
    // asked for; 0 before fit.
    const ComplexVector& curve(int32_t i) const;

    FitSolver solver = FitSolver::lattice;
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

    // K sections: complex roots first, by rising frequency. The gain is shared evenly among them,
    // without the level drop; NaN where its root does not exist.
    std::vector<Biquad> sections;
    std::vector<int32_t> coefficientWords;  // the same as 5*K words, section after section

    std::array<double, passes> distances{};  // of each pass, squared decimal logs summed
    double bestDistance = 0.0;
    int32_t bestPass = -1;  // 0 to 49; -1 when no pass gave a number

  private:
    void encodeSections();

    std::unique_ptr<FitPasses> passes_;
    FitSolver solverOfPasses_ = FitSolver::lattice;
    mutable std::array<ComplexVector, 2> curve_;
    mutable std::array<bool, 2> hasCurve_{};
};

}  // namespace tonvane

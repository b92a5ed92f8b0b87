// The passes of the fit by the lattice: a twentieth of the time of LAPACK's.
#pragma once

#include "design/FitPasses.h"
#include "design/LatticeSolver.h"
#include "design/PowerGrid.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class LatticePasses : public FitPasses {
  public:
    // Keeps what belongs to the rate for the next fit.
    void start(int32_t sampleRate, std::span<const double> taps, int32_t order) override;
    void run(std::span<double> numerator, std::span<double> denominator) override;
    double distance(std::span<const double> numerator,
                    std::span<const double> denominator) override;

  private:
    void takeRate(int32_t sampleRate);
    void shapePrefilter(std::span<const double> denominator);
    void filterFir();

    int32_t sampleRate_ = 0;
    double firstTap_ = 0.0;
    int32_t convolution_ = 0;  // samples of the prefilter's convolution with the taps
    std::vector<double> taper_;
    std::vector<double> averagedWeight_;  // running average of 1/|A| over the passes
    std::vector<double> logs_;
    PowerGrid grid_;
    std::vector<double> reference_;  // power of the FIR
    std::vector<double> above_;
    std::vector<double> below_;
    LatticeSolver solver_;
    SpectrumBuffer work_;
    SpectrumBuffer shape_;      // the prefilter
    SpectrumBuffer firLong_;    // the FIR without its first tap
    SpectrumBuffer shapeLong_;  // the prefilter's bins at the length of the convolution
    SpectrumBuffer filtered_;   // their convolution
};

}  // namespace tonvane

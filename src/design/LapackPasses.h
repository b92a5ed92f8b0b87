// The passes of the fit as LAPACK's dgelsd solves them: the judge of the fast ones.
#pragma once

#include <functional>

#include "design/FitPasses.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

class LapackPasses : public FitPasses {
  public:
    void start(int32_t sampleRate, std::span<const double> taps, int32_t order) override;
    void run(std::span<double> numerator, std::span<double> denominator) override;
    double distance(std::span<const double> numerator,
                    std::span<const double> denominator) override;

    // Sees the equation of each pass, A column by column; for benchmarks and tests.
    std::function<void(std::span<const double> matrix, std::span<const double> rhs, int32_t rows,
                       int32_t cols)>
        observer;

  private:
    void shapePrefilter(std::span<const double> denominator);
    void filterFir();
    void fillMatrix();

    int32_t order_ = 0;
    int32_t convolution_ = 0;  // samples of the prefilter's convolution with the taps
    int32_t rows_ = 0;
    int32_t cols_ = 0;
    std::vector<double> taper_;
    std::vector<double> averagedWeight_;  // running average of 1/|A| over the passes
    std::vector<double> matrix_;          // column by column
    std::vector<double> rhs_;             // and the solution after it
    ComplexVector grid_;
    std::vector<double> reference_;
    std::vector<double> current_;
    SpectrumBuffer denominatorWork_;
    SpectrumBuffer shape_;
    SpectrumBuffer firLong_;
    SpectrumBuffer shapeLong_;
    SpectrumBuffer filtered_;
};

}  // namespace tonvane

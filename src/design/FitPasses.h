// The passes of the biquad fit, by one kind of solver or the other.
//
// A pass filters the FIR by a minimum-phase prefilter, about 1/A of the passes before with more
// weight on low frequencies, and finds the B and A that minimise the energy of the filtered error
// A*H - B over all samples, tails included.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tonvane {

enum class FitSolver {
    lattice,  // the fast one, with the fast elementary functions
    lapack,   // dgelsd on the whole matrix, for comparison
};

class FitPasses {
  public:
    static constexpr int32_t prefilterLength = 1024;
    static constexpr int32_t comparisonPoints = 513;

    virtual ~FitPasses() = default;

    // Begins a fit of order + 1 coefficients in each polynomial to the taps, which stay until the
    // fit is done; sampleRate in Hz, above 0.
    virtual void start(int32_t sampleRate, std::span<const double> taps, int32_t order) = 0;

    // One pass: from the denominator of the pass before, (1, 0, 0, ...) at first, to the next pair.
    virtual void run(std::span<double> numerator, std::span<double> denominator) = 0;

    // The squared distance of the pair from the FIR: squared differences of the decimal logarithms
    // of amplitude, summed over the comparison's frequencies.
    virtual double distance(std::span<const double> numerator,
                            std::span<const double> denominator) = 0;
};

std::unique_ptr<FitPasses> MakeFitPasses(FitSolver solver);

// The frequencies of the comparison, Hz/sampleRate, as angles of z^-1: -2*pi*50*300^(i/512)/rate.
std::vector<double> ComparisonAngles(int32_t sampleRate);

// The prefilter's weight on low frequencies, for each of its 513 bins: 1 up to 100 Hz, falling as
// 1/frequency to 10 kHz, flat from there.
std::vector<double> FrequencyTaper(int32_t sampleRate);

// The length of a transform that holds the prefilter's convolution with the taps.
int32_t ConvolutionLength(int32_t taps);

}  // namespace tonvane

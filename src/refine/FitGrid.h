// The rows of frequencies on which a refined fit is held against the wanted correction.
//
// With T = tan^2(w/2), w the angle of a frequency, everything that the fit knows of a filter is a
// function of T (the bilinear transform).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tonvane {

// tan^2(pi*hertz/sampleRate).
double TangentSquare(double hertz, double sampleRate);

struct FitGrid {
    std::vector<double> tangents;  // T of each frequency, rising
    std::vector<double> hertz;
    std::vector<double> weights;  // of a squared error: 1 from 50 Hz to 20 kHz, less outside
    std::vector<double> wanted;   // dB, as SetWanted left it
    double weightSum = 0.0;
    double limitDb = 0.0;  // what lies above costs much more than any error

    // The box of the model's parameters: logarithms of tan(w0/2) and of 1/Q.
    double lowestFrequency = 0.0;
    double highestFrequency = 0.0;
    double lowestDamping = 0.0;
    double highestDamping = 0.0;

    [[nodiscard]] size_t size() const { return tangents.size(); }
};

// The largest quality of a pair of poles or zeros.
constexpr double largestPairQ = 6.0;

// A geometric row through 50 Hz with `points` frequencies from there to 15 kHz, continued down to
// 8 Hz and up to 0.49 of the sample rate (Hz, 1000 or more). Nothing is wanted yet.
FitGrid MakeFitGrid(int32_t sampleRate, int32_t points);

// Takes the wanted levels over: `levels` are dB at i*sampleRate/(2*(count - 1)) from 0 to half the
// rate, linear between, all finite; nothing is wanted lower than -60 dB. They are rounded to 2^-20
// dB, so that the last digits of a response move no word.
void SetWanted(std::span<const double> levels, int32_t sampleRate, FitGrid& grid);

// The weighted mean of the squared differences of `levels` from what is wanted, its root, dB.
double WeightedRmsDb(std::span<const double> levels, const FitGrid& grid);

}  // namespace tonvane

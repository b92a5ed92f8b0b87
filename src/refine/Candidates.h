// Where one more pair of zeros and poles would do most good.
//
// A pair of zeros and a pair of poles that lie on each other do nothing. Drawn apart a little, by x
// in damping and y in frequency, they change the level by x*F + y*G, F and G the derivatives of
// the level in the logarithms of damping and frequency; so the best x and y against an error are a
// linear least-squares problem of two unknowns for each place.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "refine/PairModel.h"

namespace tonvane {

// How far zeros and poles are drawn apart: in damping alone, or in both.
enum class Split { dampingOnly, both };

class CandidateTable {
  public:
    // For 40 frequencies in a geometric row from 40 Hz to 18 kHz (or 0.46 of the sample rate, Hz,
    // if that is less), with Q of 0.7, 1.4 and 2.8 at each. The table does not need the grid any
    // more.
    CandidateTable(const FitGrid& grid, int32_t sampleRate);

    // At most `count` pairs, by falling decrease that they promise for the errors (dB on the grid,
    // finite), no two of neighbouring frequencies. What the gain can do is not counted. Equal ones
    // stay in the order of the table.
    [[nodiscard]] std::vector<PairParameters> best(std::span<const double> errors, size_t count,
                                                   Split split) const;

  private:
    struct Place {
        int32_t frequencyIndex;
        double frequency;  // logarithm of tan(w0/2)
        double damping;    // logarithm of 1/Q
        double ff;         // weighted sums of the products of F and G
        double gg;
        double fg;
    };
    struct Drawn {
        double inDamping = 0.0;
        double inFrequency = 0.0;
        double decrease = 0.0;
    };
    void addPlace(const FitGrid& grid, int32_t frequencyIndex, double frequency, double q);
    [[nodiscard]] Drawn drawnApart(size_t place, std::span<const double> pull, Split split) const;

    std::vector<Place> places_;
    std::vector<double> inDamping_;    // F less its weighted mean, place by place
    std::vector<double> inFrequency_;  // G
    std::vector<double> weights_;
    double weightSum_;
};

}  // namespace tonvane

// A small loudspeaker as a chain of analog filters: its pressure on axis in the free field.
#pragma once

#include <complex>
#include <vector>

#include "example-speaker/AnalogSection.h"

namespace tonvane::example {

// A driver by its small-signal parameters.
struct Driver {
    double resonance;         // Fs, Hz
    double totalQuality;      // Qts
    double complianceVolume;  // Vas, m^3
    double coilResistance;    // Re, ohm
    double coilInductance;    // Le, H
};

struct VentedBox {
    double volume;       // Vb, m^3
    double tuning;       // Fb, Hz
    double leakQuality;  // QL, box losses as leakage
    double baffleWidth;  // m
};

// A resonance of the cone above the range in which it moves as one piece.
struct ConeResonance {
    double hertz;
    double quality;
    double decibels;  // height of its peak or, negative, depth of its dip
};

// The fourth-order high-pass that driver and box make together (R. H. Small, "Vented-Box
// Loudspeaker Systems", J. Audio Eng. Soc. 21, 1973; without losses A. N. Thiele's, 1961).
AnalogSection BoxAlignment(const Driver& driver, const VentedBox& box);

// The coil's inductance takes current away above Re/(2*pi*Le).
AnalogSection CoilRollOff(const Driver& driver);

// Half the pressure at low frequencies, where the sound goes all around the box, full pressure at
// high ones; the middle of the step lies at 115 m/s over the baffle's width (the usual rule for the
// curves of H. F. Olson, "Direct Radiator Loudspeaker Enclosures", 1951).
AnalogSection BaffleStep(double baffleWidth);

struct Speaker {
    Driver driver;
    VentedBox box;
    std::vector<ConeResonance> coneResonances;
    double coneLimit;  // Hz, above which the cone's middle no longer drives its rim
    double coneLimitQuality;
};

// The speaker of the example files: a 3-inch driver in a vented box of two litres.
Speaker ExampleSpeaker();

class FreeField {
  public:
    explicit FreeField(const Speaker& speaker);

    // Pressure at f, Hz, without the time of flight; the driver's level in its middle range on an
    // endless baffle is 1.
    [[nodiscard]] std::complex<double> at(double f) const;

  private:
    std::vector<AnalogSection> sections_;
};

}  // namespace tonvane::example

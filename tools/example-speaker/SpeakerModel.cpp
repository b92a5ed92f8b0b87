#include "example-speaker/SpeakerModel.h"

#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"

namespace tonvane::example {

AnalogSection BoxAlignment(const Driver& driver, const VentedBox& box) {
    const double h = box.tuning / driver.resonance;
    const double alpha = driver.complianceVolume / box.volume;
    const double leak = box.leakQuality;
    const double total = driver.totalQuality;
    const double a1 = (leak + h * total) / (std::sqrt(h) * leak * total);
    const double a2 = (h + (alpha + 1.0 + h * h) * leak * total) / (h * leak * total);
    const double a3 = (h * leak + total) / (std::sqrt(h) * leak * total);
    return {std::sqrt(driver.resonance * box.tuning),
            {0.0, 0.0, 0.0, 0.0, 1.0},
            {1.0, a3, a2, a1, 1.0}};
}

AnalogSection CoilRollOff(const Driver& driver) {
    return FirstOrderLowPass(driver.coilResistance /
                             (2.0 * std::numbers::pi * driver.coilInductance));
}

AnalogSection BaffleStep(double baffleWidth) {
    return {115.0 / baffleWidth, {1.0 / std::numbers::sqrt2, 1.0}, {std::numbers::sqrt2, 1.0}};
}

Speaker ExampleSpeaker() {
    return {
        .driver = {.resonance = 88.0,
                   .totalQuality = 0.47,
                   .complianceVolume = 2.1e-3,
                   .coilResistance = 3.7,
                   .coilInductance = 0.13e-3},
        .box = {.volume = 2.0e-3, .tuning = 84.0, .leakQuality = 7.0, .baffleWidth = 0.12},
        .coneResonances = {{.hertz = 4700.0, .quality = 5.0, .decibels = 3.5},
                           {.hertz = 7600.0, .quality = 4.0, .decibels = -4.5},
                           {.hertz = 11800.0, .quality = 6.0, .decibels = 5.0}},
        .coneLimit = 17000.0,
        .coneLimitQuality = 1.1,
    };
}

FreeField::FreeField(const Speaker& speaker)
    : sections_{BoxAlignment(speaker.driver, speaker.box), CoilRollOff(speaker.driver),
                BaffleStep(speaker.box.baffleWidth),
                SecondOrderLowPass(speaker.coneLimit, speaker.coneLimitQuality)} {
    for (const ConeResonance& mode : speaker.coneResonances) {
        sections_.push_back(Resonance(mode.hertz, mode.quality, mode.decibels));
    }
}

std::complex<double> FreeField::at(double f) const {
    std::complex<double> pressure = 1.0;
    for (const AnalogSection& section : sections_) {
        pressure = elementary::Product(pressure, section.at(f));
    }
    return pressure;
}

}  // namespace tonvane::example

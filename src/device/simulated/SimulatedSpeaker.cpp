#include "device/simulated/SimulatedSpeaker.h"

#include <algorithm>

namespace tonvane {

SimulatedSetup SimulatedSpeaker(std::span<const double> period) {
    SimulatedSetup setup;
    setup.latency = static_cast<int32_t>(period.size() / 2);
    setup.impulse.assign(period.begin(), period.end());
    std::rotate(setup.impulse.begin(), setup.impulse.end() - setup.latency, setup.impulse.end());
    return setup;
}

}  // namespace tonvane

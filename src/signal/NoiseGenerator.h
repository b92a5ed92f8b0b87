// A 15-bit pseudo-random sequence of our own, the same on every platform and restarted at will.
#pragma once

#include <cstdint>

namespace tonvane {

class NoiseGenerator {
  public:
    static constexpr int32_t maximum = 32767;

    explicit NoiseGenerator(uint32_t seed) : state_(seed) {}

    // The next value, 0 to maximum.
    int32_t next();

  private:
    uint32_t state_;
};

}  // namespace tonvane

// A counter that runs through 0 .. 2*topBit - 1 in bit-reversed order, with the carry going down.
#pragma once

#include <cstdint>

namespace tonvane {

class BitReversedCounter {
  public:
    // topBit is half the number of values, a power of two.
    explicit BitReversedCounter(int32_t topBit) : topBit_(topBit) {}

    [[nodiscard]] int32_t value() const { return value_; }

    void increment() {
        int32_t bit = topBit_;
        value_ ^= bit;
        while (value_ < bit) {
            bit >>= 1;
            value_ ^= bit;
        }
    }

  private:
    int32_t topBit_;
    int32_t value_ = 0;
};

}  // namespace tonvane

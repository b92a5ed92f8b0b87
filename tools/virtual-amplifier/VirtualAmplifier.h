// An amplifier that answers frames: the register file behind the link's protocol.
#pragma once

#include <functional>

#include "virtual-amplifier/RegisterFile.h"

namespace tonvane::virtualamp {

class VirtualAmplifier {
  public:
    // Told of every frame before it is answered, with what is odd about it.
    using Witness =
        std::function<void(std::span<const uint8_t> frame, std::span<const std::string> remarks)>;

    explicit VirtualAmplifier(Witness witness) : witness_(std::move(witness)) {}

    // Carries out a whole frame and returns its reply.
    std::vector<uint8_t> answer(std::span<const uint8_t> frame);

    RegisterFile registers;

  private:
    Witness witness_;
};

}  // namespace tonvane::virtualamp

// Cuts what a client sends into frames.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tonvane::virtualamp {

class FrameParser {
  public:
    // Bytes as they come, in pieces of any size.
    void take(std::span<const uint8_t> bytes);

    // The next whole frame, nothing while it is not complete.
    std::optional<std::vector<uint8_t>> next();

    // Whether the next byte begins no frame; nothing comes after it.
    [[nodiscard]] bool isLost() const;

  private:
    std::vector<uint8_t> pending_;
};

}  // namespace tonvane::virtualamp

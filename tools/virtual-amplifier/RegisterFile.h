// The registers of an amplifier and what they mean, without a link.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"

namespace tonvane::virtualamp {

class RegisterFile {
  public:
    // Start values of the Set1 command, sections that pass everything through, zero elsewhere; the
    // audio runs.
    RegisterFile();

    // Takes a write as it comes. Returns a sentence for each thing that is odd about it: a register
    // that is not there, a length that is not the register's, filters or dynamics that change while
    // the audio runs. What does not fit is dropped, what is missing keeps its contents.
    std::vector<std::string> write(int32_t reg, std::span<const uint8_t> data);

    // `count` bytes of a register; 0 for those that it does not have.
    [[nodiscard]] std::vector<uint8_t> read(int32_t reg, size_t count) const;

    // A register's words, 0 for those that it does not have.
    [[nodiscard]] std::array<int32_t, mostRegisterWords> words(int32_t reg) const;

    // Whether the audio is stopped.
    [[nodiscard]] bool isShutDown() const;

  private:
    std::array<std::vector<uint8_t>, registerCount> contents_;  // each as long as its register
};

}  // namespace tonvane::virtualamp

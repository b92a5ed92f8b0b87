#include "virtual-amplifier/RegisterFile.h"

#include <algorithm>

#include "amplifier/BiquadWords.h"
#include "amplifier/RegisterPresets.h"

namespace tonvane::virtualamp {

namespace {

constexpr uint8_t stopBit = 0x40;

bool isInTable(int32_t reg) {
    return reg >= 0 && reg < registerCount;
}

// Whether a change of the register may be heard as a crack unless the audio is stopped.
bool isFilterOrDynamics(int32_t reg) {
    return LookUpRegister(reg).length == mostRegisterBytes || reg == registers::drcControl ||
           (reg >= registers::drc1AlphaOmega && reg <= registers::drc2Threshold);
}

}  // namespace

RegisterFile::RegisterFile() {
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        contents_[reg].resize(static_cast<size_t>(LookUpRegister(reg).length));
        if (contents_[reg].size() == mostRegisterBytes) {
            WordsToBytes(UnityBiquad, contents_[reg]);
        }
    }
    for (const RegisterPreset& preset : RegisterPresets) {
        WordsToBytes(preset.words, contents_[preset.reg]);
    }
}

std::vector<std::string> RegisterFile::write(int32_t reg, std::span<const uint8_t> data) {
    if (!isInTable(reg)) {
        return {"there is no such register"};
    }
    std::vector<std::string> remarks;
    std::vector<uint8_t>& contents = contents_[reg];
    if (data.size() != contents.size()) {
        remarks.push_back(std::to_string(data.size()) + " bytes for a register of " +
                          std::to_string(contents.size()));
    }
    if (isFilterOrDynamics(reg) && !isShutDown()) {
        remarks.emplace_back("written while the audio runs");
    }
    std::copy_n(data.begin(), std::min(data.size(), contents.size()), contents.begin());
    return remarks;
}

std::vector<uint8_t> RegisterFile::read(int32_t reg, size_t count) const {
    std::vector<uint8_t> bytes = isInTable(reg) ? contents_[reg] : std::vector<uint8_t>();
    bytes.resize(count);
    return bytes;
}

std::array<int32_t, mostRegisterWords> RegisterFile::words(int32_t reg) const {
    return BytesToWords(read(reg, static_cast<size_t>(LookUpRegister(reg).length)));
}

bool RegisterFile::isShutDown() const {
    return (contents_[registers::systemControl2][0] & stopBit) != 0;
}

}  // namespace tonvane::virtualamp

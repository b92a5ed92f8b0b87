#include "files/RegisterDump.h"

#include <vector>

#include <fmt/core.h>

#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"

namespace tonvane {

std::string FormatRegisterDump(const RegisterReader& read) {
    std::string text;
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        std::vector<uint8_t> contents(static_cast<size_t>(LookUpRegister(reg).length));
        if (!contents.empty()) {
            read(reg, contents);
        }
        text += fmt::format("{:02X}\t{}\n", reg, HexGroups(contents));
    }
    return text;
}

}  // namespace tonvane

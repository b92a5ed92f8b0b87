#include "files/RegisterDump.h"

#include <cstdio>
#include <vector>

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
        char number[8];
        std::snprintf(number, sizeof number, "%02X\t", static_cast<unsigned>(reg));
        text += number + HexGroups(contents) + "\n";
    }
    return text;
}

}  // namespace tonvane

// The filter file as a person hands it in.
#include <array>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "amplifier/FixedPoint.h"
#include "files/FilterFile.h"

namespace tonvane::fuzz {

namespace {

void checkWriter(const std::array<FilterRecord, 7>& records, int32_t format) {
    RegisterAddressConfig config;
    config.outputFormat = format;
    std::vector<int32_t> words;
    for (size_t i = 0; i < records.size(); ++i) {
        config.addresses[i] = records[i].address;
        words.insert(words.end(), records[i].words.begin(), records[i].words.end());
    }
    const std::string path = ScratchFile(FormatFilterFile(words, config), "written");
    Require(ReadCheckedFilterFile(path) == records, "a written file gives back what was written");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    const std::string path = ScratchFile(TextOf(data, size));
    std::array<FilterRecord, 7> records{};
    if (!Accepts([&] { records = ReadCheckedFilterFile(path); })) {
        return 0;
    }
    for (const FilterRecord& record : records) {
        Require(record.address >= 0 && record.address <= 0xFFFFFFF, "addresses have seven digits");
        for (const int32_t word : record.words) {
            Require((word & ~coefficientMask) == 0, "words have 26 bits");
        }
    }
    checkWriter(records, 4);
    checkWriter(records, 20);
    return 0;
}

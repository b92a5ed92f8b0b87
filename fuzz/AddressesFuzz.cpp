// The address file and the filter file that it shapes.
#include <array>
#include <cstdio>

#include "FuzzSupport.h"
#include "amplifier/BiquadWords.h"
#include "files/AddressConfig.h"
#include "files/FilterFile.h"
#include "text/TextScanner.h"

namespace tonvane::fuzz {

namespace {

constexpr size_t sections = 7;
using Words = std::array<int32_t, sections * wordsPerBiquad>;

// Reads a filter file back and compares it number by number.
void checkFilterFile(const Words& words, const RegisterAddressConfig& config) {
    const std::string text = FormatFilterFile(words, config);
    const bool wordALine = config.outputFormat == 4;
    TextScanner scanner(text);
    for (size_t word = 0; word < words.size(); ++word) {
        const bool first = word % wordsPerBiquad == 0;
        if (first || wordALine) {
            const int32_t mark = first ? config.addresses[word / wordsPerBiquad] : 0xFF;
            Require(scanner.hexadecimal() == mark, "a line begins with its address");
        }
        uint32_t bits = 0;
        for (int byte = 0; byte < 4; ++byte) {
            bits = bits << 8U | static_cast<uint32_t>(scanner.hexadecimal().value_or(-1));
        }
        Require(bits == static_cast<uint32_t>(words[word]), "the file holds the words");
        const bool last = word % wordsPerBiquad == wordsPerBiquad - 1;
        Require(scanner.literal('\n') == (last || wordALine), "lines end where they should");
    }
    Require(scanner.atEnd(), "nothing follows the last section");
}

void checkRoundTrip(const RegisterAddressConfig& config) {
    std::string text = "address = ";
    for (size_t i = 0; i < config.addresses.size(); ++i) {
        char number[16];
        std::snprintf(number, sizeof number, "%s%X", i == 0 ? "" : ",",
                      static_cast<uint32_t>(config.addresses[i]));
        text += number;
    }
    text += "\noutput_format = " + std::to_string(config.outputFormat) + "\n";
    RegisterAddressConfig back;
    Require(ParseRegisterAddresses(text, back) == 2, "both keys are found");
    Require(back.addresses == config.addresses, "addresses come back");
    Require(back.outputFormat == config.outputFormat, "the format comes back");
}

Words wordsOf(std::string_view input) {
    Words words{};
    for (size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<int32_t>(HashOf(input.substr(0, i)));
    }
    return words;
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    RegisterAddressConfig config;
    const int32_t found = ParseRegisterAddresses(input, config);
    Require(found >= 0 && found <= 2, "there are two keys");
    Require(config.outputFormat == 4 || config.outputFormat == 20, "there are two formats");
    const RegisterAddressConfig defaults;
    Require(found > 0 || (config.addresses == defaults.addresses &&
                          config.outputFormat == defaults.outputFormat),
            "without a key everything has its default");
    checkRoundTrip(config);
    checkFilterFile(wordsOf(input), config);
    return 0;
}

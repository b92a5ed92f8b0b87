#include "files/SectionText.h"

#include <array>
#include <charconv>

namespace tonvane {

namespace {

std::string commentLines(std::span<const std::string> remarks) {
    std::string text;
    for (const std::string& remark : remarks) {
        text += "# " + remark + "\n";
    }
    return text;
}

}  // namespace

std::string DecimalText(double value) {
    std::array<char, 400> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed);
    std::string text(digits.data(), end.ptr);
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string FormatEqualizerApo(std::span<const Biquad> sections,
                               std::span<const std::string> remarks) {
    std::string text = commentLines(remarks);
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        text += "Filter: ON IIR Order 2 Coefficients";
        for (const double value : {b0, b1, b2, 1.0, a1, a2}) {
            text += " " + DecimalText(value);
        }
        text += "\n";
    }
    return text;
}

std::string FormatCamillaDsp(std::span<const Biquad> sections,
                             std::span<const std::string> remarks) {
    std::string filters = "filters:\n";
    std::string pipeline = "pipeline:\n  - type: Filter\n    channels: [0]\n    names:\n";
    int number = 0;
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        const std::string name = "tonvane" + std::to_string(++number);
        filters += "  " + name + ":\n    type: Biquad\n    parameters:\n      type: Free\n";
        for (const auto& [key, value] :
             {std::pair{"b0", b0}, {"b1", b1}, {"b2", b2}, {"a1", a1}, {"a2", a2}}) {
            filters += std::string("      ") + key + ": " + DecimalText(value) + "\n";
        }
        pipeline += "      - " + name + "\n";
    }
    return commentLines(remarks) + filters + pipeline;
}

std::string FormatMiniDsp(std::span<const Biquad> sections) {
    std::string text;
    int number = 0;
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        text += (number == 0 ? "biquad" : ",\nbiquad") + std::to_string(number + 1);
        ++number;
        for (const auto& [key, value] :
             {std::pair{"b0", b0}, {"b1", b1}, {"b2", b2}, {"a1", 0.0 - a1}, {"a2", 0.0 - a2}}) {
            text += std::string(",\n") + key + "=" + DecimalText(value);
        }
    }
    return text + "\n";
}

std::string FormatSectionCsv(std::span<const Biquad> sections) {
    std::string text = "section,b0,b1,b2,a1,a2\n";
    int number = 0;
    for (const auto& [b0, b1, b2, a1, a2] : sections) {
        text += std::to_string(++number);
        for (const double value : {b0, b1, b2, a1, a2}) {
            text += "," + DecimalText(value);
        }
        text += "\n";
    }
    return text;
}

std::string FormatTaps(std::span<const double> taps) {
    std::string text;
    for (const double tap : taps) {
        text += DecimalText(tap) + "\n";
    }
    return text;
}

std::string FormatLevelRows(std::span<const double> frequencies, std::span<const double> levels) {
    std::string text;
    for (size_t i = 0; i < frequencies.size(); ++i) {
        text += DecimalText(frequencies[i]) + "," + DecimalText(levels[i]) + "\n";
    }
    return text;
}

}  // namespace tonvane

// Exported sections: the text around the numbers by the rules of each format, and the numbers.
#include <cmath>
#include <regex>

#include <gmock/gmock.h>

#include "files/SectionText.h"

namespace tonvane {
namespace {

// Words of coefficients with every sign, the ends of the range and single steps of 2^-23.
const std::vector<int32_t> words{
    0x0811221, 0x3003E2F, 0x07F01E3, 0x0FAE887, 0x38503B6,  // ordinary, poles near the circle
    0x0800000, 0x0000001, 0x3FFFFFF, 0x0000001, 0x3FFFFFF,  // 1, 2^-23 and -2^-23
    0x1FFFFFF, 0x2000000, 0x1000000, 0x0000000, 0x0400000,  // just under 4, -4, 2, 0, 0.5
    0x0800000, 0x0000000, 0x0000000, 0x0000000, 0x0000000,  // unity
};

// The value of a word by the definition of two's complement in 26 bits with 23 behind the point.
double valueOf(int32_t word) {
    return (word >= 1 << 25 ? word - (1 << 26) : word) * std::pow(2.0, -23);
}

// Of y = b0 x + b1 x' + b2 x'' + feedback (a1 y' + a2 y''), with the 1 of a0 where a format has it.
std::vector<double> coefficients(double feedback, bool hasA0) {
    std::vector<double> all;
    for (size_t i = 0; i < words.size(); ++i) {
        if (hasA0 && i % 5 == 3) {
            all.push_back(1.0);
        }
        all.push_back(i % 5 < 3 ? valueOf(words[i]) : feedback * valueOf(words[i]));
    }
    return all;
}

// Expects these decimal numbers in a text, with "#" for each of them in the frame.
void expectText(const std::string& text, const std::string& frame,
                const std::vector<double>& numbers) {
    const std::regex number("-?[0-9]+\\.[0-9]+");
    EXPECT_EQ(std::regex_replace(text, number, "#"), frame);
    std::vector<double> found;
    for (std::sregex_iterator at(text.begin(), text.end(), number), end; at != end; ++at) {
        found.push_back(std::stod(at->str()));
    }
    EXPECT_EQ(found, numbers);
}

std::string forEachSection(const std::string& frame) {
    std::string text;
    for (const char* number : {"1", "2", "3", "4"}) {
        text += std::regex_replace(frame, std::regex("@"), number);
    }
    return text;
}

const std::vector<std::string> remarks{"one", "two"};

TEST(SectionText, ForEqualizerApoIsALineOfSixCoefficientsASection) {
    expectText(
        FormatEqualizerApo(DecodeSections(words), remarks),
        "# one\n# two\n" + forEachSection("Filter: ON IIR Order 2 Coefficients # # # # # #\n"),
        coefficients(-1.0, true));
}

TEST(SectionText, ForCamillaDspIsAPipelineOfFreeBiquads) {
    expectText(FormatCamillaDsp(DecodeSections(words), remarks),
               "# one\n# two\nfilters:\n" +
                   forEachSection("  tonvane@:\n    type: Biquad\n    parameters:\n"
                                  "      type: Free\n      b0: #\n      b1: #\n      b2: #\n"
                                  "      a1: #\n      a2: #\n") +
                   "pipeline:\n  - type: Filter\n    channels: [0]\n    names:\n" +
                   forEachSection("      - tonvane@\n"),
               coefficients(-1.0, false));
}

TEST(SectionText, ForMiniDspHasTheFeedbackAddedAndNoCommaAtItsEnd) {
    std::string frame = forEachSection("biquad@,\nb0=#,\nb1=#,\nb2=#,\na1=#,\na2=#,\n");
    frame.erase(frame.size() - 2, 1);
    expectText(FormatMiniDsp(DecodeSections(words)), frame, coefficients(1.0, false));
}

TEST(SectionText, AsCsvIsARowASection) {
    expectText(FormatSectionCsv(DecodeSections(words)),
               "section,b0,b1,b2,a1,a2\n" + forEachSection("@,#,#,#,#,#\n"),
               coefficients(-1.0, false));
}

TEST(DecimalText, IsThePlainNumberThatReadsBackTheSame) {
    for (const auto& [value, text] : {std::pair{0.0, "0.0"},
                                      {1.0, "1.0"},
                                      {-4.0, "-4.0"},
                                      {std::pow(2.0, -23), "0.00000011920928955078125"},
                                      {20000.0, "20000.0"}}) {
        EXPECT_EQ(std::stod(DecimalText(value)), value);
        EXPECT_EQ(DecimalText(value).substr(0, 12), std::string(text).substr(0, 12));
    }
    const double third = 1.0 / 3.0;
    EXPECT_EQ(std::stod(DecimalText(third * 1e-9)), third * 1e-9);
    EXPECT_EQ(DecimalText(1e-9).find('e'), std::string::npos);
}

}  // namespace
}  // namespace tonvane

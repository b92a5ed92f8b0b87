// Exported sections: the text around the numbers by the rules of each format, and the numbers.
#include <cmath>
#include <cstdlib>

#include <gmock/gmock.h>

#include "files/SectionText.h"

namespace tonvane {
namespace {

// 1, -2^-23, just under 4, -4, 0.5 as words of 26 bits with 23 behind the point; and unity.
const std::vector<int32_t> words{0x0800000, 0x3FFFFFF, 0x1FFFFFF, 0x2000000, 0x0400000,
                                 0x0800000, 0,         0,         0,         0};
const std::string step = "0.00000011920928955078125";
const std::string most = "3.9999998807907104";  // no more digits than tell it from its neighbours

TEST(SectionText, OfEachFormatHasItsFrameAndTheExactNumbers) {
    const auto sections = DecodeBiquads(words);
    const std::vector<std::string> remarks{"one", "two"};
    // With y = b0 x + b1 x' + b2 x'' - a1 y' - a2 y''.
    EXPECT_EQ(FormatEqualizerApo(sections, remarks),
              "# one\n# two\nFilter: ON IIR Order 2 Coefficients 1.0 -" + step + " " + most +
                  " 1.0 4.0 -0.5\nFilter: ON IIR Order 2 Coefficients 1.0 0.0 0.0 1.0 0.0 0.0\n");
    const std::string head =
        ":\n    type: Biquad\n    parameters:\n      type: Free\n      b0: 1.0\n";
    EXPECT_EQ(FormatCamillaDsp(sections, remarks),
              "# one\n# two\nfilters:\n  tonvane1" + head + "      b1: -" + step +
                  "\n      b2: " + most + "\n      a1: 4.0\n      a2: -0.5\n  tonvane2" + head +
                  "      b1: 0.0\n      b2: 0.0\n      a1: 0.0\n      a2: 0.0\n"
                  "pipeline:\n  - type: Filter\n    channels: [0]\n    names:\n"
                  "      - tonvane1\n      - tonvane2\n");
    EXPECT_EQ(FormatSectionCsv(sections), "section,b0,b1,b2,a1,a2\n1,1.0,-" + step + "," + most +
                                              ",4.0,-0.5\n2,1.0,0.0,0.0,0.0,0.0\n");
    // With the feedback added, and no comma at the end.
    EXPECT_EQ(FormatMiniDsp(sections),
              "biquad1,\nb0=1.0,\nb1=-" + step + ",\nb2=" + most + ",\na1=-4.0,\na2=0.5,\n" +
                  "biquad2,\nb0=1.0,\nb1=0.0,\nb2=0.0,\na1=0.0,\na2=0.0\n");
}

TEST(DecimalText, IsThePlainNumberThatReadsBackTheSame) {
    EXPECT_EQ(DecimalText(20000.0), "20000.0");
    for (const double value : {1e-9 / 3.0, -1e22 / 3.0, std::nextafter(0.0, 1.0)}) {
        EXPECT_EQ(std::strtod(DecimalText(value).c_str(), nullptr), value);
        EXPECT_EQ(DecimalText(value).find('e'), std::string::npos);
    }
}

}  // namespace
}  // namespace tonvane

// The parameter file, the address file and the filter file.
#include <gmock/gmock.h>

#include "files/AddressConfig.h"
#include "files/DesignParameters.h"
#include "files/FilterFile.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

TEST(ParameterFile, HasDefaultsForWhatIsMissing) {
    const tests::TemporaryFolder folder;
    TargetRecord curve = BuiltInTargetCurve;
    curve.points[3] = {1234, -5};
    auto read = LoadDesignParameterFile(folder / "none.txt", curve);
    EXPECT_EQ(read.targetCurveIndex, 0);
    EXPECT_EQ(read.gainIndex, 6);
    EXPECT_THAT(read.curves, testing::Each(curve));

    read = LoadDesignParameterFile(
        folder.write("p.txt",
                     "[TARGETCURVETOP9]\r\nPTS8_X=15000\r\n ; pts8_y=1\r\n pts0_y = -3 dB\r\n"
                     "[Global]\nEqAttn=\n[TargetCurveTop9]\npts1_x=7\n"),
        curve);
    EXPECT_EQ(read.gainIndex, 6);
    EXPECT_EQ(read.curves[8], curve);
    TargetRecord expected = curve;
    expected.points[8].frequency = 15000;
    expected.points[0].level = -3;  // of two sections of one name the first counts
    EXPECT_EQ(read.curves[9], expected);
}

TEST(ParameterFile, ClampsTheCurveAndNothingElse) {
    const tests::TemporaryFolder folder;
    const struct {
        std::string value;
        int32_t curve, gain;
    } cases[] = {{"12", 9, 12}, {"-1", 0, -1}, {"+3x", 3, 3}, {"none", 0, 0}};
    for (const auto& c : cases) {
        const std::string text = "[Global]\nTargetCurveIndex=" + c.value + "\nEqAttn=" + c.value;
        const auto read = LoadDesignParameterFile(folder.write("p.txt", text), BuiltInTargetCurve);
        EXPECT_EQ(read.targetCurveIndex, c.curve) << c.value;
        EXPECT_EQ(read.gainIndex, c.gain) << c.value;
    }
}

TEST(ParameterFile, ComesBackAsWrittenAndKeepsWhatElseIsInIt) {
    const tests::TemporaryFolder folder;
    const std::string path = folder.write(
        "p.txt", "; mine\n[Other]\nEqAttn=3\n\n[global]\neqattn = 9\nMine=7\n\n[Last]\nkey=value");
    DesignParameters parameters{4, 11, {}};
    for (int32_t c = 0; c < curveCount; ++c) {
        for (int32_t i = 0; i < 9; ++i) {
            parameters.curves[c].points[i] = {1000 * c + i, i - 10 * c};
        }
    }
    for (const std::string& target : {path, path, folder / "new.txt"}) {
        ASSERT_EQ(SaveDesignParameterFile(target, parameters), std::nullopt);
        const auto read = LoadDesignParameterFile(target, BuiltInTargetCurve);
        EXPECT_EQ(read.targetCurveIndex, 4);
        EXPECT_EQ(read.gainIndex, 11);
        EXPECT_EQ(read.curves, parameters.curves);
    }
    EXPECT_THAT(
        tests::Contents(path),
        testing::StartsWith("; mine\n[Other]\nEqAttn=3\n\n[global]\nEqAttn=11\nMine=7\n"
                            "TargetCurveIndex=4\n\n[Last]\nkey=value\n[TargetCurveTop0]\n"));
}

TEST(AddressFile, IsReadInOnePassOfTwoKeys) {
    using Addresses = std::array<int32_t, 7>;
    const Addresses defaults{0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F};
    const Addresses three{0x30, 0x31, 0x32, 0x2C, 0x2D, 0x2E, 0x2F};
    const Addresses all{0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36};
    const tests::TemporaryFolder folder;
    const struct {
        std::string text;
        int32_t found;
        Addresses addresses;
        int32_t format;
    } cases[] = {
        {"address = 30,31,32,33,34,35,36\noutput_format = 4\n", 2, all, 4},
        {"address = 30,31,32,33,34,35,36\r\noutput_format = 4\r\n", 2, all, 4},
        {"\n # 1\tADDRESS\t=0x30, 31,\n32,33,34,35,36 ; Output_Format is = 20", 2, all, 20},
        {"xDDress=30,31,32,33,34,35,36\nXUTPUT_FORMAT=4", 2, all, 4},
        {"address = 30,31,32,33,34,35,36,37\noutput_format = 5", 2, all, 20},
        {"address = 30,31,32\n", 1, three, 20},
        {"address = 30,31,32 ,33\noutput_format = 4", 2, three, 4},
        {"address = ,31\noutput_format = four", 2, defaults, 20},
        {"output_format = 4\n", 0, defaults, 20},
        {"output_format = 4\naddress = 30,31,32,33,34,35,36\n", 0, defaults, 20},
        {"the address = 30,31\noutput_format = 4", 0, defaults, 20},
        {"address 30,31", 0, defaults, 20},
        {"", 0, defaults, 20},
    };
    for (const auto& c : cases) {
        RegisterAddressConfig config{{1, 2, 3, 4, 5, 6, 7}, 8};
        folder.write("registeraddress.cfg", c.text);
        EXPECT_EQ(LoadRegisterAddressConfig(folder.path() + "/", config), c.found) << c.text;
        EXPECT_EQ(config.addresses, c.addresses) << c.text;
        EXPECT_EQ(config.outputFormat, c.format) << c.text;
    }
    RegisterAddressConfig config{{1, 2, 3, 4, 5, 6, 7}, 8};
    EXPECT_EQ(LoadRegisterAddressConfig(folder / "none", config), 0);
    EXPECT_EQ(config.addresses, defaults);
}

TEST(FilterFile, HasTheReferencesBytesInBothShapes) {
    for (const tests::GoldenCase& golden : tests::GoldenCases()) {
        const nlohmann::json figures = tests::GoldenFigures(golden);
        std::vector<int32_t> words;
        for (const auto& section : figures["coefficientWords"]) {
            for (const std::string word : section) {
                words.push_back(std::stoi(word, nullptr, 16));
            }
        }
        RegisterAddressConfig config;
        if (golden.name == "small48-tilt6") {
            LoadRegisterAddressFile(tests::GoldenPath("registeraddress.cfg"), config);
        }
        EXPECT_EQ(FormatFilterFile(words, config),
                  tests::Contents(tests::GoldenPath(golden.name + ".filter.txt")));
    }
}

}  // namespace
}  // namespace tonvane

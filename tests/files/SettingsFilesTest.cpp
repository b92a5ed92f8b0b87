// The parameter file and the address file.
#include <gmock/gmock.h>

#include "files/AddressConfig.h"
#include "files/DesignParameters.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

TEST(ParameterFile, HasDefaultsForWhatIsMissingAndClampsTheCurveAlone) {
    const tests::TemporaryFolder folder;
    TargetRecord curve = BuiltInTargetCurve;
    curve.points[3] = {1234, -5};
    auto read = LoadDesignParameterFile(folder / "none.txt", curve);
    EXPECT_EQ(read.targetCurveIndex, 0);
    EXPECT_EQ(read.gainIndex, 6);
    EXPECT_THAT(read.curves, testing::Each(curve));

    // Of two sections of one name the first counts.
    const std::string text =
        "[TARGETCURVETOP9]\r\nPTS8_X=15000\r\n ; pts8_y=1\r\n pts0_y = -3 dB\r\n"
        "[Global]\nEqAttn=\n[TargetCurveTop9]\npts1_x=7\n";
    read = LoadDesignParameterFile(folder.write("p.txt", text), curve);
    EXPECT_EQ(read.gainIndex, 6);
    EXPECT_EQ(read.curves[8], curve);
    curve.points[8].frequency = 15000;
    curve.points[0].level = -3;
    EXPECT_EQ(read.curves[9], curve);
    const std::tuple<const char*, int32_t, int32_t> cases[] = {
        {"12", 9, 12}, {"-1", 0, -1}, {"+3x", 3, 3}, {"none", 0, 0}};
    for (const auto& [value, index, gain] : cases) {
        const auto global =
            std::string("[Global]\nTargetCurveIndex=") + value + "\nEqAttn=" + value;
        read = LoadDesignParameterFile(folder.write("p.txt", global), curve);
        EXPECT_EQ(std::tuple(read.targetCurveIndex, read.gainIndex), std::tuple(index, gain));
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
    const std::string six = "30,31,32,33,34,35,";
    const struct {
        std::string text;
        int32_t found;
        int32_t read;  // how many of the addresses; they are 30 to 36
        int32_t format;
    } cases[] = {
        {"address = " + six + "36\noutput_format = 4\n", 2, 7, 4},
        {"\n # 1\tADDRESS\t=0x30, 31,\n32,33,34,35,36 ; Output_Format is = 20", 2, 7, 20},
        {"xDDress=" + six + "36\nXUTPUT_FORMAT=4", 2, 7, 4},
        {"address = " + six + "36,37\noutput_format = 5", 2, 7, 20},
        {"address = 30,31,32\n", 1, 3, 20},
        {"address = 30,31,32 ,33\noutput_format = 4", 2, 3, 4},
        {"address = ,31\noutput_format = four", 2, 0, 20},
        {"output_format = 4\naddress = " + six + "36\n", 0, 0, 20},
        {"the address = 30,31\noutput_format = 4", 0, 0, 20},
        {"", 0, 0, 20},
    };
    const tests::TemporaryFolder folder;
    for (const auto& c : cases) {
        RegisterAddressConfig config{{1, 2, 3, 4, 5, 6, 7}, 8};
        folder.write("registeraddress.cfg", c.text);
        EXPECT_EQ(LoadRegisterAddressConfig(folder.path() + "/", config), c.found) << c.text;
        for (int32_t i = 0; i < 7; ++i) {
            EXPECT_EQ(config.addresses[i], (i < c.read ? 0x30 : 0x29) + i) << c.text;
        }
        EXPECT_EQ(config.outputFormat, c.format) << c.text;
    }
    RegisterAddressConfig config{{1, 2, 3, 4, 5, 6, 7}, 8};
    EXPECT_EQ(LoadRegisterAddressConfig(folder / "none", config), 0);
    EXPECT_EQ(config.addresses, RegisterAddressConfig().addresses);
}

}  // namespace
}  // namespace tonvane

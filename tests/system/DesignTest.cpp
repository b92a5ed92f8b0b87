// tonvane-cli design, as a person starts it.
#include <cmath>
#include <complex>
#include <filesystem>
#include <numbers>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "files/TestFiles.h"
#include "system/Program.h"

namespace tonvane {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using tests::Contents;
using tests::GoldenCase;
using tests::RunProgram;
using Arguments = std::vector<std::string>;

// The chain's level at a frequency, with b and a of each section as given.
double chainDb(const json& sections, double turn,
               double (*coefficient)(const json& section, size_t i)) {
    const std::complex<double> z = std::polar(1.0, -2.0 * std::numbers::pi * turn);
    std::complex<double> response = 1.0;
    for (const json& section : sections) {
        const auto c = [&](size_t i) { return coefficient(section, i); };
        response *= (c(0) + z * (c(1) + z * c(2))) / (1.0 - z * (c(3) + z * c(4)));
    }
    return 20.0 * std::log10(std::abs(response));
}

double asDesigned(const json& section, size_t i) {
    return i < 3 ? section["b"][i].get<double>() : -section["a"][i - 2].get<double>();
}

double asEncoded(const json& section, size_t i) {
    const int word = std::stoi(section["words"][i].get<std::string>(), nullptr, 16);
    return (word >= 1 << 25 ? word - (1 << 26) : word) / 8388608.0;
}

void expectQuantisation(const json& report) {
    const std::vector<double> grid = report["curves"]["frequencyHz"];
    double squares = 0.0;
    double largest = 0.0;
    double highest = -1e9;
    for (const double hertz : grid) {
        const double turn = hertz / report["sampleRateHz"].get<double>();
        const double encoded = chainDb(report["sections"], turn, asEncoded);
        const double error = encoded - chainDb(report["sections"], turn, asDesigned);
        squares += error * error;
        largest = std::max(largest, std::fabs(error));
        highest = std::max(highest, encoded);
    }
    const json& quantisation = report.at("quantisation");
    EXPECT_NEAR(quantisation.at("rmsDb"), std::sqrt(squares / static_cast<double>(grid.size())),
                1e-9);
    EXPECT_NEAR(quantisation.at("largestDb"), largest, 1e-9);
    EXPECT_GE(report.at("highestGain").at("db").get<double>(), highest - 1e-3);
    EXPECT_EQ(report.at("poleRadii").size(), 7U);
}

class Design : public testing::TestWithParam<GoldenCase> {};

TEST_P(Design, WritesTheReferencesFilterAndAReportOfIt) {
    const GoldenCase& golden = GetParam();
    const tests::TemporaryFolder folder;
    folder.copyGolden(golden.response, golden.response);
    const auto result = RunProgram(
        {"design", golden.response, "-o", folder / "f.txt", "--target",
         tests::GoldenPath(golden.target), "--addresses", tests::GoldenPath("registeraddress.cfg"),
         "--format", "20", "--report", "r.json"},
        {folder.path()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    const std::string text = Contents(folder / "f.txt");
    const auto records = tests::ParseFilterFile(text);
    EXPECT_EQ(std::ranges::count(text, '\n'), 7);
    EXPECT_EQ(records.addresses.at(6), 0x30);
    tests::ExpectGoldenResponse(records.words, golden);

    const json figures = tests::GoldenFigures(golden);
    const json report = json::parse(Contents(folder / "r.json"));
    EXPECT_EQ(report.at("sampleRateHz"), figures["measuringRate"]);
    EXPECT_EQ(report.at("gainClampDb"), figures["gainClampDb"]);
    EXPECT_EQ(report.at("fit").at("pass"), figures["bestPass"].get<int>() + 1);
    EXPECT_NEAR(report.at("fit").at("rmsDb"), figures["cascadeRmsDb"], 0.01);
    EXPECT_EQ(report.at("wrappedCoefficients"), 0);
    EXPECT_EQ(report.at("warnings"), json::array());
    for (const char* name : {"delaySamples", "polarity", "cutoffHz"}) {
        EXPECT_EQ(report.contains(name), !golden.isCsv) << name;
        EXPECT_EQ(report.value(name, figures[name]), figures[name]) << name;
    }
    for (const char* name : {"loudnessDb", "levelDb", "loudnessRatioDb", "deviationBeforeDb",
                             "deviationAfterDb", "largestPoleRadius"}) {
        EXPECT_TRUE(report.at(name).is_number()) << name;
    }
    for (const char* name : {"frequencyHz", "targetDb", "measuredDb", "firDb", "filterDb"}) {
        EXPECT_EQ(report.at("curves").at(name).size(), figures["gridHz"].size()) << name;
    }
    expectQuantisation(report);
    std::vector<int32_t> words;
    for (const json& section : report.at("sections")) {
        for (const std::string word : section.at("words")) {
            words.push_back(std::stoi(word, nullptr, 16));
        }
    }
    EXPECT_EQ(words, records.words);
}

INSTANTIATE_TEST_SUITE_P(Case, Design, testing::ValuesIn(tests::GoldenCases()),
                         [](const auto& instance) {
                             return instance.param.name.substr(0, instance.param.name.find('-'));
                         });

TEST(DesignOfATableTo20kHz, CutsABumpWhereItIs) {
    const tests::TemporaryFolder folder;
    folder.write("r.csv", "20,0\n2840,12\n3170,0\n20000,0\n");
    RunProgram({"design", "r.csv", "-o", "f", "--report", "r.json"}, {folder.path()});
    const json curves = json::parse(Contents(folder / "r.json"))["curves"];
    const std::vector<double> levels = curves["filterDb"];
    const auto deepest = std::ranges::min_element(levels) - levels.begin();
    EXPECT_NEAR(curves["frequencyHz"][deepest], 3000.0, 150.0);
}

TEST(DesignOfBadInput, EndsWithOneLineAndNothingLost) {
    const tests::TemporaryFolder folder;
    std::vector<double> samples(32768);
    samples[40] = 1.0;
    folder.write("good.qsr", tests::ResponseBytes(48000, samples));
    folder.write("short.qsr", tests::ResponseBytes(48000, {1.0}));
    folder.write("empty", "");
    folder.write("bad.csv", "20,1\r\n30,nan\r\n");
    folder.write("text", "20,1\n");
    folder.write("f", "old");
    folder.write("report", "old");
    std::filesystem::create_directory(folder / "folder");
    const auto namesBefore = folder.names();

    const struct {
        Arguments arguments;  // behind "design"; "-o f" is added without an -o
        const char* complaint;
    } cases[] = {
        {{"none.qsr"}, "none.qsr: cannot be opened"},
        {{"empty"}, "empty: the file is empty"},
        {{"short.qsr"}, "short.qsr: expected a speaker response of 262148 bytes"},
        {{"bad.csv"}, "bad.csv:2: expected a row"},
        {{"text", "--rate", "7999"}, "--rate: expected 8000 to 192000"},
        {{"good.qsr", "--rate", "44100"}, "good.qsr: the file's sample rate is 48000 Hz"},
        {{"good.qsr", "--target", "text"}, "text:1: expected -zerocurve"},
        {{"good.qsr", "--addresses", "none"}, "none: cannot be opened"},
        {{"good.qsr", "--addresses", "text"}, "text:1: expected \"address"},
        {{"good.qsr", "-o", "none/f", "--report", "report"}, "none/f: cannot be written"},
        {{"good.qsr", "-o", "/dev/full"}, "/dev/full: cannot be written"},
        {{"good.qsr", "--report", "none/r"}, "none/r: cannot be written"},
        {{"good.qsr", "-o", "folder/../good.qsr"}, "good.qsr: would overwrite"},
        {{"text", "--report", "f"}, "f: would overwrite"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        Arguments arguments{"design"};
        if (std::ranges::find(c.arguments, "-o") == c.arguments.end()) {
            arguments.insert(arguments.end(), {"-o", "f"});
        }
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const auto result = RunProgram(arguments, {folder.path()});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr(c.complaint));
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_EQ(Contents(folder / "f") + Contents(folder / "report"), "oldold");
        EXPECT_EQ(folder.names(), namesBefore);
    }
    EXPECT_EQ(Contents(folder / "good.qsr").size(), 262148U);
}

TEST(Usage, IsToldWithExitCode2) {
    const tests::TemporaryFolder folder;
    folder.write("r.csv", "20,0\n");
    for (const Arguments& arguments : {
             Arguments{},
             {"tune"},
             {"design", "r.csv"},
             {"design", "r.csv", "-o", "f", "--gain-clamp", "1"},
             {"design", "r.csv", "-o", "f", "--format", "5"},
             {"design", "r.csv", "-o", "f", "--rate", "fast"},
             {"design", "r.csv", "-o", "f", "--faster"},
         }) {
        const auto result = RunProgram(arguments, {folder.path()});
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_NE(result.err, "");
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre("r.csv"));
    for (const auto& [arguments, text] : {std::pair{Arguments{"design", "--help"}, "--gain-clamp"},
                                          std::pair{Arguments{"--version"}, "tonvane-cli 0."}}) {
        const auto result = RunProgram(arguments, {folder.path()});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST(OneInput, HasTheSameBytesInEveryRun) {
    const tests::TemporaryFolder locales;
    ASSERT_EQ(tests::MakeCommaLocale(locales.path()), std::nullopt);
    for (const std::string format : {"qsr", "csv"}) {
        const std::string response = (format == "qsr" ? "small48." : "logspaced.") + format;
        std::set<std::string> results;
        for (const auto& [localeFolder, onOneCore] : {std::pair<std::string, bool>{"", false},
                                                      {"", false},
                                                      {locales.path(), false},
                                                      {"", true}}) {
            const tests::TemporaryFolder folder;
            folder.copyGolden(response, response);
            folder.copyGolden("tilt6.txt", "t");
            const tests::ProgramSetting setting{folder.path(), localeFolder, onOneCore};
            const auto design =
                RunProgram({"design", response, "-o", "f", "--report", "r.json"}, setting);
            RunProgram({"-cmd", "48000", response, format, "b", "t", "-noprompt"}, setting);
            results.insert(design.out + Contents(folder / "f") + Contents(folder / "r.json") +
                           Contents(folder / "b") + Contents(folder / "t"));
            EXPECT_EQ(folder.names(), (std::set<std::string>{"b", "f", "r.json", response, "t"}));
        }
        EXPECT_EQ(results.size(), 1U) << response;
    }
}

}  // namespace
}  // namespace tonvane

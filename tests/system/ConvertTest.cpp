// Inputs of every kind through whole programs, and results for other programs.
#include <cmath>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "files/TestFiles.h"
#include "support/Signals.h"
#include "system/Program.h"

namespace tonvane {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using tests::Contents;
using tests::RunProgram;
using Arguments = std::vector<std::string>;

const tests::GoldenCase& goldenImpulse() {
    return *std::ranges::find(tests::GoldenCases(), false, &tests::GoldenCase::isCsv);
}

tests::ProgramResult run(const tests::TemporaryFolder& folder, const Arguments& arguments) {
    return RunProgram(arguments, {folder.path()});
}

TEST(Convert, TakesAnImpulseResponseThroughEveryFormToTheSameFilter) {
    const tests::GoldenCase& golden = goldenImpulse();
    const tests::TemporaryFolder folder;
    folder.copyGolden(golden.response, "r.qsr");
    folder.copyGolden(golden.target, "t");
    const std::string rate = tests::GoldenFigures(golden)["measuringRate"].dump();
    EXPECT_EQ(run(folder, {"convert", "r.qsr", "r.wav"}).err, "");
    EXPECT_EQ(run(folder, {"convert", "r.wav", "r.f32"}).err, "");
    EXPECT_EQ(run(folder, {"convert", "r.f32", "again.qsr", "--rate", rate}).err, "");
    for (const Arguments& input :
         {Arguments{"r.wav"}, {"r.f32", "--rate", rate}, {"again.qsr", "--strict"}}) {
        Arguments arguments{"design", "-o", "f", "--target", "t"};
        arguments.insert(arguments.end(), input.begin(), input.end());
        const auto result = run(folder, arguments);
        EXPECT_EQ(result.err, "");
        tests::ExpectGoldenResponse(tests::ParseFilterFile(Contents(folder / "f")).words, golden);
    }
    // The spectrum of the samples, term by term.
    ASSERT_EQ(run(folder, {"convert", "r.qsr", "s.csv"}).exitCode, 0);
    const std::vector<double> samples = tests::GoldenImpulse(golden.response);
    std::istringstream rows(Contents(folder / "s.csv"));
    int bin = 0;
    for (std::string line; std::getline(rows, line);) {
        if (++bin != 100 && bin != 3000 && bin != 16384) {
            continue;
        }
        const auto level =
            static_cast<double>(20.0L * std::log10(std::abs(tests::DftBin(samples, bin))));
        EXPECT_EQ(std::stod(line), bin * std::stod(rate) / 32768.0);
        EXPECT_NEAR(std::stod(line.substr(line.find(',') + 1)), level, 1e-6);
    }
    EXPECT_EQ(bin, 16384);
}

TEST(Convert, MakesATableForCallingTools) {
    const tests::TemporaryFolder folder;
    folder.write("in.txt", "Freq\tdB\r\n1.000,5\t-3,25\r\n20\t1\r\n30.000\t2\r\n");
    const auto result = run(folder, {"convert", "in.txt", "out.csv", "--rate", "48000"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Contents(folder / "out.csv"), "20.0,1.0\n1000.5,-3.25\n24000.0,-3.25\n");
    EXPECT_THAT(result.err, HasSubstr("Note: in.txt: 1 row above 24000 Hz"));
    EXPECT_THAT(result.err, HasSubstr("decimal commas"));
    run(folder, {"convert", "in.txt", "out.frd"});
    EXPECT_EQ(Contents(folder / "out.frd"), "20.0,1.0\n1000.5,-3.25\n30000.0,2.0\n");
}

TEST(Exports, OfADesignAndOfItsFilterFileAreTheSame) {
    const tests::TemporaryFolder folder;
    folder.copyGolden(goldenImpulse().response, "r.qsr");
    Arguments design{"design", "r.qsr", "-o", "f", "--report", "r.json"};
    const Arguments kinds{"apo", "camilladsp", "minidsp", "json", "csv"};
    for (const std::string& kind : kinds) {
        design.insert(design.end(), {"--export", kind + "=d." + kind});
    }
    design.insert(design.end(), {"--export", "fir-text=fir.txt", "--export", "fir-wav=fir.wav"});
    ASSERT_EQ(run(folder, design).exitCode, 0);
    const json report = json::parse(Contents(folder / "r.json"));
    const std::string rate = report["sampleRateHz"].dump();
    for (const std::string& kind : kinds) {
        const auto result =
            run(folder, {"convert", "f", "c." + kind, "--kind", kind, "--rate", rate});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(Contents(folder / ("c." + kind)), Contents(folder / ("d." + kind))) << kind;
    }
    // The FIR has the response that the report gives it, with the level drop taken out there.
    std::vector<double> taps;
    std::istringstream in(Contents(folder / "fir.txt"));
    for (double tap = 0.0; in >> tap;) {
        taps.push_back(tap);
    }
    ASSERT_EQ(taps.size(), 256U);
    for (const size_t point : {0U, 200U, 400U, 512U}) {
        const auto response = tests::PolynomialAt(
            taps, report["curves"]["frequencyHz"][point].get<double>(), std::stod(rate));
        EXPECT_NEAR(tests::Decibels(std::abs(response)) - report["gainClampDb"].get<double>(),
                    report["curves"]["firDb"][point], 1e-6);
    }
    EXPECT_EQ(Contents(folder / "fir.wav").substr(0, 4), "RIFF");
}

TEST(ConvertOfBadInput, EndsWithOneLineAndNothingLost) {
    const tests::TemporaryFolder folder;
    folder.copyGolden(goldenImpulse().response, "r.qsr");
    folder.write("t.csv", "20,1\n");
    folder.write("guess.csv", "20,1,2,3.5\n");
    folder.write("r.f32", std::string("\0\0\x80\x3F", 4));
    folder.write("cut.wav", "RIFF");
    folder.write("f", "0x29 00 80 00 00\n");
    folder.write("named.wav", "20,1\n");
    folder.write("out.csv", "old");
    const auto namesBefore = folder.names();
    const struct {
        Arguments arguments;
        const char* complaint;
    } cases[] = {
        {{"convert", "none", "o.csv"}, "none: cannot be opened"},
        {{"convert", "t.csv", "o.qsr"}, "o.qsr: a table of levels has no phase"},
        {{"convert", "t.csv", "./t.csv"}, "t.csv: would overwrite"},
        {{"convert", "t.csv", "o.csv", "--kind", "apo"}, "t.csv: is a response"},
        {{"convert", "t.csv", "o.csv", "--channel", "1"}, "--channel: only a wave file"},
        {{"convert", "guess.csv", "out.csv", "--strict"}, "guess.csv: the level is taken from"},
        {{"convert", "named.wav", "o.csv", "--strict"}, "named.wav: taken for a table"},
        {{"convert", "r.qsr", "o.yml"}, "o.yml: an impulse response can become"},
        {{"convert", "r.f32", "o.qsr"}, "r.f32: raw samples come without a sample rate"},
        {{"convert", "cut.wav", "o.qsr"}, "cut.wav: is no wave file"},
        {{"convert", "f", "o.json"}, "f:1: the file ends"},
        {{"convert", "t.csv", "none/o.csv"}, "none/o.csv: cannot be written"},
        {{"design", "f", "-o", "o"}, "f:1: is a filter file"},
        {{"design", "t.csv", "-o", "o", "--export", "apo=./o"}, "o: would overwrite"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        const auto result = run(folder, c.arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr(c.complaint));
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_EQ(Contents(folder / "out.csv"), "old");
        EXPECT_EQ(folder.names(), namesBefore);
    }
    for (const Arguments& arguments : {Arguments{"design", "t.csv", "-o", "o", "--export", "apo"},
                                       {"design", "t.csv", "-o", "o", "--export", "none=x"},
                                       {"convert", "f", "o", "--kind", "none"},
                                       {"convert", "t.csv"}}) {
        EXPECT_EQ(run(folder, arguments).exitCode, 2) << testing::PrintToString(arguments);
    }
    EXPECT_EQ(folder.names(), namesBefore);
}

}  // namespace
}  // namespace tonvane

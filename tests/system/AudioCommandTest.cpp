// The commands that play and capture, as a person starts them, on simulated devices.
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "files/TestFiles.h"
#include "system/Program.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::Contents;
using tests::RunProgram;
using Arguments = std::vector<std::string>;

const std::string speaker = std::string("simulated:") + TONVANE_EXAMPLES + "/small-speaker.qsr";

TEST(AudioCommands, AMeasurementLeavesTheFileThatGivesTheSameFilter) {
    const tests::TemporaryFolder folder;
    const auto measured =
        RunProgram({"measure", "--device", speaker, "-o", "speaker.qsr", "--report", "r.json"},
                   {folder.path()});
    EXPECT_EQ(measured.exitCode, 0);
    EXPECT_EQ(measured.err, "");
    EXPECT_THAT(measured.out, HasSubstr("Measuring: 100 %\n"));
    EXPECT_THAT(measured.out, HasSubstr("Wrote speaker.qsr\nWrote r.json\n"));
    const auto report = nlohmann::json::parse(Contents(folder / "r.json"));
    EXPECT_EQ(report.at("device"), speaker);
    EXPECT_EQ(report.at("delaySamples"), 109 + 32);  // the example's own, behind the lead
    EXPECT_EQ(report.at("clippedSamples"), 0);
    EXPECT_EQ(report.at("warnings"), nlohmann::json::array());

    const auto fromFile = RunProgram({"design", "speaker.qsr", "-o", "file.txt"}, {folder.path()});
    const auto atOnce =
        RunProgram({"design", "--measure", "--device", speaker, "-o", "once.txt"}, {folder.path()});
    EXPECT_EQ(fromFile.exitCode + atOnce.exitCode, 0);
    EXPECT_THAT(atOnce.out, HasSubstr("Filter for the measurement on simulated:"));
    EXPECT_EQ(tests::ParseFilterFile(Contents(folder / "file.txt")).words.size(), 35U);
    EXPECT_EQ(Contents(folder / "file.txt"), Contents(folder / "once.txt"));
    EXPECT_EQ(folder.names(),
              (std::set<std::string>{"file.txt", "once.txt", "r.json", "speaker.qsr"}));
}

TEST(AudioCommands, AFilePlaysToItsEndFromWhereItIsAskedTo) {
    const tests::TemporaryFolder folder;
    CWaveFile file;
    ASSERT_TRUE(file.Create(folder / "in.wav", 8000, 16, 1));
    file.Write(std::vector<double>(16001).data(), 16001);
    file.Close();
    const auto played =
        RunProgram({"play", "in.wav", "--device", "simulated", "--from", "1.5"}, {folder.path()});
    EXPECT_EQ(played.exitCode, 0);
    EXPECT_EQ(played.err, "");
    EXPECT_THAT(played.out, HasSubstr("00:03"));  // rounded up
    EXPECT_THAT(played.out, HasSubstr("Playing: 100 %\n"));
    const auto beyond =
        RunProgram({"play", "in.wav", "--device", "simulated", "--from", "2.5"}, {folder.path()});
    EXPECT_EQ(beyond.exitCode, 1);
    EXPECT_EQ(beyond.err, "tonvane-cli: in.wav: the file ends after 2.00 seconds\n");
}

TEST(AudioCommands, WhatCannotBeServedIsOneLineAndNoFile) {
    const tests::TemporaryFolder folder;
    const struct {
        Arguments arguments;
        int exitCode;
        const char* complaint;
    } cases[] = {
        {{"measure", "--rate", "11025"}, 1, "--rate: expected an even rate"},
        {{"measure", "--device", speaker, "--rate", "44100"}, 1, "at 48000 Hz, not at the 44100"},
        {{"measure", "--device", "simulated:none.qsr"}, 1, "none.qsr: cannot be opened"},
        {{"measure", "--device", "gramophone"}, 1, "gramophone: there is no such audio device"},
        {{"measure", "--device", "alsa:gramophone"}, 1, "alsa:gramophone: cannot be opened for"},
        {{"measure", "--device", "simulated", "--report", "out"},
         1,
         "out: would overwrite another file"},
        {{"design", "speaker.qsr", "--measure"}, 2, ""},
        {{"design"}, 2, ""},
    };
    for (const auto& wrong : cases) {
        Arguments arguments = wrong.arguments;
        arguments.insert(arguments.end(), {"-o", "out"});
        const auto result = RunProgram(arguments, {folder.path()});
        EXPECT_EQ(result.exitCode, wrong.exitCode) << wrong.complaint;
        EXPECT_THAT(result.err, HasSubstr(wrong.complaint));
        if (wrong.exitCode == 1) {
            EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        }
        EXPECT_EQ(folder.names(), std::set<std::string>{}) << wrong.complaint;
    }
    const auto unplayable =
        RunProgram({"play", "none.wav", "--device", "simulated"}, {folder.path()});
    EXPECT_EQ(unplayable.exitCode, 1);
    EXPECT_EQ(unplayable.err, "tonvane-cli: none.wav: cannot be opened\n");
}

}  // namespace
}  // namespace tonvane

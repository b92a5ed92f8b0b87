// One input, the same words from the program for Windows as from the one for Linux.
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "files/TestFiles.h"
#include "system/Program.h"
#include "system/wine/Wine.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using tests::Contents;
using tests::TemporaryFolder;

// What both programs have written: the filter file and the target file.
struct Written {
    std::string filters;
    std::string target;
};

// The lines as a program that opens text files on Windows expects them.
std::string withCrLf(const std::string& text) {
    return std::regex_replace(text, std::regex("\n"), "\r\n");
}

void expectSame(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                Written& windows) {
    const auto written = [&] {
        return Written{Contents(folder / "f.txt"), Contents(folder / "t.txt")};
    };
    ASSERT_EQ(tests::RunProgram(arguments, {folder.path()}).exitCode, 0);
    const Written linux_ = written();
    folder.write("f.txt", "old");  // the program has to replace a file that is there
    const auto run = tests::RunUnderWine({"tonvane-cli.exe", arguments, folder.path()});
    ASSERT_EQ(run.exitCode, 0) << run.output;
    windows = written();
    EXPECT_EQ(windows.filters, withCrLf(linux_.filters));
    const bool isWritten = arguments.front() == "-cmd";
    EXPECT_EQ(windows.target, isWritten ? withCrLf(linux_.target) : linux_.target);
}

class GoldenWords : public testing::TestWithParam<tests::GoldenCase> {};

TEST_P(GoldenWords, AreTheSameOnWindows) {
    const tests::GoldenCase& golden = GetParam();
    const TemporaryFolder folder;
    const std::string response = golden.isCsv ? "r.csv" : "r.qsr";
    folder.copyGolden(golden.response, response);
    folder.copyGolden(golden.target, "t.txt");
    const std::string rate = golden.name.starts_with("port44") ? "44100" : "48000";
    Written windows;
    expectSame(
        folder,
        {"-cmd", rate, response, golden.isCsv ? "csv" : "qsr", "f.txt", "t.txt", "-noprompt"},
        windows);
    tests::ExpectGoldenResponse(tests::ParseFilterFile(windows.filters).words, golden);
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenWords, testing::ValuesIn(tests::GoldenCases()),
                         [](const auto& instance) {
                             std::string name = instance.param.name;
                             std::erase(name, '-');
                             return name;
                         });

TEST(ExampleWords, AreTheSameOnWindows) {
    const std::string examples = TONVANE_EXAMPLES;
    for (const char* response : {"small-speaker.qsr", "small-speaker.csv"}) {
        for (const char* target : {"target-flat.txt", "target-warm.txt"}) {
            const TemporaryFolder folder;
            folder.write(response, Contents(examples + "/" + response));
            folder.write("t.txt", Contents(examples + "/" + target));
            Written windows;
            expectSame(folder, {"design", response, "--target", "t.txt", "-o", "f.txt"}, windows);
        }
    }
}

// Paths beyond the code page, in every way that a file is opened.
TEST(WindowsPaths, MayHaveAnyLetters) {
    const TemporaryFolder folder;
    const std::string name = "\u00FC\u0416\u97F3 speaker";
    folder.copyGolden("small48.qsr", name + ".qsr");
    const auto design = tests::RunUnderWine(
        {"tonvane-cli.exe", {"design", name + ".qsr", "-o", name + ".txt"}, folder.path()});
    EXPECT_EQ(design.exitCode, 0) << design.output;
    EXPECT_EQ(tests::ParseFilterFile(Contents(folder / (name + ".txt"))).words.size(), 35U);
    CWaveFile wave;
    ASSERT_TRUE(wave.Create(folder / (name + ".wav"), 48000, 16, 1));
    const std::vector<double> silence(4800);
    wave.Write(silence.data(), 4800);
    wave.Close();
    const auto play = tests::RunUnderWine(
        {"tonvane-cli.exe", {"play", name + ".wav", "--device", "simulated"}, folder.path()});
    EXPECT_EQ(play.exitCode, 0) << play.output;
}

}  // namespace
}  // namespace tonvane

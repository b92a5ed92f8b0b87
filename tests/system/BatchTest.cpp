// tonvane-cli -cmd, as calling tools start it.
#include <filesystem>
#include <limits>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "system/Program.h"

namespace tonvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using tests::Contents;
using Arguments = std::vector<std::string>;

// The output of a run with f.txt and t.txt as filter and target file.
void expectGoldenRun(const tests::TemporaryFolder& folder, const Arguments& arguments,
                     const tests::GoldenCase& golden, int lines) {
    const auto result = tests::RunProgram(arguments, {folder.path()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    const std::string filters = Contents(folder / "f.txt");
    EXPECT_EQ(std::ranges::count(filters, '\n'), lines);
    tests::ExpectGoldenResponse(tests::ParseFilterFile(filters).words, golden);
    EXPECT_EQ(Contents(folder / "t.txt"), Contents(tests::GoldenPath(golden.name + ".target.txt")));
}

std::string withCrLf(const std::string& text) {
    std::string out;
    for (const char c : text) {
        out += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return out;
}

TEST(Batch, TakesFilesFromWindowsAsTheyAre) {
    const tests::TemporaryFolder folder;
    folder.copyGolden("small48.qsr", "small48.qsr");
    folder.write("t.txt", withCrLf(Contents(tests::GoldenPath("tilt6.txt"))));
    folder.write("registeraddress.cfg",
                 withCrLf(Contents(tests::GoldenPath("registeraddress.cfg"))));
    // An empty rate is 48000 Hz, and capitals in the response's name do not matter.
    expectGoldenRun(folder, {"-cmd", "", "SMALL48.qsr", "qsr", R"(.\f.txt)", "t.txt", "-noprompt"},
                    tests::GoldenCases()[0], 35);
    EXPECT_THAT(tests::ParseFilterFile(Contents(folder / "f.txt")).addresses,
                ElementsAre(0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x30));
}

TEST(Batch, FindsAResponseWithCapitalsAsItIsGiven) {
    const tests::TemporaryFolder folder;
    folder.copyGolden("port44.qsr", "Port44.QSR");
    folder.copyGolden("warm3.txt", "t.txt");
    expectGoldenRun(folder, {"-cmd", "44100", "Port44.QSR", "qsr", "f.txt", "t.txt"},
                    tests::GoldenCases()[1], 7);
}

TEST(Batch, TakesATableFromAPathWithBlanks) {
    const tests::TemporaryFolder folder;
    fs::create_directory(folder / "My speakers");
    folder.copyGolden("logspaced.csv", "My speakers/log spaced.csv");
    folder.copyGolden("tilt6.txt", "t.txt");
    expectGoldenRun(folder,
                    {"-cmd", "48000", folder / "My speakers/log spaced.csv", "csv", "f.txt",
                     folder / "t.txt", "-noprompt"},
                    tests::GoldenCases()[2], 7);
}

TEST(Batch, TellsOfAnErrorAndGoesOn) {
    const struct {
        Arguments tokens;
        std::string err;  // its start
        Arguments written;
    } cases[] = {
        {{"", "no", "qsr", "f", "t"}, "Error: Failed to open speaker response file\n", {}},
        {{"", "no", "csv", "f", "t"}, "Error: Failed to process data.\n", {"t"}},
        {{"", "r.qsr", "qsr", "no/f", "t"}, "", {"t"}},
        {{"", "r.qsr", "qsr", "f", "no/t"}, "Error: Failed to save Target Response data.\n", {"f"}},
        {{"", "0.qsr", "qsr", "f", "t"}, "Warning: The design did not give numbers", {"f", "t"}},
        {{"", "r.qsr", "qsr", "", "t"}, "", {}},
        {{"", "r.qsr", "qsr", "f", ""}, "", {"f"}},
        {{"", "r.qsr", "csv", "f", "t"}, "Error: Failed to process data.\n", {"t"}},
        {{"", "", "qsr", "f", "t"}, "", {}},
        {{"48000"}, "", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.tokens));
        const tests::TemporaryFolder folder;
        folder.copyGolden("small48.qsr", "r.qsr");
        folder.write("0.qsr", tests::ResponseBytes(48000, std::vector<double>(32768)));
        Arguments arguments{"-cmd"};
        arguments.insert(arguments.end(), c.tokens.begin(), c.tokens.end());
        const auto result = tests::RunProgram(arguments, {folder.path()});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.err, testing::StartsWith(c.err));
        EXPECT_EQ(result.err.empty(), c.err.empty()) << result.err;
        std::set<std::string> expected{"0.qsr", "r.qsr"};
        expected.insert(c.written.begin(), c.written.end());
        EXPECT_EQ(folder.names(), expected);
    }
}

TEST(Batch, EndsWithAFilterFileWhateverTheRateOfTheResponse) {
    const tests::TemporaryFolder folder;
    using Range = std::numeric_limits<int32_t>;
    for (const int32_t rate : {0, 1, -48000, Range::min(), Range::max()}) {
        folder.write("r.qsr", tests::ResponseBytes(rate, tests::GoldenImpulse("small48.qsr")));
        fs::remove(folder / "f");
        const auto result =
            tests::RunProgram({"-cmd", "48000", "r.qsr", "qsr", "f", ""}, {folder.path()});
        EXPECT_EQ(result.exitCode, 0) << rate << result.err;
        EXPECT_EQ(tests::ParseFilterFile(Contents(folder / "f")).words.size(), 35U) << rate;
    }
}

}  // namespace
}  // namespace tonvane

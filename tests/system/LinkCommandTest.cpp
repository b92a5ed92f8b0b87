// tonvane-cli link and design --program against the virtual amplifier, both as processes.
#include <filesystem>

#include <gmock/gmock.h>

#include "system/AmplifierProgram.h"
#include "system/Program.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::AmplifierProgram;
using tests::Contents;
using Lines = std::vector<std::string>;

const std::string unityText = "00800000 00000000 00000000 00000000 00000000 (1, 0, 0, 0, 0)";

// The five words of section k in hexadecimal with blanks between.
std::string sectionText(const std::vector<int32_t>& words, size_t k) {
    std::string text;
    for (size_t w = 5 * k; w < 5 * k + 5; ++w) {
        char word[16];
        std::snprintf(word, sizeof word, "%s%08X", text.empty() ? "" : " ",
                      static_cast<unsigned>(words[w]));
        text += word;
    }
    return text;
}

class LinkCommand : public testing::Test {
  protected:
    tests::ProgramResult run(const AmplifierProgram& amplifier, const Lines& arguments) {
        Lines all{"link", "--port", amplifier.port()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return tests::RunProgram(all, {folder.path()});
    }
    static Lines bracketed(const Lines& inside) {
        Lines all{"write 1B Oscilator Trim: 80", "read 1A Start/Stop Period: 1 byte",
                  "write 05 System Control 2: 40"};
        all.insert(all.end(), inside.begin(), inside.end());
        all.insert(all.end(),
                   {"read 1A Start/Stop Period: 1 byte", "write 05 System Control 2: 00"});
        return all;
    }

    tests::TemporaryFolder folder;
};

TEST_F(LinkCommand, ReadsAndWritesSingleRegisters) {
    AmplifierProgram amplifier;
    EXPECT_EQ(run(amplifier, {"write", "Master Vol", "0x30"}).exitCode, 0);
    EXPECT_EQ(run(amplifier, {"write", "51", "1", "800000"}).exitCode, 0);
    EXPECT_THAT(amplifier.frames(),
                ElementsAre("write 1B Oscilator Trim: 80", "write 07 Master Vol: 30",
                            "write 1B Oscilator Trim: 80",
                            "write 51 Out: [L-L R-L]: 00000001 00800000 (1.1920929e-07, 1)"));
    EXPECT_EQ(run(amplifier, {"read", "7"}).out, "07 Master Vol: 30\n");
    EXPECT_EQ(run(amplifier, {"read", "peq coef l0"}).out, "29 PEQ Coef L0: " + unityText + "\n");
    EXPECT_EQ(run(amplifier, {"write", "29", "800000", "0", "0", "0", "0"}).exitCode, 0);
    EXPECT_EQ(amplifier.frames().back(), "  ! written while the audio runs");
    EXPECT_EQ(amplifier.stop(), 0);
}

TEST_F(LinkCommand, ProgramsAFilterFileAndReadsItBack) {
    AmplifierProgram amplifier;
    const auto result = run(amplifier, {"program", tests::GoldenPath("small48-tilt6.filter.txt")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "Wrote 7 registers, read back and compared\n");
    const Lines frames = amplifier.frames();
    ASSERT_EQ(frames.size(), 19U);
    EXPECT_EQ(frames[12], "read 29 PEQ Coef L0: 20 bytes");
    EXPECT_EQ(frames[18], "read 30 PEQ Coef R0: 20 bytes");  // where the file has the seventh

    EXPECT_EQ(run(amplifier, {"dump", "dump.dat"}).exitCode, 0);
    const std::string dump = Contents(folder / "dump.dat");
    EXPECT_EQ(std::ranges::count(dump, '\n'), 120);
    const auto records =
        tests::ParseFilterFile(Contents(tests::GoldenPath("small48-tilt6.filter.txt")));
    for (size_t k = 0; k < 7; ++k) {
        EXPECT_THAT(dump, HasSubstr("\t" + sectionText(records.words, k) + "\n"));
    }
}

TEST_F(LinkCommand, WritesTheGroupsInsideTheBracket) {
    AmplifierProgram amplifier;
    EXPECT_EQ(run(amplifier, {"crossover", "off"}).exitCode, 0);
    EXPECT_THAT(
        amplifier.frames(),
        ElementsAreArray(bracketed(
            {"write 58 BIQ for DRC1 - L0: " + unityText, "write 59 BIQ for DRC1 - L1: " + unityText,
             "write 70 DRC1 Out Weight L: 00800000 (1)", "write 5A BIQ for DRC2 - L0: " + unityText,
             "write 5B BIQ for DRC2 - L1: " + unityText,
             "write 71 DRC2 Out Weight L: 00000000 (0)"})));
    EXPECT_EQ(run(amplifier, {"drc", "2", "--threshold", "0", "--release", "5000"}).exitCode, 0);
    EXPECT_THAT(amplifier.frames(),
                ElementsAreArray(bracketed(
                    {"write 46 DRC control: 00020022",
                     "write 3E DRC2 Alpha/Omega: 0002A39B 007D5C65 (0.020617843, 0.97938216)",
                     "write 3F DRC2 Attack/Release: 000000AF FFFFFFDD "
                     "(2.0861626e-05, -4.1723251e-06)",
                     "write 43 DRC2 Atk/Rel Threshold: 08000000 07FFFFFF (1, 0.99999999)"})));
    EXPECT_EQ(run(amplifier, {"preset"}).exitCode, 0);
    EXPECT_EQ(amplifier.frames().size(), 32U + 5U);
}

TEST_F(LinkCommand, SendsADesignAsItsFilterFileHasIt) {
    AmplifierProgram amplifier;
    const Lines design{
        "design",        tests::GoldenPath("port44.qsr"), "-o", "f.txt", "--program", "--port",
        amplifier.port()};
    const auto result = tests::RunProgram(design, {folder.path()});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const Lines frames = amplifier.frames();
    ASSERT_EQ(frames.size(), 12U);
    const auto records = tests::ParseFilterFile(Contents(folder / "f.txt"));
    for (size_t k = 0; k < 7; ++k) {
        EXPECT_THAT(frames[3 + k], HasSubstr(" PEQ Coef L" + std::to_string(k) + ": " +
                                             sectionText(records.words, k)));
    }
    amplifier.stop();
    std::filesystem::remove(folder / "f.txt");
    const auto alone = tests::RunProgram(design, {folder.path()});
    EXPECT_EQ(alone.exitCode, 1);
    EXPECT_THAT(alone.err, HasSubstr("no link server answers"));
    EXPECT_EQ(tests::ParseFilterFile(Contents(folder / "f.txt")).words, records.words);
}

TEST_F(LinkCommand, RefusesBadArgumentsBeforeAnythingIsSent) {
    AmplifierProgram amplifier;
    std::string twice = Contents(tests::GoldenPath("port44-warm3.filter.txt"));
    folder.write("one-byte.txt", "0x07" + twice.substr(4));
    folder.write("twice.txt", "0x2A" + twice.substr(4));
    const std::pair<Lines, const char*> cases[] = {
        {{"read", "78"}, "78: there is no such register; the last one is 77"},
        {{"read", "55"}, "55: the register has no contents"},
        {{"read", "Volume"}, "Volume: expected a register's number"},
        {{"write", "07", "100"}, "100: expected a word of 1 to 2 hexadecimal digits"},
        {{"write", "46", "1.0"}, "1.0: expected a word"},
        {{"write", "29", "1", "2", "3", "4"}, "29: the register takes 5 words, not 4"},
        {{"program", "none.txt"}, "none.txt: cannot be opened"},
        {{"program", "one-byte.txt"}, "one-byte.txt: 07 Master Vol is no register for a filter"},
        {{"program", "twice.txt"}, "twice.txt: 2A PEQ Coef L1 stands twice"},
        {{"crossover", "9"}, "9: expected a frequency of 10 to 23999 Hz"},
        {{"crossover", "1k"}, "1k: expected a frequency in whole Hz, or off"},
        {{"drc", "1", "--rate", "1"}, "--rate: expected 8000 to 192000 Hz"},
    };
    for (const auto& [arguments, complaint] : cases) {
        const auto result = run(amplifier, arguments);
        EXPECT_EQ(result.exitCode, 1) << complaint;
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(complaint));
    }
    for (const Lines& arguments : {Lines{},
                                   {"read"},
                                   {"write", "07"},
                                   {"drc", "3"},
                                   {"read", "07", "--timeout", "0"},
                                   {"read", "07", "--port", "70000"}}) {
        EXPECT_EQ(run(amplifier, arguments).exitCode, 2) << testing::PrintToString(arguments);
    }
    EXPECT_THAT(amplifier.frames(), IsEmpty());
}

TEST_F(LinkCommand, SaysWhatAServerDidWrongAndHowMuchIsWritten) {
    const std::string filters = tests::GoldenPath("port44-warm3.filter.txt");
    const struct {
        Lines fault;
        Lines command;
        const char* complaint;
    } cases[] = {
        {{"--fault", "silent", "--after", "5"},
         {"program", filters, "--timeout", "50"},
         "at the write of 2B PEQ Coef L2; 2 of 7 registers are written, and the amplifier may"},
        {{"--fault", "closing", "--after", "20"},
         {"dump", "d"},
         "closed the connection after 0 of"},
        {{"--fault", "garbage"},
         {"program", filters},
         "all registers are written, but 29 PEQ Coef L0 does not read back as it was written"},
    };
    for (const auto& c : cases) {
        AmplifierProgram amplifier(c.fault);
        const auto result = run(amplifier, c.command);
        EXPECT_EQ(result.exitCode, 1) << c.complaint;
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(c.complaint));
    }
    EXPECT_EQ(folder.names(), std::set<std::string>{});  // no half a dump
}

TEST_F(LinkCommand, ADryRunPrintsTheFramesAndSendsNothing) {
    AmplifierProgram amplifier;
    const auto result = run(amplifier, {"--dry-run", "crossover", "off"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, testing::StartsWith("write 1B Oscilator Trim: 80\nwait 240 ms\n"
                                                "read 1A Start/Stop Period: 1 byte\n"
                                                "write 05 System Control 2: 40\nwait 23 ms\n"
                                                "write 58 BIQ for DRC1 - L0: 00800000"));
    EXPECT_THAT(result.out, testing::EndsWith("write 05 System Control 2: 00\nwait 23 ms\n"));
    for (const Lines& arguments : {Lines{"read", "29"}, {"dump", "d"}, {"watch"}}) {
        Lines dry = arguments;
        dry.emplace_back("--dry-run");
        EXPECT_EQ(run(amplifier, dry).exitCode, 0);
    }
    EXPECT_THAT(amplifier.frames(), IsEmpty());
    EXPECT_EQ(folder.names(), std::set<std::string>{});
}

TEST_F(LinkCommand, WatchingPrintsWhatHasChanged) {
    AmplifierProgram amplifier;
    const auto quiet = run(amplifier, {"watch", "--interval", "0", "--rounds", "2"});
    EXPECT_EQ(quiet.out, "Watching all registers\n");
    EXPECT_EQ(amplifier.frames().size(), 1U + 3U * 119U);
    // Answers turned over from the third round on.
    AmplifierProgram changing({"--fault", "garbage", "--after", std::to_string(1 + 2 * 119)});
    const auto result = run(changing, {"watch", "--interval", "0", "--rounds", "3"});
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 1 + 119);
    EXPECT_THAT(result.out, HasSubstr("\n07 Master Vol: 00\n"));
}

}  // namespace
}  // namespace tonvane

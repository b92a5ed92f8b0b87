// Register dumps, and filter files as the calling tool gets them and a person hands them in.
#include <gmock/gmock.h>

#include "files/FilterFile.h"
#include "files/RegisterDump.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using testing::HasSubstr;

TEST(RegisterDump, HasALineForEveryRegister) {
    const std::string text = FormatRegisterDump([&](int32_t reg, std::span<uint8_t> contents) {
        EXPECT_NE(reg, 0x55);
        for (size_t i = 0; i < contents.size(); ++i) {
            contents[i] = static_cast<uint8_t>(16 * i + static_cast<size_t>(reg) % 16);
        }
    });
    EXPECT_EQ(std::ranges::count(text, '\n'), 120);
    for (const char* line : {"00\t00\n01\t01\n", "\n20\t00102030\n", "\n3B\t0B1B2B3B 4B5B6B7B\n",
                             "\n58\t08182838 48586878 8898A8B8 C8D8E8F8 08182838\n",
                             "\n55\t\n56\t06162636\n", "\n77\t07172737\n"}) {
        EXPECT_THAT(text, HasSubstr(line));
    }
}

// The reference's, with other addresses, and read with blanks in it as well.
TEST(FilterFile, OfEitherShapeIsReadAndWrittenByteForByte) {
    const tests::TemporaryFolder folder;
    for (const tests::GoldenCase& golden : tests::GoldenCases()) {
        std::string text = tests::Contents(tests::GoldenPath(golden.name + ".filter.txt"));
        text.replace(text.find("0x29"), 4, "0x05").replace(text.find("0x2A"), 4, "0x1234567");
        std::string withBlanks = text;
        withBlanks.insert(text.find("\n0x2B"), " \t\r\n\n");
        RegisterAddressConfig config;
        config.outputFormat = text.find("0xFF") == std::string::npos ? 20 : 4;
        config.addresses = {};
        std::vector<int32_t> words;
        for (const auto& record : ReadCheckedFilterFile(folder.write("f", withBlanks))) {
            config.addresses.at(words.size() / 5) = record.address;
            words.insert(words.end(), record.words.begin(), record.words.end());
        }
        EXPECT_EQ(FormatFilterFile(words, config), text);
    }
}

TEST(FilterFile, IsRefusedWithTheLineOfWhatIsWrong) {
    const std::string zeros = " 00 00 00 00";
    const std::string section = zeros + zeros + zeros + zeros + zeros + "\n";
    std::string six;
    for (const char* address : {"0x29", "0x2A", "0x2B", "0x2C", "0x2D", "0x2E"}) {
        six += address + section;
    }
    const std::string expectAddress = "expected an address such as 0x29 and 20 or 4 bytes";
    const std::string expectWord = "expected words of four bytes up to 03 FF FF FF";
    tests::ExpectRefusals(
        {
            {"", ": the file is empty"},
            {six + "0x2F" + zeros + "\n0xFF" + zeros, ":8: the file ends before"},
            {six + "0x2F" + section + "\n0x30" + section,
             ":9: expected nothing behind the seventh"},
            {"29" + section, ":1: " + expectAddress},
            {"0x12345678" + section, ":1: " + expectAddress},
            {"0x29" + zeros + zeros + "\n", ":1: " + expectAddress},
            {"0x29" + zeros + "\n0x2A" + zeros,
             ":2: expected 0xFF and the next 4 bytes of the section"},
            {"0x29 04 00 00 00\n", ":1: " + expectWord},
            {"0x29 00 00 000 0\n", ":1: " + expectWord},
        },
        ReadCheckedFilterFile);
}

}  // namespace
}  // namespace tonvane

#include <clocale>
#include <cstdlib>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "text/TextScanner.h"

namespace tonvane {
namespace {

TEST(TextScanner, ReadsIntegersAsTheyAreWritten) {
    const struct {
        const char* text;
        std::optional<int32_t> decimal, hexadecimal;
    } integers[] = {
        {"\t-42x", -42, -66},
        {"2147483648", 2147483647, 0x47483648},
        {"-99999999999", -2147483647 - 1, 1717986919},
        {"0x2a", 0, 42},
        {"Fg", std::nullopt, 15},
        {"+", std::nullopt, std::nullopt},
    };
    for (const auto& c : integers) {
        EXPECT_EQ(TextScanner(c.text).integer(), c.decimal) << c.text;
        EXPECT_EQ(TextScanner(c.text).hexadecimal(), c.hexadecimal) << c.text;
    }
}

TEST(TextScanner, KnowsNoDecimalComma) {
    const tests::TemporaryFolder folder;
    const std::string source = folder.write(
        "source",
        "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    const std::string command =
        "localedef -c -i '" + source + "' '" + folder / "comma' >/dev/null 2>&1";
    ASSERT_NE(std::system(command.c_str()), -1);  // not 0: most categories are left out
    setenv("LOCPATH", folder.path().c_str(), 1);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr) << command;
    EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    EXPECT_EQ(TextScanner("1.5,25").real(), 1.5);
    std::setlocale(LC_NUMERIC, "C");
}

}  // namespace
}  // namespace tonvane

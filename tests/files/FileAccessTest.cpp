#include <clocale>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/FileAccess.h"
#include "files/TestFiles.h"
#include "files/TextScanner.h"

namespace tonvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;
using tests::Contents;

TEST(ReplaceFile, KeepsPermissionsAndLinks) {
    const tests::TemporaryFolder folder;
    chmod(folder.write("file", "old").c_str(), 0640);
    fs::create_symlink("file", folder / "link");
    fs::create_symlink("new", folder / "dangling");
    EXPECT_EQ(ReplaceFile(folder / "link", "one"), std::nullopt);
    EXPECT_EQ(ReplaceFile(folder / "dangling", "two"), std::nullopt);
    EXPECT_EQ(Contents(folder / "file"), "one");
    EXPECT_EQ(Contents(folder / "new"), "two");
    EXPECT_EQ(fs::status(folder / "file").permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
    EXPECT_THAT(folder.names(), ElementsAre("dangling", "file", "link", "new"));
}

TEST(ReplaceFile, ThatFailsLosesNothingAndLeavesNothingBehind) {
    const tests::TemporaryFolder folder;
    const std::string file = folder.write("file", "old");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const rlimit full{1000, unlimited.rlim_max};  // as a full disk
    for (const auto inPlace : {InPlace::never, InPlace::whenFolderRefuses}) {
        const auto reason = [&](const std::string& path) {
            return ReplaceFile(path, std::string(100000, 'x'), inPlace);
        };
        EXPECT_THAT(reason(folder.path()), Optional(HasSubstr("Is a directory")));
        EXPECT_THAT(reason(file + "/below"), Optional(HasSubstr("Not a directory")));
        EXPECT_THAT(reason(folder / "no/such"), Optional(HasSubstr("No such file")));
        EXPECT_THAT(reason("/dev/full"), Optional(HasSubstr("No space left")));
        setrlimit(RLIMIT_FSIZE, &full);
        EXPECT_THAT(reason(file), Optional(HasSubstr("too large")));
        EXPECT_THAT(reason(folder / "other"), Optional(HasSubstr("too large")));
        setrlimit(RLIMIT_FSIZE, &unlimited);
    }
    // Of several files all are replaced or none.
    for (const std::string& bad : {std::string("/dev/full"), folder / "no/such"}) {
        const std::vector<NewContents> files{{file, "new"}, {bad, "new"}, {folder / "b", "new"}};
        const auto failure = ReplaceFiles(files);
        EXPECT_TRUE(failure && failure->path == bad);
    }
    EXPECT_EQ(Contents(file), "old");
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(ReplaceFile, RespectsReadOnlyFilesAndFolders) {
    const tests::TemporaryFolder folder;
    const std::string open = folder.write("open", "old");
    const std::string closed = folder.write("closed", "old");
    chmod(open.c_str(), 0666);
    chmod(closed.c_str(), 0444);
    chmod(folder.path().c_str(), 0555);
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0);  // permissions do not bind root
    const auto denied = Optional(HasSubstr("Permission denied"));
    EXPECT_THAT(ReplaceFile(open, "new"), denied);
    EXPECT_EQ(Contents(open), "old");
    EXPECT_THAT(ReplaceFile(closed, "new", InPlace::whenFolderRefuses), denied);
    EXPECT_THAT(ReplaceFile(folder / "new", "new", InPlace::whenFolderRefuses), denied);
    EXPECT_EQ(ReplaceFile(open, "new", InPlace::whenFolderRefuses), std::nullopt);
    ASSERT_EQ(seteuid(user), 0);
    chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(Contents(open), "new");
    EXPECT_THAT(folder.names(), ElementsAre("closed", "open"));
}

TEST(ReplaceFile, TakesTheLongestFileNames) {
    const tests::TemporaryFolder folder;
    const std::string name(255, 'n');
    EXPECT_EQ(ReplaceFile(folder / name, "new"), std::nullopt);
    EXPECT_THAT(folder.names(), ElementsAre(name));
}

TEST(FindLowerCasePath, TakesTheLowerCaseOnlyIfThatFileExists) {
    const tests::TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_EQ(FindLowerCasePath("R.QSR"), "R.QSR");
    fs::create_directory("r.qsr");
    EXPECT_EQ(FindLowerCasePath("R.QSR"), "R.QSR");
    fs::remove("r.qsr");
    folder.write("r.qsr", "");
    EXPECT_EQ(FindLowerCasePath("R.QSR"), "r.qsr");
    fs::current_path(before);
}

TEST(TextScanner, ReadsNumbersAsTheyAreWritten) {
    const std::string zeros(400, '0');
    const struct {
        std::string text;
        std::optional<double> value;
        std::string rest;
    } reals[] = {
        {" \n+1.25e2,", 125.0, ","},
        {"-.5.", -0.5, "."},
        {"4.9406564584124654e-324", std::nextafter(0.0, 1.0), ""},
        {"1e999", HUGE_VAL, ""},
        {"-1" + zeros + "e-5", -HUGE_VAL, ""},
        {"." + zeros + "1e+5", 0.0, ""},
        {"0." + zeros + "1", 0.0, ""},
        {".", std::nullopt, ""},
        {"inf", std::nullopt, "inf"},
    };
    for (const auto& c : reals) {
        TextScanner scanner(c.text);
        EXPECT_EQ(scanner.real(), c.value) << c.text;
        EXPECT_EQ(scanner.restOfLine(), c.rest) << c.text;
    }
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
    ASSERT_EQ(tests::MakeCommaLocale(folder.path()), std::nullopt);
    setenv("LOCPATH", folder.path().c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, tests::commaLocale), nullptr);
    EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    EXPECT_EQ(TextScanner("1.5,25").real(), 1.5);
    std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace tonvane

#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileAccess.h"
#include "support/Files.h"

namespace tonvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;
using tests::Contents;

std::function<void()> whenOnDisk;
std::string watched, seenAtTheEnd;

TEST(ReplaceFile, KeepsOwnerPermissionsAndLinksAndTakesTheLongestNames) {
    const tests::TemporaryFolder folder;
    const uid_t owner = geteuid() == 0 ? 65534 : geteuid();
    ASSERT_EQ(chown(folder.write("file", "old").c_str(), owner, getegid()), 0);
    chmod((folder / "file").c_str(), 0640);
    fs::create_symlink("file", folder / "link");
    fs::create_symlink("new", folder / "dangling");
    EXPECT_EQ(ReplaceFile(folder / "link", "one"), std::nullopt);
    EXPECT_EQ(ReplaceFile(folder / "dangling", "two"), std::nullopt);
    const std::string longest(255, 'n');
    EXPECT_EQ(ReplaceFile(folder / longest, "three"), std::nullopt);
    EXPECT_EQ(Contents(folder / "file"), "one");
    EXPECT_EQ(Contents(folder / "new"), "two");
    struct stat now {};
    stat((folder / "file").c_str(), &now);
    EXPECT_EQ(now.st_uid, owner);
    EXPECT_EQ(now.st_mode & 07777, 0640U);
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
    EXPECT_THAT(folder.names(), ElementsAre("dangling", "file", "link", "new", longest));
}

TEST(File, IsTheSameUnderAnotherName) {
    const tests::TemporaryFolder folder;
    folder.write("file", "");
    fs::create_hard_link(folder / "file", folder / "hard");
    fs::create_symlink("new", folder / "dangling");
    fs::create_directory_symlink(".", folder / "around");
    EXPECT_TRUE(IsSameFile(folder / "file", folder / "hard"));
    EXPECT_TRUE(IsSameFile(folder / "new", folder / "dangling"));
    EXPECT_TRUE(IsSameFile(folder / "new", folder / "around/new"));
    EXPECT_FALSE(IsSameFile(folder / "new", folder / "file"));
}

TEST(ReplaceFile, ThatFailsLosesNothingAndLeavesNothingBehind) {
    const tests::TemporaryFolder folder;
    const std::string file = folder.write("file", "old");
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
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        EXPECT_THAT(reason("/dev/fd/" + std::to_string(ends[1])),
                    Optional(HasSubstr("Broken pipe")));
        close(ends[1]);
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

TEST(ReplaceFiles, AreAllReplacedOrNoneWhateverComesBetween) {
    const tests::TemporaryFolder folder;
    const std::string last = folder.write("last", "old");
    watched = folder.write("first", "old");
    const std::vector<NewContents> files{
        {watched, "new"}, {folder / "fresh", "new"}, {last, "new"}};
    whenOnDisk = [&] {
        fs::remove_all(last);
        fs::create_directories(last + "/full");
    };
    const auto failure = ReplaceFiles(files);
    EXPECT_TRUE(failure && failure->path == last);
    EXPECT_EQ(Contents(watched), "old");
    EXPECT_THAT(folder.names(), ElementsAre("first", "last"));
    fs::remove_all(last);

    std::signal(SIGTERM, [](int /*signal*/) { seenAtTheEnd = Contents(watched); });
    whenOnDisk = [] { std::raise(SIGTERM); };
    EXPECT_FALSE(ReplaceFiles(files));
    whenOnDisk = {};
    std::signal(SIGTERM, SIG_DFL);
    EXPECT_EQ(seenAtTheEnd, "new");
    EXPECT_THAT(folder.names(), ElementsAre("first", "fresh", "last"));
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

}  // namespace
}  // namespace tonvane

// In the place of the C library's.
extern "C" int fsync(int /*descriptor*/) {
    if (tonvane::whenOnDisk) {
        tonvane::whenOnDisk();
    }
    return 0;
}

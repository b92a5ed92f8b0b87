// The installer, without its pages, as the user who is there.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "files/TestFiles.h"
#include "system/wine/Wine.h"

namespace tonvane {
namespace {

namespace fs = std::filesystem;
using tests::RunUnderWine;

const std::string uninstallKey =
    R"(HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tonvane)";

// A value of the entry in the list of programs; empty without it.
std::string entry(const std::string& name) {
    const auto query = RunUnderWine({"reg", {"query", uninstallKey, "/v", name}});
    const size_t found = query.output.find("REG_SZ");
    if (query.exitCode != 0 || found == std::string::npos) {
        return {};
    }
    const size_t start = query.output.find_first_not_of(' ', found + 6);
    return query.output.substr(start, query.output.find('\n', start) - start);
}

// The files of this system behind a path on drive C.
fs::path onDisk(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return fs::path(std::getenv("WINEPREFIX")) / "drive_c" / path.substr(3);
}

// Everything of the user's with the program's name, but for the uninstaller at work.
std::set<std::string> traces() {
    std::set<std::string> found;
    for (const auto& file : fs::recursive_directory_iterator(onDisk(R"(C:\users)"))) {
        const std::string name = file.path().filename().string();
        if (name == "Tonvane" || name.starts_with("Tonvane.") || name == "tonvane-cli.exe") {
            found.insert(name);
        }
    }
    return found;
}

TEST(Installer, PutsTheProgramsInTheUsersFolderAndTakesThemAwayAgain) {
    ASSERT_EQ(RunUnderWine({"../Tonvane-setup.exe", {"/S"}}).exitCode, 0);
    EXPECT_EQ(traces(),
              (std::set<std::string>{"Tonvane", "Tonvane.exe", "Tonvane.lnk", "tonvane-cli.exe"}));
    const std::string place = entry("InstallLocation");
    ASSERT_NE(place, "");
    EXPECT_NE(place.find(R"(\AppData\Local\)"), std::string::npos) << place;
    EXPECT_EQ(entry("DisplayName"), "Tonvane");

    const tests::TemporaryFolder folder;
    fs::copy_file(onDisk(place) / "examples" / "small-speaker.qsr", folder / "speaker.qsr");
    const auto design = RunUnderWine({(onDisk(place) / "tonvane-cli.exe").string(),
                                      {"design", "speaker.qsr", "-o", "f.txt"},
                                      folder.path()});
    EXPECT_EQ(design.exitCode, 0) << design.output;

    // What the user has put there stays.
    const fs::path kept = onDisk(place) / "mine.txt";
    fs::copy_file(folder / "f.txt", kept);
    ASSERT_EQ(RunUnderWine({(onDisk(place) / "uninstall.exe").string(), {"/S"}}).exitCode, 0);
    // The uninstaller goes on as a copy of itself.
    EXPECT_TRUE(tests::Await([] { return entry("InstallLocation").empty(); }));
    EXPECT_EQ(traces(), std::set<std::string>{"Tonvane"});
    EXPECT_TRUE(fs::exists(kept));
    fs::remove_all(onDisk(place));
}

}  // namespace
}  // namespace tonvane

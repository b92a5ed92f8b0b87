// Tonvane.exe under Wine on a screen, in a folder of its own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "system/Program.h"
#include "system/window/Screen.h"
#include "system/wine/Wine.h"

namespace tonvane::tests {

// A control as a program outside sees it; the place in pixels of the dialog's client area.
struct WindowControl {
    int id;
    bool isShown;
    bool isEnabled;
    ScreenPoint corner;
    ScreenPoint size;
};

// Whether a server of the prefix is at work. The first program of one decides on which screen all
// others get their windows, so each screen waits for the last one's server to go.
inline bool HasWineServer() {
    const char* prefix = std::getenv("WINEPREFIX");
    const std::string variable = std::string("WINEPREFIX=") + (prefix == nullptr ? "" : prefix);
    std::error_code ignored;
    for (const auto& process : std::filesystem::directory_iterator("/proc", ignored)) {
        const std::string folder = process.path();
        if (Contents(folder + "/comm").starts_with("wineserver") &&
            Contents(folder + "/environ").find(variable + std::string(1, '\0')) !=
                std::string::npos) {
            return true;
        }
    }
    return false;
}

class WineDesk : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(screen.isUp());
        ASSERT_TRUE(Await([] { return !HasWineServer(); }));
    }

    // Leaves a picture of the screen beside the test program when something went wrong.
    void TearDown() override {
        if (HasFailure()) {
            const auto* info = testing::UnitTest::GetInstance()->current_test_info();
            std::string name = std::string(info->test_suite_name()) + "." + info->name() + ".png";
            std::ranges::replace(name, '/', '-');
            screen.save(name);
        }
    }

    // Starts the program in the folder and waits for its window.
    void start(const std::vector<std::string>& arguments, const std::string& title = "Tonvane",
               std::map<std::string, std::string> environment = {}) {
        environment["DISPLAY"] = screen.display();
        program = std::make_unique<Process>(UnderWine({.program = "Tonvane.exe",
                                                       .arguments = arguments,
                                                       .folder = folder.path(),
                                                       .environment = environment,
                                                       .output = folder / "printed"}));
        window = screen.awaitFocused(title);
        ASSERT_NE(window, "") << Contents(folder / "printed");
    }

    // Runs a program of Wine's own.
    std::string tool(const std::string& name, const std::vector<std::string>& words) {
        return RunUnderWine({.program = name,
                             .arguments = words,
                             .environment = {{"DISPLAY", screen.display()}}})
            .output;
    }

    // What the probe prints of the window of a title, or does to it.
    std::string probe(const std::string& title, std::vector<std::string> words) {
        words.insert(words.begin(), title);
        const WineResult result = RunUnderWine({.program = "window-probe.exe",
                                                .arguments = words,
                                                .environment = {{"DISPLAY", screen.display()}}});
        EXPECT_EQ(result.exitCode, 0) << testing::PrintToString(words);
        return result.output;
    }
    std::string probe(const std::vector<std::string>& words) { return probe("Tonvane", words); }

    std::vector<WindowControl> controls() {
        std::istringstream lines(probe({"controls"}));
        std::vector<WindowControl> all;
        char shown = ' ';
        char enabled = ' ';
        for (WindowControl c{}; lines >> c.id >> shown >> enabled >> c.corner.x >> c.corner.y >>
                                c.size.x >> c.size.y;) {
            c.isShown = shown == 'V';
            c.isEnabled = enabled == 'E';
            all.push_back(c);
        }
        return all;
    }

    // The client area's upper left corner on the screen.
    ScreenPoint corner() {
        ScreenPoint at{};
        std::istringstream(probe({"client"})) >> at.x >> at.y;
        return at;
    }

    Screen screen;
    TemporaryFolder folder;
    std::unique_ptr<Process> program;
    std::string window;
};

}  // namespace tonvane::tests

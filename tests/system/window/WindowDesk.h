// A program with a window on a screen, in a folder of its own.
#pragma once

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "system/Program.h"
#include "system/window/Screen.h"

namespace tonvane::tests {

class WindowDesk : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(screen.isUp()); }

    // Leaves a picture of the screen beside the test program when something went wrong.
    void TearDown() override {
        if (HasFailure()) {
            const auto* info = testing::UnitTest::GetInstance()->current_test_info();
            screen.save(std::string(info->test_suite_name()) + "." + info->name() + ".png");
        }
    }

    // Starts the program in the folder; its window when it is there.
    void start(const std::string& path, const std::vector<std::string>& arguments,
               const std::string& title = "Tonvane") {
        std::vector<std::string> all{path};
        all.insert(all.end(), arguments.begin(), arguments.end());
        program = std::make_unique<Process>(
            ProcessStart{.arguments = all,
                         .folder = folder.path(),
                         .environment = {{"DISPLAY", screen.display()},
                                         {"HOME", folder.path()},
                                         {"XDG_STATE_HOME", folder.path() + "/state"},
                                         {"XDG_RUNTIME_DIR", folder.path()},
                                         {"QT_QPA_PLATFORM", "xcb"},
                                         {"QT_STYLE_OVERRIDE", "Fusion"},
                                         {"LSAN_OPTIONS", "suppressions=" TONVANE_WINDOW_LEAKS
                                                          ":print_suppressions=0"}},
                         .output = folder / "printed"});
        window = screen.awaitFocused(title);
        ASSERT_NE(window, "") << Contents(folder / "printed");
    }

    Screen screen;
    TemporaryFolder folder;
    std::unique_ptr<Process> program;
    std::string window;
};

}  // namespace tonvane::tests

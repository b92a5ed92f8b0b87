// The ways to leave the dialog, what each ends with, and how a test goes them.
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include <gmock/gmock.h>

#include "system/window/Screen.h"

namespace tonvane::tests {

struct Ending {
    enum class By { button, box, escape };

    const char* name;
    bool prompts;  // whether the start asks for the question on leaving
    By by;
    const char* answer;  // pressed at the question; null where none is to come
    int exitCode;
    bool writes;  // the filter file
};

// What CTest prints of the parameter.
inline std::ostream& operator<<(std::ostream& out, const Ending& ending) {
    return out << ending.name;
}

inline auto EveryEnding() {
    using By = Ending::By;
    return testing::Values(Ending{"CloseWithOk", true, By::button, "Return", 0, true},
                           Ending{"CloseWithCancel", true, By::button, "Escape", 0, false},
                           Ending{"CloseBox", false, By::box, nullptr, 2, true},
                           Ending{"CloseBoxWithOk", true, By::box, "Return", 2, true},
                           Ending{"CloseBoxWithCancel", true, By::box, "Escape", 2, false},
                           Ending{"Escape", true, By::escape, nullptr, 2, false});
}

inline std::string EndingName(const testing::TestParamInfo<Ending>& instance) {
    return instance.param.name;
}

// Leaves the window; `clickClose` clicks its Close button.
inline void LeaveBy(const Ending& ending, Screen& screen, const std::string& window,
                    const std::function<void()>& clickClose) {
    switch (ending.by) {
        case Ending::By::button:
            clickClose();
            break;
        case Ending::By::box:
            screen.clickCloseBox(window);
            break;
        case Ending::By::escape:
            screen.key({"Escape"});
            break;
    }
    if (ending.answer != nullptr) {
        ASSERT_NE(screen.awaitFocused("Prompt"), "");
        screen.key({ending.answer});
    }
}

}  // namespace tonvane::tests

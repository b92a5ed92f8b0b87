// tonvane-lab on a screen, with the places of its controls.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "system/window/WindowDesk.h"

namespace tonvane::tests {

class Lab : public WindowDesk {
  protected:
    void startLab(std::vector<std::string> arguments) {
        const std::string layout = folder / "layout";
        arguments.insert(arguments.begin(), {"--layout", layout});
        start(TONVANE_LAB, arguments, "Tonvane Lab");
        ASSERT_TRUE(Await([&] { return Contents(layout).ends_with("\n"); }));
        std::istringstream lines(Contents(layout));
        int id = 0;
        for (ScreenPoint at{}, size{}; lines >> id >> at.x >> at.y >> size.x >> size.y;) {
            middles[id] = {at.x + size.x / 2, at.y + size.y / 2};
            sizes[id] = size;
        }
    }
    void click(int id) { screen.click(window, middles.at(id)); }
    void type(int id, const std::string& text) {
        click(id);
        screen.key({"ctrl+a"});
        screen.type(text);
    }
    // What a control looks like.
    std::string look(int id) {
        const ScreenPoint corner = screen.cornerOf(window);
        const ScreenPoint size = sizes.at(id);
        return screen.picture().part(
            {corner.x + middles.at(id).x - size.x / 2, corner.y + middles.at(id).y - size.y / 2},
            size);
    }
    // In a file dialog.
    void choose(const char* title, const std::string& path) {
        ASSERT_NE(screen.awaitFocused(title), "");
        screen.type(path);
        screen.key({"Return"});
        ASSERT_TRUE(screen.awaitNoWindow(title));
    }

    static constexpr int openWave = 4000;  // controls of this window alone
    static constexpr int deviceButton = 4001;
    std::map<int, ScreenPoint> middles;
    std::map<int, ScreenPoint> sizes;
};

}  // namespace tonvane::tests

#include "system/window/Screen.h"

#include <cstdio>
#include <sstream>

#include <unistd.h>

namespace tonvane::tests {

namespace {

// Two numbers somewhere in what xdotool prints.
ScreenPoint pairIn(const std::string& text, const std::string& form) {
    ScreenPoint pair{};
    const size_t at = text.find(form.substr(0, form.find('=')));
    std::sscanf(text.c_str() + std::min(at, text.size()), form.c_str(), &pair.x, &pair.y);
    return pair;
}

}  // namespace

int ScreenPicture::count(uint32_t color, ScreenPoint corner, ScreenPoint size) const {
    int found = 0;
    for (int y = std::max(corner.y, 0); y < std::min(corner.y + size.y, height_); ++y) {
        for (int x = std::max(corner.x, 0); x < std::min(corner.x + size.x, width_); ++x) {
            const size_t at = 3 * static_cast<size_t>(y * width_ + x);
            uint32_t pixel = 0;
            for (size_t i = 0; i < 3; ++i) {
                pixel = pixel << 8U | static_cast<uint8_t>(pixels_[at + i]);
            }
            found += pixel == color ? 1 : 0;
        }
    }
    return found;
}

std::string ScreenPicture::part(ScreenPoint corner, ScreenPoint size) const {
    std::string pixels;
    for (int y = std::max(corner.y, 0); y < std::min(corner.y + size.y, height_); ++y) {
        pixels += pixels_.substr(3 * static_cast<size_t>(y * width_ + corner.x),
                                 3 * static_cast<size_t>(size.x));
    }
    return pixels;
}

Screen::Screen() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return;
    }
    server_ = std::make_unique<Process>(
        ProcessStart{.arguments = {"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                                   "1400x1000x24", "-dpi", "96", "-nolisten", "tcp", "-noreset"},
                     .keptOpen = ends[1]});
    close(ends[1]);
    std::string number;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) {
        number += c;
    }
    close(ends[0]);
    display_ = ":" + number;
    manager_ = std::make_unique<Process>(
        ProcessStart{.arguments = {"openbox"},
                     .environment = {{"DISPLAY", display_}, {"HOME", folder_.path()}}});
    isUp_ = !number.empty() && Await([&] {
        return run({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") !=
               std::string::npos;
    });
}

std::string Screen::run(const std::vector<std::string>& arguments) {
    const std::string output = folder_ / "output";
    unlink(output.c_str());
    Process process(
        {.arguments = arguments, .environment = {{"DISPLAY", display_}}, .output = output});
    process.exitCode();
    return Contents(output);
}

std::string Screen::xdotool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "xdotool");
    return run(arguments);
}

std::string Screen::awaitWindow(const std::string& title) {
    std::string id;
    const bool isThere = Await([&] {
        std::istringstream lines(xdotool({"search", "--onlyvisible", "--name", "^" + title + "$"}));
        return static_cast<bool>(std::getline(lines, id)) && !id.empty();
    });
    return isThere ? id : std::string();
}

bool Screen::awaitNoWindow(const std::string& title) {
    return Await([&] {
        return xdotool({"search", "--onlyvisible", "--name", "^" + title + "$"}).empty();
    });
}

std::string Screen::awaitFocused(const std::string& title, const std::string& other) {
    std::string id;
    const bool isThere = Await([&] {
        std::istringstream lines(xdotool({"getactivewindow"}));
        if (!std::getline(lines, id) || id == other) {
            return false;
        }
        return xdotool({"getwindowname", id}) == title + "\n";
    });
    return isThere ? id : std::string();
}

void Screen::moveTo(const std::string& window, ScreenPoint at) {
    std::vector<std::string> arguments{"mousemove", std::to_string(at.x), std::to_string(at.y)};
    if (!window.empty()) {
        arguments.insert(arguments.begin() + 1, {"--window", window});
    }
    xdotool(arguments);
}

void Screen::click(const std::string& window, ScreenPoint at) {
    moveTo(window, at);
    xdotool({"click", "1"});
}

void Screen::drag(const std::string& window, ScreenPoint from, ScreenPoint to) {
    moveTo(window, from);
    xdotool({"mousedown", "1"});
    moveTo(window, {(from.x + to.x) / 2, (from.y + to.y) / 2});
    moveTo(window, to);
    xdotool({"mouseup", "1"});
}

void Screen::key(const std::vector<std::string>& keys) {
    std::vector<std::string> arguments{"key", "--delay", "40"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    xdotool(arguments);
}

void Screen::type(const std::string& text) {
    xdotool({"type", "--delay", "10", text});
}

// xdotool's own answer counts the manager's frame twice.
ScreenPoint Screen::cornerOf(const std::string& window) {
    moveTo(window, {0, 0});
    return pairIn(xdotool({"getmouselocation", "--shell"}), "X=%d\nY=%d");
}

void Screen::clickCloseBox(const std::string& window) {
    const ScreenPoint size =
        pairIn(xdotool({"getwindowgeometry", "--shell", window}), "WIDTH=%d\nHEIGHT=%d");
    const ScreenPoint corner = cornerOf(window);
    click("", {corner.x + size.x - 10, corner.y - 10});  // the rightmost box of the frame
}

ScreenPicture Screen::picture() {
    const std::string file = folder_ / "screen.ppm";
    run({"import", "-silent", "-window", "root", "-depth", "8", file});
    const std::string contents = Contents(file);
    int width = 0;
    int height = 0;
    int head = 0;
    std::sscanf(contents.c_str(), "P6 %d %d 255%n", &width, &height, &head);
    return {width, height, contents.substr(static_cast<size_t>(head) + 1)};
}

std::string Screen::png(ScreenPoint corner, ScreenPoint size) {
    const std::string file = folder_ / "part.png";
    std::string part = std::to_string(size.x) + "x" + std::to_string(size.y);
    part += "+" + std::to_string(corner.x) + "+" + std::to_string(corner.y);
    run({"import", "-silent", "-window", "root", "-crop", part, "+repage", file});
    return Contents(file);
}

void Screen::save(const std::string& path) {
    run({"import", "-silent", "-window", "root", path});
}

}  // namespace tonvane::tests

// A screen of its own for a test, with a window manager, a mouse and a keyboard.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "files/TestFiles.h"
#include "system/window/Process.h"

namespace tonvane::tests {

struct ScreenPoint {
    int x;
    int y;
};

// What is on the screen.
class ScreenPicture {
  public:
    ScreenPicture(int width, int height, std::string pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {}

    // Pixels of exactly this colour, 0xRRGGBB, in a rectangle.
    [[nodiscard]] int count(uint32_t color, ScreenPoint corner, ScreenPoint size) const;

    // The pixels of a rectangle.
    [[nodiscard]] std::string part(ScreenPoint corner, ScreenPoint size) const;

  private:
    int width_;
    int height_;
    std::string pixels_;  // three bytes each
};

class Screen {
  public:
    Screen();

    // Whether server and window manager are there.
    [[nodiscard]] bool isUp() const { return isUp_; }

    // For programs that are to appear here.
    [[nodiscard]] const std::string& display() const { return display_; }

    // A window of this title that can be seen, once it is there; empty if it does not come.
    std::string awaitWindow(const std::string& title);

    // Whether no such window is left.
    bool awaitNoWindow(const std::string& title);

    // The same once it gets the keys. `other`: a window of this title that is not meant.
    std::string awaitFocused(const std::string& title, const std::string& other = "");

    // The mouse, from a window's upper left corner or, without one, the screen's; the keyboard.
    void moveTo(const std::string& window, ScreenPoint at);
    void click(const std::string& window, ScreenPoint at);
    void clickCloseBox(const std::string& window);
    void drag(const std::string& window, ScreenPoint from, ScreenPoint to);
    void key(const std::vector<std::string>& keys);
    void type(const std::string& text);

    ScreenPoint cornerOf(const std::string& window);
    ScreenPicture picture();

    // A rectangle of the screen as the bytes of a PNG file.
    std::string png(ScreenPoint corner, ScreenPoint size);

    // Keeps the screen as a picture for people.
    void save(const std::string& path);

  private:
    std::string run(const std::vector<std::string>& arguments);
    std::string xdotool(std::vector<std::string> arguments);

    TemporaryFolder folder_;
    std::string display_;
    std::unique_ptr<Process> server_;
    std::unique_ptr<Process> manager_;
    bool isUp_ = false;
};

}  // namespace tonvane::tests

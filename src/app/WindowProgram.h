// A program with a window: from its arguments to its exit code.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include "link/AmpLink.h"
#include "tuning/ProgramValues.h"
#include "ui/qt/DialogWindow.h"

namespace tonvane {

struct WindowOptions {
    uint16_t linkPort = CAmpLink::defaultPort;
    std::string layoutFile{};      // gets the places of the controls, for whoever drives the window
    bool simulatedDevice = false;  // on the device menu as well
    FitMethod fitMethod = FitMethod::iterated;
    bool followsMouse = false;  // ProgramValues
};

// Runs a batch start ("-cmd ...") or a plain one in the window that `makeWindow` makes, to its end.
// The exit code is that of the window: 0 for Close, 2 when it was left by Escape or its close box.
int RunWindowProgram(std::span<const std::string> arguments, const WindowOptions& options,
                     const std::function<std::unique_ptr<DialogWindow>()>& makeWindow);

}  // namespace tonvane

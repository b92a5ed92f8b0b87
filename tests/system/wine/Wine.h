// Programs built for Windows, under Wine.
//
// The environment says with what: TONVANE_WINE is the command that starts a Windows program ("wine"
// without it), TONVANE_WINDOWS_BIN the folder that the programs were built into, WINEPREFIX the
// prefix to use. tools/run-windows-tests sets them. All tests share the prefix: they run one after
// another, and each undoes what it has left in the registry.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "system/window/Process.h"

namespace tonvane::tests {

// The path of a program that was built for Windows, such as "tonvane-cli.exe".
std::string WindowsProgram(const std::string& name);

struct WineStart {
    std::string program;  // for WindowsProgram, an absolute path, or a program of Wine's: "reg"
    std::vector<std::string> arguments{};
    std::string folder{};  // the working directory; empty for the test's
    std::map<std::string, std::string> environment{};  // DISPLAY among them for one with a window
    std::string output{};                              // file for what it prints; empty for nowhere
};

// What starts it as a Process.
ProcessStart UnderWine(const WineStart& start);

struct WineResult {
    std::optional<int> exitCode;  // nothing for a program that did not end by itself
    std::string output;           // of both streams, with LF line ends
};

// Runs it to its end; `output` of the start is not looked at.
WineResult RunUnderWine(WineStart start);

}  // namespace tonvane::tests

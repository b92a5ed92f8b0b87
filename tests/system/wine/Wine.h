// Windows programs under Wine.
//
// The environment says what runs them: TONVANE_WINE a program that takes a Windows program and its
// arguments (wine), TONVANE_WINE_PREFIX the folder that Wine keeps its Windows in, and
// TONVANE_WINDOWS_PROGRAMS the folder of the programs. All these are set by
// tools/run-windows-tests.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "system/window/Process.h"

namespace tonvane::tests {

std::string WindowsProgram(const std::string& name);

ProcessStart WineStart(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& folder, std::map<std::string, std::string> environment,
                       const std::string& output);

}  // namespace tonvane::tests

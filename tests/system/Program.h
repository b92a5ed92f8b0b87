// Runs the command line program as a process of its own.
#pragma once

#include <string>
#include <vector>

namespace tonvane::tests {

struct ProgramResult {
    int exitCode;  // -1 for a program that was ended by a signal, such as after 60 seconds
    std::string out;
    std::string err;
};

struct ProgramSetting {
    std::string folder;          // the working directory
    std::string localeFolder{};  // of the locale with a decimal comma, to use it
    bool onOneCore = false;
};

ProgramResult RunProgram(const std::vector<std::string>& arguments, const ProgramSetting& setting);

}  // namespace tonvane::tests

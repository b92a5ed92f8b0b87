#include "system/wine/Wine.h"

#include <cstdlib>

#include "files/TestFiles.h"

namespace tonvane::tests {

namespace {

std::string setting(const char* variable, const std::string& otherwise) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

}  // namespace

std::string WindowsProgram(const std::string& name) {
    return setting("TONVANE_WINDOWS_BIN", TONVANE_WINDOWS_BIN) + "/" + name;
}

ProcessStart UnderWine(const WineStart& start) {
    const bool isOurs = start.program.ends_with(".exe") && !start.program.starts_with('/');
    ProcessStart process{
        {setting("TONVANE_WINE", "wine"), isOurs ? WindowsProgram(start.program) : start.program},
        start.folder,
        start.environment,
        start.output};
    process.arguments.insert(process.arguments.end(), start.arguments.begin(),
                             start.arguments.end());
    process.environment.try_emplace("WINEDEBUG", "-all");
    process.environment.try_emplace("LC_ALL", "C.UTF-8");  // of the file names
    return process;
}

WineResult RunUnderWine(WineStart start) {
    const TemporaryFolder folder;
    start.output = folder / "output";
    Process process(UnderWine(start));
    WineResult result{process.exitCode(), {}};
    for (const char c : Contents(start.output)) {
        if (c != '\r') {
            result.output += c;
        }
    }
    return result;
}

}  // namespace tonvane::tests

#include "system/wine/Wine.h"

#include <cstdlib>

namespace tonvane::tests {

namespace {

std::string variable(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

}  // namespace

std::string WindowsProgram(const std::string& name) {
    return variable("TONVANE_WINDOWS_PROGRAMS", ".") + "/" + name;
}

ProcessStart WineStart(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& folder, std::map<std::string, std::string> environment,
                       const std::string& output) {
    std::vector<std::string> all{variable("TONVANE_WINE", "wine"), program};
    all.insert(all.end(), arguments.begin(), arguments.end());
    environment["WINEPREFIX"] = variable("TONVANE_WINE_PREFIX", "");
    environment["WINEDEBUG"] = "-all";
    return {.arguments = all, .folder = folder, .environment = environment, .output = output};
}

}  // namespace tonvane::tests

#include "tuning/ProgramValues.h"

#include <filesystem>

namespace tonvane {

std::string WorkingDirectory() {
    std::error_code ignored;
    return std::filesystem::current_path(ignored).string() + "/";
}

}  // namespace tonvane

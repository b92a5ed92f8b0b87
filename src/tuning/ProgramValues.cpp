#include "tuning/ProgramValues.h"

#include <filesystem>

#include "platform/FileAccess.h"

namespace tonvane {

std::string WorkingDirectory() {
    std::error_code ignored;
    return TextOf(std::filesystem::current_path(ignored)) + "/";
}

}  // namespace tonvane

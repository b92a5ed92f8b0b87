#include "tuning/ProgramValues.h"

#include <filesystem>

#include "platform/FileAccess.h"

namespace tonvane {

std::string WorkingDirectory() {
    std::error_code error;
    const std::string folder = TextOf(std::filesystem::current_path(error));
    return (error ? "." : folder) + "/";
}

}  // namespace tonvane

#include "files/InputError.h"

namespace tonvane {

InputError::InputError(const std::string& file, const std::string& complaint)
    : std::runtime_error(file + ": " + complaint) {}

InputError::InputError(const std::string& file, int line, const std::string& complaint)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " + complaint) {}

}  // namespace tonvane

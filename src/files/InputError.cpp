#include "files/InputError.h"

#include <optional>
#include <utility>

#include "platform/FileAccess.h"

namespace tonvane {

namespace {

std::string expected(const std::string& path, std::optional<std::string> contents) {
    if (!contents) {
        throw InputError(path, "cannot be opened");
    }
    return std::move(*contents);
}

}  // namespace

InputError::InputError(const std::string& file, const std::string& complaint)
    : std::runtime_error(file + ": " + complaint) {}

InputError::InputError(const std::string& file, int line, const std::string& complaint)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " + complaint) {}

std::string ReadInputText(const std::string& path) {
    return expected(path, ReadTextFile(path));
}

std::string ReadInputBytes(const std::string& path, size_t most) {
    return expected(path, ReadBinaryFile(path, most));
}

}  // namespace tonvane

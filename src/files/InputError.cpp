#include "files/InputError.h"

#include <optional>
#include <utility>

#include "platform/FileAccess.h"

namespace tonvane {

namespace {

std::string expected(const std::string& path, std::optional<std::string> contents,
                     const ReadFault& fault) {
    if (!contents) {
        throw InputError(path,
                         fault.wasOpened ? "cannot be read: " + fault.reason : "cannot be opened");
    }
    return std::move(*contents);
}

}  // namespace

InputError::InputError(const std::string& file, const std::string& complaint)
    : std::runtime_error(file + ": " + complaint) {}

InputError::InputError(const std::string& file, int line, const std::string& complaint)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " + complaint) {}

std::string ReadInputText(const std::string& path) {
    ReadFault fault;
    auto text = ReadTextFile(path, &fault);
    return expected(path, std::move(text), fault);
}

std::string ReadInputBytes(const std::string& path, size_t most) {
    ReadFault fault;
    auto bytes = ReadBinaryFile(path, most, &fault);
    return expected(path, std::move(bytes), fault);
}

}  // namespace tonvane

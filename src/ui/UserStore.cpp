#include "ui/UserStore.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/FileAccess.h"
#include "text/WholeNumbers.h"

namespace tonvane {

namespace {

constexpr const char* section = "[Recent File List]\n";

// An absolute path in a variable of the environment, as the XDG directories have to be.
std::string folderOf(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

}  // namespace

FileUserStore::FileUserStore(const std::string& path) : path_(path) {
    ReadFault fault;
    const auto contents = ReadTextFile(path, &fault);
    if (!contents && !fault.isMissing) {
        path_.clear();  // what cannot be read is not to be written over
    }
    std::string_view rest = contents ? std::string_view(*contents) : std::string_view();
    while (!rest.empty()) {
        const size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const size_t equals = line.find('=');
        if (equals != std::string_view::npos && equals > 0) {
            values_[std::string(line.substr(0, equals))] = line.substr(equals + 1);
        }
    }
}

std::optional<uint32_t> FileUserStore::number(const std::string& name) const {
    return ParseWhole<uint32_t>(text(name).value_or(""));
}

std::optional<std::string> FileUserStore::text(const std::string& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FileUserStore::setNumber(const std::string& name, uint32_t value) {
    values_[name] = std::to_string(value);
}

void FileUserStore::setText(const std::string& name, const std::string& value) {
    if (value.find_first_of("\r\n") == std::string::npos) {
        values_[name] = value;
    } else {
        remove(name);
    }
}

void FileUserStore::remove(const std::string& name) {
    values_.erase(name);
}

void FileUserStore::commit() {
    if (path_.empty()) {
        return;
    }
    std::string contents = section;
    for (const auto& [name, value] : values_) {
        contents.append(name).append("=").append(value).append("\n");
    }
    std::error_code ignored;
    std::filesystem::create_directories(PathOf(path_).parent_path(), ignored);
    ReplaceFile(path_, contents);
}

std::string UserStorePath() {
    std::string folder = folderOf("XDG_STATE_HOME");
    if (folder.empty()) {
        folder = folderOf("HOME");
        if (folder.empty()) {
            return {};
        }
        folder += "/.local/state";
    }
    return folder + "/tonvane/recent-files";
}

}  // namespace tonvane

#include "app/OutputFiles.h"

#include <algorithm>
#include <filesystem>

#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "text/Ascii.h"

namespace tonvane {

namespace fs = std::filesystem;

void PrepareOutputs(const std::vector<std::string>& outputs, std::vector<std::string> inputs) {
    for (const std::string& output : outputs) {
        std::error_code ignored;
        const fs::path place = PathOf(output);
        const bool special = fs::exists(place, ignored) && !fs::is_regular_file(place, ignored);
        const bool used = std::ranges::any_of(inputs, [&](const std::string& other) {
            return !other.empty() && IsSameFile(output, other);
        });
        if (used && !special) {
            throw InputError(output, "would overwrite another file of this command");
        }
        inputs.push_back(output);
    }
    if (std::ranges::any_of(outputs, IsStandardOutput)) {
        PrintToStandardError();
    }
}

void WriteOutputs(std::span<const NewContents> files) {
    if (const auto failure = ReplaceFiles(files)) {
        throw InputError(failure->path, "cannot be written: " + failure->reason);
    }
}

std::string LowerCaseExtension(const std::string& path) {
    return LowerCase(TextOf(PathOf(path).extension()));
}

}  // namespace tonvane

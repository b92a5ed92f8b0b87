#include <filesystem>

#include "wavefile/OpenFile.h"

namespace tonvane {

std::FILE* OpenFile(const std::string& path, const char* mode) {
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    return ::_wfopen(std::filesystem::path(path).c_str(), wideMode.c_str());
}

}  // namespace tonvane

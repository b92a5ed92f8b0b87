#include "wavefile/OpenFile.h"

#include <filesystem>

namespace tonvane {

std::FILE* OpenFile(const std::string& path, const char* mode) {
    const std::filesystem::path place(std::u8string(path.begin(), path.end()));
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    return ::_wfopen(place.c_str(), wideMode.c_str());
}

}  // namespace tonvane

#include "wavefile/OpenFile.h"

#include <filesystem>

namespace tonvane {

FilePointer OpenFile(const std::string& path, const char* mode) {
    const std::filesystem::path place(std::u8string(path.begin(), path.end()));
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    return FilePointer(::_wfopen(place.c_str(), wideMode.c_str()));
}

}  // namespace tonvane

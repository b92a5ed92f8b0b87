#include "wavefile/OpenFile.h"

namespace tonvane {

FilePointer OpenFile(const std::string& path, const char* mode) {
    return FilePointer(std::fopen(path.c_str(), mode));
}

}  // namespace tonvane

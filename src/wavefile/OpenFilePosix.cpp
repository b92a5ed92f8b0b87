#include "wavefile/OpenFile.h"

namespace tonvane {

std::FILE* OpenFile(const std::string& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

}  // namespace tonvane

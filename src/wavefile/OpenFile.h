// Opening a stream of the C library by a path in UTF-8.
#pragma once

#include <cstdio>
#include <string>

namespace tonvane {

// As fopen; null on failure. The caller closes it.
std::FILE* OpenFile(const std::string& path, const char* mode);

}  // namespace tonvane

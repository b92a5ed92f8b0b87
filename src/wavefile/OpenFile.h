// Opening a stream of the C library by a path in UTF-8.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace tonvane {

struct FileCloser {
    // The unique_ptr below is the owner.
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    void operator()(std::FILE* open) const { std::fclose(open); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// As fopen; null on failure.
FilePointer OpenFile(const std::string& path, const char* mode);

}  // namespace tonvane

#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace tonvane::fuzz {

namespace fs = std::filesystem;

namespace {

class Folder {
  public:
    Folder() {
        std::error_code ignored;
        const fs::path memory = "/dev/shm";
        const fs::path parent =
            fs::is_directory(memory, ignored) ? memory : fs::temp_directory_path();
        folder_ = parent / ("tonvane-fuzz-" + std::to_string(getpid()));
        fs::create_directories(folder_);
        path = folder_.string() + "/";
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path;

  private:
    fs::path folder_;
};

}  // namespace

void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", promise);
        std::abort();
    }
}

const std::string& ScratchFolder() {
    static const Folder folder;
    return folder.path;
}

std::string ScratchFile(std::string_view contents, const char* name) {
    std::string path = ScratchFolder() + name;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    Require(!file.fail(), "the scratch folder takes the input");
    return path;
}

std::string_view TextOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// FNV-1a.
uint32_t HashOf(std::string_view input) {
    uint32_t hash = 2166136261U;
    for (const char c : input) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    return hash ^ hash >> 16U;
}

void SilentMessages::error(const std::string& /*text*/) {
    ++errors;
}

bool SilentMessages::confirm(const std::string& /*text*/, const std::string& /*caption*/) {
    ++questions;
    return true;
}

void SilentMessages::status(int /*line*/, const std::string& /*text*/, StatusNews /*news*/) {}

}  // namespace tonvane::fuzz

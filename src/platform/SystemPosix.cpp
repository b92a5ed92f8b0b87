#include "platform/System.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace tonvane {

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

// Each open takes the lowest number that is free. The null device the wrong way round refuses.
void KeepStandardStreams() {
    constexpr std::array ways{O_WRONLY, O_RDONLY, O_RDONLY};
    for (size_t number = 0; number < ways.size(); ++number) {
        if (::fcntl(static_cast<int>(number), F_GETFD) < 0 && errno == EBADF) {
            ::open("/dev/null", ways[number]);
        }
    }
}

std::optional<std::string> CommandLineAsTyped() {
    return std::nullopt;
}

bool IsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

std::string WithSystemLineEnds(std::string text) {
    return text;
}

FilePointer OpenFile(const std::string& path, const char* mode) {
    return FilePointer(std::fopen(path.c_str(), mode));
}

void SeekFile(std::FILE* file, int64_t position, int whence) {
    ::fseeko(file, position, whence);
}

int64_t TellFile(std::FILE* file) {
    return ::ftello(file);
}

}  // namespace tonvane

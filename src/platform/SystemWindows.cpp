#include "platform/System.h"

#include <windows.h>
// After the above.
#include <shellapi.h>

#include "platform/WideText.h"

namespace tonvane {

namespace {

struct LocalRelease {
    void operator()(wchar_t** words) const { ::LocalFree(static_cast<HLOCAL>(words)); }
};

}  // namespace

std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalRelease> words(
        ::CommandLineToArgvW(::GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i) {
        arguments.push_back(Narrow(words.get()[i]));
    }
    return arguments;
}

// The C library gives these numbers to nothing else, and sockets have none.
void KeepStandardStreams() {}

// The name may stand in quotes, which then hold its blanks together.
std::optional<std::string> CommandLineAsTyped() {
    const wchar_t* rest = ::GetCommandLineW();
    for (bool inQuotes = false; *rest != L'\0' && (inQuotes || *rest > L' '); ++rest) {
        inQuotes = inQuotes != (*rest == L'"');
    }
    while (*rest != L'\0' && *rest <= L' ') {
        ++rest;
    }
    return Narrow(rest);
}

// The null device is one of characters as well, but has no mode.
bool IsTerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) != FALSE;
}

std::string WithSystemLineEnds(std::string text) {
    for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
        text.insert(at, 1, '\r');
    }
    return text;
}

FilePointer OpenFile(const std::string& path, const char* mode) {
    return FilePointer(::_wfopen(Widen(path).c_str(), Widen(mode).c_str()));
}

void SeekFile(std::FILE* file, int64_t position, int whence) {
    ::_fseeki64(file, position, whence);
}

int64_t TellFile(std::FILE* file) {
    return ::_ftelli64(file);
}

}  // namespace tonvane

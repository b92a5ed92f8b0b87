#include "app/ProgramArguments.h"

#include <memory>

#include <windows.h>
// After the above.
#include <shellapi.h>

namespace tonvane {

namespace {

struct LocalRelease {
    void operator()(wchar_t** words) const { ::LocalFree(static_cast<HLOCAL>(words)); }
};

std::string utf8(const wchar_t* text) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) {
        return {};
    }
    std::string bytes(static_cast<size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();  // the zero at the end
    return bytes;
}

}  // namespace

std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalRelease> words(
        ::CommandLineToArgvW(::GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i) {
        arguments.push_back(utf8(words.get()[i]));
    }
    return arguments;
}

}  // namespace tonvane

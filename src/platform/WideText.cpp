#include "platform/WideText.h"

#include <algorithm>

#include <windows.h>

namespace tonvane {

namespace {

constexpr wchar_t replacement = 0xFFFD;  // what Windows puts for what cannot be converted

int lengthOf(size_t size) {
    return static_cast<int>(size);
}

}  // namespace

std::wstring Widen(std::string_view text) {
    const int length =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), wide.data(), length);
    std::ranges::replace(wide, replacement, L'?');
    return wide;
}

std::string Narrow(std::wstring_view text) {
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), lengthOf(text.size()), nullptr,
                                           0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), lengthOf(text.size()), narrow.data(), length,
                        nullptr, nullptr);
    return narrow;
}

}  // namespace tonvane

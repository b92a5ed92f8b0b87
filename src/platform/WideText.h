// Text between the program, which has UTF-8, and Windows, which has UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace tonvane {

// Bytes that are no UTF-8 become question marks.
std::wstring Widen(std::string_view text);

std::string Narrow(std::wstring_view text);

}  // namespace tonvane

// TextScanner's numbers against those of the C library, which runs here in the "C" locale.
#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "FuzzSupport.h"
#include "text/TextScanner.h"

namespace tonvane::fuzz {

namespace {

// Whether the number that begins here, behind blanks and a sign, is one that only the C library
// takes: hexadecimal floating point.
bool isHexadecimal(const char* text) {
    text += std::strspn(text, " \t\n\v\f\r");
    text += *text == '+' || *text == '-' ? 1 : 0;
    return text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

void compareReal(const std::string& text) {
    TextScanner scanner(text);
    const auto ours = scanner.real();
    char* end = nullptr;
    const double theirs = std::strtod(text.c_str(), &end);
    if (isHexadecimal(text.c_str())) {
        Require(ours == 0.0, "0x is a zero and a letter");
    } else if (ours) {
        Require(std::bit_cast<uint64_t>(*ours) == std::bit_cast<uint64_t>(theirs),
                "a number has the value that the C library gives it");
        Require(text.c_str() + scanner.position() == end, "a number ends where it ends");
    } else {
        Require(end == text.c_str() || !std::isfinite(theirs), "what is no number is none");
    }
}

void compareInteger(const std::string& text) {
    TextScanner scanner(text);
    const auto ours = scanner.integer();
    char* end = nullptr;
    const long long theirs = std::strtoll(text.c_str(), &end, 10);
    Require(ours.has_value() == (end != text.c_str()), "an integer is one for both");
    if (ours) {
        using Range = std::numeric_limits<int32_t>;
        Require(*ours == std::clamp<long long>(theirs, Range::min(), Range::max()),
                "an integer out of range gives the nearest end of the range");
        Require(text.c_str() + scanner.position() == end, "an integer ends where it ends");
    }
}

void compareHexadecimal(const std::string& text) {
    TextScanner scanner(text);
    const auto ours = scanner.hexadecimal();
    char* end = nullptr;
    errno = 0;
    const unsigned long long theirs = std::strtoull(text.c_str(), &end, 16);
    Require(ours.has_value() == (end != text.c_str()), "a hexadecimal number is one for both");
    if (ours && errno == 0) {
        Require(*ours == static_cast<int32_t>(static_cast<uint32_t>(theirs)),
                "a hexadecimal number has its low 32 bits");
    }
}

// A text walked to its end: each step takes something or nothing is left to take.
void walk(std::string_view text) {
    TextScanner scanner(text);
    size_t lines = 0;
    while (!scanner.atEnd()) {
        const size_t before = scanner.position();
        const std::string_view line = scanner.restOfLine();
        Require(scanner.position() > before, "a line is consumed");
        Require(line.find('\n') == std::string_view::npos, "a line has no line end in it");
        ++lines;
    }
    const auto ends = static_cast<size_t>(std::ranges::count(text, '\n'));
    const bool openEnd = !text.empty() && text.back() != '\n';
    Require(lines == ends + (openEnd ? 1 : 0), "a text has as many lines as line ends");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    walk(input);
    const std::string text(input.substr(0, input.find('\0')));
    compareReal(text);
    compareInteger(text);
    compareHexadecimal(text);
    return 0;
}

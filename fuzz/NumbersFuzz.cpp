// TextScanner's numbers against those of the C library, which runs here in the "C" locale.
#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

#include "FuzzSupport.h"
#include "text/TextScanner.h"

namespace tonvane::fuzz {

namespace {

void compareReal(std::string text) {
    TextScanner scanner(text);
    const auto ours = scanner.real();
    text += text.empty() ? " " : "";  // a stream of no bytes is none
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        ::fmemopen(text.data(), text.size(), "r"), std::fclose);
    double theirs = 0.0;
    Require((std::fscanf(file.get(), "%lf", &theirs) == 1) == ours.has_value(),
            "a number is one for both");
    if (ours && !std::isnan(theirs)) {
        Require(std::bit_cast<uint64_t>(*ours) == std::bit_cast<uint64_t>(theirs),
                "a number has the value that the C library gives it");
    }
    Require(!ours || std::isnan(*ours) == std::isnan(theirs), "what is no number is none");
    Require(!ours || std::ftell(file.get()) == static_cast<long>(scanner.position()),
            "a number ends where it ends");
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

#include "text/TextScanner.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "text/Ascii.h"

namespace tonvane {

namespace {

int hexDigit(int c) {
    if (IsDigit(c)) {
        return c - '0';
    }
    const int lower = c | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// How a number is written.
struct Notation {
    std::chars_format format;
    std::string_view nonzeroDigits;
    std::string_view exponentMarks;
    int64_t exponentsPerDigit;  // what the exponent grows by with a digit ahead of the point
};
constexpr Notation decimalNotation{std::chars_format::general, "123456789", "eE", 1};
constexpr Notation hexNotation{std::chars_format::hex, "123456789abcdefABCDEF", "pP", 4};

// Of a number beyond the range of doubles: whether it is too small rather than too large, by the
// place of its first digit that is not zero.
bool isTiny(std::string_view number, const Notation& notation) {
    const size_t exponentMark =
        std::min(number.find_first_of(notation.exponentMarks), number.size());
    const std::string_view mantissa = number.substr(0, exponentMark);
    const size_t point = std::min(mantissa.find('.'), mantissa.size());
    const size_t leading = mantissa.find_first_of(notation.nonzeroDigits);
    if (leading == std::string_view::npos) {
        return true;
    }
    const std::string_view exponent = number.substr(std::min(exponentMark + 1, number.size()));
    const int64_t place = static_cast<int64_t>(point) - static_cast<int64_t>(leading);
    return place * notation.exponentsPerDigit + TextScanner(exponent).integer().value_or(0) < 0;
}

// The value of the number that the text begins with; nothing where it begins with none.
std::optional<double> valueOf(std::string_view text, const Notation& notation) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, notation.format);
    if (result.ec == std::errc::invalid_argument) {
        return std::nullopt;
    }
    if (result.ec == std::errc::result_out_of_range) {
        value = isTiny(text, notation) ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return value;
}

bool isSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

int TextScanner::peek() {
    sawEnd_ = sawEnd_ || atEnd();
    return atEnd() ? -1 : static_cast<unsigned char>(text_[position_]);
}

int TextScanner::next() {
    const int c = peek();
    if (c >= 0) {
        ++position_;
    }
    return c;
}

void TextScanner::skipSpace() {
    while (isSpace(peek())) {
        ++position_;
    }
}

bool TextScanner::literal(char expected) {
    if (peek() != static_cast<unsigned char>(expected)) {
        return false;
    }
    ++position_;
    return true;
}

bool TextScanner::takeSign() {
    skipSpace();
    if (literal('-')) {
        return true;
    }
    literal('+');
    return false;
}

std::optional<int32_t> TextScanner::integer() {
    const bool negative = takeSign();
    if (!IsDigit(peek())) {
        return std::nullopt;
    }
    constexpr int64_t limit = int64_t{1} << 40U;
    int64_t value = 0;
    while (IsDigit(peek())) {
        value = std::min(value * 10 + (next() - '0'), limit);
    }
    using Range = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(
        std::clamp<int64_t>(negative ? -value : value, Range::min(), Range::max()));
}

std::optional<int32_t> TextScanner::hexadecimal() {
    const bool negative = takeSign();
    uint32_t value = 0;
    bool any = false;
    if (literal('0')) {
        any = true;
        if (peek() == 'x' || peek() == 'X') {
            ++position_;
        }
    }
    for (int digit = hexDigit(peek()); digit >= 0; digit = hexDigit(peek())) {
        value = value * 16U + static_cast<uint32_t>(digit);
        any = true;
        ++position_;
    }
    if (!any) {
        return std::nullopt;
    }
    return static_cast<int32_t>(negative ? 0U - value : value);
}

// The first letter that differs is consumed as well.
bool TextScanner::word(std::string_view lowerCase) {
    return std::ranges::all_of(lowerCase,
                               [this](char letter) { return (next() | 0x20) == letter; });
}

void TextScanner::skipDigits(bool hexadecimal) {
    while (IsDigit(peek()) || (hexadecimal && hexDigit(peek()) >= 0)) {
        ++position_;
    }
}

std::optional<double> TextScanner::number() {
    const size_t start = position_;
    const bool isHex = literal('0') && (literal('x') || literal('X'));
    const size_t mantissa = isHex ? position_ : start;
    skipDigits(isHex);
    size_t digits = position_ - mantissa;
    if (literal('.')) {
        skipDigits(isHex);
        digits = position_ - mantissa - 1;
    }
    if (digits > 0 && (peek() | 0x20) == (isHex ? 'p' : 'e')) {
        ++position_;
        literal('-') || literal('+');
        skipDigits(false);
    }
    const std::string_view text = text_.substr(mantissa, position_ - mantissa);
    if (!isHex) {
        return valueOf(text, decimalNotation);
    }
    // A lone point behind 0x leaves the zero.
    return text.empty() ? std::nullopt : std::optional(valueOf(text, hexNotation).value_or(0.0));
}

std::optional<double> TextScanner::magnitude() {
    const int first = peek() | 0x20;
    if (first == 'n') {
        return word("nan") ? std::optional(std::numeric_limits<double>::quiet_NaN()) : std::nullopt;
    }
    if (first == 'i') {
        const bool isWord = word("inf") && ((peek() | 0x20) != 'i' || word("inity"));
        return isWord ? std::optional(std::numeric_limits<double>::infinity()) : std::nullopt;
    }
    return number();
}

std::optional<double> TextScanner::real() {
    const bool negative = takeSign();
    const auto value = magnitude();
    return value && negative ? -*value : value;
}

std::string_view TextScanner::lineFragment(size_t most) {
    const std::string_view rest = text_.substr(position_, most);
    const size_t lineEnd = rest.find('\n');
    const std::string_view fragment =
        lineEnd == std::string_view::npos ? rest : rest.substr(0, lineEnd + 1);
    position_ += fragment.size();
    return fragment;
}

std::string_view TextScanner::restOfLine() {
    std::string_view line = lineFragment(text_.size());
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    return line;
}

}  // namespace tonvane

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

// Of a number beyond the range of doubles: whether it is too small rather than too large, by the
// decimal place of its first digit that is not zero.
bool isTiny(std::string_view number) {
    const size_t exponentMark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentMark);
    const size_t point = std::min(mantissa.find('.'), mantissa.size());
    const size_t leading = mantissa.find_first_of("123456789");
    if (leading == std::string_view::npos) {
        return true;
    }
    const std::string_view exponent = number.substr(std::min(exponentMark + 1, number.size()));
    const int64_t place = static_cast<int64_t>(point) - static_cast<int64_t>(leading);
    return place + TextScanner(exponent).integer().value_or(0) < 0;
}

bool isSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

int TextScanner::peek() const {
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

std::optional<double> TextScanner::real() {
    const bool negative = takeSign();
    const size_t start = position_;
    size_t digits = 0;
    const auto takeDigits = [&] {
        for (; IsDigit(peek()); ++digits) {
            ++position_;
        }
    };
    takeDigits();
    if (literal('.')) {
        takeDigits();
    }
    if (digits == 0) {
        return std::nullopt;
    }
    if (peek() == 'e' || peek() == 'E') {
        const size_t mantissaEnd = position_++;
        if (peek() == '-' || peek() == '+') {
            ++position_;
        }
        if (!IsDigit(peek())) {
            position_ = mantissaEnd;
        }
        takeDigits();
    }
    double value = 0.0;
    const auto result = std::from_chars(text_.data() + start, text_.data() + position_, value);
    if (result.ec == std::errc::result_out_of_range) {
        value = isTiny(text_.substr(start, position_ - start))
                    ? 0.0
                    : std::numeric_limits<double>::infinity();
    }
    return negative ? -value : value;
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

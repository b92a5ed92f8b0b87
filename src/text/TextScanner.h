// Reading numbers and line fragments from a text, as the formatted input of the C library does,
// whatever the locale: the decimal sign is always a point.
//
// An operation that fails consumes what it has looked at of its own field and no more; the position
// only moves forward.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tonvane {

class TextScanner {
  public:
    explicit TextScanner(std::string_view text) : text_(text) {}

    [[nodiscard]] bool atEnd() const { return position_ >= text_.size(); }
    [[nodiscard]] size_t position() const { return position_; }

    // Whether something has been looked for behind the last character: the end-of-file mark of a
    // stream.
    [[nodiscard]] bool sawEnd() const { return sawEnd_; }

    // The next character; -1 at the end.
    int next();

    // Blanks, tabs and line ends.
    void skipSpace();

    // Consumes the character if it is the next one.
    bool literal(char expected);

    // White space, a sign, decimal digits. Out of range gives the nearest end of the range.
    std::optional<int32_t> integer();

    // White space, a sign, an optional 0x, hexadecimal digits; bits beyond 32 are lost.
    std::optional<int32_t> hexadecimal();

    // White space, a sign, and a number: decimal digits with an optional point and an optional
    // exponent, the same in hexadecimal behind 0x with an exponent of two behind a p, or one of the
    // words "inf", "infinity" and "nan" in either case. Out of range gives an infinity or zero. An
    // exponent without digits is taken and counts for nothing.
    std::optional<double> real();

    // At most `most` characters, up to and including a line end.
    std::string_view lineFragment(size_t most);

    // The rest of the line without its line end.
    std::string_view restOfLine();

  private:
    // The next character without taking it; -1 at the end.
    int peek();
    bool takeSign();
    bool word(std::string_view lowerCase);
    void skipDigits(bool hexadecimal);
    std::optional<double> number();
    std::optional<double> magnitude();

    std::string_view text_;
    size_t position_ = 0;
    bool sawEnd_ = false;
};

}  // namespace tonvane

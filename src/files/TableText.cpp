#include "files/TableText.h"

#include <algorithm>
#include <cmath>

#include "text/Ascii.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

constexpr std::string_view blanks = " \t";

std::string_view unquoted(std::string_view field) {
    field = Trim(field, blanks);
    const bool quoted = field.size() >= 2 && field.starts_with('"') && field.ends_with('"');
    return quoted ? Trim(field.substr(1, field.size() - 2), blanks) : field;
}

// The end of the field that starts at `start`.
size_t endOfField(std::string_view line, size_t start, char mark) {
    bool inQuotes = false;
    size_t end = start;
    for (; end < line.size() && (inQuotes || line[end] != mark); ++end) {
        inQuotes = inQuotes != (line[end] == '"');
    }
    return end;
}

// Consumes digits; how many there were. They go to `number`.
size_t takeDigits(std::string_view& rest, std::string& number) {
    const auto other = std::ranges::find_if_not(rest, IsDigit);
    const auto count = static_cast<size_t>(other - rest.begin());
    number += rest.substr(0, count);
    rest.remove_prefix(count);
    return count;
}

// Digits, in groups of three with the mark between them or ungrouped. A mark that ends no group is
// left where it is.
size_t takeWholePart(std::string_view& rest, char groupMark, std::string& number) {
    const bool leadingZero = rest.starts_with('0');
    size_t digits = takeDigits(rest, number);
    if (digits == 0 || digits > 3 || leadingZero) {
        return digits;
    }
    const auto groupFollows = [&] {
        return rest.size() >= 4 && rest[0] == groupMark &&
               std::all_of(rest.begin() + 1, rest.begin() + 4, IsDigit) &&
               (rest.size() == 4 || !IsDigit(rest[4]));
    };
    while (groupFollows()) {
        rest.remove_prefix(1);
        digits += takeDigits(rest, number);
    }
    return digits;
}

}  // namespace

std::string DecodeText(std::string bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    if (bytes.starts_with(utf8Mark)) {
        bytes.erase(0, utf8Mark.size());
    }
    const bool isLittle = bytes.starts_with("\xFF\xFE");
    if (!isLittle && !bytes.starts_with("\xFE\xFF")) {
        return bytes;
    }
    std::string text;
    text.reserve(bytes.size() / 2);
    for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const char low = bytes[i + (isLittle ? 0 : 1)];
        const char high = bytes[i + (isLittle ? 1 : 0)];
        const bool isAscii = high == 0 && static_cast<unsigned char>(low) < 0x80;
        text.push_back(isAscii ? low : '?');
    }
    return text;
}

std::vector<TableLine> SplitLines(std::string_view text) {
    std::vector<TableLine> lines;
    lines.reserve(static_cast<size_t>(std::ranges::count(text, '\n')) + 1);
    for (int number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back({number, text.substr(0, end)});
        text.remove_prefix(end);
        text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<size_t>(1, text.size()));
    }
    return lines;
}

std::vector<std::string_view> SplitFields(std::string_view line, Separator separator) {
    std::vector<std::string_view> fields;
    if (separator == Separator::blanks) {
        fields = SplitAtBlanks(line, blanks);
        std::ranges::transform(fields, fields.begin(), unquoted);
    } else {
        const char mark = separator == Separator::tab         ? '\t'
                          : separator == Separator::semicolon ? ';'
                                                              : ',';
        line = Trim(line, blanks);
        for (size_t start = 0; start <= line.size();) {
            const size_t end = endOfField(line, start, mark);
            fields.push_back(unquoted(line.substr(start, end - start)));
            start = end + 1;
        }
    }
    while (!fields.empty() && fields.back().empty()) {
        fields.pop_back();
    }
    return fields;
}

std::optional<double> ParseTableNumber(std::string_view field, DecimalSign sign) {
    const bool isPoint = sign == DecimalSign::point;
    const char decimal = isPoint ? '.' : ',';
    std::string number;
    if (field.starts_with('-') || field.starts_with('+')) {
        number += field[0];
        field.remove_prefix(1);
    }
    size_t digits = takeWholePart(field, isPoint ? ',' : '.', number);
    if (field.starts_with(decimal)) {
        field.remove_prefix(1);
        number += '.';
        const size_t decimals = takeDigits(field, number);
        if (!isPoint && (digits == 0 || decimals == 0)) {
            return std::nullopt;
        }
        digits += decimals;
    }
    const bool atExponent = field.starts_with('e') || field.starts_with('E');
    if (digits == 0 || (!field.empty() && !atExponent)) {
        return std::nullopt;
    }
    number += field;
    TextScanner scanner(number);
    const auto value = scanner.real();
    return value && scanner.atEnd() && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace tonvane

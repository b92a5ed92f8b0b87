// The pieces of a table in a text file: its lines, their fields, the numbers in them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonvane {

struct TableLine {
    int number = 0;  // from 1
    std::string_view text;
};

// The bytes of a text file as UTF-8 without a byte-order mark. UTF-16 is told by its mark;
// characters beyond ASCII become a question mark there.
std::string DecodeText(std::string bytes);

// The lines of a text that outlives them; LF, CR LF or CR ends a line, in any mixture.
std::vector<TableLine> SplitLines(std::string_view text);

enum class Separator { tab, semicolon, comma, blanks };

// The fields of a line without the blanks and the pair of double quotes around them; a separator
// inside quotes separates nothing. Empty fields at the end are left out.
std::vector<std::string_view> SplitFields(std::string_view line, Separator separator);

enum class DecimalSign { point, comma };

// The value of a field that is a number from end to end: a sign, digits, in groups of three with
// the other sign between them or ungrouped, a decimal part, an exponent. A decimal comma stands
// between digits. Nothing for anything else, nor for infinities.
std::optional<double> ParseTableNumber(std::string_view field, DecimalSign sign);

}  // namespace tonvane

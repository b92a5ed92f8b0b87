#include "files/LevelTable.h"

#include <algorithm>
#include <array>
#include <vector>

#include <fmt/core.h>

#include "files/InputError.h"
#include "files/TableReading.h"
#include "files/TableText.h"
#include "platform/FileAccess.h"
#include "text/Ascii.h"

namespace tonvane {

namespace {

constexpr std::array separatorNames{"tabs", "semicolons", "commas", "blanks"};

// The lines of a file by what they are.
struct Sheet {
    std::vector<TableLine> header;
    std::vector<TableLine> rows;
    int comments = 0;
};

bool beginsLikeNumber(std::string_view text) {
    for (const std::string_view marks : {"\"", "+-", "."}) {
        if (!text.empty() && marks.find(text[0]) != std::string_view::npos) {
            text.remove_prefix(1);
        }
    }
    return !text.empty() && IsDigit(text[0]);
}

bool isComment(std::string_view text) {
    return std::string_view("#*%!;").find(text[0]) != std::string_view::npos ||
           text.starts_with("//");
}

std::string hertzText(double hertz) {
    return fmt::format("{:.6g} Hz", hertz);
}

std::string counted(size_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

// A line that begins with a digit, but whose first field is no number however it is separated: a
// title such as a date.
bool isTitle(std::string_view text) {
    return std::ranges::none_of(separators, [text](Separator separator) {
        const auto fields = SplitFields(text, separator);
        return ParseTableNumber(fields[0], DecimalSign::point).has_value() ||
               ParseTableNumber(fields[0], DecimalSign::comma).has_value();
    });
}

// What stands behind the first row and is no comment counts as a row, which it will have to be.
Sheet sortLines(const std::string& path, const std::vector<TableLine>& lines, InputNotes& notes) {
    Sheet sheet;
    for (const TableLine& line : lines) {
        const size_t start = line.text.find_first_not_of(" \t;,\f");
        if (start == std::string_view::npos) {
            continue;
        }
        if (std::ranges::any_of(line.text, [](char c) { return c == '\0'; })) {
            throw InputError(path, line.number, "expected text, found a zero byte");
        }
        const TableLine body{line.number, line.text.substr(line.text.find_first_not_of(" \t"))};
        const bool likeNumber = beginsLikeNumber(body.text);
        if (isComment(body.text)) {
            ++sheet.comments;
            if (sheet.rows.empty()) {
                sheet.header.push_back(body);  // may name the unit
            }
        } else if (!sheet.rows.empty() || (likeNumber && !isTitle(body.text))) {
            sheet.rows.push_back(body);
        } else {
            if (likeNumber) {
                notes.guessed(
                    path, line.number,
                    "passed over as a header: it begins with a digit, but not with a number");
            }
            sheet.header.push_back(body);
        }
    }
    return sheet;
}

// Whether the line that names the columns gives the frequencies in kHz. With digits it is no such
// line but tells of a sweep.
bool namesKilohertz(const Sheet& sheet) {
    if (sheet.header.empty()) {
        return false;
    }
    const std::string name = LowerCase(std::string(sheet.header.back().text));
    return name.find("khz") != std::string::npos && std::ranges::none_of(name, IsDigit);
}

// The rows, each with no more columns than the first one has.
std::vector<TableRow> parseRows(const std::string& path, const Sheet& sheet,
                                const TableReading& reading) {
    const double unit = namesKilohertz(sheet) ? 1000.0 : 1.0;  // Hz
    const size_t columns = SplitFields(sheet.rows.front().text, reading.separator).size();
    std::vector<TableRow> rows;
    rows.reserve(sheet.rows.size());
    for (const TableLine& line : sheet.rows) {
        auto row = ReadTableRow(line, reading);
        if (!row) {
            throw InputError(path, line.number, ComplaintOfRow(line, reading));
        }
        const size_t found = SplitFields(line.text, reading.separator).size();
        if (found > columns) {
            throw InputError(path, line.number,
                             "expected " + counted(columns, "column") +
                                 " as in the first row, found " + std::to_string(found));
        }
        row->hertz *= unit;
        if (!IsTableFrequency(row->hertz)) {
            throw InputError(path, line.number, "expected a frequency up to 1 GHz");
        }
        rows.push_back(*row);
    }
    return rows;
}

// Columns that fall apart at decimal commas, or the wrong one of many, would give wrong levels.
void checkColumns(const std::string& path, const Sheet& sheet, const TableReading& reading,
                  InputNotes& notes) {
    const size_t columns = SplitFields(sheet.rows.front().text, reading.separator).size();
    const bool anyPoint = std::ranges::any_of(sheet.rows, [](const TableLine& line) {
        return line.text.find('.') != std::string_view::npos;
    });
    if (reading.separator == Separator::comma && reading.decimal == DecimalSign::point &&
        columns > 2 && !anyPoint) {
        if (columns % 2 == 0) {
            throw InputError(path, sheet.rows.front().number,
                             "cannot tell commas between columns from decimal commas");
        }
        notes.guessed(path, 0, "the commas are taken as standing between columns");
    }
    if (columns > 3) {
        notes.guessed(path, 0, "the level is taken from column 2 of " + std::to_string(columns));
    }
}

void describe(const std::string& path, const Sheet& sheet, const TableReading& reading,
              InputNotes& notes) {
    std::string text;
    const size_t headerLines = static_cast<size_t>(std::ranges::count_if(
        sheet.header, [](const auto& line) { return !isComment(line.text); }));
    if (headerLines > 0) {
        text += ", " + counted(headerLines, "header line") + " passed over";
    }
    if (sheet.comments > 0) {
        text +=
            ", " + counted(static_cast<size_t>(sheet.comments), "comment line") + " passed over";
    }
    if (reading.decimal == DecimalSign::comma) {
        text += ", decimal commas";
    }
    if (namesKilohertz(sheet)) {
        text += ", frequencies in kHz";
    }
    const size_t columns = SplitFields(sheet.rows.front().text, reading.separator).size();
    if (columns > 2) {
        text += ", column " + std::string(columns == 3 ? "3" : "3 and on") + " not used";
    }
    if (!text.empty()) {
        const auto name = separatorNames.at(static_cast<size_t>(reading.separator));
        notes.told(path, std::string("columns between ") + name + text);
    }
}

// One row a frequency, the last of the file.
void mergeEqual(const std::string& path, std::vector<TableRow>& rows, InputNotes& notes) {
    std::ranges::stable_sort(rows, {}, &TableRow::hertz);
    std::vector<TableRow> kept;
    kept.reserve(rows.size());
    size_t repeated = 0;
    size_t contrary = 0;
    TableRow first{};
    for (const TableRow& row : rows) {
        if (kept.empty() || kept.back().hertz != row.hertz) {
            kept.push_back(row);
            continue;
        }
        ++repeated;
        if (kept.back().decibels != row.decibels && contrary++ == 0) {
            first = row;
        }
        kept.back() = row;
    }
    if (contrary > 0) {
        notes.guessed(
            path, first.line,
            hertzText(first.hertz) + " stands there once more with another level" +
                (contrary > 1 ? ", as do " + std::to_string(contrary - 1) + " more" : "") +
                "; the last level of a frequency counts");
    } else if (repeated > 0) {
        notes.told(path, counted(repeated, "row") + " left out that are there twice");
    }
    rows = std::move(kept);
}

}  // namespace

void ParseLevelTable(const std::string& path, const std::string& bytes, CsvTable& table,
                     InputNotes& notes) {
    if (bytes.size() > longestText) {
        throw InputError(path,
                         "expected a table of at most " + std::to_string(longestText) + " bytes");
    }
    const std::string text = DecodeText(bytes);
    const Sheet sheet = sortLines(path, SplitLines(text), notes);
    if (sheet.rows.empty()) {
        throw InputError(path, "no rows; expected rows of a frequency and a level");
    }
    const TableReading reading = ChooseReading(path, sheet.rows, notes);

    std::vector<TableRow> rows = parseRows(path, sheet, reading);
    checkColumns(path, sheet, reading, notes);
    describe(path, sheet, reading, notes);
    mergeEqual(path, rows, notes);

    table.allocate();
    table.count = 0;
    for (const TableRow& row : rows) {
        if (!table.add(row.hertz, row.decibels)) {
            throw InputError(path, "expected at most " + std::to_string(CsvTable::maximumRows) +
                                       " rows, found " + std::to_string(rows.size()));
        }
    }
}

void FitTableToRate(const std::string& path, CsvTable& table, int32_t sampleRate,
                    InputNotes& notes) {
    constexpr double lowest = 50.0;  // Hz; the range that designs are judged by
    constexpr double highest = 15000.0;
    const double half = sampleRate / 2.0;
    const auto rows = std::span(table.frequency).first(table.count);
    // A fraction of a hertz above it is half the rate, not a row that is lost.
    const auto above = static_cast<size_t>(rows.end() - std::ranges::lower_bound(rows, half + 1.0));
    if (above > 0) {
        notes.told(path, counted(above, "row") + " above " + hertzText(half) +
                             ", half the sample rate, not used");
    }
    if (rows.front() > lowest) {
        notes.told(path, "the first level, at " + hertzText(rows.front()) +
                             ", stands for all frequencies below");
    }
    if (rows.back() < std::min(highest, half)) {
        notes.told(path, "the last level, at " + hertzText(rows.back()) +
                             ", stands for all frequencies above");
    }
    EndTableAtHalfRate(table, sampleRate);
}

}  // namespace tonvane

#include "files/LevelTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "files/FileAccess.h"
#include "files/InputError.h"
#include "files/TableText.h"

namespace tonvane {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::array separators{Separator::tab, Separator::semicolon, Separator::comma,
                                Separator::blanks};
constexpr std::array separatorNames{"tabs", "semicolons", "commas", "blanks"};

struct Row {
    double hertz;
    double decibels;
    int line;
};

// The lines of a file by what they are.
struct Sheet {
    std::vector<TableLine> header;
    std::vector<TableLine> rows;
    int comments = 0;
};

struct Reading {
    Separator separator = Separator::comma;
    DecimalSign decimal = DecimalSign::point;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool beginsLikeNumber(std::string_view text) {
    for (const std::string_view marks : {"\"", "+-", "."}) {
        if (!text.empty() && marks.find(text[0]) != std::string_view::npos) {
            text.remove_prefix(1);
        }
    }
    return !text.empty() && isDigit(text[0]);
}

bool isComment(std::string_view text) {
    return std::string_view("#*%!;\"'").find(text[0]) != std::string_view::npos ||
           text.starts_with("//");
}

std::string hertzText(double hertz) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6g Hz", hertz);
    return text;
}

std::string counted(size_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

bool isFrequency(double hertz) {
    return hertz >= 0.0 && hertz <= 1e9;
}

bool isLevel(double decibels) {
    return std::fabs(decibels) <= 400.0;
}

// A row's two numbers, nothing unless both are and are in range.
std::optional<Row> parseRow(const TableLine& line, const Reading& reading) {
    const auto fields = SplitFields(line.text, reading.separator);
    if (fields.size() < 2) {
        return std::nullopt;
    }
    const auto hertz = ParseTableNumber(fields[0], reading.decimal);
    const auto decibels = ParseTableNumber(fields[1], reading.decimal);
    if (!hertz || !decibels || !isFrequency(*hertz) || !isLevel(*decibels)) {
        return std::nullopt;
    }
    return Row{*hertz, *decibels, line.number};
}

// What a reading makes of the rows.
struct Trial {
    size_t understood = 0;
    bool monotone = true;  // the frequencies of those rise, or fall
};

Trial tryReading(const std::vector<TableLine>& rows, const Reading& reading) {
    Trial trial;
    bool rises = true;
    bool falls = true;
    std::optional<Row> last;
    for (const TableLine& line : rows) {
        if (const auto row = parseRow(line, reading)) {
            rises = rises && (!last || row->hertz >= last->hertz);
            falls = falls && (!last || row->hertz <= last->hertz);
            last = row;
            ++trial.understood;
        }
    }
    trial.monotone = rises || falls;
    return trial;
}

bool anyCommaInNumbers(const std::vector<TableLine>& rows, Separator separator) {
    return std::ranges::any_of(rows, [separator](const TableLine& line) {
        const auto fields = SplitFields(line.text, separator);
        return std::any_of(fields.begin(), fields.begin() + std::min<ptrdiff_t>(2, fields.size()),
                           [](std::string_view field) { return field.find(',') != field.npos; });
    });
}

// The decimal sign of a file whose numbers make sense either way: the one that brings the
// frequencies into order, else the point, unless there are commas to be understood.
DecimalSign chooseByOrder(const std::string& path, const std::vector<TableLine>& rows,
                          Separator separator, const Trial& point, const Trial& comma,
                          InputNotes& notes) {
    const bool commas = anyCommaInNumbers(rows, separator);
    if (point.monotone == comma.monotone) {
        if (commas) {
            throw InputError(path, rows.front().number,
                             "cannot tell whether commas in the numbers are decimal signs or group "
                             "thousands; write them with points and ungrouped");
        }
        return DecimalSign::point;
    }
    if (comma.monotone) {
        notes.guessed(path, 0,
                      std::string(commas ? "commas" : "points") + " in the numbers are taken as " +
                          (commas ? "decimal signs" : "marks of thousands") +
                          ": only so are the frequencies in order");
    } else if (commas) {
        notes.guessed(path, 0,
                      "commas in the numbers are taken as marks of thousands: only so are the "
                      "frequencies in order");
    }
    return comma.monotone ? DecimalSign::comma : DecimalSign::point;
}

// The reading that understands most rows.
Reading chooseReading(const std::string& path, const std::vector<TableLine>& rows,
                      InputNotes& notes) {
    Reading best;
    Trial bestPoint;
    Trial bestComma;
    for (const Separator separator : separators) {
        const Trial point = tryReading(rows, {separator, DecimalSign::point});
        const Trial comma = tryReading(rows, {separator, DecimalSign::comma});
        if (std::max(point.understood, comma.understood) >
            std::max(bestPoint.understood, bestComma.understood)) {
            best.separator = separator;
            bestPoint = point;
            bestComma = comma;
        }
    }
    best.decimal = bestComma.understood > bestPoint.understood ? DecimalSign::comma
                   : bestComma.understood < bestPoint.understood || bestPoint.understood == 0
                       ? DecimalSign::point
                       : chooseByOrder(path, rows, best.separator, bestPoint, bestComma, notes);
    return best;
}

// Why a line that begins like a row is none.
std::string complaintOf(const TableLine& line, const Reading& reading) {
    const auto fields = SplitFields(line.text, reading.separator);
    if (fields.size() < 2) {
        return "expected a row of a frequency and a level";
    }
    const auto hertz = ParseTableNumber(fields[0], reading.decimal);
    const auto decibels = ParseTableNumber(fields[1], reading.decimal);
    if (!hertz || !decibels) {
        return "expected a row of a frequency and a level; \"" +
               std::string(hertz ? fields[1] : fields[0]).substr(0, 40) + "\" is no such number";
    }
    return isFrequency(*hertz) ? "expected a level between -400 and 400 dB"
                               : "expected a frequency between 0 Hz and 1 GHz";
}

Sheet sortLines(const std::string& path, const std::vector<TableLine>& lines) {
    Sheet sheet;
    for (const TableLine& line : lines) {
        const size_t start = line.text.find_first_not_of(" \t;,\f");
        if (start == std::string_view::npos) {
            continue;
        }
        if (std::ranges::any_of(line.text, [](char c) { return c == '\0'; })) {
            throw InputError(path, line.number, "expected text, found a zero byte");
        }
        const TableLine body{line.number, line.text.substr(line.text.find_first_not_of(blanks))};
        if (beginsLikeNumber(body.text)) {
            sheet.rows.push_back(body);
        } else if (isComment(body.text)) {
            ++sheet.comments;
            if (sheet.rows.empty()) {
                sheet.header.push_back(body);  // may name the unit
            }
        } else if (sheet.rows.empty()) {
            sheet.header.push_back(body);
        } else {
            throw InputError(path, line.number,
                             "expected a row of a frequency and a level, found text behind the "
                             "first row");
        }
    }
    return sheet;
}

// Titles that begin with a digit, such as a date, go from the rows to the header: lines ahead of
// the first row whose first field is no number.
void moveTitles(const std::string& path, const Reading& reading, Sheet& sheet, InputNotes& notes) {
    const auto isTitle = [&](const TableLine& line) {
        const auto fields = SplitFields(line.text, reading.separator);
        return !ParseTableNumber(fields[0], DecimalSign::point) &&
               !ParseTableNumber(fields[0], DecimalSign::comma);
    };
    const auto first = std::ranges::find_if_not(sheet.rows, isTitle);
    if (first == sheet.rows.end()) {
        return;
    }
    for (auto line = sheet.rows.begin(); line != first; ++line) {
        notes.guessed(path, line->number,
                      "passed over as a header: it begins with a digit, but not with a number");
        sheet.header.push_back(*line);
    }
    sheet.rows.erase(sheet.rows.begin(), first);
}

// Whether the line that names the columns gives the frequencies in kHz. With digits it is no such
// line but tells of a sweep.
bool namesKilohertz(const Sheet& sheet) {
    if (sheet.header.empty()) {
        return false;
    }
    std::string name(sheet.header.back().text);
    std::ranges::transform(name, name.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return name.find("khz") != std::string::npos && std::ranges::none_of(name, isDigit);
}

// Columns that fall apart at decimal commas, or the wrong one of many, would give wrong levels.
void checkColumns(const std::string& path, const Sheet& sheet, const Reading& reading,
                  InputNotes& notes) {
    const size_t columns = SplitFields(sheet.rows.front().text, reading.separator).size();
    bool anyPoint = false;
    for (const TableLine& line : sheet.rows) {
        const size_t found = SplitFields(line.text, reading.separator).size();
        anyPoint = anyPoint || line.text.find('.') != std::string_view::npos;
        if (found > columns) {
            throw InputError(path, line.number,
                             "expected " + counted(columns, "column") +
                                 " as in the first row, found " + std::to_string(found));
        }
    }
    if (reading.separator == Separator::comma && columns > 2 && !anyPoint) {
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

void describe(const std::string& path, const Sheet& sheet, const Reading& reading,
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
void mergeEqual(const std::string& path, std::vector<Row>& rows, InputNotes& notes) {
    std::ranges::stable_sort(rows, {}, &Row::hertz);
    std::vector<Row> kept;
    kept.reserve(rows.size());
    size_t repeated = 0;
    size_t contrary = 0;
    Row first{};
    for (const Row& row : rows) {
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
    const std::string text = DecodeText(bytes);
    Sheet sheet = sortLines(path, SplitLines(text));
    if (sheet.rows.empty()) {
        throw InputError(path, "no rows; expected rows of a frequency and a level");
    }
    const Reading reading = chooseReading(path, sheet.rows, notes);
    moveTitles(path, reading, sheet, notes);
    checkColumns(path, sheet, reading, notes);

    const bool kilohertz = namesKilohertz(sheet);
    std::vector<Row> rows;
    rows.reserve(sheet.rows.size());
    for (const TableLine& line : sheet.rows) {
        auto row = parseRow(line, reading);
        if (!row) {
            throw InputError(path, line.number, complaintOf(line, reading));
        }
        row->hertz *= kilohertz ? 1000.0 : 1.0;
        rows.push_back(*row);
    }
    describe(path, sheet, reading, notes);
    if (kilohertz) {
        notes.told(path, "the frequencies are in kHz");
    }
    mergeEqual(path, rows, notes);

    table.allocate();
    table.count = 0;
    for (const Row& row : rows) {
        if (!table.add(row.hertz, row.decibels)) {
            throw InputError(path, "expected at most " + std::to_string(CsvTable::maximumRows) +
                                       " rows, found " + std::to_string(rows.size()));
        }
    }
}

void ReadLevelTable(const std::string& path, CsvTable& table, InputNotes& notes) {
    const auto bytes = ReadBinaryFile(path, longestText + 1);
    if (!bytes) {
        throw InputError(path, "cannot be opened");
    }
    if (bytes->size() > longestText) {
        throw InputError(path,
                         "expected a table of at most " + std::to_string(longestText) + " bytes");
    }
    ParseLevelTable(path, *bytes, table, notes);
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

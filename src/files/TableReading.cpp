#include "files/TableReading.h"

#include <algorithm>
#include <cmath>

#include "files/InputError.h"

namespace tonvane {

namespace {

bool isLevel(double decibels) {
    return std::fabs(decibels) <= 400.0;
}

// What a reading makes of the rows.
struct Trial {
    size_t understood = 0;
    int firstLine = 0;     // of those
    bool monotone = true;  // the frequencies of those rise, or fall
};

Trial tryReading(const std::vector<TableLine>& rows, const TableReading& reading) {
    Trial trial;
    bool rises = true;
    bool falls = true;
    std::optional<TableRow> last;
    for (const TableLine& line : rows) {
        if (const auto row = ReadTableRow(line, reading)) {
            rises = rises && (!last || row->hertz >= last->hertz);
            falls = falls && (!last || row->hertz <= last->hertz);
            last = row;
            trial.firstLine = trial.understood == 0 ? row->line : trial.firstLine;
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

}  // namespace

bool IsTableFrequency(double hertz) {
    return hertz >= 0.0 && hertz <= 1e9;
}

std::optional<TableRow> ReadTableRow(const TableLine& line, const TableReading& reading) {
    const auto fields = SplitFields(line.text, reading.separator);
    if (fields.size() < 2) {
        return std::nullopt;
    }
    const auto hertz = ParseTableNumber(fields[0], reading.decimal);
    const auto decibels = ParseTableNumber(fields[1], reading.decimal);
    if (!hertz || !decibels || !IsTableFrequency(*hertz) || !isLevel(*decibels)) {
        return std::nullopt;
    }
    return TableRow{*hertz, *decibels, line.number};
}

std::string ComplaintOfRow(const TableLine& line, const TableReading& reading) {
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
    return IsTableFrequency(*hertz) ? "expected a level between -400 and 400 dB"
                                    : "expected a frequency between 0 Hz and 1 GHz";
}

TableReading ChooseReading(const std::string& path, const std::vector<TableLine>& rows,
                           InputNotes& notes) {
    const auto isBetter = [](const Trial& a, const Trial& b) {
        return a.understood > b.understood ||
               (a.understood == b.understood && a.firstLine < b.firstLine);
    };
    TableReading best;
    Trial bestPoint;
    Trial bestComma;
    for (const Separator separator : separators) {
        const Trial point = tryReading(rows, {separator, DecimalSign::point});
        const Trial comma = tryReading(rows, {separator, DecimalSign::comma});
        if (isBetter(isBetter(comma, point) ? comma : point,
                     isBetter(bestComma, bestPoint) ? bestComma : bestPoint)) {
            best.separator = separator;
            bestPoint = point;
            bestComma = comma;
        }
    }
    if (bestComma.understood == rows.size() && bestPoint.understood == rows.size()) {
        best.decimal = chooseByOrder(path, rows, best.separator, bestPoint, bestComma, notes);
    } else if (isBetter(bestComma, bestPoint)) {
        best.decimal = DecimalSign::comma;
    }
    return best;
}

}  // namespace tonvane

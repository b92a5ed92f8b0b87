// How the rows of a table are to be read: what separates the columns, what the decimal sign is.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "files/InputNotes.h"
#include "files/TableText.h"

namespace tonvane {

struct TableReading {
    Separator separator = Separator::comma;
    DecimalSign decimal = DecimalSign::point;
};

struct TableRow {
    double hertz;
    double decibels;
    int line;
};

constexpr std::array separators{Separator::tab, Separator::semicolon, Separator::comma,
                                Separator::blanks};

// 0 to 1e9 Hz.
bool IsTableFrequency(double hertz);

// The first two fields of a line; nothing unless both are numbers, a frequency and a level between
// -400 and 400 dB.
std::optional<TableRow> ReadTableRow(const TableLine& line, const TableReading& reading);

// Why ReadTableRow gives nothing.
std::string ComplaintOfRow(const TableLine& line, const TableReading& reading);

// The reading that understands most of the lines, which are not empty. Where a point and a comma
// both make numbers of all of them, the order of the frequencies decides, which is noted as a
// guess; throws InputError where it does not.
TableReading ChooseReading(const std::string& path, const std::vector<TableLine>& rows,
                           InputNotes& notes);

}  // namespace tonvane

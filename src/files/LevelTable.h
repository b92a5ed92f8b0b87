// Tables of frequencies and levels as measuring programs write them.
//
// Read is any text of rows with a frequency in Hz in the first column and a level in dB in the
// second. Columns stand between tabs, semicolons, commas or blanks; the decimal sign is a point or
// a comma, thousands may be grouped with the other one. Lines that begin with # * % ! ; or //
// are comments, and what stands ahead of the first row is a header; kHz in its last line counts.
// Further columns (phase, other curves) are not used. A separator and a decimal sign hold for the
// whole file.
#pragma once

#include <string>

#include "files/CsvTable.h"
#include "files/InputNotes.h"

namespace tonvane {

// Reads a file's bytes into an allocated table with rising frequencies, none of them twice; `path`
// is for the messages. Throws InputError, with the line, for what cannot be understood: a row with
// other numbers than the rows above have, a frequency below 0 or above 1 GHz, a level beyond 400
// dB, no row or more than CsvTable::maximumRows, more bytes than longestText. Notes what was passed
// over and, as guesses: the meaning of commas where both meanings give numbers, header lines that
// begin with a digit, the level among more than two columns besides the phase, rows of one
// frequency with different levels (the last one counts).
void ParseLevelTable(const std::string& path, const std::string& bytes, CsvTable& table,
                     InputNotes& notes);

// Ends a sorted table at half the rate as EndTableAtHalfRate does, and notes the rows that lie
// above and a table that leaves a part of 50 Hz to 15 kHz to its first or last level.
void FitTableToRate(const std::string& path, CsvTable& table, int32_t sampleRate,
                    InputNotes& notes);

}  // namespace tonvane

// A response as a table of frequencies and levels, from a text file of rows "frequency,level".
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tonvane {

struct CsvTable {
    static constexpr int32_t maximumRows = 32768;

    std::vector<double> frequency;  // column 1, Hz
    std::vector<double> level;      // column 2, dB
    int32_t capacity = 0;           // rows of each column; maximumRows once allocated
    int32_t count = 0;              // rows read
    bool isWhole = true;            // ReadCsvRows has understood every line, and read them all

    // Whether an import has ever made the columns. They are kept from then on.
    [[nodiscard]] bool allocated() const { return !frequency.empty(); }

    // Makes the columns for maximumRows rows.
    void allocate();

    // Adds a row; false when the table is full.
    bool add(double hertz, double decibels);
};

// Reads the rows of a file, at most maximumRows, into an allocated table: a frequency, a comma
// right behind it, a level. A line of another form is one more row, with what it lacks taken from
// the row before, and reading goes on behind what was understood of it; it ends where nothing was.
// False when the file cannot be read or its first row lacks something; the table then has no rows.
bool ReadCsvRows(const std::string& path, CsvTable& table);

// Rising frequencies; rows of equal frequency keep their order. A row whose frequency is no number
// keeps its place and divides those ahead of it from those behind.
void SortCsvRows(CsvTable& table);

// Ends a sorted table at half the rate: rows above it are cut, and a row at exactly half the rate
// holds the level of the last row left. A table that starts above it keeps its first row's level.
// After it the table stands at its true frequencies in CsvToMagnitudes.
void EndTableAtHalfRate(CsvTable& table, int32_t sampleRate);

// The bin of a position: up from a fraction of 0.49 on, down below.
double RoundBin(double x);

// Fills n magnitudes (amplitude ratios) from a sorted table, piecewise constant: each row holds
// from its own bin to the next row's, the first row below, the last row above. The table's highest
// frequency, as a whole number, lies at bin n/2. Returns the spacing of the bins in Hz.
double CsvToMagnitudes(const CsvTable& table, std::span<double> magnitudes);

}  // namespace tonvane

#include "files/CsvTable.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "elementary/Elementary.h"
#include "platform/FileAccess.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

// Fills magnitudes begin .. end - 1, as far as they exist.
void fill(std::span<double> magnitudes, int32_t begin, int32_t end, double decibels) {
    const auto n = static_cast<int32_t>(magnitudes.size());
    const int32_t from = std::clamp(begin, 0, n);
    const int32_t to = std::clamp(end, from, n);
    std::fill(magnitudes.begin() + from, magnitudes.begin() + to,
              elementary::Exp10(0.05 * decibels));
}

}  // namespace

void CsvTable::allocate() {
    frequency.resize(maximumRows);
    level.resize(maximumRows);
    capacity = maximumRows;
}

bool CsvTable::add(double hertz, double decibels) {
    if (count >= capacity) {
        return false;
    }
    frequency[count] = hertz;
    level[count] = decibels;
    ++count;
    return true;
}

// As a loop of fscanf over "%lf,%lf\n" to the end of the file.
bool ReadCsvRows(const std::string& path, CsvTable& table) {
    table.count = 0;
    const auto text = ReadBinaryFile(path, longestText);
    if (!text) {
        return false;
    }
    TextScanner scanner(*text);
    double hertz = 0.0;
    double decibels = 0.0;
    table.isWhole = true;
    for (size_t before = 1; !scanner.sawEnd() && scanner.position() != before;) {
        before = scanner.position();
        const auto first = scanner.real();
        hertz = first.value_or(hertz);
        const auto second = first && scanner.literal(',') ? scanner.real() : std::nullopt;
        decibels = second.value_or(decibels);
        if (second) {
            scanner.skipSpace();
        } else if (table.count == 0) {
            return false;
        }
        const bool hasRoom = table.add(hertz, decibels);
        table.isWhole = table.isWhole && second && hasRoom;
        if (!hasRoom) {
            break;
        }
    }
    return true;
}

// A row whose frequency is no number stays where it is, and no other row passes it.
void SortCsvRows(CsvTable& table) {
    std::vector<int32_t> order(table.count);
    std::iota(order.begin(), order.end(), 0);
    const auto frequencyOf = [&](int32_t row) { return table.frequency[row]; };
    for (auto begin = order.begin(); begin != order.end();) {
        const auto end = std::find_if(begin, order.end(),
                                      [&](int32_t row) { return std::isnan(frequencyOf(row)); });
        std::ranges::stable_sort(begin, end, {}, frequencyOf);
        begin = end == order.end() ? end : end + 1;
    }
    const auto reorder = [&](std::vector<double>& column) {
        std::vector<double> sorted(table.count);
        std::ranges::transform(order, sorted.begin(), [&](int32_t row) { return column[row]; });
        std::ranges::copy(sorted, column.begin());
    };
    reorder(table.frequency);
    reorder(table.level);
}

void EndTableAtHalfRate(CsvTable& table, int32_t sampleRate) {
    const double half = sampleRate / 2.0;
    while (table.count > 1 && table.frequency[table.count - 1] >= half) {
        const bool exact = table.frequency[table.count - 1] == half;
        if (exact) {
            return;
        }
        --table.count;
    }
    const double last = table.level[table.count - 1];
    if (table.frequency[table.count - 1] >= half || !table.add(half, last)) {
        table.frequency[table.count - 1] = half;
    }
}

double RoundBin(double x) {
    const double floor = std::floor(x);
    return x - floor >= 0.49 ? std::ceil(x) : floor;
}

double CsvToMagnitudes(const CsvTable& table, std::span<double> magnitudes) {
    const auto n = static_cast<int32_t>(magnitudes.size());
    const int32_t top = elementary::TruncateToInt(table.frequency[table.count - 1]);
    const double spacing = top / (n * 0.5);
    const auto binOf = [&](int32_t row) {
        return elementary::TruncateToInt(RoundBin(table.frequency[row] / spacing));
    };

    int32_t begin = binOf(0);
    fill(magnitudes, 0, begin, table.level[0]);
    for (int32_t k = 0; k + 1 < table.count; ++k) {
        const int32_t end = binOf(k + 1);
        fill(magnitudes, begin, end, table.level[k]);
        begin = end;
    }
    fill(magnitudes, begin, n, table.level[table.count - 1]);
    return spacing;
}

}  // namespace tonvane

#include "graph/CurveStrokes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

// Levels to image rows. It falls with the level, so the row of the highest of several levels is the
// least of their rows: a column takes logarithms of its extremes only, not of its points.
class Rows {
  public:
    Rows(LevelKind kind, const CGraphAxis& axis)
        : isPower_(kind == LevelKind::power), axis_(axis) {}

    // What levels are compared by.
    [[nodiscard]] double height(double value) const {
        if (std::isnan(value)) {
            return isPower_ ? 0.0 : -std::numeric_limits<double>::infinity();
        }
        return isPower_ ? std::fabs(value) : value;
    }

    [[nodiscard]] int32_t row(double height) const {
        return -axis_.ToPixel(isPower_ ? 10.0 * elementary::Log10(height) : height);
    }

  private:
    bool isPower_;
    const CGraphAxis& axis_;
};

}  // namespace

void AppendCurveStrokes(std::span<const int32_t> columns, std::span<const double> values,
                        LevelKind kind, const CGraphAxis& levels, std::vector<Segment>& strokes) {
    const size_t count = std::min(columns.size(), values.size());
    if (count == 0) {
        return;
    }
    const Rows rows(kind, levels);
    int32_t column = columns[0];
    double last = rows.height(values[0]);
    double lowest = last;
    double highest = last;
    for (size_t i = 1; i < count; ++i) {
        const double height = rows.height(values[i]);
        if (columns[i] == column && i + 1 < count) {
            lowest = std::min(lowest, height);
            highest = std::max(highest, height);
        } else {
            strokes.push_back({{column, rows.row(highest)}, {column, rows.row(lowest)}});
            strokes.push_back({{column, rows.row(last)}, {columns[i], rows.row(height)}});
            column = columns[i];
            lowest = height;
            highest = height;
        }
        last = height;
    }
}

}  // namespace tonvane

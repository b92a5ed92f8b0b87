#include "graph/StrokePainter.h"

#include <algorithm>
#include <cmath>

namespace tonvane {

namespace {

constexpr double fullCoverage = 255.0;
constexpr double halfStep = 0.5;  // of a coverage, rounded to the nearest by truncation

Rectangle intersect(const Rectangle& a, const Rectangle& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

int32_t clampTo(int64_t value, int32_t low, int32_t high) {
    return static_cast<int32_t>(std::clamp<int64_t>(value, low, high));
}

// The pixels of an upright or level stroke with square ends.
Rectangle box(const Segment& s, Point origin, int32_t width, const Rectangle& clip) {
    const int64_t before = width / 2;
    const int64_t behind = width - before;
    const auto [left, right] = std::minmax(s.from.x, s.to.x);
    const auto [top, bottom] = std::minmax(s.from.y, s.to.y);
    return {clampTo(int64_t{left} + origin.x - before, clip.left, clip.right),
            clampTo(int64_t{top} + origin.y - before, clip.top, clip.bottom),
            clampTo(int64_t{right} + origin.x + behind, clip.left, clip.right),
            clampTo(int64_t{bottom} + origin.y + behind, clip.top, clip.bottom)};
}

}  // namespace

uint32_t MixPixels(uint32_t under, uint32_t over, uint32_t coverage) {
    uint32_t mixed = 0xFF000000U;
    for (uint32_t shift = 0; shift < 24U; shift += 8U) {
        const uint32_t a = (under >> shift) & 0xFFU;
        const uint32_t b = (over >> shift) & 0xFFU;
        mixed |= ((a * (255U - coverage) + b * coverage + 127U) / 255U) << shift;
    }
    return mixed;
}

uint32_t PixelOf(Color color) {
    return 0xFF000000U | (color & 0xFFU) << 16U | (color & 0xFF00U) | (color >> 16U & 0xFFU);
}

void PixelRows::fill(const Rectangle& rectangle, uint32_t pixel) const {
    const Rectangle inside = intersect(rectangle, {0, 0, width, height});
    if (inside.left >= inside.right) {
        return;
    }
    for (int32_t y = inside.top; y < inside.bottom; ++y) {
        std::fill(row(y) + inside.left, row(y) + inside.right, pixel);
    }
}

// Liang and Barsky's clipping.
std::optional<Line> ClipSegment(const Segment& segment, const Rectangle& rectangle, double margin) {
    const double x = segment.from.x;
    const double y = segment.from.y;
    const double dx = segment.to.x - x;
    const double dy = segment.to.y - y;
    const double rates[] = {-dx, dx, -dy, dy};
    const double rooms[] = {x - (rectangle.left - margin), rectangle.right + margin - x,
                            y - (rectangle.top - margin), rectangle.bottom + margin - y};
    double enter = 0.0;
    double leave = 1.0;
    for (int side = 0; side < 4; ++side) {
        if (rates[side] == 0.0) {
            if (rooms[side] < 0.0) {
                return std::nullopt;
            }
        } else if (rates[side] < 0.0) {
            enter = std::max(enter, rooms[side] / rates[side]);
        } else {
            leave = std::min(leave, rooms[side] / rates[side]);
        }
    }
    if (enter > leave) {
        return std::nullopt;
    }
    return Line{x + enter * dx, y + enter * dy, x + leave * dx, y + leave * dy};
}

void StrokePainter::draw(const PixelRows& target, const Rectangle& clip, Point origin,
                         std::span<const Segment> segments, Color color, int32_t width,
                         int32_t resolution) {
    const Rectangle inside = intersect(clip, {0, 0, target.width, target.height});
    if (inside.left >= inside.right || inside.top >= inside.bottom) {
        return;
    }
    width_ = target.width;
    coverage_.resize(static_cast<size_t>(target.width) * target.height);
    used_.assign(target.height, {target.width, 0});

    const uint32_t pixel = PixelOf(color);
    const double r = resolution;
    const double halfWidth = width / 2.0;
    const double middle = (width % 2) / 2.0;
    const Rectangle own{(inside.left - origin.x) * resolution, (inside.top - origin.y) * resolution,
                        (inside.right - origin.x) * resolution,
                        (inside.bottom - origin.y) * resolution};
    for (const Segment& segment : segments) {
        const bool upright = segment.from.x == segment.to.x;
        const bool level = segment.from.y == segment.to.y;
        if (upright && level) {
            continue;
        }
        if ((upright || level) && resolution == 1) {
            target.fill(box(segment, origin, width, inside), pixel);
        } else if (const auto line = ClipSegment(segment, own, halfWidth + r)) {
            cover({origin.x + (line->x0 + middle) / r, origin.y + (line->y0 + middle) / r,
                   origin.x + (line->x1 + middle) / r, origin.y + (line->y1 + middle) / r},
                  halfWidth / r, inside);
        }
    }
    paintCoverage(target, pixel);
}

void StrokePainter::include(int32_t y, int32_t left, int32_t right) {
    RowRange& range = used_[y];
    range.left = std::min(range.left, left);
    range.right = std::max(range.right, right);
}

// Every row takes the pixels whose middles can lie within reach of the line; their coverage falls
// from 1 to 0 over the pixel at the stroke's edge.
void StrokePainter::cover(const Line& line, double halfWidth, const Rectangle& clip) {
    const double dx = line.x1 - line.x0;
    const double dy = line.y1 - line.y0;
    const double length = std::sqrt(dx * dx + dy * dy);
    if (!(length > 0.0)) {
        return;
    }
    const double reach = halfWidth + 0.5;
    const double slope = dy == 0.0 ? 0.0 : dx / dy;
    const double spread = dy == 0.0 ? length : reach * std::fabs(length / dy);  // within a row
    const double xLow = std::min(line.x0, line.x1) - reach;
    const double xHigh = std::max(line.x0, line.x1) + reach;
    const auto [yLow, yHigh] = std::minmax(line.y0, line.y1);
    const auto top = std::max(static_cast<int32_t>(std::floor(yLow - reach)), clip.top);
    const auto bottom = std::min(static_cast<int32_t>(std::ceil(yHigh + reach)), clip.bottom);
    for (int32_t y = top; y < bottom; ++y) {
        const double v = y + 0.5 - line.y0;
        const double centre = line.x0 + v * slope;
        const auto left = std::max(
            static_cast<int32_t>(std::floor(std::clamp(centre - spread, xLow, xHigh))), clip.left);
        const auto right = std::min(
            static_cast<int32_t>(std::ceil(std::clamp(centre + spread, xLow, xHigh))), clip.right);
        uint8_t* row = coverage_.data() + static_cast<size_t>(y) * width_;
        for (int32_t x = left; x < right; ++x) {
            const double u = x + 0.5 - line.x0;
            const double along = std::clamp((u * dx + v * dy) / (length * length), 0.0, 1.0);
            const double du = u - along * dx;
            const double dv = v - along * dy;
            const double across = std::sqrt(du * du + dv * dv);
            const double covered = std::clamp(reach - across, 0.0, 1.0);
            row[x] = std::max(row[x], static_cast<uint8_t>(covered * fullCoverage + halfStep));
        }
        if (left < right) {
            include(y, left, right);
        }
    }
}

void StrokePainter::paintCoverage(const PixelRows& target, uint32_t pixel) {
    for (int32_t y = 0; y < target.height; ++y) {
        const auto [left, right] = used_[y];
        uint8_t* covered = coverage_.data() + static_cast<size_t>(y) * width_;
        uint32_t* row = target.row(y);
        for (int32_t x = left; x < right; ++x) {
            if (covered[x] != 0) {
                row[x] = MixPixels(row[x], pixel, covered[x]);
                covered[x] = 0;
            }
        }
    }
}

}  // namespace tonvane
